#include "db/lavoro/annunci.h"

#include <algorithm>

namespace modTarvola
{

bool Annuncio::dice(Cambiamento::Specie specie, const QString &tabella) const
{
    return std::any_of(cambiamenti.begin(), cambiamenti.end(), [&](const Cambiamento &uno) {
        return uno.specie == specie && uno.tabella == tabella;
    });
}

Annunci &annunci()
{
    static Annunci soli;
    return soli;
}

} // namespace modTarvola
