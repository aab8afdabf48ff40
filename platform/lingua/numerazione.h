#pragma once

#include <QString>

// La numerazione degli atti, com'è scritta nei registri.
namespace italiano
{

// Il numero che segue, nella stessa forma: "12" → "13", "XII" → "XIII", "12/1813" → "13/1813",
// "12 bis" → "13", "n. 9" → "n. 10". Vuoto se nel testo non c'è un numero.
QString numeroSeguente(const QString &numero);

// Il valore di un numero romano da 1 a 3999 scritto nella forma regolare, senza badare alle
// maiuscole; 0 se non lo è.
int daRomano(QStringView testo);
// Il numero romano da 1 a 3999, in maiuscole; vuoto fuori da questi limiti.
QString romano(int numero);

} // namespace italiano
