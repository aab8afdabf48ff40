#pragma once

#include "platform/motore/ado.h"

#include <QRandomGenerator>

// Un archivio d'atti come ne hanno lasciati, negli anni, altri programmi e altre mani.
namespace attiStrani
{

// Riempie l'archivio con almeno tante persone quante dette: coppie scritte nei due versi, più
// famiglie o nessuna, famiglie e persone di altri atti, eventi che la pagina non ha, più testi e
// file, operatori, legami con ciò che non c'è più, ruoli e sessi che si contraddicono, codici in
// minuscolo, e in ogni colonna valori che nessuna casella scriverebbe. Lo stesso seme, lo stesso
// archivio.
void riempie(ado::Connection &connessione, int persone, quint32 seme);

} // namespace attiStrani
