#include "app/aiuto.h"
#include "platform/disco/sistema.h"
#include "prova_principale.h"

#include <QMimeDatabase>
#include <QRegularExpression>

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
        desktopCon("echo \"$1\" >> \"$0.presi\"");
        sceglie(u"&Aiuto"_s, u"Home page"_s);
        QTRY_VERIFY(byteDi(percorso(u"xdg-open.presi"_s)).startsWith("https://"));
        // Dal menu di un visualizzatore si arriva allo stesso posto.
        apreEsempio();
        sceglie(u"&Aiuto"_s, u"Scrivi a Tarvola"_s);
        QTRY_COMPARE(byteDi(percorso(u"xdg-open.presi"_s)).count('\n'), 2);
        const QByteArray posta = byteDi(percorso(u"xdg-open.presi"_s)).split('\n').at(1);
        QVERIFY2(
            posta.startsWith("mailto:assistenza@example.org?Subject=Informazioni%20su%20Tarvola"
                             "&Body=Tarvola%20versione%200."),
            posta.constData());
        QVERIFY(posta.contains("%0D%0AMemoria%20fisica%20disponibile%20(KB)%20:%20"));
    }

    // Nessun programma apre i collegamenti, o quello del desktop rifiuta più tardi: lo si dice.
    void senzaProgrammi()
    {
        for (const char *desktop : {"", "/bin/sleep 0.1; exit 3"}) {
            desktopCon(desktop);
            persona->avviso(u"Nessun programma ha aperto la pagina\n"
                            "https://www.example.org/tarvola"_s);
            sceglie(u"&Aiuto"_s, u"Home page"_s);
            persona->avviso(u"Nessun programma di posta ha aperto il messaggio. L'indirizzo è\n"
                            "assistenza@example.org"_s);
            sceglie(u"&Aiuto"_s, u"Scrivi a Tarvola"_s);
        }
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
    // Il solo programma che si trova è quello con cui il desktop apre, se il corpo non è vuoto.
    void desktopCon(const char *corpo) const
    {
        qputenv("PATH", QFile::encodeName(cartella->path()));
        const QString suo = percorso(u"xdg-open"_s);
        QFile::remove(suo);
        if (*corpo == '\0')
            return;
        scrive(suo, "#!/bin/sh\n"_ba + corpo + '\n');
        QVERIFY(QFile::setPermissions(suo, QFile::ReadOwner | QFile::ExeOwner));
    }

    QTemporaryDir dati;
};

PROVA_CON_FINESTRE(TstAiuto)

#include "tst_aiuto.moc"
