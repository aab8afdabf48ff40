#include "db/lavoro/famiglie.h"
#include "db/schema/generi.h"
#include "prova_editori.h"

#include <QGroupBox>
#include <QRadioButton>

namespace
{

// Il nome e "Salva".
Persona::Passo chiama(const QString &nome)
{
    return [nome](QWidget *finestra) {
        riempie(finestra, u"1="_s + nome);
        salva(finestra);
    };
}

} // namespace

// Chi è offerto in una famiglia, chi è rifiutato, che cosa resta scritto.
class TstFamiglie : public QObject, private ProvaEditori
{
    Q_OBJECT

    void apreFamiglia(int genere, const Persona::Passo &passo)
    {
        apre(u"fmFamiglia"_s, {}, genere, passo);
    }

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    // Chi è già elencato (e che cos'altro) > chi si chiede.
    void coppia()
    {
        const auto esito = [](bool rifiutato, const char *casi) {
            for (const QString &caso : QString::fromUtf8(casi).split(u'|')) {
                std::vector<int> inseriti;
                for (const QString &uno : caso.section(u'>', 0, 0).split(u' ', Qt::SkipEmptyParts))
                    inseriti.push_back(uno.toInt());
                QVERIFY2(ConiugeGiaInserito(inseriti, caso.section(u'>', 1).toInt()) == rifiutato,
                         qUtf8Printable(caso));
            }
        };
        esito(false, ">6|>37|12 14 18 19 39 41 42>7|12 14 18 19 39 41 42>36");
        esito(true, "6>6|7>7|36>36|37>37|12 18 7 42>7|6 7>6");
        esito(false, "6>7|7>6|36>37|37>36|1>6|2>7|3>6|4>7|5>6|34>7|40>6");
        esito(true, "1 7>6|7 2>6|3 6>7|4 36>37|5 7>6|34 7>6|7 40>6");
        // Anche un ruolo che non è di coppia è rifiutato da una coppia completa; due principali no.
        esito(true, "2 7>1|2 7>34");
        esito(false, "2>2|6 7>1|2 7>40|2 7>12|2 7>18|2 7>8");
    }

