#pragma once

#include <QString>
#include <QWidget>

// I file che stanno dentro l'archivio.
namespace modTarvola
{

// Fa scegliere un file e lo aggiunge, col suo nome senza cartella, al proprietario. Falso se non se
// n'è scelto nessuno, si è annullato o, dopo un messaggio, è troppo grande. Lancia ado::Errore se
// il file non si può leggere o l'archivio non lo accetta: allora non è aggiunto nulla.
bool NuovoAllegato(QWidget *sopra, const QString &proprietario, int genere);

// Scrive il file del codice in una cartella, di solito la cartella File dell'applicazione,
// chiedendo se c'è già, e lo apre col programma del desktop. Non scrive mai sopra il programma, il
// modello o un archivio. Lancia ado::Errore se l'archivio non si può leggere o il file non si può
// scrivere.
QString cartellaDeiFile();
void ApriAllegato(QWidget *sopra, const QString &codice,
                  const QString &cartella = cartellaDeiFile());

} // namespace modTarvola
