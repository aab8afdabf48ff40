#pragma once

#include <QStringList>

// I numeri in lettere, come li scrissero parroci e ufficiali di stato civile. Ogni funzione rende
// più grafie dello stesso numero, sempre tutte e sempre nello stesso ordine (anche quando due sono
// uguali), in minuscole: chi legge un registro riconosce quella del suo scrivano dal posto.
// Fuori dai limiti detti rendono una lista vuota.
namespace numeri
{

// Da 0 a 9999: "diciotto", "dieciotto", "dieci otto"… Sotto il mille una parola sola, salvo le
// grafie che dividono.
QStringList italiano(int numero);
// Le ore e ciò che si conta al femminile: "una", "ventuna".
QStringList italianoFemminile(int numero);
// Da 1000 a 1999: "mille ottocento trentasette", "milleottocentotrentasette"…
QStringList annoItaliano(int anno);
// Gli ordinali italiani fino a 31, con la desinenza data ("o", "a"): "primo", "vigesimo primo".
QStringList ordinaleItaliano(int numero, const QString &desinenza);

// I cardinali latini da 1 a 1999, al nominativo: "triginta quinque".
QStringList latino(int numero);
// Gli ordinali latini da 1 a 1999 con la desinenza data ("us", "a", "o", "i", "ae", "um"):
// "duodecima", "millesimo octingentesimo trigesimo septimo".
QStringList ordinaleLatino(int numero, const QString &desinenza);

// I cardinali francesi da 0 a 1999 ("mil huit cent trente-sept") e tedeschi ("siebenunddreißig").
QStringList francese(int numero);
QStringList tedesco(int numero);
// Gli ordinali tedeschi fino a 31 con la desinenza data ("en", "e", "er").
QStringList ordinaleTedesco(int numero, const QString &desinenza);

// Il numero romano e le sue grafie: "XVIIII", "xviij".
QStringList romano(int numero);

} // namespace numeri
