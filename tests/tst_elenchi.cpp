#include "app/avvio.h"
#include "app/contesto.h"
#include "app/MDITras.h"
#include "browser/fmVisualizza.h"
#include "db/elenco.h"
#include "tests/comune.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTimer>

using namespace modTarvola;

namespace
{

// Due archivi. Nel primo due registri: R1 con le voci V1 e V2, R2 con V3; nel secondo R3 con V4.
// Ogni voce ha un individuo e una famiglia dello stesso numero, ciascuno col suo evento (E1…E4
// degli individui, E5…E8 delle famiglie). Un testo per ogni specie di proprietario della prima voce
// (B1 archivio, B2 registro, B3 voce, B4 individuo, B5 famiglia, B6 e B7 i due eventi), poi uno
// della seconda voce (B8), del secondo registro (B9) e del secondo archivio (B10).
void riempie()
{
    const char *const istruzioni[] = {
        "INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Opera Pisa'), ('A2', 'Montemorello')",
        "INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) VALUES ('R1', 'A1', 9, "
        "'Battezzati'),"
        " ('R2', 'A1', 10, 'Sposi'), ('R3', 'A2', 9, 'Battesimi')",
        "INSERT INTO Voci (Codice, Registro) VALUES ('V1', 'R1'), ('V2', 'R1'), ('V3', 'R2'),"
        " ('V4', 'R3')",
        "INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'Galileo', 1),"
        " ('I2', 'V2', 'Età', 1), ('I3', 'V3', 'Sposo', 2), ('I4', 'V4', 'Giacomo', NULL)",
        "INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 35), ('F2', 'V2', 35),"
        " ('F3', 'V3', 8), ('F4', 'V4', 35)",
        "INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Luogo) VALUES"
        " ('E1', 'I1', 20, '1564-02-15', 'Pisa'), ('E2', 'I2', 20, NULL, NULL),"
        " ('E3', 'I3', 26, NULL, NULL), ('E4', 'I4', 20, NULL, NULL), ('E5', 'F1', 18, NULL, NULL),"
        " ('E6', 'F2', 18, NULL, NULL), ('E7', 'F3', 18, NULL, NULL), ('E8', 'F4', 18, NULL, NULL)",
        "INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Luogo) VALUES"
        " ('E9', 'I1', 21, '1564-02-19', 'Duomo'), ('E10', 'I1', 33, '1999-01-01', 'altrove')",
        "INSERT INTO Binari (Codice, IdProprietario, Tipo, Nome, Campolungo) VALUES"
        " ('B1', 'A1', 12, 'uno', 'prima riga' || char(10) || 'seconda'),"
        " ('B2', 'R1', 12, 'due', NULL), ('B3', 'V1', 13, 'tre', 'testo'),"
        " ('B4', 'I1', 14, 'foto.png', x'00ff'), ('B5', 'F1', 12, NULL, NULL),"
        " ('B6', 'E1', 12, NULL, NULL), ('B7', 'E5', 12, NULL, NULL), ('B8', 'V2', 12, NULL, NULL),"
        " ('B9', 'R2', 12, NULL, NULL), ('B10', 'A2', 12, NULL, NULL)",
    };
    for (const char *istruzione : istruzioni)
        esegui(QString::fromUtf8(istruzione));
}

QString codici(const Richiesta &richiesta)
{
    const Elenco elenco(richiesta, connessione());
    QStringList trovati;
    for (const qint64 chiave : elenco.chiaviDopo(-1, 1000))
        trovati.append(elenco.riga(chiave).constFirst().toString());
    return trovati.join(u' ');
}

} // namespace

class TestElenchi : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_archivio = std::make_unique<ArchivioDiProva>();
        riempie();
    }
    void ambiti_data();
    void ambiti();
    void ambitoSconosciuto();
    void dettagli();
    void contenutiMaiLetti();
    void aPezziComeIntero();
    void unArchivioSolo();
    void visualizzatoreDiDipendenti();
    void finestraDellAmbito_data();
    void finestraDellAmbito();
    void dallaTabellaAllAltra();

private:
    std::unique_ptr<ArchivioDiProva> m_archivio;
};

