#include "platform/lingua/italiano.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

void colonne()
{
    QTest::addColumn<QString>("testo");
    QTest::addColumn<QString>("atteso");
}

// Una riga per ogni testo di un elenco diviso da "|", tutte con lo stesso risultato atteso.
void righe(const char *atteso, const char *testi)
{
    for (const QString &testo : QString::fromUtf8(testi).split(u'|'))
        QTest::newRow(qUtf8Printable(u'[' + testo + u']')) << testo << QString::fromUtf8(atteso);
}

QString data(const QString &testo)
{
    return italiano::leggiData(testo).value_or(u""_s);
}

QString ora(const QString &testo, const QString &giorno = {})
{
    return italiano::leggiOra(testo, giorno).value_or(u""_s);
}

} // namespace

class TstItaliano : public QObject
{
    Q_OBJECT

private slots:
    // Lontano da Greenwich, perché un'ora universale al posto di quella locale si veda.
    void initTestCase() { qputenv("TZ", "PROVA-5"); }

    void leggeDate_data()
    {
        colonne();
        righe("1750-03-04",
              "4/3/1750|04 03 1750|4-3-1750|4.3.1750| 4   3 1750\t|4 / 3 / 1750|1750-03-04");
        righe("1750-03-04",
              "4 marzo 1750|4 mar 1750|4 mar. 1750|4 MARZO 1750|04-Mar-1750|4.marzo.1750");
        righe("1750-03-01", "1° marzo 1750|1º marzo 1750|01° MAR. 1750");
        righe("1750-03-04",
              "mercoledì, 4 marzo 1750|sabato 4 marzo 1750|SAB. 4/3/1750|mar 4 mar 1750|"
              "mercoledi\u0300, 4 3 1750|dom.,4 mar 1750");
        righe("0105-03-04", "4 3 105|4 3 0105|0105-03-04");
        righe("0100-01-01", "1 1 100");
        righe("9999-12-31", "31/12/9999");
        righe("1582-10-10", "10 ottobre 1582");
        righe("1600-02-29", "29 2 1600");
        righe("1896-02-29", "29 febbraio 1896");

        righe("",
              "29 2 1500|29 febbraio 1900|30 febbraio 1750|31/4/1750|0/3/1750|4/13/1750|4/0/1750|"
              "1750-13-01|1750-02-30");
        righe("", "4 3 99|4/3/50|4 3 0099|4 3 10000|4 marzo 50|0099-01-01|99-01-01|4 3 -1750");
        righe("", "|  |ieri|marzo 1750|circa 1750|4 ma 1750|4 marzos 1750|4 march 1750|4marzo1750|"
                  "x 4/3/1750|4/3/1750 x|4/3/1750\n5|004/3/1750|4//3//1750|3-4 1750|4/3-1750|"
                  "٤/٣/١٧٥٠|saturday 4 3 1750|marzo 4 3 1750|lune 4 3 1750|1750-03-04 10:30:00");
    }

    void leggeDate()
    {
        QFETCH(QString, testo);
        QTEST(data(testo), "atteso");
    }

    void leggeOgniMese()
    {
        const auto mesi = u"gennaio febbraio marzo aprile maggio giugno luglio agosto settembre "
                          "ottobre novembre dicembre"_s.split(u' ');
        for (int mese = 0; mese < 12; ++mese) {
            const QString atteso = u"1630-%1-07"_s.arg(mese + 1, 2, 10, QChar(u'0'));
            for (qsizetype lettere = 3; lettere <= mesi[mese].size(); ++lettere) {
                const QString testo = u"7 %1 1630"_s.arg(mesi[mese].left(lettere));
                QCOMPARE(data(testo), atteso);
                QCOMPARE(data(testo.toUpper()), atteso);
            }
        }
    }

    // Le ore sole cadono nel giorno dato, qui il 1800-01-01.
    void leggeOre_data()
    {
        colonne();
        righe("1800-01-01 10:00:00", "10|10:0|10:00:00|10.00");
        righe("1800-01-01 10:30:15", "10:30:15|10.30.15| 10 : 30 : 15 ");
        righe("1800-01-01 00:00:00", "0|0:0:0");
        righe("1800-01-01 23:59:59", "23:59:59");
        righe("1750-03-04 01:03:05", "mercoledì, 4 mar 1750, 1:3:5|1750-03-04 01:03:05");
        righe("1750-03-04 10:30:00", "sabato 4 marzo 1750 10:30|4/3/1750, 10.30|4 mar. 1750,10:30");
        righe("1750-03-04 10:00:00", "4 3 1750 10");
        righe("1750-03-04 00:00:00", "4 mar. 1750|4 3 1750");
        righe(
            "",
            "|24|24:00|10:60|10:30:60|10:|10:30:15:1|-1|10.5|4.3.50|10:30.15|10,30|100|"
            "mezzogiorno|sabato, 10:30|4 3 99 10:30|30/2/1750, 10:30|10:30 4/3/1750|4/3/1750, 25");
    }

    void leggeOre()
    {
        QFETCH(QString, testo);
        QFETCH(QString, atteso);
        QCOMPARE(ora(testo, u"1800-01-01"_s), atteso);
        QCOMPARE(ora(testo, u"1800-01-01 12:00:00"_s), atteso);
        QCOMPARE(ora(testo), atteso.replace(u"1800-01-01"_s, u"1899-12-30"_s));
    }

