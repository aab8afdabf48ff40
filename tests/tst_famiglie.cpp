#include "app/avvio.h"
#include "prova_famiglie.h"

using namespace Qt::StringLiterals;
using namespace modTarvola;

namespace
{

QStringList offerti(QDialog *finestra)
{
    QStringList generi;
    const auto *combo = parte<QComboBox>(finestra, u"ImageCombo1"_s);
    for (int i = 0; i < combo->count(); ++i)
        generi << combo->itemText(i);
    return generi;
}

} // namespace

// La finestra della famiglia: chi vi è offerto, chi è rifiutato, che cosa resta scritto.
class TstFamiglie : public QObject, ProvaFamiglie
{
    Q_OBJECT

private slots:
    void init() { comincia(); }
    void coppia_data();
    void coppia();
    void offerta_data();
    void offerta();
    void chiudeSenzaNulla();
    void senzaGenere();
    void rifiuto();
    void membroNonSalvato();
    void individuoSenzaCoppia();
    void eventi();
    void ultimoMembroEliminato();
    void aMeta();
    void solaLettura();
};

// Chi è già elencato (e che cos'altro), chi si chiede, se è rifiutato.
void TstFamiglie::coppia_data()
{
    QTest::addColumn<QList<int>>("inseriti");
    QTest::addColumn<int>("chiesto");
    QTest::addColumn<bool>("rifiutato");
    const auto riga = [](const QList<int> &inseriti, int chiesto, bool rifiutato) {
        QStringList nomi;
        for (const int inserito : inseriti)
            nomi << QString::number(inserito);
        QTest::newRow(qUtf8Printable(u"[%1] + %2"_s.arg(nomi.join(u' ')).arg(chiesto)))
            << inseriti << chiesto << rifiutato;
    };
    for (const int ruolo : {6, 7, 36, 37}) {
        riga({}, ruolo, false);
        riga({ruolo}, ruolo, true);
        riga({12, 18, ruolo, 42}, ruolo, true);
        riga({12, 14, 18, 19, 39, 41, 42}, ruolo, false);
    }
    riga({6}, 7, false);
    riga({7}, 6, false);
    riga({36}, 37, false);
    riga({37}, 36, false);
    riga({6, 7}, 6, true);
    for (const int principale : {1, 2, 3, 4, 5, 34, 40}) {
        riga({principale}, 6, false);
        riga({principale}, 7, false);
        riga({principale, 7}, 6, true);
        riga({7, principale}, 6, true);
        riga({principale, 7}, 7, true);
        riga({principale, 36}, 37, true);
    }
    // Anche un ruolo che non è di coppia è rifiutato da una coppia completa; due principali no.
    riga({2, 7}, 1, true);
    riga({2, 7}, 34, true);
    riga({2}, 2, false);
    riga({6, 7}, 1, false);
    riga({2, 7}, 40, false);
    riga({2, 7}, 12, false);
    riga({2, 7}, 18, false);
    riga({2, 7}, 8, false);
}

void TstFamiglie::coppia()
{
    QFETCH(QList<int>, inseriti);
    QFETCH(int, chiesto);
    QTEST(ConiugeGiaInserito({inseriti.begin(), inseriti.end()}, chiesto), "rifiutato");
}

void TstFamiglie::offerta_data()
{
    QTest::addColumn<int>("genere");
    QTest::addColumn<QString>("sesso");
    QTest::addColumn<QString>("ruoli");
    const QString daVoce;
    QTest::newRow("coniugi da una voce") << 8 << daVoce << u"Marito Moglie"_s;
    QTest::newRow("coniugi da un uomo") << 8 << u"M"_s << u"Moglie"_s;
    QTest::newRow("coniugi da una donna") << 8 << u"F"_s << u"Marito"_s;
    QTest::newRow("coniugi da sesso ignoto") << 8 << u"?"_s << u"Marito"_s;
    QTest::newRow("genitori da una voce") << 35 << daVoce << u"Madre Padre"_s;
    QTest::newRow("genitori da un uomo") << 35 << u"M"_s << u"Madre Padre"_s;
    QTest::newRow("senza genere") << 0 << daVoce << QString();
}

