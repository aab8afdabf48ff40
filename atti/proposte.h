#pragma once

#include "db/atto/scheda_atto.h"

#include <utility>

// Ciò che di un atto si sa prima di scriverlo.
namespace proposte
{

using Proposta = std::pair<modTarvola::scheda::Indirizzo, QVariant>;

// Ciò con cui un atto nuovo comincia, dato quello che lo precede nel registro.
QList<Proposta> diUnAttoNuovo(const modTarvola::scheda::Scheda &scheda,
                              const modTarvola::Atto &precedente);

// Le caselle che prendono il valore di quella data, appena la si scrive.
QList<modTarvola::scheda::Indirizzo> derivate(const modTarvola::scheda::Scheda &scheda,
                                              const modTarvola::scheda::Indirizzo &da);

} // namespace proposte
