#pragma once

#include "db/storia/storia.h"

// Annullare e ripetere i passi di un archivio, annunciandolo come ogni altro lavoro.
namespace modTarvola
{

// Annulla, dall'ultimo, i passi fino a quello dato compreso; se è già annullato ripete, dal primo,
// gli annullati fino a quello dato compreso. O tutti, o nessuno. Ciò che altri hanno cambiato dopo
// senza lasciarne un passo non si sovrascrive: se un record non è più come il passo lo aveva
// lasciato lancia storia::Impedimento, e tutto resta com'era. Lancia ado::Errore, con la causa
// Interrotto se `procede` rende falso. La connessione non deve avere scritture in corso.
void riprendeFino(ado::Connection &connessione, const storia::Passo &passo,
                  const std::function<bool()> &procede = {});

} // namespace modTarvola