void TstFamiglie::offerta()
{
    QFETCH(int, genere);
    QFETCH(QString, sesso);
    QStringList generi;
    const auto guarda = [&](QDialog *famiglia) { generi = offerti(famiglia); };
    if (sesso.isEmpty()) {
        apreFamiglia(genere, guarda);
    } else {
        esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'X', 2)"_s);
        connessione().Execute({u"UPDATE Individui SET Sesso = ?"_s, {sesso}, {}});
        // Con il sesso ignoto la famiglia del coniuge non si crea, ma una che c'è si apre.
        esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8)"_s);
        esegui(u"INSERT INTO %1 VALUES ('F1', 'I1')"_s.arg(
            genere == FamigliaConiuge ? u"FamiglieConiugi"_s : u"FamiglieGenitori"_s));
        apre(
            u"fmIndividuo"_s,
            [](FinestraEditor &finestra) { finestra.proprieta.IndividuoLocale = u"I1"_s; },
            [&](QDialog *individuo) {
                poi(guarda);
                preme(individuo, u"Command3_2"_s);
            });
    }
    const QStringList coppia{u"Marito"_s, u"Moglie"_s, u"Padre"_s, u"Madre"_s};
    QStringList trovati;
    for (const QString &uno : generi) {
        if (coppia.contains(uno))
            trovati << uno;
    }
    QTEST(trovati.join(u' '), "ruoli");
}

void TstFamiglie::chiudeSenzaNulla()
{
    apreFamiglia(8, [](QDialog *famiglia) {
        auto *chiudi = famiglia->findChild<QPushButton *>(u"Command1"_s);
        QCOMPARE(chiudi->text(), u"Chiudi"_s);
        QVERIFY(!famiglia->findChild<QPushButton *>(u"Command3_1"_s)->isEnabled());
        chiudi->click();
        QVERIFY(!famiglia->isVisible());
    });
    QCOMPARE(lette(u"SELECT * FROM Famiglie"_s), QStringList());
}

void TstFamiglie::senzaGenere()
{
    apreFamiglia(8, [&](QDialog *famiglia) {
        persona->avviso(u"Selezionare una voce"_s);
        preme(famiglia, u"Command3_0"_s);
    });
    QCOMPARE(lette(u"SELECT * FROM Famiglie"_s), QStringList());
}

void TstFamiglie::rifiuto()
{
    apreFamiglia(35, [&](QDialog *famiglia) {
        poi(chiama(u"Anna"_s));
        nuovo(famiglia, u"Madre"_s);
        persona->avviso(u"Questo tipo di coniuge è già stato inserito"_s);
        nuovo(famiglia, u"Madre"_s);
    });
    QCOMPARE(lette(u"SELECT Nome FROM Individui"_s), QStringList{u"Anna"_s});
}

// Chi chiude la finestra del membro senza salvare non fa entrare nella coppia nessun altro.
void TstFamiglie::membroNonSalvato()
{
    esegui(u"INSERT INTO Individui (Codice, Voce, Nome) VALUES ('I9', 'V1', 'altro')"_s);
    contesto().IndividuoCorrente = u"I9"_s;
    apreFamiglia(8, [&](QDialog *famiglia) {
        poi([](QDialog *individuo) { scrive(individuo, 1, u"mai"_s); });
        nuovo(famiglia, u"Moglie"_s);
        QCOMPARE(elencati(famiglia), QStringList{u"Trascrittore"_s});
    });
    QCOMPARE(lette(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s), QStringList());
    QCOMPARE(contesto().IndividuoCorrente, QString());
    QCOMPARE(lette(u"SELECT Codice, Voce, Ruolo FROM Famiglie"_s), QStringList{u"F1;V1;8"_s});
}

// Un ruolo che non è di coppia dà una persona della stessa voce, fuori dalla coppia. Il modello non
// lo offre nelle famiglie, ma un archivio può farlo.
void TstFamiglie::individuoSenzaCoppia()
{
    esegui(u"UPDATE Traduzioni SET Tipo = Tipo + 512 WHERE Codice IN (5, 34)"_s);
    apreFamiglia(8, [&](QDialog *famiglia) {
        poi(chiama(u"Teste"_s));
        nuovo(famiglia, u"Testimone"_s);
        nuovo(famiglia, u"Padrino/Madrina"_s);
    });
    QCOMPARE(lette(u"SELECT Voce, Nome, Ruolo FROM Individui"_s), QStringList{u"V1;Teste;5"_s});
    QCOMPARE(lette(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s), QStringList());
}

