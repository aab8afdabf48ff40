#include "texts/allegati.h"

namespace modTarvola
{

bool NuovoAllegato(QWidget * /*sopra*/, const QString & /*proprietario*/, int /*genere*/)
{
    return false;
}

void ApriAllegato(QWidget * /*sopra*/, const QString & /*codice*/) {}

} // namespace modTarvola
