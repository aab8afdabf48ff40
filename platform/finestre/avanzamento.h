#pragma once

#include <QString>
#include <QWidget>

#include <functional>

// L'unica porta delle finestre d'avanzamento.
namespace avanzamento
{

// Con questa il lavoro dice quanto è fatto di quanto; rende falso se chi guarda ha annullato.
using Passo = std::function<bool(qint64 fatto, qint64 totale)>;

// La finestra compare se il lavoro dura, o subito: per un lavoro che si sa lungo e che prima del
// primo passo si fa aspettare.
enum class Compare { SeDura, Subito };

// Compie il lavoro, che deve smettere quando il passo rende falso. La finestra ha il titolo e
// "Annulla" e tiene vivo il programma; nessun'altra intanto riceve comandi. Ciò che il lavoro
// lancia passa a chi chiama. Falso se è stato annullato.
bool compie(QWidget *sopra, const QString &titolo, const std::function<void(const Passo &)> &lavoro,
            Compare quando = Compare::SeDura);

} // namespace avanzamento
