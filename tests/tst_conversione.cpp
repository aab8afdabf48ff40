#include "anteriore.h"
#include "db/archivio/conversione.h"
#include "db/schema/schema.h"
#include "platform/anteriore/jet_testo.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>

#include <cmath>

using namespace anteriore;

namespace
{

QString sha256(const QByteArray &byte)
{
    return QString::fromLatin1(QCryptographicHash::hash(byte, QCryptographicHash::Sha256).toHex());
}

// Un valore come lo si scrive per confrontarlo; di un contenuto lungo l'impronta.
QString scrittura(const QVariant &valore, bool lungo)
{
    if (!valore.isValid())
        return u"Null"_s;
    if (lungo)
        return valore.typeId() == QMetaType::QByteArray
                   ? u"byte "_s + sha256(valore.toByteArray())
                   : u"testo "_s + sha256(valore.toString().toUtf8());
    return valore.typeId() == QMetaType::QString ? u'"' + valore.toString() + u'"'
                                                 : valore.toString();
}

// Il valore che l'archivio deve avere: ISO con lo spazio, e nelle colonne di giorni senza la
// mezzanotte; il testo vuoto è Null.
QString attesa(const QString &colonna, const QJsonValue &valore)
{
    if (valore.isDouble())
        return QString::number(valore.toInteger());
    const QJsonObject lungo = valore.toObject();
    if (lungo.contains(u"text"_s))
        return scrittura(lungo[u"text"_s].toString(), true);
    if (lungo.contains(u"textUtf8Sha256"_s))
        return u"testo "_s + lungo[u"textUtf8Sha256"_s].toString();
    if (valore.isObject())
        return u"byte "_s + lungo[u"sha256"_s].toString();
    QString testo = valore.toString();
    static const QStringList date{u"Data"_s, u"DataIniziale"_s, u"DataFinale"_s,
                                  u"Ora"_s,  u"Creazione"_s,    u"Modifica"_s};
    if (date.contains(colonna)) {
        testo.replace(u'T', u' ');
        if (colonna.startsWith(u"Data"_s) && testo.endsWith(u" 00:00:00"_s))
            testo.chop(9);
    }
    return scrittura(testo.isEmpty() ? QVariant() : testo, false);
}

// L'archivio ha tutte e sole le righe attese di una tabella.
void confronta(const QString &percorso, const QString &tabella, const QJsonArray &attese)
{
    Aparte archivio(percorso);
    const ado::Comando tutte{u"SELECT * FROM "_s + tabella, {}, {}};
    const QStringList campi = archivio.colonne(tutte);
    QStringList volute;
    for (const auto &riga : attese) {
        QStringList valori;
        for (const QString &campo : campi)
            valori.append(attesa(campo, riga[campo]));
        volute.append(valori.join(u'|'));
    }
    QStringList presenti;
    archivio.leggi(tutte, [&](const ado::Riga &riga) {
        QStringList valori;
        for (int i = 0; i < campi.size(); ++i)
            valori.append(scrittura(riga.valore(i), campi.at(i) == u"Campolungo"));
        presenti.append(valori.join(u'|'));
        return true;
    });
    volute.sort();
    presenti.sort();
    QCOMPARE(presenti, volute);
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

    // Converte un file fatto di questi byte.
    Resoconto convertito(const QByteArray &byte) const
    {
        scrive(m_vecchio, byte);
        return converte(m_vecchio, m_nuovo, avanti).value();
    }

    void haLeRigheDi(const QString &nome, const QStringList &quali) const
    {
        const QJsonObject attese = atteso(nome)[u"tables"_s].toObject();
        for (const QString &tabella : quali) {
            QVERIFY(attese.contains(tabella));
            confronta(m_nuovo, tabella, attese[tabella].toArray());
        }
    }

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
        const QString nome = QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(diFormatoAnteriore(dato(nome + u".tvd"_s)));
        QTEST(convertito(byteDi(dato(nome + u".tvd"_s))).intero(), "intero");
        Aparte archivio(m_nuovo);
        verificaSchema(archivio);
        haLeRigheDi(nome, tabelle());
    }

    void rifiutaPasswordEAltriFormati_data()
    {
        QTest::addColumn<QByteArray>("byte");
        QTest::addColumn<ado::Causa>("causa");
        const QByteArray vuoto = byteDi(dato(u"vuoto.tvd"_s));
        QByteArray altraVersione = vuoto;
        altraVersione[0x14] = 0;
        QByteArray senzaTabella = vuoto;
        senzaTabella.replace(inDueByte(u"Registri"_s), inDueByte(u"Rogistri"_s));
        QTest::newRow("altra password")
            << byteDi(dato(u"altra-password.tvd"_s)) << ado::Causa::PasswordErrata;
        QTest::newRow("altra versione") << altraVersione << ado::Causa::NonArchivio;
        QTest::newRow("una pagina e mezza")
            << vuoto.first(pagina * 3 / 2) << ado::Causa::Danneggiato;
        QTest::newRow("dieci byte") << vuoto.first(10) << ado::Causa::NonArchivio;
        QTest::newRow("manca una tabella") << senzaTabella << ado::Causa::NonArchivio;
    }
    void rifiutaPasswordEAltriFormati()
    {
        QFETCH(QByteArray, byte);
        scrive(m_vecchio, byte);
        QTEST(errore([this] { verificaFormatoAnteriore(m_vecchio); }).causa(), "causa");
        const ado::Errore trovato = errore([this] { converte(m_vecchio, m_nuovo, avanti); });
        QTEST(trovato.causa(), "causa");
        QVERIFY(!trovato.testo().isEmpty());
        QVERIFY(!QFile::exists(m_nuovo));
        QCOMPARE(byteDi(m_vecchio), byte);
    }

