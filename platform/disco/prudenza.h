#pragma once

#include <QString>

// Ciò che si guarda di un file venuto da altri, prima di scriverlo e di darlo al desktop.
namespace prudenza
{

// L'ultima parte di un percorso, resa un nome che si legge com'è e che nessuno fraintende: senza
// caratteri invisibili o che invertono la lettura, senza punti, trattini e spazi all'inizio né
// punti e spazi in fondo, corta quanto ogni disco accetta, con la sua estensione. Vuota se non ne
// resta nulla.
QString nomeInnocuo(const QString &percorso);
// Vero se il desktop, aprendo il file, può eseguirlo o installarlo invece di mostrarlo: lo dicono
// il nome, i primi byte o il tipo che ne risulta. Vero anche se non si legge.
bool siEsegue(const QString &percorso);

} // namespace prudenza
