#include "editors/eliminazione.h"

#include "contesto/contesto.h"
#include "db/connessioni.h"
#include "db/eliminazione.h"
#include "platform/finestre/avanzamento.h"
#include "platform/finestre/messaggi.h"

namespace modTarvola
{

void EliminaVoce(QWidget *sopra, const QString &codice, const QString &operatore)
{
    const QString avvertimento =
        QStringLiteral("Attenzione! Eliminando questa voce saranno, anche, \n"
                       "eliminate TUTTE le voci ad essa collegate. Procedere?\n"
                       "Si consiglia di annullare l'operazione e di effettuare, prima,\n"
                       "un back-up dell'archivio\n") +
        contesto().PercorsoCorrente;
    if (!messaggi::avverte(sopra, avvertimento))
        return;
    try {
        avanzamento::compie(sopra, QStringLiteral("Eliminazione di ") + codice,
                            [&](const avanzamento::Passo &passo) {
                                elimina(connessione(), codice, operatore, passo);
                            });
    } catch (const ado::Errore &errore) {
        // Chi annulla a metà sa che non è stato eliminato nulla.
        if (errore.causa() != ado::Causa::Interrotto)
            throw;
    }
}

} // namespace modTarvola
