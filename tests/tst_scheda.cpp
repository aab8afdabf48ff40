#include "atti/fmScheda.h"
#include "atti/pagina.h"
#include "comune.h"
#include "db/archivio/custodia.h"
#include "db/atto/campi_pagina.h"
#include "db/atto/registro_atti.h"
#include "db/lavoro/lavoro.h"
#include "db/lavoro/ripresa.h"
#include "persona.h"
#include "programma.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

using scheda::SchedaAtto;

// La pagina di un atto, usata con la sola tastiera.
class TestScheda : public QObject
{
    Q_OBJECT

private:
    using Battute = QList<std::pair<QString, QString>>;
    std::unique_ptr<ArchivioDiProva> archivio;
    std::unique_ptr<Persona> persona;
    std::unique_ptr<fmScheda> scheda;

    void apre(const QString &registro, const QString &voce = {}, int lock = 3)
    {
        ProprietaScheda sue;
        sue.Percorso = archivio->percorso();
        sue.RegistroLocale = registro;
        sue.VoceLocale = voce;
        sue.TipoLock = lock;
        scheda = std::make_unique<fmScheda>(sue, nullptr);
        scheda->Form_Load();
        scheda->resize(1200, 700);
        scheda->show();
        QVERIFY(QTest::qWaitForWindowActive(scheda.get()));
        scheda->comincia();
    }
    static QString qui() { return QApplication::focusWidget()->accessibleName(); }
    static void batte(Qt::Key tasto, Qt::KeyboardModifiers modi = {})
    {
        QTest::keyClick(QApplication::focusWidget(), tasto, modi);
    }
    // Va col tabulatore alla casella che si chiama così, e vi scrive.
    static void scrive(const QString &casella, const QString &testo)
    {
        for (int passi = 0; qui() != casella; ++passi) {
            QVERIFY2(passi < 60, qUtf8Printable(casella + u" non si raggiunge"_s));
            batte(Qt::Key_Tab);
        }
        for (const QChar lettera : testo)
            QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, lettera,
                                {});
    }
    static void scrive(const Battute &battute)
    {
        for (const auto &[casella, testo] : battute)
            scrive(casella, testo);
    }
    // Chiuso un messaggio torna attiva la pagina.
    void attiva() const
    {
        scheda->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(scheda.get()));
    }
    void salva() const
    {
        batte(Qt::Key_S, Qt::ControlModifier);
        attiva();
    }
    // Tutte le righe delle tabelle che un atto tocca, con le date di servizio.
    static QStringList tutteLeRighe()
    {
        QStringList trovate;
        for (const char *tabella : {"Voci", "Individui", "Famiglie", "FamiglieConiugi",
                                    "FamiglieGenitori", "Eventi", "Binari", "OperatoriContesti"}) {
            const QString nome = QString::fromLatin1(tabella);
            connessione().leggi({u"SELECT * FROM "_s + nome, {}, {}}, [&](const ado::Riga &riga) {
                QString testo = nome;
                for (int i = 0; i < riga.colonne(); ++i)
                    testo += riga.nullo(i) ? u"|Null"_s : u"|"_s + riga.testo(i);
                trovate.append(testo);
                return true;
            });
        }
        trovate.sort();
        return trovate;
    }
    // L'atto senza i suoi codici, che fra due scritture sono diversi.
    static Atto nudo(const QString &codice)
    {
        Atto atto = leggeAtto(connessione(), codice).value();
        atto.codice.clear();
        for (PersonaDiAtto &una : atto.persone) {
            una.codice.clear();
            for (EventoDiAtto &uno : una.eventi)
                uno.codice.clear();
        }
        for (FamigliaDiAtto &una : atto.famiglie)
            una.codice.clear();
        for (TestoDiAtto &uno : atto.testi)
            uno.codice.clear();
        return atto;
    }
    static Battute breve(const QString &nome)
    {
        return {{u"Atto: Codice"_s, u"1"_s},
                {u"Atto: Data"_s, u"11/10/1813"_s},
                {u"Battezzato/a: Nome"_s, nome}};
    }

    // L'atto che i tasti di `battesimoDaiTasti` scrivono.
    static Atto loStessoSenzaFinestre()
    {
        SchedaAtto stesso(*scheda::diTipo(9), nuovoAtto(connessione(), u"R1"_s));
        const std::pair<scheda::Indirizzo, QString> valori[] = {
            {{u"voce"_s, 0, 0, u"CodiceVoce"_s}, u"1"_s},
            {{u"voce"_s, 0, 0, u"Data"_s}, u"1813-10-11"_s},
            {{u"battezzato"_s, 0, 0, u"Nome"_s}, u"Giosuè"_s},
            {{u"battezzato"_s, 0, 0, u"Cognome"_s}, u"D'Aro"_s},
            {{u"battezzato"_s, 0, 0, u"Sesso"_s}, u"M"_s},
            {{u"battezzato"_s, 0, 20, u"Data"_s}, u"1813-10-10"_s},
            {{u"battezzato"_s, 0, 21, u"Data"_s}, u"1813-10-11"_s},
            {{u"padre"_s, 0, 0, u"Nome"_s}, u"Carlo"_s},
            {{u"padre"_s, 0, 0, u"Cognome"_s}, u"D'Aro"_s},
            {{u"madre"_s, 0, 0, u"Nome"_s}, u"Luigia"_s}};
        for (const auto &[dove, valore] : valori)
            stesso.assegna(dove, valore);
        for (const QString &nome : {u"Pietro"_s, u"Barbara"_s})
            stesso.assegna(stesso.aggiunge(u"padrini"_s), u"Nome"_s, nome);
        return stesso.pronto().atto;
    }

