#pragma once

#include "db/atto/atto.h"

#include <QHash>

// Ciò che in un registro si ripete da un atto all'altro.
namespace modTarvola
{

// Quanti giorni passano fra le date di un atto, imparato dagli ultimi: il battesimo il giorno
// dell'atto, la sepoltura il giorno dopo la morte.
class Abitudini
{
public:
    // La data dell'atto, accanto ai tipi degli eventi.
    static constexpr int dataDellAtto = 0;

    // Un atto ancora, il più vicino di tutti.
    void impara(const Atto &atto);
    // I giorni che quasi sempre passano dalla data di uno all'altro; niente se non c'è una regola.
    std::optional<int> distanza(int da, int a) const;

private:
    QHash<std::pair<int, int>, QList<int>> m_distanze; // le ultime, in giorni
};

} // namespace modTarvola
