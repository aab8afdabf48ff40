#pragma once

#include "platform/motore/ado.h"

#include <QString>
#include <QWidget>

// L'apertura di un archivio del formato anteriore: la domanda, la conversione, il resoconto.
// Rende vero se al percorso ora sta l'archivio convertito, e il vecchio file nel Cestino; falso se
// si è rinunciato o non è riuscita, e il motivo è già stato detto: allora il vecchio file è al suo
// posto com'era. Il file non dev'essere aperto.
bool converteArchivio(QWidget *finestra, const QString &percorso, const QString &cestino);

// Dice perché un file nuovo non ha preso il posto del vecchio; a chi ha annullato non dice nulla.
void riferisceNonSostituito(QWidget *finestra, const QString &percorso, const ado::Errore &errore);
