#pragma once

#include <QString>
#include <QWidget>

namespace modTarvola
{

// Avverte, poi elimina il record del codice con tutto ciò che resta senza proprietario. Chi chiama
// rilegge i suoi elenchi in ogni caso. `operatore`, chi lavora in quell'archivio, resta comunque.
// Lancia ado::Errore se l'archivio rifiuta: allora non è eliminato nulla.
void EliminaVoce(QWidget *sopra, const QString &codice, const QString &operatore);

// Avverte, poi toglie il legame del record con l'operatore, che resta con i suoi dati. `entrato` è
// chi lavora in quell'archivio. Lancia ado::Errore se l'archivio rifiuta.
void EliminaLegame(QWidget *sopra, const QString &operatore, const QString &record,
                   const QString &entrato);

} // namespace modTarvola
