#pragma once

#include <QStringList>

// Le tabelle di un file il cui schema può essere stato scritto da altri.
namespace ado
{

// I nomi delle colonne che una riga porta con sé nel file, nell'ordine, secondo l'istruzione che ha
// creato la sua tabella; le colonne calcolate quando si leggono non vi stanno. Vuota se
// l'istruzione non crea una tabella. Nulla del file è eseguito.
QStringList colonneScritte(const QByteArray &istruzione);

} // namespace ado
