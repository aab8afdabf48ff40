#include "db/binari.h"
#include "db/generi.h"
#include "platform/disco/shell.h"
#include "prova_editori.h"
#include "texts/allegati.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
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
    void sovrascrittura_data()
    {
        colonneDiTesto({"nome"});
        riga("testo", {"atto.txt"});
        riga("archivio", {"vecchio.tvd"});
    }
    void sovrascrittura()
    {
        QFETCH(QString, nome);
        QVERIFY(allega(crea(nome, "primo")));
        QVERIFY(allega(crea(nome, "secondo")));
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"B1"_s), QString());
        const QString scritto = m_fuori + u'/' + nome;
        for (const bool si : {false, true}) {
            persona->domanda(sovrascrivere(nome), si);
            QCOMPARE(erroreAprendo(u"B2"_s), QString());
            QCOMPARE(byteDi(scritto), si ? "secondo"_ba : "primo"_ba);
        }
        QCOMPARE(desktop.aperti, (QStringList{scritto, scritto, scritto}));
    }

    void nomiConCartella_data()
    {
        colonneDiTesto({"nome", "suDisco"});
        riga("cartella di Windows", {"C:\\Scansioni\\a.jpg", "a.jpg"});
        riga("risalita", {"../../fuori.jpg", "fuori.jpg"});
        riga("solo cartella", {"cartella/", "B1"});
        riga("punti", {"x/..", "B1"});
        riga("vuoto", {"", "B1"});
    }
    void nomiConCartella()
    {
        QFETCH(QString, nome);
        QVERIFY(allega(crea(u"a"_s, "byte")));
        esegui(u"UPDATE Binari SET Nome = ?"_s, {nome});
        Desktop desktop;
        QCOMPARE(erroreAprendo(u"B1"_s), QString());
        QTEST(QDir(m_fuori).entryList(QDir::Files).join(u'|'), "suDisco");
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
        persona->domanda(sovrascrivere(u"a"_s), true);
        QVERIFY(erroreAprendo(u"B1"_s).contains(u"non può essere scritto"_s));
        QCOMPARE(QDir(m_fuori).entryList(QDir::Files | QDir::Hidden), QStringList());
        QCOMPARE(desktop.aperti, QStringList());
    }

    void troppoGrande()
    {
        sqlite3_limit(connessione().base(), SQLITE_LIMIT_LENGTH, 1'000'000);
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
            ado::Transazione transazione(connessione());
            auto flusso = aggiungeFile(connessione(), {FileAllegato, u"V1"_s, u"n"_s, 4});
            flusso->Write("ab");
            flusso->Write("cd");
            QVERIFY_THROWS_EXCEPTION(ado::Errore, flusso->Write("e"));
            flusso.reset();
            transazione.conferma();
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
