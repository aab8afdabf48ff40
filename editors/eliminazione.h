#pragma once

#include <QString>
#include <QWidget>

namespace modTarvola
{

// Avverte, poi elimina il record del codice con tutto ciò che resta senza proprietario. Chi chiama
// rilegge i suoi elenchi in ogni caso. `operatore`, chi lavora in quell'archivio, resta comunque.
// Lancia ado::Errore se l'archivio rifiuta: allora non è eliminato nulla.
void EliminaVoce(QWidget *sopra, const QString &codice, const QString &operatore);

} // namespace modTarvola
