#include "db/annunci.h"

#include <algorithm>

namespace modTarvola
{

bool Annuncio::rinnova(const QString &tabella) const
{
    return std::any_of(cambiamenti.begin(), cambiamenti.end(), [&](const Cambiamento &uno) {
        return uno.specie != Cambiamento::Cambiato && uno.tabella == tabella;
    });
}

Annunci &annunci()
{
    static Annunci soli;
    return soli;
}

} // namespace modTarvola
