#include "db/lavoro/binari.h"
#include "db/schema/generi.h"
#include "platform/disco/prudenza.h"
#include "platform/disco/shell.h"
#include "prova_editori.h"
#include "texts/allegati.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QRandomGenerator>

#include <sqlite3.h>

namespace
{

// Ascolta che cosa si chiede al desktop di aprire.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop() { QDesktopServices::setUrlHandler(u"file"_s, this, "apre"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(u"file"_s); }
    QStringList aperti;

public slots:
    void apre(const QUrl &indirizzo) { aperti << indirizzo.toLocalFile(); }
};

} // namespace

class TstAllegati : public QObject, private ProvaEditori
{
    Q_OBJECT

    QString m_fuori;

    QString crea(const QString &nome, const QByteArray &byte) const
    {
        scrive(archivio->accanto(nome), byte);
        return archivio->accanto(nome);
    }

    void sceglie(const QString &percorso)
    {
        persona->poi([percorso](QWidget *finestra) {
            auto *dialogo = qobject_cast<QFileDialog *>(finestra);
            QVERIFY(dialogo != nullptr);
            QCOMPARE(dialogo->windowTitle(), u"Seleziona un file"_s);
            auto *nome = parte<QLineEdit>(dialogo, u"fileNameEdit"_s);
            nome->setText(percorso);
            QTest::keyClick(nome, Qt::Key_Return);
        });
    }

    // Allega il file come farebbe una persona; rende ciò che rende il comando.
    bool allega(const QString &percorso)
    {
        sceglie(percorso);
        return NuovoAllegato(nullptr, u"V1"_s, FileAllegato);
    }

    // Il messaggio che l'apertura mostra; vuoto se non ne mostra.
    static QString erroreAprendo(const QString &codice)
    {
        return errore([&] { ApriAllegato(nullptr, codice); }).testo();
    }

    QString sovrascrivere(const QString &nome) const
    {
        return u"Il file "_s + nome + u"\nè già presente nella cartella "_s + m_fuori +
               u"/\nSi per sovrascriverlo No per aprire il file esistente"_s;
    }

private slots:
    void init()
    {
        comincia();
        m_fuori = shell::cartellaApplicazione() + u"/File"_s;
        QDir(m_fuori).removeRecursively();
    }
    void cleanup()
    {
        QDir(m_fuori).removeRecursively();
        QVERIFY(persona->finita());
        finisce();
    }

