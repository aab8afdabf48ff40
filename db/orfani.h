#pragma once

#include "platform/motore/ado.h"

// Il registro di chi ha perso il proprietario. Una pulizia che cerchi gli orfani in tutto
// l'archivio lo legge tutto a ogni eliminazione; qui invece l'archivio stesso annota, appena
// accade, quali codici sono scomparsi e quali righe sono nate o rimaste senza proprietario:
//
//   Scomparsi  i record eliminati, le cui righe dipendenti sono da cercare;
//   Orfani     le righe scritte quando il loro proprietario non c'era ("Individui", "Eventi", …),
//              le famiglie senza membri ("Vuote") e gli operatori senza collegamenti ("Soli").
//
// Le annotazioni possono essere di troppo, mai di meno: chi elimina verifica ciascuna riga.
namespace modTarvola
{

// Aggiunge al file le due tavole e le regole che le tengono; le righe che già ci sono non sono
// annotate.
void creaSorveglianza(ado::Connection &connessione);
// Annota ciò che è già nel file; legge tutte le tabelle.
void annotaTutto(ado::Connection &connessione);

} // namespace modTarvola
