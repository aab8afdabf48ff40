#include "app/avvio.h"
#include "app/contesto.h"
#include "db/binari.h"
#include "db/connessioni.h"
#include "db/generi.h"
#include "db/modello.h"
#include "platform/avanzamento.h"
#include "platform/shell.h"
#include "texts/allegati.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace modTarvola;

namespace
{

template <class Finestra>
void davantiA(const std::function<void(Finestra *)> &gesto)
{
    QTimer::singleShot(0, qApp, [gesto] {
        if (auto *finestra = qobject_cast<Finestra *>(QApplication::activeModalWidget()))
            gesto(finestra);
        else
            davantiA<Finestra>(gesto);
    });
}

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

QByteArray impronta(const QString &percorso)
{
    QFile file(percorso);
    QCryptographicHash conto(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && conto.addData(&file) ? conto.result() : QByteArray();
}

QVariant legge(const QString &testo)
{
    return connessione().valore({testo, {}, {}});
}

} // namespace

class TstAllegati : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { QDir(m_fuori).removeRecursively(); }
    void andataERitorno_data();
    void andataERitorno();
    void nessunFile_data();
    void nessunFile();
    void sovrascrittura_data();
    void sovrascrittura();
    void nomiConCartella_data();
    void nomiConCartella();
    void contenutoNull();
    void nonLeggibile();
    void cartellaImpossibile();
    void troppoGrande();
    void archivioPieno();
    void annullato();
    void flussoNeiLimiti();

private:
    QString crea(const QString &nome, const QByteArray &byte);
    // Allega il file come farebbe una persona; rende ciò che rende il comando.
    bool allega(const QString &percorso);
    // Il messaggio che l'apertura mostra; vuoto se non ne mostra.
    QString erroreAprendo(const QString &codice);

    std::unique_ptr<QTemporaryDir> m_cartella;
    QString m_fuori;
};

void TstAllegati::init()
{
    m_cartella = std::make_unique<QTemporaryDir>();
    m_fuori = shell::cartellaApplicazione() + u"/File"_s;
    QDir(m_fuori).removeRecursively();
    avviaContesto();
    creaModello(m_cartella->filePath(u"prova.tvd"_s));
    ApriArchivio(m_cartella->filePath(u"prova.tvd"_s));
}

QString TstAllegati::crea(const QString &nome, const QByteArray &byte)
{
    QFile file(m_cartella->filePath(nome));
    return file.open(QIODevice::WriteOnly) && file.write(byte) == byte.size() ? file.fileName()
                                                                              : QString();
}

bool TstAllegati::allega(const QString &percorso)
{
    davantiA<QFileDialog>([&](QFileDialog *dialogo) {
        QCOMPARE(dialogo->windowTitle(), u"Seleziona un file"_s);
        dialogo->selectFile(percorso);
        QMetaObject::invokeMethod(dialogo, "accept");
    });
    return NuovoAllegato(nullptr, u"V1"_s, FileAllegato);
}

QString TstAllegati::erroreAprendo(const QString &codice)
{
    try {
        ApriAllegato(nullptr, codice);
    } catch (const ado::Errore &errore) {
        return errore.testo();
    }
    return {};
}

void TstAllegati::andataERitorno_data()
{
    QTest::addColumn<int>("byte");
    QTest::newRow("vuoto") << 0;
    QTest::newRow("uno") << 1;
    QTest::newRow("un pezzo esatto") << (1 << 20);
    QTest::newRow("cinque megabyte e mezzo") << (11 << 19) + 7;
}