private slots:
    void init()
    {
        archivio = std::make_unique<ArchivioDiProva>();
        persona = std::make_unique<Persona>();
        esegui(u"INSERT INTO Registri (Codice, Tipo, Titolo) VALUES ('R1', 9, 'Battesimi'), "
               "('R2', 10, 'Matrimoni'), ('R3', 11, 'Morti')"_s);
    }
    void cleanup()
    {
        QCOMPARE(persona->inattese(), QStringList());
        QVERIFY(persona->finita());
        scheda.reset();
    }

    // Un battesimo dai tasti è quello che si scrive senza finestre; salvarlo ancora non cambia
    // nulla, e chi vi si aggiunge dopo vi sta una volta sola.
    void battesimoDaiTasti()
    {
        apre(u"R1"_s);
        scrive({{u"Atto: Codice"_s, u"1"_s},
                {u"Atto: Data"_s, u"11/10/1813"_s},
                {u"Battezzato/a: Nome"_s, u"Giosuè"_s},
                {u"Battezzato/a: Cognome"_s, u"D'Aro"_s},
                {u"Battezzato/a: Sesso"_s, u"m"_s},
                {u"Nascita: Data"_s, u"-1"_s},
                {u"Padre: Nome"_s, u"Carlo"_s}});
        // Il cognome del padre è proposto, e si distingue; il tabulatore lo salta.
        const Campo *cognome = scheda->pagina()->campo({u"padre"_s, 0, 0, u"Cognome"_s});
        QVERIFY(cognome->proposto() && cognome->fuoco()->font().italic());
        QVERIFY(!cognome->fuoco()->accessibleDescription().isEmpty());
        scrive({{u"Madre: Nome"_s, u"Luigia"_s},
                {u"Padrino/Madrina 1: Nome"_s, u"Pietro"_s},
                {u"Padrino/Madrina 2: Nome"_s, u"Barbara"_s}});
        QCOMPARE(righe(u"Voci"_s), 0);
        salva();
        QCOMPARE(persona->inattese(), QStringList());
        Atto altro = loStessoSenzaFinestre();
        QCOMPARE(scriveAtto(connessione(), {}, {}, altro).che, EsitoAtto::Scritto);
        QCOMPARE(nudo(scheda->proprieta.VoceLocale), nudo(altro.codice));

        const QStringList prima = tutteLeRighe();
        QVERIFY(!scheda->daRegistrare());
        salva();
        QCOMPARE(tutteLeRighe(), prima);
        scrive(u"Padrino/Madrina 3: Nome"_s, u"Ugo"_s);
        salva();
        salva();
        QCOMPARE(tutteLeRighe().size(), prima.size() + 1);
        QCOMPARE(qui(), u"Padrino/Madrina 3: Nome"_s);
    }

    // Il cognome proposto a un padre di cui non si scrive nulla non lo fa nascere.
    void padreSoltantoProposto()
    {
        apre(u"R1"_s);
        scrive({{u"Atto: Codice"_s, u"1"_s},
                {u"Battezzato/a: Nome"_s, u"Prova"_s},
                {u"Battezzato/a: Cognome"_s, u"Esposito"_s}});
        QVERIFY(scheda->pagina()->campo({u"padre"_s, 0, 0, u"Cognome"_s})->proposto());
        salva();
        QCOMPARE(righe(u"Individui"_s), 1);
        QCOMPARE(righe(u"Famiglie"_s), 0);
    }

    // Tornando indietro si ripassa dalle caselle di prima, e da ciascuna si esce.
    void avantiEIndietro()
    {
        for (const QString &registro : {u"R1"_s, u"R2"_s, u"R3"_s}) {
            apre(registro);
            // In fondo alla pagina si ricomincia: ogni casella si incontra una volta per giro.
            const auto giro = [](Qt::Key tasto) {
                QStringList caselle;
                for (; !caselle.contains(qui()) && caselle.size() < 120; batte(tasto))
                    caselle.append(qui());
                return caselle;
            };
            QStringList andata = giro(Qt::Key_Tab);
            andata.removeAll(u"Atto: Volume"_s); // da dove si ricomincia
            QVERIFY(andata.size() > 8 && andata.contains(u"Testo"_s));
            for (const QString &una : andata)
                QVERIFY2(una.contains(u": "_s) || una == u"Testo"_s || una == u"Nota"_s,
                         qUtf8Printable(una));
            scheda->pagina()->testo(u"nota"_s)->testo()->setFocus();
            QStringList ritorno = giro(Qt::Key_Backtab);
            std::reverse(ritorno.begin(), ritorno.end());
            ritorno.removeIf([&](const QString &una) { return !andata.contains(una); });
            QCOMPARE(ritorno, andata);
        }
    }

    // Chi scrive non perde nulla quando il suo atto cambia, o sparisce, da un'altra parte.
    void cambiatoAltrove()
    {
        apre(u"R1"_s);
        scrive(breve(u"Ada"_s));
        salva();
        scrive(u"Battezzato/a: Cognome"_s, u"Neri"_s);
        esegui(u"UPDATE Individui SET Cognome = 'Bruni', Detto = 'la Rossa'"_s);
        const auto risponde = [&](const QString &bottone) {
            persona->poi([=](QWidget *finestra) {
                for (auto *uno : finestra->findChildren<QAbstractButton *>()) {
                    if (uno->text().remove(u'&').startsWith(bottone))
                        return uno->click();
                }
                QFAIL("manca il bottone");
            });
        };
        risponde(u"Annulla"_s);
        salva();
        QCOMPARE(colonna(u"SELECT Cognome FROM Individui"_s), QStringList{u"Bruni"_s});
        QCOMPARE(scheda->pagina()->campo({u"battezzato"_s, 0, 0, u"Cognome"_s})->testo(),
                 u"Neri"_s);
        risponde(u"Tieni"_s);
        salva();
        QCOMPARE(colonna(u"SELECT Cognome||Detto FROM Individui"_s),
                 QStringList{u"Nerila Rossa"_s});
        scrive(u"Padre: Nome"_s, u"Ugo"_s);
        esegui(u"DELETE FROM Individui"_s);
        esegui(u"DELETE FROM Voci"_s);
        risponde(u"Scrivilo"_s);
        salva();
        QCOMPARE(colonna(u"SELECT Nome FROM Individui ORDER BY 1"_s),
                 (QStringList{u"Ada"_s, u"Ugo"_s}));
    }

    // Ciò che è scritto non va perso in silenzio; ciò che non si legge ferma il salvataggio.
    void chiede()
    {
        apre(u"R1"_s);
        scrive(breve(u"Ada"_s));
        persona->poi([](QWidget *finestra) { qobject_cast<QDialog *>(finestra)->reject(); });
        QVERIFY(!scheda->close());
        attiva();
        scrive(u"Nascita: Data"_s, u"trentadue"_s);
        const QWidget *giorno = QApplication::focusWidget();
        batte(Qt::Key_Tab);
        QVERIFY(giorno->property("rifiutata").toBool());
        persona->avviso(u"Non è stata inserita una data valida"_s);
        salva();
        QCOMPARE(qui(), u"Nascita: Data"_s);
        QCOMPARE(righe(u"Voci"_s), 0);
    }

    // Aprire e salvare un atto qualsiasi, comunque sia scritto, non cambia nessuna riga.
    void nessunaRigaCambia()
    {
        esegui(u"INSERT INTO Voci (Codice, Registro, CodiceVoce, Data) VALUES ('V1','R2','1 bis', "
               "'1750-13-40'), ('V2','R1',' ','1750-01-01'), ('V3','R3',NULL,NULL)"_s);
        esegui(u"INSERT INTO Individui (Codice, Voce, Ruolo, Nome, Sesso, Cognome) VALUES "
               "('I1','V1',3,'Eva','F',''), ('I2','V1',6,'Ugo',NULL,' spazi '), "
               "('I3','V2',1,'Zoè','x','D''A'), ('I4','V2',34,NULL,NULL,NULL), "
               "('I5',NULL,36,'Pio','M','B'), ('I6','V3',4,'Leo','M',NULL), "
               "('I7','V3',999,'Chi','','')"_s);
        esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1','V1',8), ('F2','V2',35), "
               "('F3',NULL,8)"_s);
        esegui(u"INSERT INTO FamiglieConiugi (CodiceFamiglia, CodiceIndividuo) VALUES "
               "('F1','I1'), ('F1','I2'), ('F2','I5'), ('F3','I6'), ('F3','I9')"_s);
        esegui(
            u"INSERT INTO FamiglieGenitori (CodiceFamiglia, CodiceIndividuo) VALUES ('F2','I3')"_s);
        esegui(u"INSERT INTO Eventi (Codice, Tipo, IdProprietario, Data, Ora) VALUES "
               "('E1',18,'F1','1750-02-03',NULL), ('E2',18,'F1',NULL,NULL), "
               "('E3',20,'I3','1750','1750-01-01 07:08:09'), ('E4',77,'I6',NULL,'notte')"_s);
        esegui(
            u"INSERT INTO Binari (Codice, Tipo, IdProprietario, Nome, Campolungo) VALUES "
            "('B1',13,'V1','t','riga' || char(13) || char(10) || 'riga'), ('B2',13,'V1','','')"_s);
        const QStringList prima = tutteLeRighe();
        for (const QString &voce : {u"V1"_s, u"V2"_s, u"V3"_s}) {
            apre({}, voce);
            salva();
            QVERIFY(!scheda->daRegistrare());
        }
        QCOMPARE(tutteLeRighe(), prima);
    }
    // La finestra vera: nasconde, tiene nell'archivio, va via col registro.
    void campiScelti()
    {
        const auto casella = [this](const QString &nome) {
            const auto tutte = scheda->findChildren<QLineEdit *>();
            return *std::find_if(tutte.begin(), tutte.end(), [&](const QLineEdit *una) {
                return una->accessibleName() == nome;
            });
        };
        apre(u"R1"_s);
        QVERIFY(casella(u"Padre: Vivente"_s)->isVisible());
        QTimer::singleShot(0, scheda.get(), [] {
            auto *finestra = QApplication::activeModalWidget();
            auto *elenco = finestra->findChild<QTreeWidget *>();
            for (int i = 0; i < elenco->topLevelItemCount(); ++i) {
                QTreeWidgetItem *voce = elenco->topLevelItem(i);
                if (voce->text(0) == u"Padre" && voce->text(1) == u"Vivente")
                    elenco->setCurrentItem(voce);
            }
            QTest::keyClick(elenco, Qt::Key_Space);
            finestra->findChild<QPushButton *>(u"OK"_s)->click();
        });
        QTest::keyClick(scheda.get(), Qt::Key_F9, Qt::ShiftModifier);
        QVERIFY(casella(u"Padre: Vivente"_s)->isHidden());
        // Un programma che non conosce le tabelle accanto sa che il file è più nuovo.
        QCOMPARE(legge(u"PRAGMA user_version"_s), 2);
        apre(u"R1"_s);
        QVERIFY(casella(u"Padre: Vivente"_s)->isHidden());
        Lavoro lavoro(connessione());
        lavoro.elimina(u"R1"_s);
        lavoro.conferma();
        QVERIFY(scheda::leggeScelte(connessione(), u"R1"_s).isEmpty());
    }
    // Se ne vanno e tornano col registro, e una copia le porta.
    void iCampiSceltiSeguonoIlRegistro()
    {
        const scheda::Scelte scelte{{{u"padre"_s, 0, u"Vivente"_s}, scheda::Uso::Nascosta}};
        scheda::scriveScelte(connessione(), u"R1"_s, scelte);
        const QString copia = archivio->accanto(u"copia.tvd"_s);
        copiaArchivio(archivio->percorso(), copia, avanti);
        Aparte altra(copia);
        QCOMPARE(scheda::leggeScelte(altra, u"R1"_s), scelte);
        Lavoro lavoro(connessione());
        lavoro.elimina(u"R1"_s);
        lavoro.conferma();
        QVERIFY(scheda::leggeScelte(connessione(), u"R1"_s).isEmpty());
        riprendeFino(connessione(), *storia::daAnnullare(connessione()));
        QCOMPARE(scheda::leggeScelte(connessione(), u"R1"_s), scelte);
    }
};

PROVA_CON_FINESTRE(TestScheda)

#include "tst_scheda.moc"
