// Apre la vera finestra principale con il visualizzatore di tutti gli individui e dice "pronta"
// appena le prime righe sono disegnate; con "tutte" aspetta tutte le chiavi, con "salta" ordina poi
// per cognome e va in fondo. Alla fine dice la memoria al suo massimo, in KiB.
//   finestra ARCHIVIO prime|tutte|salta [dettagli]

#include "app/avvio.h"
#include "app/contesto.h"
#include "app/MDITras.h"
#include "bench/dipinta.h"
#include "db/connessioni.h"
#include "db/elenco.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QScrollBar>
#include <QTableView>

#include <cstdio>

using namespace modTarvola;

namespace
{

QByteArray memoriaMassima()
{
    QFile stato(QStringLiteral("/proc/self/status"));
    if (!stato.open(QIODevice::ReadOnly))
        return "?";
    for (const QByteArray &riga : stato.readAll().split('\n')) {
        if (riga.startsWith("VmHWM:"))
            return riga.mid(6).simplified().split(' ').value(0);
    }
    return "?";
}

void dice(const char *parola)
{
    std::printf("%s %s\n", parola, memoriaMassima().constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    if (argc < 3)
        return 2;
    preparaApplicazione(applicazione);
    MDITras principale;
    principale.resize(1200, 700);
    principale.show();
    const QString percorso = QString::fromLocal8Bit(argv[1]);
    const QByteArray modo = argv[2];
    ApriArchivio(percorso);
    contesto().PercorsoCorrente = percorso;
    ProprietaTabella proprieta;
    proprieta.TipoTabella = QStringLiteral("Individui");
    proprieta.Percorso = percorso;
    proprieta.Ordinamento = argc > 3 ? 15 : 7;
    principale.apre(proprieta);
    auto *griglia = principale.findChild<QTableView *>(QStringLiteral("DataGrid1"));
    QEventLoop attesa;
    new Dipinta(griglia->viewport(), [&attesa] {
        dice("pronta");
        attesa.quit();
    });
    attesa.exec();
    if (modo == "prime")
        return 0;
    for (int prima = -1; prima != griglia->model()->rowCount();) {
        prima = griglia->model()->rowCount();
        QApplication::processEvents();
        QApplication::processEvents();
    }
    if (modo == "salta") {
        Elenco elenco({QStringLiteral("Individui"), 7, false, {}, {}, {}}, connessione());
        elenco.chiaviOrdinate(
            static_cast<int>(elenco.colonne().indexOf(QStringLiteral("Cognome"))));
        griglia->scrollToBottom();
        QApplication::processEvents();
    }
    std::printf("righe %d\n", griglia->model()->rowCount());
    dice("fine");
    return 0;
}
