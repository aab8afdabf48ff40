#include "browser/fmVisualizza.h"
#include "comune.h"
#include "contesto/contesto.h"
#include "db/elenchi/elenco.h"

#include <QPushButton>
#include <QRadioButton>

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
        "INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Opera Pisa'), ('A2', NULL)",
        "INSERT INTO Registri (Codice, Archivio, Titolo) VALUES ('R1', 'A1', 'Battezzati'),"
        " ('R2', 'A1', NULL), ('R3', 'A2', NULL)",
        "INSERT INTO Voci (Codice, Registro) VALUES ('V1', 'R1'), ('V2', 'R1'), ('V3', 'R2'),"
        " ('V4', 'R3')",
        "INSERT INTO Individui (Codice, Voce, Ruolo) VALUES ('I1', 'V1', 1), ('I2', 'V2', 1),"
        " ('I3', 'V3', 2), ('I4', 'V4', NULL)",
        "INSERT INTO Famiglie (Codice, Voce) SELECT 'F' || substr(Codice, 2), Codice FROM Voci",
        "INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Luogo) VALUES"
        " ('E1', 'I1', 20, '1564-02-15', 'Pisa'), ('E2', 'I2', 20, NULL, NULL),"
        " ('E3', 'I3', 26, NULL, NULL), ('E4', 'I4', 20, NULL, NULL), ('E5', 'F1', 18, NULL, NULL),"
        " ('E6', 'F2', 18, NULL, NULL), ('E7', 'F3', 18, NULL, NULL), ('E8', 'F4', 18, NULL, NULL),"
        " ('E9', 'I1', 21, '1564-02-19', 'Duomo'), ('E10', 'I1', 33, '1999-01-01', 'altrove')",
        "INSERT INTO Binari (Codice, IdProprietario, Tipo) VALUES ('B1', 'A1', 12),"
        " ('B2', 'R1', 12), ('B3', 'V1', 13), ('B4', 'I1', 14), ('B5', 'F1', 12), ('B6', 'E1', 12),"
        " ('B7', 'E5', 12), ('B8', 'V2', 12), ('B9', 'R2', 12), ('B10', 'A2', 12)",
    };
    for (const char *istruzione : istruzioni)
        esegui(QString::fromUtf8(istruzione));
}

QString codici(const Elenco &elenco, const std::vector<qint64> &chiavi)
{
    QStringList trovati;
    for (const qint64 chiave : chiavi)
        trovati.append(elenco.riga(chiave).constFirst().toString());
    return trovati.join(u' ');
}

} // namespace

class TestElenchi : public QObject
{
    Q_OBJECT

    std::unique_ptr<ArchivioDiProva> m_archivio;

    // Da A1, R1 e V1.
    static Elenco elencoDi(const QString &tabella, int ambito, bool dettagli = false,
                           const QString &archivio = u"A1"_s)
    {
        return Elenco({tabella, ambito, dettagli, archivio, u"R1"_s, u"V1"_s}, connessione());
    }
    static QString codiciDi(const Elenco &elenco)
    {
        return codici(elenco, elenco.chiaviDopo(-1, 1000));
    }

private slots:
    void init()
    {
        m_archivio = std::make_unique<ArchivioDiProva>();
        riempie();
    }

