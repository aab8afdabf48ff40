#pragma once

#include <QString>
#include <QWidget>

// I file che stanno dentro l'archivio.
namespace modTarvola
{

// Fa scegliere un file e lo aggiunge, col suo nome senza cartella, al proprietario. Falso se non se
// n'è scelto nessuno, si è annullato o, dopo un messaggio, è troppo grande. Lancia ado::Errore se il
// file non si può leggere o l'archivio non lo accetta: allora non è aggiunto nulla.
bool NuovoAllegato(QWidget *sopra, const QString &proprietario, int genere);

// Scrive il file del codice nella cartella File dell'applicazione, chiedendo se c'è già, e lo apre
// col programma del desktop. Lancia ado::Errore se l'archivio non si può leggere.
void ApriAllegato(QWidget *sopra, const QString &codice);

} // namespace modTarvola
