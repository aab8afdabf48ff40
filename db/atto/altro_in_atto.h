#pragma once

#include "db/atto/scheda_atto.h"

// Ciò che un atto contiene e la sua pagina non mostra.
namespace modTarvola
{

struct AltroRecord {
    QString codice;
    int genere = 0; // di Traduzioni
    QString testo;  // di che cosa e di chi si tratta
};

// Gli eventi e i testi senza casella, i file, chi ha trascritto, quanto appartiene alle persone,
// alle famiglie e agli eventi dell'atto. `colonna` è quella delle etichette. Lancia ado::Errore.
QList<AltroRecord> altroInAtto(ado::Connection &connessione, const QString &colonna,
                               const scheda::SchedaAtto &atto);

} // namespace modTarvola
