#pragma once

#include "db/atto/abitudini.h"
#include "db/atto/coppie.h"
#include "db/atto/scheda_atto.h"

#include <utility>

// Ciò che di un atto si sa prima di scriverlo.
namespace proposte
{

using Proposta = std::pair<modTarvola::scheda::Indirizzo, QVariant>;

// Ciò con cui un atto nuovo comincia, dato quello che lo precede nel registro.
QList<Proposta> diUnAttoNuovo(const modTarvola::scheda::Scheda &scheda,
                              const modTarvola::Atto &precedente);

// Ciò che viene dal valore appena scritto in una casella: le altre date, secondo le abitudini del
// registro, e il cognome che padre e figlio hanno in comune.
QList<Proposta> derivate(const modTarvola::scheda::Scheda &scheda,
                         const modTarvola::scheda::Indirizzo &da, const QVariant &valore,
                         const modTarvola::Abitudini &abitudini);

// Le caselle che una coppia già nota riempie, se il posto dato è quello del marito: di lui ciò che
// resta vero, di lei tutto, e il luogo dove nacque l'altro figlio. Della coppia che non c'è i
// valori sono vuoti.
QList<Proposta> diCoppia(const modTarvola::scheda::Scheda &scheda, const QString &marito,
                         const std::optional<modTarvola::CoppiaNota> &coppia);

} // namespace proposte
