#pragma once

#include "platform/disco/provvisorio.h"
#include "platform/motore/ado.h"
#include "platform/riparazione/pagine.h"

#include <functional>

// Le righe di un file danneggiato che ancora si leggono, portate in un file nuovo.
namespace salvataggio
{

// Ciò che si sa delle righe oltre al formato del file.
struct Regole {
    // Vero se una riga che comincia con questi due valori può essere della tabella.
    std::function<bool(const QString &tabella, const pagine::Valore &primo,
                       const pagine::Valore &secondo)>
        adatta;
    // Il codice che una voce d'indice nomina con il suo primo valore; vuoto se non ne nomina.
    std::function<QByteArray(const QString &tabella, const QString &indice,
                             const pagine::Valore &primo)>
        codice;
    // La tabella di coppie cui la coppia deve appartenere, da ciò che già si è salvato; vuota se
    // non si può dire.
    std::function<QString(const pagine::Valore &primo, const pagine::Valore &secondo)> diCoppia;
};

struct Conto {
    QString tabella;
    qint64 salvate = 0;
    qint64 perdute = 0;  // quelle che gli indici nominavano
    bool almeno = false; // altre possono mancare senza che nulla lo dica
};

// Riempie `nuovo`, che ha lo schema e nessuna riga oltre a quelle fisse, e dà un conto per ogni
// tabella. Le righe tengono la loro chiave interna. Lancia ado::Errore se il file non si apre o il
// nuovo non si può scrivere.
QList<Conto> salva(const QString &danneggiato, ado::Connection &nuovo, const Regole &regole,
                   const provvisorio::Passo &passo);

} // namespace salvataggio