    void offerta_data()
    {
        colonneDiTesto({"genere", "sesso", "ruoli"});
        riga("coniugi da una voce", {"8", "", "Marito Moglie"});
        riga("coniugi da un uomo", {"8", "M", "Moglie"});
        riga("coniugi da una donna", {"8", "F", "Marito"});
        riga("coniugi da sesso ignoto", {"8", "?", "Marito"});
        riga("genitori da un uomo", {"35", "M", "Madre Padre"});
        riga("senza genere", {"0", "", ""});
    }
    void offerta()
    {
        QFETCH(QString, genere);
        QFETCH(QString, sesso);
        QStringList ruoli;
        const auto guarda = [&](QWidget *famiglia) {
            const auto *combo = parte<QComboBox>(famiglia, u"ImageCombo1"_s);
            for (const QString &ruolo : {u"Madre"_s, u"Marito"_s, u"Moglie"_s, u"Padre"_s}) {
                if (combo->findText(ruolo) >= 0)
                    ruoli.append(ruolo);
            }
        };
        if (sesso.isEmpty()) {
            apreFamiglia(genere.toInt(), guarda);
        } else {
            // Con il sesso ignoto la famiglia del coniuge non si crea, ma una che c'è si apre.
            esegui(u"UPDATE Individui SET Sesso = ?"_s, {sesso});
            esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8)"_s);
            esegui(u"INSERT INTO %1 VALUES ('F1', 'I1')"_s.arg(
                genere == u"8"_s ? u"FamiglieConiugi"_s : u"FamiglieGenitori"_s));
            apre(u"fmIndividuo"_s, u"I1"_s, [&](QWidget *individuo) {
                poi(guarda);
                preme(individuo, u"Command3_2"_s);
            });
        }
        QTEST(ruoli.join(u' '), "ruoli");
    }

    void chiudeSenzaNulla()
    {
        apreFamiglia(FamigliaConiuge, [](QWidget *famiglia) {
            QCOMPARE(parte<QPushButton>(famiglia, u"Command1"_s)->text(), u"Chiudi"_s);
            QCOMPARE(comandi(famiglia), u"Nea"_s);
            preme(famiglia, u"Command1"_s);
            QVERIFY(!famiglia->isVisible());
        });
        QCOMPARE(righe(u"Famiglie"_s), 0);
    }

    // La moglie è della voce e della coppia, col sesso del suo ruolo, e chi torna è lo sposo.
    void coniuge()
    {
        apre(u"fmVoce"_s, u"V1"_s, 10, [this](QWidget *voce) {
            poi([this](QWidget *sposo) {
                riempie(sposo, u"1=Pietro"_s);
                preme(sposo, u"Option1_1"_s);
                poi([this](QWidget *coniugi) {
                    QCOMPARE(coniugi->windowTitle(), u"Famiglia Coniuge Pietro"_s);
                    poi([](QWidget *sposa) {
                        QCOMPARE(sposa->windowTitle(), u"Individuo"_s);
                        QVERIFY(!acceso(sposa, u"Frame3_0"_s));
                        chiama(u"Lucia"_s)(sposa);
                    });
                    nuovo(coniugi, u"Moglie"_s);
                    QCOMPARE(collegati(coniugi), u"I2 Sposo, I3 Moglie, O1 Trascrittore"_s);
                    QCOMPARE(contesto().IndividuoCorrente, u"I2"_s);
                });
                nuovo(sposo, u"Famiglia Coniuge"_s);
                QCOMPARE(collegati(sposo), u"F1 Famiglia Coniuge, O1 Trascrittore"_s);
                salva(sposo);
            });
            nuovo(voce, u"Sposo"_s);
        });
        QCOMPARE(lette(u"SELECT Codice, Voce, Sesso, Ruolo FROM Individui WHERE Codice > 'I1'"_s),
                 u"I2;V1;M;2|I3;V1;F;7"_s);
        QCOMPARE(legami(), QStringList({u"O1F1"_s, u"O1I2"_s, u"O1I3"_s}));
    }

    // Una famiglia nata dalla voce è dei soli genitori: non vi entra nessuno come figlio.
    void dallaVoce()
    {
        apre(u"fmVoce"_s, u"V1"_s, [this](QWidget *voce) {
            poi([this](QWidget *famiglia) {
                QCOMPARE(famiglia->windowTitle(), u"Famiglia"_s);
                poi(chiama(u"Ugo"_s));
                nuovo(famiglia, u"Padre"_s);
            });
            nuovo(voce, u"Famiglia Genitori"_s);
            QCOMPARE(collegati(voce), u"I1 Battezzato/a, I2 Padre, F1 Famiglia Genitori"_s);
        });
        QCOMPARE(lette(u"SELECT Sesso, FamiglieConiugi.* FROM Individui, FamiglieConiugi "
                       "WHERE Codice = CodiceIndividuo"_s),
                 u"M;F1;I2"_s);
        QCOMPARE(righe(u"FamiglieGenitori"_s), 0);
    }

    void rifiuto()
    {
        apreFamiglia(FamigliaGenitori, [this](QWidget *famiglia) {
            poi(chiama(u"Anna"_s));
            nuovo(famiglia, u"Madre"_s);
            persona->avviso(u"Questo tipo di coniuge è già stato inserito"_s);
            nuovo(famiglia, u"Madre"_s);
        });
        QCOMPARE(lette(u"SELECT Nome FROM Individui"_s), u"Zoe|Anna"_s);
    }

    // Chi chiude la finestra del membro senza salvare non fa entrare nella coppia nessun altro.
    void membroNonSalvato()
    {
        contesto().IndividuoCorrente = u"I1"_s;
        apreFamiglia(FamigliaConiuge, [this](QWidget *famiglia) {
            poi([](QWidget *individuo) { riempie(individuo, u"1=mai"_s); });
            nuovo(famiglia, u"Moglie"_s);
            QCOMPARE(collegati(famiglia), u"O1 Trascrittore"_s);
        });
        QCOMPARE(righe(u"FamiglieConiugi"_s), 0);
        QCOMPARE(contesto().IndividuoCorrente, QString());
        QCOMPARE(lette(u"SELECT Codice, Voce, Ruolo FROM Famiglie"_s), u"F1;V1;8"_s);
    }

    // Un ruolo che non è di coppia dà una persona della stessa voce, fuori dalla coppia. Il modello
    // non lo offre nelle famiglie, ma un archivio può farlo.
    void individuoSenzaCoppia()
    {
        esegui(u"UPDATE Traduzioni SET Tipo = Tipo + 512 WHERE Codice IN (5, 34)"_s);
        apreFamiglia(FamigliaConiuge, [this](QWidget *famiglia) {
            poi(chiama(u"Teste"_s));
            nuovo(famiglia, u"Testimone"_s);
            nuovo(famiglia, u"Padrino/Madrina"_s);
        });
        QCOMPARE(lette(u"SELECT Codice, Voce, Ruolo FROM Individui"_s), u"I1;V1;1|I2;V1;5"_s);
        QCOMPARE(righe(u"FamiglieConiugi"_s), 0);
    }

    void eventi()
    {
        apreFamiglia(FamigliaConiuge, [this](QWidget *famiglia) {
            poi([](QWidget *evento) {
                QCOMPARE(evento->windowTitle(), u"Evento di Famiglia"_s);
                QCOMPARE(contesto().EventoCorrente, QString());
                riempie(evento, u"2=Vercelli"_s);
                salva(evento);
            });
            nuovo(famiglia, u"Matrimonio"_s);
            poi([](QWidget *evento) {
                QCOMPARE(evento->windowTitle(), u"Matrimonio"_s);
                QCOMPARE(contesto().EventoCorrente, u"E1"_s);
                QCOMPARE(casella(evento, 2)->text(), u"Vercelli"_s);
            });
            preme(famiglia, u"Command3_2"_s);
        });
    }

    // Con l'ultimo membro va la famiglia; ciò che si aggiunge dopo è di una famiglia nuova.
    void ultimoMembroEliminato()
    {
        apreFamiglia(FamigliaGenitori, [this](QWidget *famiglia) {
            poi(chiama(u"Anna"_s));
            nuovo(famiglia, u"Madre"_s);
            persona->poi([](QWidget *scatola) {
                qobject_cast<QMessageBox *>(scatola)->button(QMessageBox::Retry)->click();
            });
            preme(famiglia, u"Command3_1"_s);
            QCOMPARE(collegati(famiglia), QString());
            QCOMPARE(righe(u"Famiglie"_s), 0);
            poi(chiama(u"Rita"_s));
            nuovo(famiglia, u"Madre"_s);
            QCOMPARE(collegati(famiglia), u"I2 Madre, O1 Trascrittore"_s);
        });
        QCOMPARE(lette(u"SELECT Famiglie.Voce, Famiglie.Ruolo, Nome FROM Famiglie, "
                       "FamiglieConiugi, Individui WHERE Famiglie.Codice = CodiceFamiglia "
                       "AND Individui.Codice = CodiceIndividuo"_s),
                 u"V1;35;Rita"_s);
    }

    // Se l'iscrizione di chi apre non riesce, non resta neppure la famiglia.
    void aMeta()
    {
        esegui(u"CREATE TRIGGER Guasto BEFORE INSERT ON FamiglieGenitori "
               "BEGIN SELECT RAISE(ABORT, 'guasto'); END"_s);
        apre(u"fmIndividuo"_s, u"I1"_s, [this](QWidget *individuo) {
            poi([this](QWidget *famiglia) {
                persona->avviso(u"Operazione non riuscita:\nguasto"_s);
                nuovo(famiglia, u"Padre"_s);
            });
            nuovo(individuo, u"Famiglia Genitori"_s);
        });
        QCOMPARE(righe(u"Famiglie"_s) + righe(u"OperatoriContesti"_s), 0);
        QVERIFY(!connessione().inTransazione());
    }

    // Dall'individuo alla sua famiglia e ritorno, o dalla famiglia al membro e ritorno.
    void giaAperti()
    {
        esegui(u"UPDATE Individui SET Ruolo = 36"_s);
        esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 35)"_s);
        esegui(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1')"_s);
        const auto torna = [this](const QString &titolo, const QString &suoi) {
            poi([=, this](QWidget *finestra) {
                QCOMPARE(finestra->windowTitle(), titolo);
                QCOMPARE(collegati(finestra), suoi);
                persona->avviso(u"La finestra richiesta è già aperta"_s);
                preme(finestra, u"Command3_2"_s);
            });
        };
        apre(u"fmIndividuo"_s, u"i1"_s, [&](QWidget *individuo) {
            torna(u"Famiglia Coniuge "_s, u"I1 Padre"_s);
            preme(individuo, u"Command3_2"_s);
        });
        // Il padre ha la famiglia come coniuge, qualunque ne sia il genere.
        apre(u"fmFamiglia"_s, u"f1"_s, FamigliaGenitori, [&](QWidget *famiglia) {
            torna(u"Individuo"_s, u"F1 Famiglia Coniuge"_s);
            preme(famiglia, u"Command3_2"_s);
        });
    }
};

PROVA_CON_FINESTRE(TstFamiglie)

#include "tst_famiglie.moc"
