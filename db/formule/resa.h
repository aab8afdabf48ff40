#pragma once

#include "db/formule/formulario.h"

#include <QStringList>

// Come il valore di una casella può stare in un testo.
namespace modTarvola::formule
{

// Una forma, con tutte le sue grafie: un giorno in lettere, un anno in cifre romane. Le grafie
// hanno lo stesso posto qualunque sia il valore.
struct Resa {
    int forma = 0;
    QStringList grafie;
};

// Le forme che non vengono da un calcolo.
enum Forma { FormaUguale = 0, FormaPrima = 1, FormaUltima = 2, FormaDeclinata = 3, FormeSpeciali };

// Vero se il valore della casella può stare in un testo: non i segni come il sesso, né le note.
bool siScrive(const scheda::Indirizzo &dove);
// Tutte le forme di un valore, tranne quella declinata, che sanno solo gli atti di prima.
QList<Resa> rese(const scheda::Indirizzo &dove, const QString &valore);
// Il giorno di un valore: il suo numero giuliano; 0 se non è una data.
qint64 giornoDi(const QString &valore);

} // namespace modTarvola::formule
