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

// La cartella in cui gli allegati si scrivono per guardarli, con la barra finale.
QString cartellaDeiFile();

// Scrive il file del codice nella cartella File dell'applicazione, chiedendo se c'è già, e lo apre
// col programma del desktop; ciò che il desktop eseguirebbe, dopo un messaggio, lo mostra soltanto
// nella sua cartella. Il nome è quello registrato, senza ciò che inganna chi lo legge, e non è mai
// uno di quelli che il programma cerca per sé. Lancia ado::Errore se l'archivio non si può leggere
// o il file non si può scrivere, o è un archivio aperto.
void ApriAllegato(QWidget *sopra, const QString &codice);

} // namespace modTarvola
