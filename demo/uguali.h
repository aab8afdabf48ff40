#pragma once

#include <QStringList>

// Due archivi in cui stanno le stesse cose, scritte per vie diverse.
namespace uguali
{

// Apre i due file e confronta ogni riga di ogni tabella: devono avere gli stessi valori e gli
// stessi legami, quali che siano i codici che li dicono e le ore in cui furono scritti. Rende ciò
// che sta in uno solo dei due, una riga per volta. Lancia ado::Errore se un file non si legge.
QStringList differenze(const QString &uno, const QString &altro);

} // namespace uguali
