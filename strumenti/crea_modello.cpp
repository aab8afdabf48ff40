#include "db/schema/modello.h"

#include <QFile>
#include <QTextStream>

// Crea il modello dei nuovi archivi al percorso dato, al posto di quello che c'era.
int main(int argc, char **argv)
{
    QTextStream errori(stderr);
    if (argc != 2) {
        errori << "uso: crea_modello PERCORSO\n";
        return 2;
    }
    const QString percorso = QString::fromLocal8Bit(argv[1]);
    try {
        QFile::remove(percorso);
        modTarvola::creaModello(percorso);
    } catch (const ado::Errore &errore) {
        errori << percorso << ": " << errore.testo() << '\n';
        return 1;
    }
    return 0;
}
