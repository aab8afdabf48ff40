#pragma once

#include "atti/fmScheda.h"

// Apre il record del codice nell'editore suo, con il file, l'operatore e il blocco della pagina. Un
// codice senza editore non apre nulla. Lancia ado::Errore se non si può leggere.
void apreNelSuoEditore(QWidget *sopra, const ProprietaScheda &pagina, const QString &codice);
