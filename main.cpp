#include "app/avvio.h"
#include "app/MDITras.h"
#include "app/richieste.h"
#include "contesto/cassetto.h"
#include "contesto/comandi.h"
#include "platform/finestre/memoria_finestre.h"

#include <QApplication>
#include <QFileInfo>

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    QStringList richiesti;
    const QStringList argomenti = QApplication::arguments().mid(1);
    for (const QString &argomento : argomenti)
        richiesti.append(QFileInfo(argomento).absoluteFilePath());
    if (!richiesti.isEmpty() && Richieste::affida(richiesti))
        return 0;
    memoria::usaFile(memoria::fileDellUtente());
    comandi::riprende();
    bozze::usaCartella(bozze::cartellaDellUtente());
    MDITras finestra;
    Richieste richieste(&finestra,
                        [&finestra](const QString &percorso) { finestra.apreArchivio(percorso); });
    richieste.ascolta();
    finestra.show();
    richieste.accoda(richiesti);
    return QApplication::exec();
}
