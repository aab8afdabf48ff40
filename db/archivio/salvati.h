#pragma once

#include "platform/motore/ado.h"
#include "platform/riparazione/salvataggio.h"

// Il salvataggio di un archivio danneggiato.
namespace modTarvola
{

struct Salvato {
    QList<salvataggio::Conto> mancanti; // delle tabelle da cui manca o può mancare qualcosa
    qint64 senzaProprietario = 0;       // record che la prossima eliminazione toglierebbe
};

// Vero se il file è di un programma più nuovo: il numero di versione lo dice, e nello schema c'è
// qualcosa che questa versione non fa. Un numero alto in uno schema nostro l'ha scritto un guasto.
// Lancia ado::Errore se il file non si legge.
bool diVersioneNuova(const QString &percorso);
// Vero se un file che per quella causa non si apre è un archivio da cui il salvataggio trae
// qualcosa: nel suo schema si riconosce una tabella nostra. Legge poche pagine.
bool siSalverebbe(const QString &percorso, ado::Causa causa);

// Scrive in un file nuovo tutto ciò che dell'archivio ancora si legge. Nel nuovo nessun codice che
// una riga nomina ancora sarà dato a un altro record. Lancia ado::Errore; con la causa
// PasswordErrata se il file ha un'altra password, VersioneNuova se è più nuovo, Danneggiato se non
// se ne legge nulla.
Salvato salvaArchivio(const QString &danneggiato, const QString &nuovo,
                      const provvisorio::Passo &passo);

} // namespace modTarvola
