#pragma once

#include "platform/motore/ado.h"

#include <QList>
#include <QSet>

// Ciò che chi trascrive non vuole più vedersi proporre. Sta nell'archivio, in una tabella accanto
// alle altre che nasce quando serve.
namespace modTarvola
{

// Una proposta tolta da tutte le caselle di un campo, o, senza testo, una casella intera
// ("padre Cognome") che non propone nulla.
struct PropostaTolta {
    QString dove;
    QString testo;
    bool operator==(const PropostaTolta &) const = default;
};
inline size_t qHash(const PropostaTolta &una, size_t seme = 0)
{
    return qHashMulti(seme, una.dove, una.testo);
}

// Tutte, in ordine; nessuna se l'archivio non ne ha. Lancia ado::Errore se non si legge.
QList<PropostaTolta> proposteTolte(ado::Connection &connessione);
// La aggiunge, o la toglie dall'elenco; lancia ado::Errore se l'archivio non accetta.
void toglieProposta(ado::Connection &connessione, const PropostaTolta &una);
void rimetteProposta(ado::Connection &connessione, const PropostaTolta &una);

} // namespace modTarvola