void TestElenchi::ambiti_data()
{
    QTest::addColumn<QString>("tabella");
    QTest::addColumn<int>("ambito");
    QTest::addColumn<QString>("attesi");
    // Da A1, R1 e V1.
    const struct {
        const char *tabella;
        int ambito;
        const char *attesi;
    } casi[] = {
        {"Archivi", 0, "A1 A2"},
        {"Registri", 0, "R1 R2"},
        {"Registri", 6, "R1 R2"},
        {"Registri", 7, "R1 R2 R3"},
        {"Voci", 0, "V1 V2"},
        {"Voci", 4, "V1 V2"},
        {"Voci", 6, "V1 V2 V3"},
        {"Voci", 7, "V1 V2 V3 V4"},
        {"Individui", 0, "I1"},
        {"Individui", 4, "I1 I2"},
        {"Individui", 6, "I1 I2 I3"},
        {"Individui", 7, "I1 I2 I3 I4"},
        {"Famiglie", 0, "F1"},
        {"Famiglie", 4, "F1 F2"},
        {"Famiglie", 6, "F1 F2 F3"},
        {"Famiglie", 7, "F1 F2 F3 F4"},
        {"Eventi", 0, "E1 E5 E9 E10"},
        {"Eventi", 4, "E1 E2 E5 E6 E9 E10"},
        {"Eventi", 6, "E1 E2 E3 E5 E6 E7 E9 E10"},
        {"Eventi", 7, "E1 E2 E3 E4 E5 E6 E7 E8 E9 E10"},
        {"Binari", 0, "B3 B4 B5 B6 B7"},
        {"Binari", 4, "B2 B3 B4 B5 B6 B7 B8"},
        {"Binari", 6, "B1 B2 B3 B4 B5 B6 B7 B8 B9"},
        {"Binari", 7, "B1 B2 B3 B4 B5 B6 B7 B8 B9 B10"},
    };
    for (const auto &caso : casi)
        QTest::addRow("%s %d", caso.tabella, caso.ambito)
            << QString::fromUtf8(caso.tabella) << caso.ambito << QString::fromUtf8(caso.attesi);
}

void TestElenchi::ambiti()
{
    QFETCH(QString, tabella);
    QFETCH(int, ambito);
    QFETCH(QString, attesi);
    QCOMPARE(codici({tabella, ambito, false, QStringLiteral("A1"), QStringLiteral("R1"),
                     QStringLiteral("V1")}),
             attesi);
    // Un registro di un altro archivio non si vede in questo, per quanto abbia le sue voci.
    if (ambito == 4)
        QCOMPARE(codici({tabella, ambito, false, QStringLiteral("A2"), QStringLiteral("R1"),
                         QStringLiteral("V1")}),
                 QString());
}

void TestElenchi::ambitoSconosciuto()
{
    QVERIFY_THROWS_EXCEPTION(
        ado::Errore, Elenco({QStringLiteral("Archivi"), 7, false, {}, {}, {}}, connessione()));
}

void TestElenchi::dettagli()
{
    // I4 non ha ruolo, e nei dettagli non compare.
    const QString attesi[] = {QStringLiteral("I1"), QStringLiteral("I1 I2"),
                              QStringLiteral("I1 I2 I3"), QStringLiteral("I1 I2 I3")};
    int caso = 0;
    for (const int ambito : {0, 4, 6, 7})
        QCOMPARE(codici({QStringLiteral("Individui"), ambito, true, QStringLiteral("A1"),
                         QStringLiteral("R1"), QStringLiteral("V1")}),
                 attesi[caso++]);
    const Elenco elenco({QStringLiteral("Individui"), 7, true, {}, {}, {}}, connessione());
    QCOMPARE(elenco.colonne().join(u' '),
             QStringLiteral("Codice Nome Soprannome Cognome Detto Sesso Ruolo Precisazione Voce "
                            "Legittimo Età Vivente Creazione LuogoNascita DataNascita "
                            "LuogoBattesimo DataBattesimo LuogoMorte DataMorte LuogoSepoltura "
                            "DataSepoltura Nome Titolo CodiceVoce"));
    const QVariantList riga = elenco.riga(elenco.chiaveDi(QStringLiteral("I1")));
    QCOMPARE(riga.mid(13, 4),
             (QVariantList{QStringLiteral("Pisa"), QStringLiteral("1564-02-15"),
                           QStringLiteral("Duomo"), QStringLiteral("1564-02-19")}));
    QVERIFY(!riga.at(17).isValid() && !riga.at(20).isValid());
    QCOMPARE(riga.mid(21), (QVariantList{QStringLiteral("Opera Pisa"), QStringLiteral("Battezzati"),
                                         QStringLiteral("V1")}));
    QCOMPARE(riga.at(6).toString(), QStringLiteral("Battezzato/a"));
    QVERIFY(!elenco.ordinabile(0));
}

