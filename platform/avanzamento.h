#pragma once

#include <QString>
#include <QWidget>

#include <functional>

// L'unica porta delle finestre d'avanzamento.
namespace avanzamento
{

// Con questa il lavoro dice quanto è fatto di quanto; rende falso se chi guarda ha annullato.
using Passo = std::function<bool(qint64 fatto, qint64 totale)>;

// Compie il lavoro, che deve smettere quando il passo rende falso. Se dura più di un momento mostra
// una finestra col titolo e "Annulla", tenendo vivo il programma; nessun'altra finestra intanto
// riceve comandi. Ciò che il lavoro lancia passa a chi chiama. Falso se è stato annullato.
bool compie(QWidget *sopra, const QString &titolo,
            const std::function<void(const Passo &)> &lavoro);

} // namespace avanzamento
