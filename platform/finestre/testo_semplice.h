#pragma once

#include <QString>

// I testi che vengono da un archivio, da un nome o da un percorso, dove il toolkit leggerebbe segni
// suoi. Nelle etichette e nei suggerimenti provvede lo stile, che li vuole tutti senza formato.
namespace testo_semplice
{

// Il testo come didascalia di una finestra, dove "[*]" sarebbe il segno di ciò che è da salvare.
QString didascalia(const QString &testo);
// La didascalia di una finestra come voce di un menu, dove "&" annuncerebbe una lettera e un
// tabulatore un tasto.
QString voceDi(const QString &didascalia);

} // namespace testo_semplice