    void andataERitorno_data()
    {
        QTest::addColumn<int>("byte");
        QTest::newRow("vuoto") << 0;
        QTest::newRow("un pezzo esatto") << (1 << 20);
        QTest::newRow("cinque megabyte e mezzo") << (11 << 19) + 7;
    }
    void andataERitorno()
    {
        QFETCH(int, byte);
        QByteArray contenuto(byte, Qt::Uninitialized);
        QRandomGenerator caso(7);
        for (char &uno : contenuto)
            uno = static_cast<char>(caso.bounded(256));
        const QString origine = crea(u"Scansione 1ª – è.jpg"_s, contenuto);
        QVERIFY(allega(origine));
        QCOMPARE(lette(u"SELECT Codice, Tipo, IdProprietario, Nome, typeof(Campolungo), "
                       "length(Campolungo) FROM Binari"_s),
                 u"B1;14;V1;Scansione 1ª – è.jpg;blob;%1"_s.arg(byte));
        QFile::remove(origine);
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"b1"_s), QString());
        const QString scritto = m_fuori + u"/Scansione 1ª – è.jpg"_s;
        QCOMPARE(desktop.aperti, QStringList{scritto});
        QVERIFY(byteDi(scritto) == contenuto);
        QCOMPARE(QDir(m_fuori).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void sceltaAnnullata()
    {
        poi([](QWidget *) {});
        QVERIFY(!NuovoAllegato(nullptr, u"V1"_s, FileAllegato));
        QCOMPARE(righe(u"Binari"_s), 0);
    }

    // Fra gli allegati anche un archivio è un file come gli altri.
    void sovrascrittura()
    {
        const QString nome = u"vecchio.tvd"_s;
        QVERIFY(allega(crea(nome, "primo")));
        QVERIFY(allega(crea(nome, "secondo")));
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"B1"_s), QString());
        const QString scritto = m_fuori + u'/' + nome;
        for (const bool si : {false, true}) {
            persona->domanda(sovrascrivere(nome), si, QMessageBox::NoIcon, QMessageBox::No);
            QCOMPARE(erroreAprendo(u"B2"_s), QString());
            QCOMPARE(byteDi(scritto), si ? "secondo"_ba : "primo"_ba);
        }
        QCOMPARE(desktop.aperti, (QStringList{scritto, scritto, scritto}));
    }

    void nomi_data()
    {
        colonneDiTesto({"nome", "suDisco"});
        riga("risalita", {"../../fuori.jpg", "fuori.jpg"});
        riga("solo cartella", {"cartella/", "B1"});
        riga("punti", {"x/..", "B1"});
        riga("nascosto", {"..-.profilo", "profilo"});
        riga("un'opzione", {"--help", "help"});
        riga("in fondo", {" atto.txt. . ", "atto.txt"});
        riga("letto al contrario", {"foto\u202egpj.txt\u200b", "fotogpj.txt"});
        riga("a capo", {"atto\n\t.txt", "atto.txt"});
        riga("del programma", {"QT.conf", "QT.conf.allegato"});
        riga("modello", {"C:\\a\\Tarvola.MOD", "Tarvola.MOD.allegato"});
        riga("giornale", {"vecchio.tvd-wal", "vecchio.tvd-wal.allegato"});
        const QString lungo = QString(300, u'è');
        QTest::newRow("lungo") << lungo + u".pdf"_s << lungo.left(98) + u".pdf"_s;
    }
    void nomi()
    {
        QFETCH(QString, nome);
        QVERIFY(allega(crea(u"a"_s, "byte")));
        esegui(u"UPDATE Binari SET Nome = ?"_s, {nome});
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"B1"_s), QString());
        QTEST(QDir(m_fuori).entryList(QDir::Files | QDir::Hidden).join(u'|'), "suDisco");
    }

    // Ciò che il desktop eseguirebbe si mostra nella sua cartella, qualunque nome abbia.
    void programmi_data()
    {
        QTest::addColumn<QString>("nome");
        QTest::addColumn<QByteArray>("byte");
        QTest::addColumn<bool>("programma");
        const QByteArray elf = "\x7f"
                               "ELF\x02\x01\x01";
        for (const char *nome : {"a.desktop", "a.SH", "a.exe.", "a.AppImage ", "a.jar", "a.py",
                                 "a.pm", "a.\u202ejs", "a.desktop\u200b", "foto.jpg.bat"})
            QTest::newRow(nome) << QString::fromUtf8(nome) << "byte"_ba << true;
        QTest::newRow("ELF") << u"scan.jpg"_s << elf << true;
        QTest::newRow("MZ") << u"atto.pdf"_s << "MZ\x90"_ba << true;
        QTest::newRow("#!") << u"nota"_s << "#!/bin/sh\n"_ba << true;
        QTest::newRow("voce") << u"nota.txt"_s << "# a\n[Desktop Entry]\nExec=a\n"_ba << true;
        QTest::newRow("immagine") << u"scan.jpg"_s << "\xff\xd8\xff\xe0\0\x10JFIF"_ba << false;
        QTest::newRow("testo") << u"atto"_s << "Die 4 martii #! MZ"_ba << false;
        QTest::newRow("archivio") << u"a.tvd"_s << "SQLite format 3"_ba << false;
    }
    void programmi()
    {
        QFETCH(QString, nome);
        QFETCH(QByteArray, byte);
        QFETCH(bool, programma);
        QVERIFY(allega(crea(u"a"_s, byte)));
        esegui(u"UPDATE Binari SET Nome = ?"_s, {nome});
        const auto detto = [&](const QString &suDisco) {
            return u"Il file "_s + suDisco +
                   u"\nè un programma, o ne avvia uno: non viene aperto, ma mostrato nella "
                   "cartella\n"_s +
                   m_fuori;
        };
        const QString suDisco = prudenza::nomeInnocuo(nome);
        const QString scritto = m_fuori + u'/' + suDisco;
        Desktop desktop;
        for (const bool ancora : {false, true}) {
            if (ancora) {
                // Chi l'aveva reso eseguibile non lo ritrova tale.
                QVERIFY(QFile::setPermissions(scritto, QFile::ReadOwner | QFile::WriteOwner |
                                                           QFile::ExeOwner));
                persona->domanda(sovrascrivere(suDisco), true, QMessageBox::NoIcon,
                                 QMessageBox::No);
            }
            if (programma)
                persona->avviso(detto(suDisco));
            QCOMPARE(erroreAprendo(u"B1"_s), QString());
            QVERIFY(!QFileInfo(scritto).isExecutable());
            QCOMPARE(desktop.aperti.takeLast(), programma ? m_fuori : scritto);
        }
    }

    // Dalla copia di un archivio allegato ci si può lavorare: non la si perde.
    void archivioAperto()
    {
        QVERIFY(allega(crea(u"a.tvd"_s, byteDi(archivio->percorso()))));
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"B1"_s), QString());
        ApriArchivio(m_fuori + u"/a.tvd"_s);
        ApriArchivio(archivio->percorso());
        persona->domanda(sovrascrivere(u"a.tvd"_s), true, QMessageBox::NoIcon, QMessageBox::No);
        QVERIFY(erroreAprendo(u"B1"_s).contains(u"è aperto"_s));
    }

    void contenutoNull()
    {
        esegui(u"INSERT INTO Binari (Codice, Tipo, Nome) VALUES ('B1', 14, 'n')"_s);
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"B1"_s), QString());
        QCOMPARE(QFileInfo(m_fuori + u"/n"_s).size(), 0);
        QVERIFY(erroreAprendo(u"B2"_s).contains(u"non esiste più"_s));
    }

    // La memoria del processo si apre come un file ma dall'inizio non si lascia leggere.
    void nonLeggibile()
    {
        const QString detto = errore([&] { allega(u"/proc/self/mem"_s); }).testo();
        QVERIFY2(detto.startsWith(u"il file /proc/self/mem non può essere letto"_s),
                 qUtf8Printable(detto));
        QCOMPARE(righe(u"Binari"_s), 0);
    }

    void cartellaImpossibile()
    {
        QVERIFY(allega(crea(u"a"_s, "byte")));
        QFile occupa(m_fuori);
        QVERIFY(occupa.open(QIODevice::WriteOnly));
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"B1"_s), u"la cartella %1/ non si può creare"_s.arg(m_fuori));
        occupa.remove();
        // Al posto del file c'è una cartella: non vi si può scrivere, e nulla resta a metà.
        QVERIFY(QDir().mkpath(m_fuori + u"/a"_s));
        persona->domanda(sovrascrivere(u"a"_s), true, QMessageBox::NoIcon, QMessageBox::No);
        QVERIFY(erroreAprendo(u"B1"_s).contains(u"non può essere scritto"_s));
        QCOMPARE(QDir(m_fuori).entryList(QDir::Files | QDir::Hidden), QStringList());
        QCOMPARE(desktop.aperti, QStringList());
    }

    void troppoGrande()
    {
        ado::lunghezzaMassima(connessione(), 1'000'000);
        sceglie(crea(u"grande"_s, QByteArray(1'000'001, 'x')));
        persona->avviso(u"Il file è troppo grande: si possono allegare file fino a 934 kB"_s);
        QVERIFY(!NuovoAllegato(nullptr, u"V1"_s, FileAllegato));
        QVERIFY(allega(crea(u"giusto"_s, QByteArray(900'000, 'x'))));
        QCOMPARE(lette(u"SELECT Nome FROM Binari"_s), u"giusto"_s);
    }

    // Il motore che non può più crescere è come un disco pieno: nessuna riga resta a metà.
    void archivioPieno()
    {
        const auto pagine = legge(u"PRAGMA page_count"_s).toInt();
        esegui(u"PRAGMA max_page_count = %1"_s.arg(pagine + 8));
        const QString percorso = crea(u"grande"_s, QByteArray(1 << 20, 'x'));
        QCOMPARE(errore([&] { allega(percorso); }).causa(), ado::Causa::DiscoPieno);
        QVERIFY(!connessione().inTransazione());
        QCOMPARE(righe(u"Binari"_s), 0);
        QCOMPARE(legge(u"PRAGMA page_count"_s).toInt(), pagine);
    }

    // Chi annulla lascia tutto com'era: un file lungo si vede subito arrivare.
    void annullato()
    {
        QFile lungo(crea(u"lungo"_s, {}));
        QVERIFY(lungo.resize((qint64{64} << 20) + 1));
        persona->lasciaLavorare = false;
        sceglie(lungo.fileName());
        persona->poi([](QWidget *finestra) {
            QCOMPARE(finestra->objectName(), u"Avanzamento"_s);
            QTest::mouseClick(finestra->findChild<QPushButton *>(), Qt::LeftButton);
        });
        QVERIFY(!NuovoAllegato(nullptr, u"V1"_s, FileAllegato));
        QVERIFY(!connessione().inTransazione());
        QCOMPARE(righe(u"Binari"_s), 0);
    }

    void flussoNeiLimiti()
    {
        {
            Lavoro lavoro(connessione());
            auto flusso = aggiungeFile(lavoro, {FileAllegato, u"V1"_s, u"n"_s, 4});
            flusso->Write("ab");
            flusso->Write("cd");
            QVERIFY_THROWS_EXCEPTION(ado::Errore, flusso->Write("e"));
            flusso.reset();
            lavoro.conferma();
        }
        auto flusso = contenutoDiFile(connessione(), u"B1"_s);
        QCOMPARE(flusso->Read(3), "abc"_ba);
        QCOMPARE(flusso->Read(3), "d"_ba);
        QCOMPARE(flusso->Read(3), QByteArray());
        // Una riga cambiata sotto il flusso non dà byte di un'altra.
        esegui(u"UPDATE Binari SET Campolungo = x'00'"_s);
        QVERIFY_THROWS_EXCEPTION(ado::Errore, contenutoDiFile(connessione(), u"B1"_s)->Write("a"));
    }
};

PROVA_CON_FINESTRE(TstAllegati)

#include "tst_allegati.moc"