    void ambiti_data()
    {
        // I codici negli ambiti 0, 4, 6 e 7; "-" dove la tabella non ha quell'ambito.
        QTest::addColumn<QStringList>("attesi");
        const auto riga = [](const char *tabella, const char *attesi) {
            QTest::newRow(tabella) << QString::fromUtf8(attesi).split(u'|');
        };
        riga("Archivi", "A1 A2|-|-|-");
        riga("Registri", "R1 R2|-|R1 R2|R1 R2 R3");
        riga("Voci", "V1 V2|V1 V2|V1 V2 V3|V1 V2 V3 V4");
        riga("Individui", "I1|I1 I2|I1 I2 I3|I1 I2 I3 I4");
        // I4 non ha ruolo, e nei dettagli non compare.
        riga("Individui coi dettagli", "I1|I1 I2|I1 I2 I3|I1 I2 I3");
        riga("Famiglie", "F1|F1 F2|F1 F2 F3|F1 F2 F3 F4");
        riga("Eventi", "E1 E5 E9 E10|E1 E2 E5 E6 E9 E10|E1 E2 E3 E5 E6 E7 E9 E10|"
                       "E1 E2 E3 E4 E5 E6 E7 E8 E9 E10");
        riga("Binari", "B3 B4 B5 B6 B7|B2 B3 B4 B5 B6 B7 B8|B1 B2 B3 B4 B5 B6 B7 B8 B9|"
                       "B1 B2 B3 B4 B5 B6 B7 B8 B9 B10");
    }
    void ambiti()
    {
        QFETCH(QStringList, attesi);
        const QStringList nome = QString::fromUtf8(QTest::currentDataTag()).split(u' ');
        const bool dettagli = nome.size() > 1;
        for (const int ambito : {0, 4, 6, 7}) {
            const QString suoi = attesi.takeFirst();
            if (suoi == u"-") {
                QVERIFY_THROWS_EXCEPTION(ado::Errore, elencoDi(nome[0], ambito, dettagli));
                continue;
            }
            QCOMPARE(codiciDi(elencoDi(nome[0], ambito, dettagli)), suoi);
            // Un registro di un altro archivio non si vede in questo, per quanto abbia le sue voci.
            if (ambito == 4)
                QCOMPARE(codiciDi(elencoDi(nome[0], ambito, dettagli, u"A2"_s)), QString());
        }
    }

    void dettagli()
    {
        const Elenco elenco = elencoDi(u"Individui"_s, 7, true);
        QCOMPARE(elenco.colonne().join(u' '),
                 u"Codice Nome Soprannome Cognome Detto Sesso Ruolo Precisazione Voce "
                 "Legittimo Età Vivente Creazione LuogoNascita DataNascita "
                 "LuogoBattesimo DataBattesimo LuogoMorte DataMorte LuogoSepoltura "
                 "DataSepoltura Nome Titolo CodiceVoce"_s);
        const QVariantList riga = elenco.riga(elenco.chiaveDi(u"I1"_s));
        QCOMPARE(riga.at(6), u"Battezzato/a"_s);
        QCOMPARE(riga.mid(13), QVariantList({u"Pisa"_s,
                                             u"1564-02-15"_s,
                                             u"Duomo"_s,
                                             u"1564-02-19"_s,
                                             {},
                                             {},
                                             {},
                                             {},
                                             u"Opera Pisa"_s,
                                             u"Battezzati"_s,
                                             u"V1"_s}));
        QVERIFY(!elenco.ordinabile(0));
    }

    void contenutiMaiLetti()
    {
        esegui(u"UPDATE Binari SET Campolungo = 'prima riga' || char(10) || 'seconda' "
               "WHERE Codice IN ('B1', 'B4')"_s);
        const Elenco tutti = elencoDi(u"Binari"_s, 7);
        QCOMPARE(tutti.riga(tutti.chiaveDi(u"B1"_s)).constLast(), u"prima riga"_s);
        QVERIFY(!tutti.riga(tutti.chiaveDi(u"B4"_s)).constLast().isValid());
        QCOMPARE(elencoDi(u"Binari"_s, 0).colonne().join(u' '),
                 u"Codice Tipo IdProprietario Nome"_s);
    }