void TestElenchi::contenutiMaiLetti()
{
    const Elenco tutti({QStringLiteral("Binari"), 7, false, {}, {}, {}}, connessione());
    const auto contenuto = [&](const char *codice) {
        return tutti.riga(tutti.chiaveDi(QString::fromUtf8(codice))).constLast();
    };
    QCOMPARE(contenuto("B1").toString(), QStringLiteral("prima riga"));
    QVERIFY(!contenuto("B4").isValid());
    QVERIFY(!tutti.ordinabile(4) && tutti.ordinabile(3));
    const Elenco alcuni({QStringLiteral("Binari"), 0, false, {}, {}, {}}, connessione());
    QCOMPARE(alcuni.colonne().join(u' '), QStringLiteral("Codice Tipo IdProprietario Nome"));
}

// Le chiavi lette un pezzo dopo l'altro sono tutte, una volta sola, anche dove ne mancano.
void TestElenchi::aPezziComeIntero()
{
    for (int i = 5; i < 60; ++i)
        esegui(QStringLiteral("INSERT INTO Voci (Codice, Registro) VALUES (?, 'R1')"),
               {QStringLiteral("V%1").arg(i)});
    esegui(QStringLiteral("DELETE FROM Voci WHERE rowid % 7 = 0"));
    const Elenco elenco({QStringLiteral("Voci"), 7, false, {}, {}, {}}, connessione());
    const std::vector<qint64> intero = elenco.chiaviDopo(-1, 1000);
    std::vector<qint64> pezzi;
    for (;;) {
        const auto pezzo = elenco.chiaviDopo(pezzi.empty() ? -1 : pezzi.back(), 10);
        pezzi.insert(pezzi.end(), pezzo.begin(), pezzo.end());
        if (pezzo.size() < 10)
            break;
    }
    QCOMPARE(pezzi, intero);
    QCOMPARE(static_cast<int>(intero.size()), righe(QStringLiteral("Voci")));
}

// Dove tutto è di un archivio le prime righe si trovano per un'altra via: devono essere le stesse,
// senza chi ha perduto la sua voce.
void TestElenchi::unArchivioSolo()
{
    esegui(QStringLiteral("DELETE FROM Registri WHERE Archivio = 'A2'"));
    const char *const tabelle[] = {"Voci", "Individui", "Famiglie", "Eventi"};
    for (const char *tabella : tabelle) {
        for (const bool dettagli : {false, true}) {
            const Elenco elenco({QString::fromUtf8(tabella), 6, dettagli, QStringLiteral("a1"),
                                 QString(), QString()},
                                connessione());
            QVERIFY(elenco.aPezzi());
            QVERIFY(!elenco.chiaviDopo(-1, 1000).empty());
            QCOMPARE(elenco.chiaviDopo(-1, 1000), elenco.chiaviDopo(-1, Elenco::tutte));
        }
    }
}

void TestElenchi::visualizzatoreDiDipendenti()
{
    MDITras principale;
    principale.show();
    ApriArchivio(m_archivio->percorso());
    contesto().ArchivioCorrente = QStringLiteral("A1");
    contesto().VoceCorrente = QStringLiteral("V1");
    const auto apre = [&](const char *tabella, const char *voce) {
        ProprietaTabella proprieta;
        proprieta.TipoTabella = QString::fromUtf8(tabella);
        proprieta.Percorso = m_archivio->percorso();
        proprieta.VoceLocale = QString::fromUtf8(voce);
        principale.apre(proprieta);
        return principale.visualizzatori().constLast();
    };
    const auto stati = [](const fmTabella *tabella) {
        QString abilitati;
        for (int i = 1; i <= 5; ++i) {
            const auto *bottone =
                tabella->findChild<QAction *>(QStringLiteral("Toolbar1_%1").arg(i));
            abilitati += bottone->isEnabled() ? QString::number(i) : QStringLiteral("-");
        }
        const auto voci = tabella->menu().at(1)->actions();
        for (const QAction *azione : voci)
            abilitati += azione->isEnabled() ? QStringLiteral("x") : QStringLiteral("-");
        return abilitati + (tabella->menu().at(2)->isEnabled() ? QStringLiteral("T") : QString());
    };
    const QString coda =
        QStringLiteral(" File ") + m_archivio->percorso() + QStringLiteral(" Archivio A1 Voce V1");
    const fmTabella *piena = apre("Individui", "V1");
    QCOMPARE(stati(piena), QStringLiteral("-2-45-x-xx"));
    QCOMPARE(piena->windowTitle(), QStringLiteral("Individui") + coda);
    const fmTabella *vuota = apre("Famiglie", "V99");
    QCOMPARE(stati(vuota), QStringLiteral("------x-xx"));
    QCOMPARE(vuota->windowTitle(), QStringLiteral("Famiglie") + coda);
    // I comandi di riga di un elenco vuoto si possono scegliere, e non fanno nulla.
    for (QAction *azione : vuota->menu().at(1)->actions())
        azione->trigger();
    QCOMPARE(contesto().ArchivioCorrente, QStringLiteral("A1"));
}