void TstAllegati::andataERitorno()
{
    QFETCH(int, byte);
    QByteArray contenuto(byte, Qt::Uninitialized);
    QRandomGenerator caso(7);
    for (char &uno : contenuto)
        uno = static_cast<char>(caso.bounded(256));
    const QString origine = crea(u"Scansione 1ª – è.jpg"_s, contenuto);
    QVERIFY(allega(origine));
    QCOMPARE(legge(u"SELECT Codice||Tipo||IdProprietario||Nome FROM Binari"_s).toString(),
             u"B114V1Scansione 1ª – è.jpg"_s);
    QCOMPARE(legge(u"SELECT typeof(Campolungo)||length(Campolungo) FROM Binari"_s).toString(),
             u"blob%1"_s.arg(byte));
    QFile::remove(origine);
    Desktop desktop;
    QCOMPARE(erroreAprendo(u"b1"_s), QString());
    const QString scritto = m_fuori + u"/Scansione 1ª – è.jpg"_s;
    QCOMPARE(desktop.aperti, QStringList{scritto});
    QCOMPARE(impronta(scritto), QCryptographicHash::hash(contenuto, QCryptographicHash::Sha256));
    QCOMPARE(QDir(m_fuori).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void TstAllegati::nessunFile_data()
{
    QTest::addColumn<bool>("inesistente");
    QTest::newRow("annullato") << false;
    QTest::newRow("inesistente") << true;
}

void TstAllegati::nessunFile()
{
    QFETCH(bool, inesistente);
    davantiA<QFileDialog>([&](QFileDialog *dialogo) {
        if (inesistente) {
            // Il toolkit avverte che il file non c'è e resta aperto.
            davantiA<QMessageBox>([](QMessageBox *scatola) { scatola->accept(); });
            dialogo->selectFile(m_cartella->filePath(u"manca"_s));
            QMetaObject::invokeMethod(dialogo, "accept");
        }
        dialogo->reject();
    });
    QVERIFY(!NuovoAllegato(nullptr, u"V1"_s, FileAllegato));
    QCOMPARE(legge(u"SELECT count(*) FROM Binari"_s).toInt(), 0);
}

// Fra gli allegati anche un archivio è un file come gli altri.
void TstAllegati::sovrascrittura_data()
{
    QTest::addColumn<QString>("nome");
    QTest::newRow("testo") << u"atto.txt"_s;
    QTest::newRow("archivio") << u"vecchio.tvd"_s;
}

void TstAllegati::sovrascrittura()
{
    QFETCH(QString, nome);
    QVERIFY(allega(crea(nome, "primo")));
    QVERIFY(allega(crea(nome, "secondo")));
    Desktop desktop;
    QCOMPARE(erroreAprendo(u"B1"_s), QString());
    const QString scritto = m_fuori + u'/' + nome;
    const QByteArray primo = impronta(scritto);
    for (const bool si : {false, true}) {
        QString domanda;
        davantiA<QMessageBox>([&](QMessageBox *scatola) {
            domanda = scatola->text();
            scatola->button(si ? QMessageBox::Yes : QMessageBox::No)->click();
        });
        QCOMPARE(erroreAprendo(u"B2"_s), QString());
        QCOMPARE(domanda, u"Il file "_s + nome + u"\nè già presente nella cartella "_s + m_fuori +
                              u"/\nSi per sovrascriverlo No per aprire il file esistente"_s);
        QCOMPARE(impronta(scritto) == primo, !si);
    }
    QCOMPARE(desktop.aperti, (QStringList{scritto, scritto, scritto}));
}

void TstAllegati::nomiConCartella_data()
{
    QTest::addColumn<QString>("nome");
    QTest::addColumn<QString>("suDisco");
    QTest::newRow("cartella di Windows") << u"C:\\Scansioni\\a.jpg"_s << u"a.jpg"_s;
    QTest::newRow("risalita") << u"../../fuori.jpg"_s << u"fuori.jpg"_s;
    QTest::newRow("assoluto") << u"/etc/passwd"_s << u"passwd"_s;
    QTest::newRow("solo cartella") << u"cartella/"_s << u"B1"_s;
    QTest::newRow("punti") << u"x/.."_s << u"B1"_s;
    QTest::newRow("vuoto") << QString() << u"B1"_s;
}

void TstAllegati::nomiConCartella()
{
    QFETCH(QString, nome);
    QVERIFY(allega(crea(u"a"_s, "byte")));
    connessione().Execute({u"UPDATE Binari SET Nome = ?"_s, {nome}, {}});
    Desktop desktop;
    QCOMPARE(erroreAprendo(u"B1"_s), QString());
    QTEST(QDir(m_fuori).entryList(QDir::Files).join(u'|'), "suDisco");
}

void TstAllegati::contenutoNull()
{
    connessione().Execute(
        {u"INSERT INTO Binari (Codice, Tipo, Nome) VALUES ('B1', 14, 'n')"_s, {}, {}});
    Desktop desktop;
    QCOMPARE(erroreAprendo(u"B1"_s), QString());
    QCOMPARE(QFileInfo(m_fuori + u"/n"_s).size(), 0);
    QVERIFY(erroreAprendo(u"B2"_s).contains(u"non esiste più"_s));
}

// La memoria del processo si apre come un file ma dall'inizio non si lascia leggere.
void TstAllegati::nonLeggibile()
{
    QString detto;
    try {
        allega(u"/proc/self/mem"_s);
    } catch (const ado::Errore &errore) {
        detto = errore.testo();
    }
    QVERIFY2(detto.startsWith(u"il file /proc/self/mem non può essere letto"_s),
             qUtf8Printable(detto));
    QCOMPARE(legge(u"SELECT count(*) FROM Binari"_s).toInt(), 0);
}

void TstAllegati::cartellaImpossibile()
{
    QVERIFY(allega(crea(u"a"_s, "byte")));
    QFile occupa(m_fuori);
    QVERIFY(occupa.open(QIODevice::WriteOnly));
    Desktop desktop;
    QCOMPARE(erroreAprendo(u"B1"_s), u"la cartella %1/ non si può creare"_s.arg(m_fuori));
    occupa.remove();
    // Al posto del file c'è una cartella: non vi si può scrivere, e nulla resta a metà.
    QVERIFY(QDir().mkpath(m_fuori + u"/a"_s));
    davantiA<QMessageBox>([](QMessageBox *scatola) { scatola->button(QMessageBox::Yes)->click(); });
    QVERIFY(erroreAprendo(u"B1"_s).contains(u"non può essere scritto"_s));
    QCOMPARE(QDir(m_fuori).entryList(QDir::Files | QDir::Hidden), QStringList());
    QCOMPARE(desktop.aperti, QStringList());
}

void TstAllegati::troppoGrande()
{
    sqlite3_limit(connessione().base(), SQLITE_LIMIT_LENGTH, 1'000'000);
    const QString grande = crea(u"grande"_s, QByteArray(1'000'001, 'x'));
    QString detto;
    davantiA<QFileDialog>([&](QFileDialog *dialogo) {
        davantiA<QMessageBox>([&](QMessageBox *scatola) {
            detto = scatola->text();
            scatola->accept();
        });
        dialogo->selectFile(grande);
        QMetaObject::invokeMethod(dialogo, "accept");
    });
    QVERIFY(!NuovoAllegato(nullptr, u"V1"_s, FileAllegato));
    QCOMPARE(detto, u"Il file è troppo grande: l'archivio accetta file fino a 934 kB"_s);
    QVERIFY(allega(crea(u"giusto"_s, QByteArray(900'000, 'x'))));
    QCOMPARE(legge(u"SELECT Nome FROM Binari"_s).toString(), u"giusto"_s);
}

// Il motore che non può più crescere è come un disco pieno: nessuna riga resta a metà.
void TstAllegati::archivioPieno()
{
    const auto pagine = legge(u"PRAGMA page_count"_s).toInt();
    connessione().Execute({u"PRAGMA max_page_count = %1"_s.arg(pagine + 8), {}, {}});
    const QString percorso = crea(u"grande"_s, QByteArray(1 << 20, 'x'));
    ado::Causa causa = ado::Causa::Altro;
    try {
        allega(percorso);
    } catch (const ado::Errore &errore) {
        causa = errore.causa();
    }
    QCOMPARE(causa, ado::Causa::DiscoPieno);
    QVERIFY(!connessione().inTransazione());
    QCOMPARE(legge(u"SELECT count(*) FROM Binari"_s).toInt(), 0);
    QCOMPARE(legge(u"PRAGMA page_count"_s).toInt(), pagine);
}

// Chi annulla lascia tutto com'era: la finestra compare da sé quando il lavoro dura.
void TstAllegati::annullato()
{
    bool vista = false;
    QTimer guarda;
    connect(&guarda, &QTimer::timeout, this, [&] {
        auto *finestra = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
        if (finestra == nullptr || vista)
            return;
        vista = true;
        QTest::mouseClick(finestra->findChild<QPushButton *>(), Qt::LeftButton);
    });
    guarda.start(5);
    int passi = 0;
    const bool finito =
        avanzamento::compie(nullptr, u"Prova"_s, [&](const avanzamento::Passo &passo) {
            while (passo(++passi, 1'000'000) && passi < 100'000)
                QTest::qSleep(1);
        });
    QVERIFY(vista);
    QVERIFY(!finito);
    QVERIFY(passi < 100'000);
}

void TstAllegati::flussoNeiLimiti()
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
    connessione().Execute({u"UPDATE Binari SET Campolungo = x'00'"_s, {}, {}});
    QVERIFY_THROWS_EXCEPTION(ado::Errore, contenutoDiFile(connessione(), u"B1"_s)->Write("a"));
}

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstAllegati prova;
    return QTest::qExec(&prova, argc, argv);
}

#include "tst_allegati.moc"
