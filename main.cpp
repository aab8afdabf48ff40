#include "app/avvio.h"
#include "app/MDITras.h"
#include "platform/memoria_finestre.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    memoria::usaFile(memoria::fileDellUtente());
    MDITras finestra;
    finestra.show();
    return QApplication::exec();
}
