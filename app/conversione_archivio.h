#pragma once

#include <QString>
#include <QWidget>

#include <functional>

// L'apertura di un archivio del formato anteriore: la domanda, la conversione, il resoconto.
// Rende vero se al percorso ora sta l'archivio convertito, e il vecchio file nel Cestino; falso se
// si è rinunciato o non è riuscita, e il motivo è già stato detto: allora il vecchio file è al suo
// posto com'era. `nelCestino` sposta un file nel Cestino e ne rende il percorso nuovo, vuoto se non
// ha potuto.
bool converteArchivio(QWidget *finestra, const QString &percorso,
                      const std::function<QString(const QString &)> &nelCestino);