    void ordine()
    {
        esegui(u"DELETE FROM Voci"_s);
        const QVariantList nomi{u"Zoe"_s,  u"Èlia"_s, QVariant(), u"elia"_s, u"Fede"_s,
                                u"Elia"_s, u"anna"_s, u"Anna"_s,  u"elia"_s, u"anna"_s};
        const QVariantList pagine{0, 7, 2, 9, QVariant(), 11, 6, 1, 8, 100};
        for (qsizetype i = 0; i < nomi.size(); ++i)
            esegui(u"INSERT INTO Voci (Codice, Volume, PaginaIniziale) VALUES (?, ?, ?)"_s,
                   {u"V%1"_s.arg(i + 1), nomi.at(i), pagine.at(i)});
        const Elenco voci = elencoDi(u"Voci"_s, 7);
        const auto per = [&voci](const QString &colonna) {
            return codici(voci,
                          voci.chiaviOrdinate(static_cast<int>(voci.colonne().indexOf(colonna))));
        };
        // Null davanti; le maiuscole sono pari, e fra pari resta l'ordine di scrittura.
        QCOMPARE(per(u"Volume"_s), u"V3 V7 V8 V10 V4 V6 V9 V2 V5 V1"_s);
        QCOMPARE(per(u"PaginaIniziale"_s), u"V5 V1 V8 V3 V7 V2 V9 V4 V6 V10"_s);
        QVERIFY(voci.ordinabile(0) && !voci.ordinabile(-1) && !voci.ordinabile(7));
        QCOMPARE(voci.riga(voci.chiaveDi(u"v6"_s)).constFirst(), u"V6"_s);
        QCOMPARE(voci.chiaveDi(u"V99"_s), qint64{-1});
    }

    // Le chiavi lette un pezzo dopo l'altro sono tutte, una volta sola, anche dove ne mancano.
    void aPezziComeIntero()
    {
        for (int i = 5; i < 60; ++i)
            esegui(u"INSERT INTO Voci (Codice, Registro) VALUES (?, 'R1')"_s, {u"V%1"_s.arg(i)});
        esegui(u"DELETE FROM Voci WHERE rowid % 7 = 0"_s);
        const Elenco elenco = elencoDi(u"Voci"_s, 7);
        std::vector<qint64> pezzi;
        for (;;) {
            const auto pezzo = elenco.chiaviDopo(pezzi.empty() ? -1 : pezzi.back(), 10);
            pezzi.insert(pezzi.end(), pezzo.begin(), pezzo.end());
            if (pezzo.size() < 10)
                break;
        }
        QCOMPARE(pezzi, elenco.chiaviDopo(-1, 1000));
        QCOMPARE(static_cast<int>(pezzi.size()), righe(u"Voci"_s));
    }

    // Dove tutto è di un archivio le prime righe si trovano per un'altra via: devono essere le
    // stesse, senza chi ha perduto la sua voce.
    void unArchivioSolo()
    {
        esegui(u"DELETE FROM Registri WHERE Archivio = 'A2'"_s);
        for (const QString &tabella : {u"Voci"_s, u"Individui"_s, u"Famiglie"_s, u"Eventi"_s}) {
            for (const bool dettagli : {false, true}) {
                const Elenco elenco = elencoDi(tabella, 6, dettagli, u"a1"_s);
                QVERIFY(elenco.aPezzi());
                QVERIFY(!elenco.chiaviDopo(-1, 1000).empty());
                QCOMPARE(elenco.chiaviDopo(-1, 1000), elenco.chiaviDopo(-1, Elenco::tutte));
            }
        }
    }

    void finestraDellAmbito_data()
    {
        QTest::addColumn<QList<int>>("scelte");
        QTest::addColumn<int>("ambito");
        QTest::newRow("nulla") << QList<int>{} << 0;
        QTest::newRow("tutte le voci") << QList<int>{5} << 4;
        QTest::newRow("tutti i registri") << QList<int>{3} << 6;
        QTest::newRow("tutto con dettagli") << QList<int>{1, 7} << 15;
        QTest::newRow("ripensamento") << QList<int>{1, 0} << 6;
        QTest::newRow("dettagli e ripensamento") << QList<int>{7, 6} << 0;
    }
    void finestraDellAmbito()
    {
        QFETCH(QList<int>, scelte);
        contesto().AmbitoScelto = 99;
        fmVisualizza finestra(nullptr);
        QCOMPARE(contesto().AmbitoScelto, 0);
        const auto scelta = [&](int quale) {
            return finestra.findChild<QRadioButton *>(u"Option1_%1"_s.arg(quale));
        };
        for (const int quale : scelte)
            scelta(quale)->click();
        QCOMPARE(scelta(2)->isEnabled(), !scelta(1)->isChecked());
        finestra.findChild<QPushButton *>(u"Command1"_s)->click();
        QTEST(static_cast<int>(contesto().AmbitoScelto), "ambito");
    }
};

QTEST_MAIN(TestElenchi)
#include "tst_elenchi.moc"