    void leggePagine_data()
    {
        colonne();
        righe("0", "0|-0|0,49999999999999999999|-0,0");
        righe("12", "12| 12 |+12|012|12,|12,0|12,49");
        righe("13", "12,5|12,51");
        righe("14", "13,5");
        righe("1", ",5");
        righe("1000", "1000|1.000");
        righe("1000000", "1.000.000|1.000.000,4");
        righe("2147483647", "2147483647|2.147.483.647,00|2147483646,5");
        righe("",
              "-1|-0,2|2147483648|2147483647,4|2147483647,0000000001|99999999999999999999999999");
        righe("", "| |,|+|a|12a|12r|1 2|10.00|1.0000|1000.000|0.007|1.5|1,5,5|1,000.5|٣|nan|1e3");
    }

    void leggePagine()
    {
        QFETCH(QString, testo);
        const auto letta = italiano::leggiPagina(testo);
        QTEST(letta ? QString::number(*letta) : u""_s, "atteso");
    }

    void mostra_data()
    {
        colonne();
        righe("04 03 1750|4 mar 1750|04/03/1750|mercoledì, 4 mar 1750, 0:0:0", "1750-03-04");
        righe("31 12 0105|31 dic 0105|31/12/0105 09:05:00|giovedì, 31 dic 0105, 9:5:0",
              "0105-12-31 09:05:00");
        righe("30 12 1899|30 dic 1899|30/12/1899 22:30:15|sabato, 30 dic 1899, 22:30:15",
              "1899-12-30 22:30:15");
        for (const char *testo :
             {"", "ignota", "1750-02-30", "0099-01-01", "1750-3-4", "1750/03/04",
              "1750-03-04 25:00:00", "1750-03-04 10:30", "1750-03-04\n"})
            righe(QByteArrayList(4, testo).join('|').constData(), testo);
    }

    void mostra()
    {
        QFETCH(QString, testo);
        const QStringList mostrati{italiano::mostraData(testo), italiano::mostraDataEstesa(testo),
                                   italiano::mostraDataBreve(testo), italiano::mostraOra(testo)};
        QTEST(mostrati.join(u'|'), "atteso");
    }

    void andataERitorno()
    {
        QRandomGenerator caso(1750);
        const qint64 primo = QDate(100, 1, 1).toJulianDay();
        const qint64 ultimo = QDate(9999, 12, 31).toJulianDay();
        for (int giro = 0; giro < 3000; ++giro) {
            const QString giorno =
                QDate::fromJulianDay(caso.bounded(primo, ultimo + 1)).toString(u"yyyy-MM-dd");
            const QTime tempo = QTime(0, 0).addSecs(caso.bounded(86400));
            const QString istante = giorno + tempo.toString(u" HH:mm:ss");
            QCOMPARE(data(italiano::mostraData(istante)), giorno);
            QCOMPARE(data(italiano::mostraDataEstesa(istante)), giorno);
            QCOMPARE(data(italiano::mostraDataBreve(giorno)), giorno);
            QCOMPARE(ora(italiano::mostraDataBreve(istante)), istante);
            QCOMPARE(ora(italiano::mostraOra(istante)), istante);
        }
    }

    void riconosceUguali_data()
    {
        colonne();
        righe("uguali", "Rossi=ROSSI|nicolò È=NICOLÒ è|perche\u0301=PERCH\u00c9|Weiß=WEISS|=");
        righe("diversi", "perché=perche|perché=perchè|De Rossi=DeRossi|Rossi=Rossi |1º=1o|Rossi=");
    }

    void riconosceUguali()
    {
        QFETCH(QString, testo);
        const auto parti = testo.split(u'=');
        QTEST(italiano::uguali(parti[0], parti[1]) ? u"uguali"_s : u"diversi"_s, "atteso");
        QTEST(italiano::uguali(parti[1], parti[0]) ? u"uguali"_s : u"diversi"_s, "atteso");
    }

    void ordina()
    {
        const auto ordinati =
            u"|10|9|abate|D'Angelo|Dangelo|de Rossi|Dea|Derossi|e|È|Ea|Éa|eb|Fea"_s.split(u'|');
        for (qsizetype primo = 0; primo < ordinati.size(); ++primo) {
            const QString &a = ordinati[primo];
            QCOMPARE(italiano::confronta(a.toLower(), a.toUpper()), 0);
            for (const QString &b : ordinati.mid(primo + 1)) {
                QVERIFY2(italiano::confronta(a, b) < 0, qUtf8Printable(a + u' ' + b));
                QVERIFY2(italiano::confronta(b, a) > 0, qUtf8Printable(b + u' ' + a));
            }
        }
    }

    void adessoELocale()
    {
        const auto traCinqueOre = [] {
            return QDateTime::currentDateTimeUtc().addSecs(5 * 3600).toString(
                u"yyyy-MM-dd HH:mm:ss");
        };
        const QString prima = traCinqueOre();
        const QString adesso = italiano::adesso();
        const QString dopo = traCinqueOre();
        QVERIFY2(prima <= adesso && adesso <= dopo, qUtf8Printable(adesso));
    }
};

QTEST_GUILESS_MAIN(TstItaliano)
#include "tst_italiano.moc"
