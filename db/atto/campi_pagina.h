#pragma once

#include "db/atto/scheda.h"
#include "platform/motore/ado.h"

#include <QMap>

#include <tuple>

// Come chi trascrive un registro vuole le caselle della sua pagina: quali si vedono, su quali il
// tabulatore si ferma. Nell'archivio sta ciò che è diverso da come la scheda lo dà; un registro per
// cui non si è scelto nulla non ha righe.
namespace modTarvola::scheda
{

// Una casella della pagina, per tutte le persone di quel posto.
struct Luogo {
    QString posto;
    int evento = 0;
    QString campo;
    bool operator==(const Luogo &) const = default;
    bool operator<(const Luogo &altro) const
    {
        return std::tie(posto, evento, campo) < std::tie(altro.posto, altro.evento, altro.campo);
    }
};

using Scelte = QMap<Luogo, Uso>;

// Le scelte fatte per il registro; ciò che non si capisce non conta. Lancia ado::Errore.
Scelte leggeScelte(ado::Connection &connessione, const QString &registro);
// Mette queste al posto di quelle di prima, tutte o nessuna; vuote tolgono ogni riga. Lancia
// ado::Errore, anche se il registro non c'è più.
void scriveScelte(ado::Connection &connessione, const QString &registro, const Scelte &scelte);

} // namespace modTarvola::scheda
