#pragma once

#include "platform/motore/ado.h"

// Il modello da cui nasce ogni archivio nuovo.
namespace modTarvola
{

// Scrive la tavola dei generi, con le etichette italiane e le categorie.
void riempiTraduzioni(ado::Connection &connessione);
// Crea al percorso dato un archivio vuoto; fallisce con Errore se il file esiste.
void creaModello(const QString &percorso);

} // namespace modTarvola
