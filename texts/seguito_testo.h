#pragma once

#include "platform/motore/ado.h"

class fmTxtL;

namespace modTarvola
{

// La finestra propone di continuare il testo riportato di un atto come la pagina dell'atto: dalle
// formule del suo registro, con le caselle dell'atto com'è nel file. Niente se `proprietario` non è
// un atto. Lancia ado::Errore se l'atto non si legge.
void continuaDalRegistro(fmTxtL &finestra, ado::Connection &connessione,
                         const QString &proprietario);

} // namespace modTarvola
