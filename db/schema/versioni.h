#pragma once

#include "platform/motore/ado.h"

#include <span>

// Il passaggio degli archivi da una versione dello schema alla successiva.
namespace modTarvola
{

// Le istruzioni che portano lo schema dalla versione precedente a questa.
struct Passaggio {
    int versione;
    std::span<const char *const> istruzioni;
};

// La versione dello schema del file.
int versioneDi(ado::Connection &connessione);

// Porta il file alla versione data, passando per ognuna delle versioni di mezzo, in una transazione
// sola: o tutta o niente. Non fa nulla se il file vi è già. Lancia ado::Errore, con la causa
// VersioneNuova se il file è di una versione più nuova.
void portaAllaVersione(ado::Connection &connessione, std::span<const Passaggio> passaggi,
                       int versione);

// Lancia ado::Errore, con la causa VersioneNuova, se il file è più nuovo della versione data.
void rifiutaPiuNuovo(ado::Connection &connessione, int versione);

} // namespace modTarvola
