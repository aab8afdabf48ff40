#pragma once

#include "platform/motore/ado.h"

#include <QStringList>

namespace modTarvola
{

// Elimina il record e, nell'ordine che i proprietari chiedono, ogni riga rimasta senza il suo. Con
// un archivio vanno i suoi registri, con un registro le sue voci. Un codice di lettera sconosciuta
// non elimina nulla. Con un indirizzo o un recapito va solo ciò che era suo: gli operatori che
// restano senza collegamenti li toglie la prossima eliminazione di altro. Tutto in una transazione:
// se lancia ado::Errore non è eliminato nulla. `operatore` è chi sta lavorando: non è mai tolto
// perché senza collegamenti. `avanza`, se data, è chiamata ogni tanto con i passi compiuti e il
// loro totale; se rende falso l'eliminazione è annullata e lancia Errore con la causa Interrotto.
// Rende le tabelle da cui sono sparite righe.
using Avanzata = std::function<bool(int compiuti, int totale)>;
// Chi segue un'eliminazione: prima che spariscano le righe della tabella per cui la condizione
// vale, e quante ne sono sparite.
struct Seguito {
    std::function<void(const QString &tabella, const QString &dove, const QVariantList &valori)>
        prima;
    std::function<void(const QString &tabella, int quante)> dopo;
};
QStringList elimina(ado::Connection &connessione, const QString &codice, const QString &operatore,
                    const Avanzata &avanza = {}, const Seguito &seguito = {});

} // namespace modTarvola
