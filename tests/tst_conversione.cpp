#include "db/connessioni.h"
#include "db/conversione.h"
#include "db/schema.h"
#include "platform/jet_testo.h"
#include "tests/anteriore.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace anteriore;
using namespace modTarvola;
using namespace Qt::StringLiterals;

namespace
{

QString sha256(const QByteArray &byte)
{
    return QString::fromLatin1(QCryptographicHash::hash(byte, QCryptographicHash::Sha256).toHex());
}

// Il valore che l'archivio deve avere: ISO con lo spazio, e nelle colonne di giorni senza la
// mezzanotte; il testo vuoto è Null.
QVariant nellArchivio(const QString &colonna, const QJsonValue &valore)
{
    if (valore.isDouble())
        return QVariant::fromValue<qlonglong>(valore.toInteger());
    QString testo = valore.toString();
    static const QStringList date{u"Data"_s, u"DataIniziale"_s, u"DataFinale"_s,
                                  u"Ora"_s,  u"Creazione"_s,    u"Modifica"_s};
    if (date.contains(colonna)) {
        testo.replace(u'T', u' ');
        if (colonna.startsWith(u"Data"_s) && testo.endsWith(u" 00:00:00"_s))
            testo.chop(9);
    }
    return testo.isEmpty() ? QVariant() : QVariant(testo);
}

bool lungoUguale(const QVariant &presente, const QJsonValue &valore)
{
    if (valore.isNull())
        return !presente.isValid();
    const QJsonObject lungo = valore.toObject();
    if (lungo.contains(u"text"_s))
        return presente.typeId() == QMetaType::QString && presente == lungo[u"text"_s].toString();
    if (lungo.contains(u"textUtf8Sha256"_s))
        return presente.typeId() == QMetaType::QString &&
               presente.toString().size() == lungo[u"textLength"_s].toInteger() &&
               sha256(presente.toString().toUtf8()) == lungo[u"textUtf8Sha256"_s].toString();
    return presente.typeId() == QMetaType::QByteArray &&
           presente.toByteArray().size() == lungo[u"bytes"_s].toInteger() &&
           sha256(presente.toByteArray()) == lungo[u"sha256"_s].toString();
}

// La prima differenza fra l'archivio e le righe attese di una tabella; vuoto se nessuna.
QString differenza(ado::Connection &archivio, const QString &tabella, const QJsonArray &righe)
{
    const QVariant presenti = archivio.valore({u"SELECT count(*) FROM "_s + tabella, {}, {}});
    if (presenti.toLongLong() != righe.size())
        return u"%1: %2 righe, attese %3"_s.arg(tabella, presenti.toString()).arg(righe.size());
    const bool conCodice = tabelleConCodice().contains(tabella) || tabella == u"Traduzioni"_s;
    const QString prima =
        conCodice ? u"Codice"_s : archivio.colonne({u"SELECT * FROM "_s + tabella, {}, {}}).at(0);
    const QString seconda =
        conCodice ? prima : archivio.colonne({u"SELECT * FROM "_s + tabella, {}, {}}).at(1);
    for (const auto &riga : righe) {
        const QJsonObject campi = riga.toObject();
        for (auto campo = campi.begin(); campo != campi.end(); ++campo) {
            if (campo.key() == u"L2"_s || campo.key() == u"Conteggio"_s)
                continue;
            bool trovata = false;
            QVariant presente;
            archivio.leggi({u"SELECT \"%1\" FROM %2 WHERE %3 = ? AND %4 = ?"_s.arg(
                                campo.key(), tabella, prima, seconda),
                            {campi[prima].toVariant(), campi[seconda].toVariant()},
                            {}},
                           [&](const ado::Riga &sua) {
                               trovata = true;
                               presente = sua.valore(0);
                               return false;
                           });
            const bool uguale = campo.key() == u"Campolungo"_s
                                    ? lungoUguale(presente, campo.value())
                                    : presente == nellArchivio(campo.key(), campo.value());
            if (!trovata || !uguale)
                return u"%1 %2 %3: %4"_s.arg(tabella, campi[prima].toString(), campo.key(),
                                             presente.toString().left(80));
        }
    }
    return {};
}

QByteArray inDueByte(const QString &testo)
{
    return {reinterpret_cast<const char *>(testo.utf16()), testo.size() * 2};
}

const TabellaConvertita &tabellaDi(const Resoconto &resoconto, const QString &nome)
{
    return resoconto.tabelle.at(tabelle().indexOf(nome));
}

} // namespace