void TstFamiglie::eventi()
{
    apreFamiglia(8, [&](QDialog *famiglia) {
        poi([](QDialog *evento) {
            QCOMPARE(evento->windowTitle(), u"Evento di Famiglia"_s);
            QCOMPARE(contesto().EventoCorrente, QString());
            scrive(evento, 2, u"Vercelli"_s);
            preme(evento, u"Command1"_s);
        });
        nuovo(famiglia, u"Matrimonio"_s);
        sceglie(famiglia, u"Matrimonio"_s);
        poi([](QDialog *evento) {
            QCOMPARE(evento->windowTitle(), u"Matrimonio"_s);
            QCOMPARE(contesto().EventoCorrente, u"E1"_s);
            QCOMPARE(evento->findChild<QLineEdit *>(u"Text1_2"_s)->text(), u"Vercelli"_s);
        });
        preme(famiglia, u"Command3_2"_s);
    });
    QCOMPARE(lette(u"SELECT Codice, IdProprietario, Tipo, Luogo FROM Eventi"_s),
             QStringList{u"E1;F1;18;Vercelli"_s});
}

// Con l'ultimo membro va la famiglia; ciò che si aggiunge dopo è di una famiglia nuova.
void TstFamiglie::ultimoMembroEliminato()
{
    apreFamiglia(35, [&](QDialog *famiglia) {
        poi(chiama(u"Anna"_s));
        nuovo(famiglia, u"Madre"_s);
        sceglie(famiglia, u"Madre"_s);
        poi([](QDialog *scatola) {
            qobject_cast<QMessageBox *>(scatola)->button(QMessageBox::Retry)->click();
        });
        preme(famiglia, u"Command3_1"_s);
        QCOMPARE(elencati(famiglia), QStringList());
        QCOMPARE(lette(u"SELECT Codice FROM Famiglie"_s), QStringList());
        poi(chiama(u"Rita"_s));
        nuovo(famiglia, u"Madre"_s);
        QCOMPARE(elencati(famiglia), (QStringList{u"Madre"_s, u"Trascrittore"_s}));
    });
    QCOMPARE(lette(u"SELECT Famiglie.Voce, Famiglie.Ruolo, Nome FROM Famiglie, FamiglieConiugi, "
                   "Individui WHERE Famiglie.Codice = CodiceFamiglia "
                   "AND Individui.Codice = CodiceIndividuo"_s),
             QStringList{u"V1;35;Rita"_s});
}

// Se l'iscrizione di chi apre non riesce, non resta neppure la famiglia.
void TstFamiglie::aMeta()
{
    esegui(u"INSERT INTO Individui (Codice, Voce, Nome) VALUES ('I1', 'V1', 'X')"_s);
    esegui(u"CREATE TRIGGER Guasto BEFORE INSERT ON FamiglieGenitori "
           "BEGIN SELECT RAISE(ABORT, 'guasto'); END"_s);
    apre(
        u"fmFamiglia"_s,
        [](FinestraEditor &finestra) {
            finestra.proprieta.TipoFamigliaLocale = FamigliaGenitori;
            finestra.proprieta.IndividuoLocale = u"I1"_s;
        },
        [&](QDialog *famiglia) {
            persona->avviso(u"Operazione non riuscita:\nguasto"_s);
            nuovo(famiglia, u"Padre"_s);
            QCOMPARE(lette(u"SELECT * FROM Famiglie"_s), QStringList());
            QCOMPARE(lette(u"SELECT * FROM OperatoriContesti"_s), QStringList());
        });
    QVERIFY(!connessione().inTransazione());
}

void TstFamiglie::solaLettura()
{
    esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'P', 36)"_s);
    esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 35)"_s);
    esegui(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1')"_s);
    blocco = ado::adLockReadOnly;
    apreFamiglia(
        35,
        [](QDialog *famiglia) {
            QVERIFY(!famiglia->findChild<QPushButton *>(u"Command3_0"_s)->isEnabled());
            QVERIFY(!famiglia->findChild<QPushButton *>(u"Command3_1"_s)->isEnabled());
            QVERIFY(famiglia->findChild<QPushButton *>(u"Command3_2"_s)->isEnabled());
        },
        u"F1"_s);
}

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstFamiglie prova;
    return QTest::qExec(&prova, argc, argv);
}

#include "tst_famiglie.moc"
