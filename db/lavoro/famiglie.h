#pragma once

#include "platform/motore/ado.h"

#include <vector>

// Chi fa parte di una famiglia, e chi vi può entrare.
namespace modTarvola
{

// Vero se il ruolo non si può più aggiungere alla coppia, dati i generi già elencati nella
// famiglia: un ruolo di coppia c'è una volta sola, e accanto alla persona per cui la famiglia è
// nata ce n'è uno solo.
bool ConiugeGiaInserito(const std::vector<int> &inseriti, int ruolo);

// Aggiungono l'individuo alla coppia, o ai figli, della famiglia. Chi c'è già vi resta una volta.
void AggiungiFamigliaConiugi(ado::Connection &connessione, const QString &individuo,
                             const QString &famiglia);
void AggiungiFamigliaGenitori(ado::Connection &connessione, const QString &individuo,
                              const QString &famiglia);

} // namespace modTarvola
