// Apre la vera finestra principale con il visualizzatore di tutti gli individui e dice "pronta"
// appena le prime righe sono disegnate; con "tutte" aspetta tutte le chiavi, con "salta" ordina poi
// per cognome e va in fondo. Alla fine dice la memoria al suo massimo, in MiB.
//   finestra ARCHIVIO prime|tutte|salta [dettagli]

#include "app/avvio.h"
#include "app/MDITras.h"
#include "bench/dipinta.h"
#include "bench/tavola.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/elenchi/elenco.h"

#include <QApplication>
#include <QEventLoop>
#include <QScrollBar>
#include <QTableView>

#include <cstdio>

using namespace modTarvola;

namespace
{

void dice(const char *parola)
{
    std::printf("%s %.2f\n", parola, memoriaMassima());
    std::fflush(stdout);
}

void aspettaTutteLeChiavi(const QTableView *griglia)
{
    for (int prima = -1; prima != griglia->model()->rowCount();) {
        prima = griglia->model()->rowCount();
        QApplication::processEvents();
        QApplication::processEvents();
    }
}

void ordinaESalta(QTableView *griglia)
{
    const Elenco elenco({QStringLiteral("Individui"), 7, false, {}, {}, {}}, connessione());
    elenco.chiaviOrdinate(static_cast<int>(elenco.colonne().indexOf(QStringLiteral("Cognome"))));
    griglia->scrollToBottom();
    QApplication::processEvents();
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
    ProprietaTabella proprieta;
    proprieta.TipoTabella = QStringLiteral("Individui");
    proprieta.Percorso = QString::fromLocal8Bit(argv[1]);
    proprieta.Ordinamento = argc > 3 ? 15 : 7;
    ApriArchivio(proprieta.Percorso);
    contesto().PercorsoCorrente = proprieta.Percorso;
    principale.apre(proprieta);
    auto *griglia = principale.findChild<QTableView *>(QStringLiteral("DataGrid1"));
    QEventLoop attesa;
    new Dipinta(griglia->viewport(), [&attesa] {
        dice("pronta");
        attesa.quit();
    });
    attesa.exec();
    const QByteArray modo = argv[2];
    if (modo == "prime")
        return 0;
    aspettaTutteLeChiavi(griglia);
    if (modo == "salta")
        ordinaESalta(griglia);
    std::printf("righe %d\n", griglia->model()->rowCount());
    dice("fine");
    return 0;
}
