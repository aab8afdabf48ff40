#include "app/avvio.h"
#include "app/MDITras.h"
#include "demo/copione.h"
#include "demo/pagine.h"
#include "demo/trascrittore.h"
#include "demo/uguali.h"
#include "demo/verifica.h"
#include "platform/disco/shell.h"
#include "platform/lingua/italiano.h"
#include "platform/motore/ado.h"

#include <QApplication>
#include <QDir>
#include <QTextStream>
#include <QTimer>

#include <chrono>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

// Quanto può durare tutto; e quanto di più se il ciclo degli eventi è fermo.
constexpr auto tempoMassimo = 20min;
constexpr auto proroga = 1min;

QTextStream &uscita()
{
    static QTextStream flusso(stdout);
    return flusso;
}

// L'ultimo clic chiude il programma, e con lui la recita: prima si segna che è finita.
Passo chiude(Mani &mani, bool &finita)
{
    co_await mani.chiudiPrincipale();
    co_await mani.appare(u"fmChiudi"_s);
    co_await mani.fotografa(u"chiudi"_s);
    finita = true;
    co_await mani.chiudi(u"Command1_0"_s);
}

// Recita le scene; se una si guasta lo dice, fotografa lo schermo com'è e lascia il programma.
Passo recita(Copione &copione, Pagine &pagine, Trascrittore &trascrittore, Mani &mani, bool &finita)
{
    try {
        co_await copione.recita();
        co_await pagine.recita();
        co_await trascrittore.recita();
        co_await chiude(mani, finita);
    } catch (const std::exception &guasto) {
        uscita() << "FAILED: " << guasto.what() << Qt::endl;
        mani.salvaImmagine(u"guasto"_s, true);
        QCoreApplication::exit(1);
    }
}

// Dice quante righe ha ogni tabella e che cosa non è come lo si è battuto; vero se nulla.
bool racconta(const QString &percorso, const verifica::Esito &esito)
{
    uscita() << "Records in " << percorso << ":\n";
    for (auto tabella = esito.righe.begin(); tabella != esito.righe.end(); ++tabella) {
        if (tabella.value() > 0)
            uscita() << "  " << tabella.key().leftJustified(20) << tabella.value() << '\n';
    }
    for (const QString &differenza : esito.differenze)
        uscita() << "DIFFERENT: " << differenza << '\n';
    return esito.differenze.isEmpty();
}

// Dice in che cosa gli atti scritti sulla pagina non sono quelli scritti negli editori; vero se in
// nulla.
bool paragona(const QString &editori, const QString &pagine)
{
    const QStringList diverse = uguali::differenze(editori, pagine);
    for (const QString &differenza : diverse)
        uscita() << "DIFFERENT: " << differenza << '\n';
    if (diverse.isEmpty())
        uscita() << "The rows of " << pagine << " are the same, but for codes and times.\n";
    return diverse.isEmpty();
}

bool lavora(const std::vector<esempi::Archivio> &archivi, const QString &cartella)
{
    MDITras finestra;
    finestra.show();
    Mani mani(finestra, cartella);
    Copione copione(mani, archivi, cartella);
    Pagine pagine(mani, archivi, cartella);
    Trascrittore trascrittore(mani, cartella, cartella + u"/testo.png"_s);
    const QString inizio = italiano::adesso();
    bool finita = false;
    Passo passo = recita(copione, pagine, trascrittore, mani, finita);
    QTimer::singleShot(0, qApp, [&passo] { passo.comincia(); });
    QTimer::singleShot(tempoMassimo, qApp, [] {
        uscita() << "FAILED: it takes too long" << Qt::endl;
        QCoreApplication::exit(1);
    });
    if (QApplication::exec() != 0 || !finita || finestra.isVisible())
        return false;

    uscita() << "\nScreenshots: " << mani.fotografie().join(u", "_s) << "\n\n";
    const auto confronta = [&](const QString &percorso, verifica::Tabelle attese) {
        return racconta(percorso,
                        verifica::confronta(percorso, shell::fileDelProgramma(u"tarvola.mod"_s),
                                            std::move(attese), inizio, italiano::adesso()));
    };
    const bool atti =
        confronta(copione.percorso(), verifica::attese(archivi, trascrittoreDegliAtti()));
    const bool pari = paragona(copione.percorso(), pagine.percorso());
    return confronta(trascrittore.percorso(), trascrittore.attese()) && atti && pari;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    if (argc != 2) {
        uscita() << "Usage: dimostrazione FOLDER\n"
                    "Transcribes a few well-known acts into FOLDER/esempi.tvd by keys and clicks\n"
                    "on the program's windows, the same by keys alone on the page of the act into\n"
                    "FOLDER/pagine.tvd, compares the two, registers a transcriber in\n"
                    "FOLDER/trascrittore.tvd, and leaves the windows' screenshots in FOLDER.\n";
        return 2;
    }
    const QString cartella = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    QElapsedTimer orologio;
    orologio.start();
    ::alarm(static_cast<unsigned>(std::chrono::seconds(tempoMassimo + proroga).count()));
    try {
        if (!QDir().mkpath(cartella))
            throw Guasto(u"cannot make the folder "_s + cartella);
        const bool riuscita = lavora(esempi::leggi(), cartella);
        uscita() << (riuscita ? "What was typed stands in the file." : "The demonstration FAILED.")
                 << " It took " << orologio.elapsed() / 1000 << " s.\n";
        return riuscita ? 0 : 1;
    } catch (const ado::Errore &errore) {
        uscita() << "FAILED: " << errore.testo() << '\n';
    } catch (const std::exception &guasto) {
        uscita() << "FAILED: " << guasto.what() << '\n';
    }
    return 1;
}
