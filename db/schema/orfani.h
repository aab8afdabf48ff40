#pragma once

#include "db/schema/tabelle.h"
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

// Le istruzioni che fanno le due tavole e le regole che le tengono; le righe che già ci sono non
// ne restano annotate.
QStringList istruzioniDiSorveglianza();
// Annota ciò che è già nel file; legge tutte le tabelle.
void annotaTutto(ado::Connection &connessione);

// "NOT EXISTS (…) AND NOT EXISTS (…)": ciò che la colonna di quella riga nomina non c'è.
QString senzaProprietario(QStringView riga, const catalogo::Colonna &colonna);
// La stessa forma: nessuna coppia sostiene la riga della tabella.
QString senzaCoppie(const catalogo::Tabella &tabella);

} // namespace modTarvola
