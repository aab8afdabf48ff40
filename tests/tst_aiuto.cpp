#include "app/aiuto.h"
#include "platform/disco/sistema.h"
#include "prova_principale.h"

#include <QDesktopServices>
#include <QMimeDatabase>
#include <QRegularExpression>
#include <QUrl>

// Il desktop, che prende i collegamenti al posto dei suoi programmi.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop()
    {
        for (const QString &schema : schemi)
            QDesktopServices::setUrlHandler(schema, this, "prende");
    }
    ~Desktop() override
    {
        for (const QString &schema : schemi)
            QDesktopServices::unsetUrlHandler(schema);
    }
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    QList<QUrl> presi;

public slots:
    void prende(const QUrl &collegamento) { presi.append(collegamento); }

private:
    const QStringList schemi{u"https"_s, u"mailto"_s};
};

class TstAiuto : public QObject, private ProvaPrincipale
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(dati.isValid());
        QVERIFY(QDir(dati.path()).mkpath(u"mime/packages"_s));
        QVERIFY(
            QFile::copy(QStringLiteral(TIPO_ARCHIVIO), dati.filePath(u"mime/packages/t.xml"_s)));
        qputenv("XDG_DATA_HOME", dati.path().toLocal8Bit());
        // I tipi della macchina, se ci sono, non contano: il paragone è con quelli di Qt.
        qputenv("XDG_DATA_DIRS", dati.filePath(u"nessuna"_s).toLocal8Bit());
    }
    void init() { comincia(); }
    void cleanup() { finisce(); }

    // Solo un ritorno con il suo a capo si codifica; il resto passa com'è.
    void aCapo()
    {
        QCOMPARE(CodificaACapo(u"a\r\n\r\nb & è%0D%0A\r\n"_s), u"a%0D%0A%0D%0Ab & è%0D%0A%0D%0A"_s);
        QCOMPARE(CodificaACapo(u"a\nb\rc\n\rd\r\r\n"_s), u"a\nb\rc\n\rd\r%0D%0A"_s);
    }

    void collegamento()
    {
        const QString chi = u"chi@example.org"_s;
        QCOMPARE(CollegamentoPosta(chi, {}, {}, {}, {}), u"mailto:chi@example.org"_s);
        QCOMPARE(CollegamentoPosta(chi, {}, u"è a\r\nb & c"_s, {}, {}),
                 u"mailto:chi@example.org?Body=è a%0D%0Ab & c"_s);
        QCOMPARE(
            CollegamentoPosta(chi, u"a\r\nb"_s, u"c"_s, u"d@example.org"_s, u"e@example.org"_s),
            u"mailto:chi@example.org?Subject=a\r\nb&Body=c&CC=d@example.org&BCC=e@example.org"_s);
    }

    void kilobyte()
    {
        QCOMPARE(InKilobyte(0), u"0"_s);
        QCOMPARE(InKilobyte(quint64{16} << 30), u"16777216"_s);
        QCOMPARE(InKilobyte(1234567891), u"1205632,7060546875"_s);
    }

    void memoria()
    {
        const auto letta = [this](const QByteArray &elenco) {
            scrive(percorso(u"memoria"_s), elenco);
            const sistema::Memoria sua = sistema::memoria(percorso(u"memoria"_s));
            return QList<quint64>{sua.fisicaDisponibile / 1024, sua.fisicaTotale / 1024,
                                  sua.virtualeDisponibile / 1024, sua.virtualeTotale / 1024};
        };
        QCOMPARE(letta("MemTotal:       4000 kB\nMemFree:  1 kB\n"
                       "MemAvailable:   1000 kB\nHugePages_Total: 7\n"
                       "SwapTotal:  500 kB\nSwapFree:   200 kB\n"),
                 QList<quint64>({1000, 4000, 1200, 4500}));
        QCOMPARE(letta("MemTotal\n: kB\nSwapFree: molta kB"), QList<quint64>({0, 0, 0, 0}));
    }

    void descriveIlComputer()
    {
        static const QRegularExpression forma(
            u"\\A([^\\r\\n]*)\\r\\n"
            "Memoria fisica disponibile \\(KB\\) : ([1-9]\\d*)\\r\\n"
            "Memoria fisica totale \\(KB\\) : ([1-9]\\d*)\\r\\n"
            "Memoria virtuale disponibile \\(KB\\) : ([1-9]\\d*)\\r\\n"
            "Memoria virtuale totale \\(KB\\) : ([1-9]\\d*)\\r\\n\\z"_s);
        const auto trovata = forma.match(InfoSistema());
        QVERIFY2(trovata.hasMatch(), qUtf8Printable(InfoSistema()));
        QFile versione(u"/etc/os-release"_s);
        QVERIFY(versione.open(QIODevice::ReadOnly));
        QVERIFY(
            versione.readAll().contains("PRETTY_NAME=\"" + trovata.captured(1).toUtf8() + "\"\n"));
        const auto valore = [&trovata](int quale) { return trovata.captured(quale).toLongLong(); };
        QVERIFY(valore(2) <= valore(3));
        QVERIFY(valore(2) <= valore(4));
        QVERIFY(valore(4) <= valore(5));
    }

    void vociDelMenu()
    {
        const Desktop desktop;
        sceglie(u"&Aiuto"_s, u"Home page"_s);
        QCOMPARE(desktop.presi.size(), 1);
        QCOMPARE(desktop.presi.constLast().scheme(), u"https"_s);
        // Dal menu di un visualizzatore si arriva allo stesso posto.
        apreEsempio();
        sceglie(u"&Aiuto"_s, u"Scrivi a Tarvola"_s);
        QCOMPARE(desktop.presi.size(), 2);
        const QString posta = desktop.presi.constLast().toString();
        QVERIFY2(posta.startsWith(u"mailto:assistenza@example.org?Subject=Informazioni su Tarvola"
                                  "&Body=Tarvola versione 0."_s),
                 qUtf8Printable(posta));
        QVERIFY(posta.contains(u"%0D%0AMemoria fisica disponibile (KB) : "_s));
    }

    // Dove nessun programma apre i collegamenti non si vede nulla, e il programma lo sa.
    void senzaProgrammi()
    {
        QVERIFY(!ApriPostaElettronica(u"chi@example.org"_s, {}, {}, {}, {}));
        sceglie(u"&Aiuto"_s, u"Home page"_s);
        sceglie(u"&Aiuto"_s, u"Scrivi a Tarvola"_s);
    }

    // Il desktop riconosce un archivio dal nome e, se il nome non lo dice, dal contenuto.
    void tipoDelFile()
    {
        const QString tipo = u"application/x-tarvola-archive"_s;
        QCOMPARE(
            QMimeDatabase().mimeTypeForFile(u"Duomo.tvd"_s, QMimeDatabase::MatchExtension).name(),
            tipo);
        QFile archivio(modello());
        QVERIFY(archivio.open(QIODevice::ReadOnly));
        QByteArray contenuto = archivio.readAll();
        QCOMPARE(QMimeDatabase().mimeTypeForData(contenuto).name(), tipo);
        contenuto[70] = 'x';
        QVERIFY(QMimeDatabase().mimeTypeForData(contenuto).name() != tipo);
    }

private:
    QTemporaryDir dati;
};

PROVA_CON_FINESTRE(TstAiuto)

#include "tst_aiuto.moc"
