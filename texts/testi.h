#pragma once

#include <QJsonObject>
#include <QString>
#include <QWidget>

// I testi lunghi fra l'archivio e la loro finestra.
namespace modTarvola
{

// Fa scrivere un testo nuovo del genere e lo aggiunge al proprietario. Se torna vuoto non crea
// nulla. Lancia ado::Errore se l'archivio non lo accetta.
void NuovoTesto(QWidget *sopra, const QString &proprietario, int genere, const QString &didascalia);

// Mostra il testo del codice e scrive ciò che è cambiato; falso, dopo un messaggio, se il testo
// torna vuoto: allora nulla è scritto. Con blocco 1 si può solo guardare.
bool ApriTesto(QWidget *sopra, const QString &codice, int blocco, const QString &didascalia);

// Riapre la finestra di un testo come la descrive una sua bozza.
void RiapreTesto(QWidget *sopra, const QJsonObject &come);

} // namespace modTarvola