void TestElenchi::finestraDellAmbito_data()
{
    QTest::addColumn<QList<int>>("scelte");
    QTest::addColumn<int>("ambito");
    QTest::newRow("nulla") << QList<int>{} << 0;
    QTest::newRow("tutte le voci") << QList<int>{5} << 4;
    QTest::newRow("tutti i registri") << QList<int>{3} << 6;
    QTest::newRow("tutti gli archivi") << QList<int>{1} << 7;
    QTest::newRow("tutto con dettagli") << QList<int>{1, 7} << 15;
    QTest::newRow("ripensamento") << QList<int>{1, 0} << 6;
    QTest::newRow("dettagli e ripensamento") << QList<int>{7, 6} << 0;
}

void TestElenchi::finestraDellAmbito()
{
    QFETCH(QList<int>, scelte);
    QFETCH(int, ambito);
    contesto().AmbitoScelto = 99;
    fmVisualizza finestra(nullptr);
    QCOMPARE(contesto().AmbitoScelto, 0);
    for (const int scelta : scelte)
        finestra.findChild<QRadioButton *>(QStringLiteral("Option1_%1").arg(scelta))->click();
    const bool archivi =
        finestra.findChild<QRadioButton *>(QStringLiteral("Option1_1"))->isChecked();
    QCOMPARE(finestra.findChild<QRadioButton *>(QStringLiteral("Option1_2"))->isEnabled(),
             !archivi);
    finestra.findChild<QPushButton *>(QStringLiteral("Command1"))->click();
    QCOMPARE(contesto().AmbitoScelto, ambito);
}

// Dal menu Tabelle di un visualizzatore di registri, accettando ciò che la finestra propone.
void TestElenchi::dallaTabellaAllAltra()
{
    MDITras principale;
    principale.show();
    ApriArchivio(m_archivio->percorso());
    ProprietaTabella proprieta;
    proprieta.TipoTabella = QStringLiteral("Registri");
    proprieta.Percorso = m_archivio->percorso();
    proprieta.ArchivioLocale = QStringLiteral("A1");
    principale.apre(proprieta);
    fmTabella *registri = principale.visualizzatori().constLast();
    QString titolo;
    QString nascoste;
    QTimer::singleShot(0, &principale, [&] {
        auto *finestra = qobject_cast<fmVisualizza *>(QApplication::activeModalWidget());
        titolo = finestra->windowTitle();
        for (int i = 0; i < 4; ++i) {
            const auto *cornice =
                finestra->findChild<QWidget *>(QStringLiteral("Frame1_%1").arg(i));
            nascoste += cornice->isVisible() ? QStringLiteral("s") : QStringLiteral("n");
        }
        finestra->findChild<QPushButton *>(QStringLiteral("Command1"))->click();
    });
    registri->menu().at(2)->actions().at(3)->trigger();
    QCOMPARE(titolo, QStringLiteral("Individui in Registri"));
    QCOMPARE(nascoste, QStringLiteral("ssns"));
    const fmTabella *individui = principale.visualizzatori().constLast();
    QCOMPARE(individui->proprieta.Ordinamento, 4);
    QCOMPARE(individui->proprieta.RegistroLocale, QStringLiteral("R1"));
    QCOMPARE(individui->findChild<QTableView *>()->model()->rowCount(), 2);
    // Chi usa la tastiera si trova già nelle righe.
    QCOMPARE(principale.focusWidget(), individui->findChild<QTableView *>());
    QCOMPARE(contesto().AmbitoScelto, 0);
}

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TestElenchi prova;
    return QTest::qExec(&prova, argc, argv);
}
#include "tst_elenchi.moc"