    void contaLeRigheSenzaPosto()
    {
        QByteArray file = byteDi(dato(u"pieno-ole.tvd"_s));
        const qsizetype secondo = file.indexOf(inDueByte(u"E4I2"_s));
        QVERIFY(secondo > 0);
        cambia(file, secondo, inDueByte(u"e3"_s));
        // Il secondo individuo della coppia diventa il primo, e la coppia si ripete.
        const qsizetype coppia = file.indexOf(inDueByte(u"F1I2"_s));
        QVERIFY(coppia > 0);
        cambia(file, coppia, inDueByte(u"F1I1"_s));
        const Resoconto resoconto = convertito(file);
        QVERIFY(!resoconto.intero());
        for (const QString &nome : {u"Eventi"_s, u"FamiglieConiugi"_s}) {
            const TabellaConvertita &tabella = tabellaDi(resoconto, nome);
            QCOMPARE(tabella.rifiutate, 1);
            QCOMPARE(tabella.lette, tabella.annunciate);
        }
    }

    void contaLeRigheCheMancano()
    {
        QByteArray file = byteDi(dato(u"storia.tvd"_s));
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
        const Resoconto resoconto = convertito(file);
        QVERIFY(!resoconto.intero());
        const TabellaConvertita &tabella = tabellaDi(resoconto, u"Individui"_s);
        QCOMPARE(tabella.annunciate, 320);
        QCOMPARE(tabella.pagineGuaste, 1);
        QVERIFY(tabella.lette < 320 && tabella.lette >= 320 - perse - 1);
    }

    // Senza la mappa delle sue pagine una tabella si ritrova cercando in tutto il file.
    void ritrovaLePagineSenzaMappa()
    {
        QByteArray file = byteDi(dato(u"storia.tvd"_s));
        cambia(file, 33 * pagina + 0x37, QByteArray("\0\xff\xff\0", 4));
        const Resoconto resoconto = convertito(file);
        QCOMPARE(tabellaDi(resoconto, u"Individui"_s).pagineGuaste, 1);
        haLeRigheDi(u"storia"_s, {u"Individui"_s});
    }

    // L'anello di una catena torna su sé stesso: il resto del testo manca, e si dice.
    void fermaLeCateneCheTornano()
    {
        QByteArray file = byteDi(dato(u"pieno-ole.tvd"_s));
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
        const Resoconto resoconto = convertito(file);
        const TabellaConvertita &binari = tabellaDi(resoconto, u"Binari"_s);
        QCOMPARE(binari.valoriGuasti, 2);
        QCOMPARE(binari.lette, binari.annunciate);
    }

    void lasciaTuttoComEraQuandoNonRiesce()
    {
        const QByteArray originale = byteDi(dato(u"pieno-ole.tvd"_s));
        scrive(m_vecchio, originale);
        // Annullata in ciascuna delle due metà del lavoro.
        for (const int parte : {0, 1, 2}) {
            const auto passo = [parte](qint64 fatto, qint64 totale) {
                return fatto * 3 < totale * parte;
            };
            QVERIFY(!converte(m_vecchio, m_nuovo, passo));
            QCOMPARE(QDir(m_cartella->path()).entryList(QDir::Files),
                     QStringList{u"vecchio.tvd"_s});
        }
        scrive(m_nuovo, "altro");
        QVERIFY_THROWS_EXCEPTION(ado::Errore, converte(m_vecchio, m_nuovo, avanti));
        QCOMPARE(byteDi(m_nuovo), QByteArray("altro"));
        QCOMPARE(byteDi(m_vecchio), originale);
    }

    void scriveLeDate_data()
    {
        QTest::addColumn<double>("giorni");
        QTest::addColumn<bool>("oraSempre");
        QTest::addColumn<QString>("iso");
        QTest::newRow("zero") << 0.0 << true << u"1899-12-30 00:00:00"_s;
        QTest::newRow("prima, con ora") << -1.25 << false << u"1899-12-29 06:00:00"_s;
        QTest::newRow("giorno zero, ora col meno") << -0.5 << true << u"1899-12-30 12:00:00"_s;
        QTest::newRow("il secondo che arrotonda") << 2.9999999 << true << u"1900-01-02 00:00:00"_s;
        QTest::newRow("il primo giorno") << -657434.0 << false << u"0100-01-01"_s;
        QTest::newRow("il giorno prima") << -657435.0 << false << QString();
        QTest::newRow("l'ultimo giorno") << 2958465.0 << false << u"9999-12-31"_s;
        QTest::newRow("il giorno dopo") << 2958466.0 << false << QString();
        QTest::newRow("non un numero") << std::nan("") << true << QString();
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
        const auto riga = [](const char *nome, const QByteArray &esadecimale, bool nota,
                             const char *testo, bool intero) {
            QTest::newRow(nome) << QByteArray::fromHex(esadecimale) << nota
                                << QString::fromUtf8(testo) << intero;
        };
        riga("vuoto", "", true, "", true);
        riga("due byte", "e800a903", true, "èΩ", true);
        riga("un byte di troppo", "e800a9", true, "è", false);
        riga("compresso", "fffe4574e0", true, "Età", true);
        riga("misto", "fffe6100a903007a", true, "aΩz", true);
        riga("misto spezzato", "fffe6100a9", true, "a", false);
        riga("coppia", "35d8d0dc", true, "𝓐", true);
        riga("mezza coppia", "35d84100", true, "\uFFFDA", false);
        riga("pagina di codice", "636f73746ff22033208020962092", false, "costoò 3 € – ’", true);
        riga("due byte in byte", "e800a903", false, "èΩ", true);
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
