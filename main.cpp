#include "app/avvio.h"
#include "app/MDITras.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    MDITras finestra;
    finestra.show();
    return QApplication::exec();
}
