#include "app/richieste.h"
#include "platform/finestre/messaggi.h"
#include "prova_principale.h"

#include <QLocalServer>
#include <QProcess>
#include <QPushButton>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

class TstRichieste : public QObject, private ProvaPrincipale
{
    Q_OBJECT

private slots:
    void init()
    {
        comincia();
        servizio = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", servizio->path().toLocal8Bit());
        aperti.clear();
        richieste = std::make_unique<Richieste>(principale.get(), [this](const QString &file) {
            aperti.append(file);
            if (durante)
                durante();
        });
    }
    void cleanup()
    {
        durante = {};
        richieste.reset();
        finisce();
    }

    // Il programma vero affida il file a quello in funzione. La presa di un programma morto non
    // trattiene né chi chiede né chi viene dopo di lui.
    void unAltroProgramma()
    {
        QVERIFY(!Richieste::affida({u"/a.tvd"_s}));
        QVERIFY(richieste->ascolta());
        abbandona(u"1"_s);
        QProcess altro;
        altro.setWorkingDirectory(cartella->path());
        altro.start(QStringLiteral(PROGRAMMA), {u"Duomo di Òrsi.tvd"_s});
        // Chi risponde deve poter girare mentre l'altro aspetta.
        QTRY_COMPARE_WITH_TIMEOUT(altro.state(), QProcess::NotRunning, 30000);
        QCOMPARE(altro.exitStatus(), QProcess::NormalExit);
        QCOMPARE(altro.exitCode(), 0);
        QTRY_COMPARE(aperti, QStringList(percorso(u"Duomo di Òrsi.tvd"_s)));
        QVERIFY(!QFileInfo::exists(servizio->filePath(u"tarvola/1"_s)));
        richieste.reset();
        abbandona(QString::number(QCoreApplication::applicationPid()));
        richieste = std::make_unique<Richieste>(principale.get(), [](const QString &) {});
        QVERIFY(richieste->ascolta());
    }

    void soloLUtente()
    {
        QVERIFY(richieste->ascolta());
        const QFileInfo presa(
            servizio->filePath(u"tarvola/%1"_s.arg(QCoreApplication::applicationPid())));
        QVERIFY(presa.exists());
        QVERIFY(!(presa.permissions() &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther)));
    }

    void aspetta_data()
    {
        QTest::addColumn<bool>("modale");
        QTest::newRow("una finestra modale") << true;
        QTest::newRow("un comando senza finestre") << false;
    }
    // Ciò che è in corso finisce prima, anche se intanto gli eventi girano.
    void aspetta()
    {
        QFETCH(bool, modale);
        bool durava = false;
        const auto lavoro = [&] {
            richieste->accoda({u"/a.tvd"_s, u"/b.tvd"_s});
            QTest::qWait(50);
            durava = aperti.isEmpty();
        };
        if (modale) {
            persona->poi([&](QWidget *finestra) {
                lavoro();
                finestra->close();
            });
            QDialog(principale.get()).exec();
        } else {
            messaggi::protetto(principale.get(), lavoro);
        }
        QVERIFY(durava);
        QTRY_COMPARE(aperti, QStringList({u"/a.tvd"_s, u"/b.tvd"_s}));
    }

    // La seconda richiesta non entra nell'accesso che la prima ha aperto.
    void unaAllaVolta()
    {
        int insieme = 0;
        int massimo = 0;
        durante = [&] {
            massimo = qMax(massimo, ++insieme);
            persona->poi([](QWidget *finestra) {
                QTest::qWait(50);
                finestra->close();
            });
            QDialog(principale.get()).exec();
            --insieme;
        };
        richieste->accoda({u"/a.tvd"_s, u"/b.tvd"_s});
        QTRY_COMPARE(aperti.size(), 2);
        QTRY_VERIFY(persona->finita());
        QCOMPARE(massimo, 1);
    }

    // Come "Apri"; di ciò che non è un file lo dice.
    void comeApri()
    {
        persona->avviso(u"Il file\n"_s + percorso(u"manca.tvd"_s) + u"\nnon esiste"_s);
        principale->apreArchivio(percorso(u"manca.tvd"_s));
        persona->avviso(u"Il file\n"_s + cartella->path() +
                        u"\nnon si può aprire: non è un file"_s);
        principale->apreArchivio(cartella->path());
        QVERIFY(principale->visualizzatori().isEmpty());
        creaModello(percorso(u"a.tvd"_s));
        principale->apreArchivio(percorso(u"a.tvd"_s));
        QCOMPARE(ultimo()->windowTitle(), u"Archivi File "_s + percorso(u"a.tvd"_s));
    }

private:
    // Una presa cui nessuno risponde, la più recente di tutte.
    void abbandona(const QString &nome)
    {
        const QByteArray dove = QFile::encodeName(servizio->filePath(u"tarvola/"_s + nome));
        sockaddr_un indirizzo{};
        indirizzo.sun_family = AF_UNIX;
        QVERIFY(static_cast<size_t>(dove.size()) < sizeof indirizzo.sun_path);
        std::copy(dove.begin(), dove.end(), indirizzo.sun_path);
        const int presa = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QVERIFY(presa >= 0);
        const auto *come = reinterpret_cast<const sockaddr *>(&indirizzo);
        QCOMPARE(::bind(presa, come, sizeof indirizzo), 0);
        QCOMPARE(::close(presa), 0);
        QVERIFY(QFileInfo::exists(QString::fromLocal8Bit(dove)));
    }

    std::unique_ptr<QTemporaryDir> servizio;
    std::unique_ptr<Richieste> richieste;
    std::function<void()> durante;
    QStringList aperti;
};

PROVA_CON_FINESTRE(TstRichieste)

#include "tst_richieste.moc"
