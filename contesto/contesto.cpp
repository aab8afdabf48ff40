#include "contesto/contesto.h"

#include "contesto/finestre.h"
#include "db/archivio/connessioni.h"

namespace modTarvola
{

Contesto &contesto()
{
    static Contesto solo;
    return solo;
}

void avviaContesto()
{
    FinestreAperte().clear();
    avviaArchivi();
    contesto() = Contesto{};
}

} // namespace modTarvola
