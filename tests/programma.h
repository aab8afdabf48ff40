#pragma once

#include "app/avvio.h"

#include <QApplication>
#include <QTest>

// Il main di una prova che apre finestre: come QTEST_MAIN, ma l'applicazione è preparata come
// quella del programma.
#define PROVA_CON_FINESTRE(Prova)                                                                  \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        QApplication applicazione(argc, argv);                                                     \
        preparaApplicazione(applicazione);                                                         \
        Prova prova;                                                                               \
        return QTest::qExec(&prova, argc, argv);                                                   \
    }
