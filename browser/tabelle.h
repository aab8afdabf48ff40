#pragma once

class QMenu;
class fmTabella;

// Il menu Tabelle di un elenco: da ogni voce un elenco di un'altra tabella, nell'ambito che si
// sceglie. È figlio dell'elenco.
QMenu *menuTabelle(fmTabella *elenco);