class TstConversione : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_cartella;
    QString m_vecchio;
    QString m_nuovo;

private slots:
    void init()
    {
        m_cartella = std::make_unique<QTemporaryDir>();
        m_vecchio = m_cartella->filePath(u"vecchio.tvd"_s);
        m_nuovo = m_cartella->filePath(u"nuovo.tvd"_s);
    }

    void leggeOgniValore_data()
    {
        QTest::addColumn<bool>("intero");
        for (const char *nome :
             {"pieno-ole", "pieno-memo", "senza-password", "codificato", "vuoto"})
            QTest::newRow(nome) << true;
        QTest::newRow("storia") << false;
    }

    void leggeOgniValore()
    {
        QFETCH(bool, intero);
        const QString nome = QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(diFormatoAnteriore(dato(nome + u".tvd"_s)));
        const auto resoconto = converte(dato(nome + u".tvd"_s), m_nuovo, sempre);
        QVERIFY(resoconto);
        QCOMPARE(resoconto->intero(), intero);
        ado::Connection archivio;
        archivio.Open(stringaDiConnessione(m_nuovo));
        verificaSchema(archivio);
        const QJsonObject attese = atteso(nome)[u"tables"_s].toObject();
        QCOMPARE(attese.size(), tabelle().size());
        for (const QString &tabella : tabelle())
            QCOMPARE(differenza(archivio, tabella, attese[tabella].toArray()), QString());
    }

    void diceCheCosaRestaFuori()
    {
        const auto resoconto = converte(dato(u"storia.tvd"_s), m_nuovo, sempre);
        QVERIFY(resoconto);
        QCOMPARE(resoconto->tabelleIgnote, QStringList{u"Errori di incollamento"_s});
        for (const TabellaConvertita &tabella : resoconto->tabelle) {
            const bool sua = tabella.nome == u"Traduzioni"_s;
            QCOMPARE(tabella.colonneIgnote,
                     (sua ? QStringList{u"L2"_s, u"Conteggio"_s} : QStringList()));
            QCOMPARE(tabella.lette, tabella.annunciate);
            QCOMPARE(tabella.intera(), !sua);
        }
    }

    void rifiutaPasswordEAltriFormati_data()
    {
        QTest::addColumn<QByteArray>("byte");
        QTest::addColumn<int>("causa");
        const QByteArray vuoto = letto(dato(u"vuoto.tvd"_s));
        QByteArray altraVersione = vuoto;
        altraVersione[0x14] = 0;
        QByteArray altroNome = vuoto;
        altroNome[6] = 'x';
        const auto nonArchivio = static_cast<int>(ado::Causa::NonArchivio);
        QTest::newRow("altra password")
            << letto(dato(u"altra-password.tvd"_s)) << static_cast<int>(ado::Causa::PasswordErrata);
        QTest::newRow("altra versione") << altraVersione << nonArchivio;
        QTest::newRow("altro nome") << altroNome << nonArchivio;
        QTest::newRow("una pagina e mezza")
            << vuoto.first(pagina * 3 / 2) << static_cast<int>(ado::Causa::Danneggiato);
        QTest::newRow("dieci byte") << vuoto.first(10) << nonArchivio;
        QByteArray senzaTabella = vuoto;
        senzaTabella.replace(inDueByte(u"Registri"_s), inDueByte(u"Rogistri"_s));
        QTest::newRow("manca una tabella") << senzaTabella << nonArchivio;
    }

    void rifiutaPasswordEAltriFormati()
    {
        QFETCH(QByteArray, byte);
        QFETCH(int, causa);
        QVERIFY(scritto(m_vecchio, byte));
        for (const bool soloVerifica : {true, false}) {
            try {
                if (soloVerifica)
                    verificaFormatoAnteriore(m_vecchio);
                else
                    converte(m_vecchio, m_nuovo, sempre);
                QFAIL("nessun errore");
            } catch (const ado::Errore &errore) {
                QCOMPARE(static_cast<int>(errore.causa()), causa);
            }
        }
        QVERIFY(!QFile::exists(m_nuovo));
        QCOMPARE(letto(m_vecchio), byte);
    }

    void contaLeRigheSenzaPosto()
    {
        QByteArray file = letto(dato(u"pieno-ole.tvd"_s));
        const qsizetype secondo = file.indexOf(inDueByte(u"E4I2"_s));
        QVERIFY(secondo > 0);
        cambia(file, secondo, inDueByte(u"e3"_s));
        // Il secondo individuo della coppia diventa il primo, e la coppia si ripete.
        const qsizetype coppia = file.indexOf(inDueByte(u"F1I2"_s));
        QVERIFY(coppia > 0);
        cambia(file, coppia, inDueByte(u"F1I1"_s));
        QVERIFY(scritto(m_vecchio, file));
        const auto resoconto = converte(m_vecchio, m_nuovo, sempre);
        QVERIFY(resoconto && !resoconto->intero());
        for (const QString &nome : {u"Eventi"_s, u"FamiglieConiugi"_s}) {
            const TabellaConvertita &tabella = tabellaDi(*resoconto, nome);
            QCOMPARE(tabella.rifiutate, 1);
            QCOMPARE(tabella.lette, tabella.annunciate);
        }
    }

    void contaLeRigheCheMancano()
    {
        QByteArray file = letto(dato(u"storia.tvd"_s));
        // La prima pagina della tabella (33) sparisce; un'altra riga porta il segno di cancellata.
        QList<qsizetype> sue;
        for (qsizetype i = 0; i < file.size(); i += pagina) {
            if (file.mid(i, 2) == QByteArray("\1\1") &&
                file.mid(i + 4, 4) == QByteArray("\41\0\0\0", 4))
                sue.append(i);
        }
        QVERIFY(sue.size() > 2);
        const int perse = numero(file, sue[0] + 12);
        cambia(file, sue[0], QByteArray(pagina, '\0'));
        file[sue[1] + 15] = static_cast<char>(file[sue[1] + 15] | 0x80);
        QVERIFY(scritto(m_vecchio, file));
        const auto resoconto = converte(m_vecchio, m_nuovo, sempre);
        QVERIFY(resoconto && !resoconto->intero());
        const TabellaConvertita &tabella = tabellaDi(*resoconto, u"Individui"_s);
        QCOMPARE(tabella.annunciate, 320);
        QCOMPARE(tabella.pagineGuaste, 1);
        QVERIFY(tabella.lette < 320 && tabella.lette >= 320 - perse - 1);
    }

    // Senza la mappa delle sue pagine una tabella si ritrova cercando in tutto il file.
    void ritrovaLePagineSenzaMappa()
    {
        QByteArray file = letto(dato(u"storia.tvd"_s));
        cambia(file, 33 * pagina + 0x37, QByteArray("\0\xff\xff\0", 4));
        QVERIFY(scritto(m_vecchio, file));
        const auto resoconto = converte(m_vecchio, m_nuovo, sempre);
        QVERIFY(resoconto);
        const TabellaConvertita &tabella = tabellaDi(*resoconto, u"Individui"_s);
        QCOMPARE(tabella.lette, 320);
        QCOMPARE(tabella.pagineGuaste, 1);
        ado::Connection archivio;
        archivio.Open(stringaDiConnessione(m_nuovo));
        const QJsonObject attese = atteso(u"storia"_s)[u"tables"_s].toObject();
        QCOMPARE(differenza(archivio, tabella.nome, attese[tabella.nome].toArray()), QString());
    }

    // L'anello di una catena torna su sé stesso: il resto del testo manca, e si dice.
    void fermaLeCateneCheTornano()
    {
        QByteArray file = letto(dato(u"pieno-ole.tvd"_s));
        int anelli = 0;
        for (qsizetype sua = 1; sua < file.size() / pagina; ++sua) {
            const qsizetype inizio = sua * pagina;
            const qsizetype riga = inizio + (numero(file, inizio + 14) & 0x1fff);
            if (file.mid(inizio + 4, 4) == "LVAL" && riga + 20 < file.size() &&
                file.mid(riga + 4, 16) == inDueByte(u"Riga 1: "_s)) {
                const char anello[] = {'\0', static_cast<char>(sua), static_cast<char>(sua >> 8)};
                cambia(file, riga, QByteArray(anello, 3));
                ++anelli;
            }
        }
        QCOMPARE(anelli, 2);
        QVERIFY(scritto(m_vecchio, file));
        const auto resoconto = converte(m_vecchio, m_nuovo, sempre);
        QVERIFY(resoconto);
        const TabellaConvertita &binari = tabellaDi(*resoconto, u"Binari"_s);
        QCOMPARE(binari.valoriGuasti, 2);
        QCOMPARE(binari.lette, binari.annunciate);
    }

    void lasciaTuttoComEraQuandoNonRiesce()
    {
        const QByteArray originale = letto(dato(u"pieno-ole.tvd"_s));
        QVERIFY(scritto(m_vecchio, originale));
        // Annullata in ciascuna delle due metà del lavoro.
        for (const int parte : {0, 1, 2}) {
            const auto passo = [parte](qint64 fatto, qint64 totale) {
                return fatto * 3 < totale * parte;
            };
            QVERIFY(!converte(m_vecchio, m_nuovo, passo));
            QCOMPARE(QDir(m_cartella->path()).entryList(QDir::Files),
                     QStringList{u"vecchio.tvd"_s});
        }
        QVERIFY(scritto(m_nuovo, "altro"));
        QVERIFY_THROWS_EXCEPTION(ado::Errore, converte(m_vecchio, m_nuovo, sempre));
        QCOMPARE(letto(m_nuovo), QByteArray("altro"));
        QCOMPARE(letto(m_vecchio), originale);
    }

    void scriveLeDate_data()
    {
        QTest::addColumn<double>("giorni");
        QTest::addColumn<bool>("oraSempre");
        QTest::addColumn<QString>("iso");
        QTest::newRow("zero") << 0.0 << true << u"1899-12-30 00:00:00"_s;
        QTest::newRow("giorno") << 1.0 << false << u"1899-12-31"_s;
        QTest::newRow("prima, con ora") << -1.25 << false << u"1899-12-29 06:00:00"_s;
        QTest::newRow("giorno zero, ora col meno") << -0.5 << true << u"1899-12-30 12:00:00"_s;
        QTest::newRow("il secondo che arrotonda") << 2.9999999 << true << u"1900-01-02 00:00:00"_s;
        QTest::newRow("il primo giorno") << -657434.0 << false << u"0100-01-01"_s;
        QTest::newRow("il giorno prima") << -657435.0 << false << QString();
        QTest::newRow("l'ultimo giorno") << 2958465.0 << false << u"9999-12-31"_s;
        QTest::newRow("il giorno dopo") << 2958466.0 << false << QString();
        QTest::newRow("non un numero") << std::nan("") << true << QString();
        QTest::newRow("infinito") << -HUGE_VAL << true << QString();
    }

    void scriveLeDate()
    {
        QFETCH(double, giorni);
        QFETCH(bool, oraSempre);
        QTEST(jet::isoDi(giorni, oraSempre), "iso");
    }

    void leggeITesti_data()
    {
        QTest::addColumn<QByteArray>("byte");
        QTest::addColumn<bool>("nota");
        QTest::addColumn<QString>("testo");
        QTest::addColumn<bool>("intero");
        const auto riga = [](const char *nome, QByteArrayView byte, bool nota, const char *testo,
                             bool intero) {
            QTest::newRow(nome) << byte.toByteArray() << nota << QString::fromUtf8(testo) << intero;
        };
        riga("vuoto", {}, true, "", true);
        riga("due byte", {"\xe8\0\xa9\x03", 4}, true, "èΩ", true);
        riga("un byte di troppo", {"\xe8\0\xa9", 3}, true, "è", false);
        riga("compresso",
             "\xff\xfe"
             "Et\xe0",
             true, "Età", true);
        riga("misto",
             {"\xff\xfe"
              "a\0\xa9\x03\0z",
              8},
             true, "aΩz", true);
        riga("misto spezzato",
             {"\xff\xfe"
              "a\0\xa9",
              5},
             true, "a", false);
        riga("coppia", {"\x35\xd8\xd0\xdc", 4}, true, "𝓐", true);
        riga("mezza coppia", {"\x35\xd8\x41\0", 4}, true,
             "\xef\xbf\xbd"
             "A",
             false);
        riga("pagina di codice", "costo\xf2 3 \x80 \x96 no\x92", false, "costoò 3 € – no’", true);
        riga("due byte in byte", {"\xe8\0\xa9\x03", 4}, false, "èΩ", true);
    }

    void leggeITesti()
    {
        QFETCH(QByteArray, byte);
        QFETCH(bool, nota);
        QFETCH(bool, intero);
        const jet::Testo testo = nota ? jet::testoDi(byte) : jet::testoInByte(byte);
        QTEST(testo.testo, "testo");
        QCOMPARE(testo.intero, intero);
    }
};

QTEST_GUILESS_MAIN(TstConversione)
#include "tst_conversione.moc"
