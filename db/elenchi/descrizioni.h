#pragma once

#include <QString>

namespace ado
{
class Connection;
}

// Le poche parole che distinguono un record dagli altri dello stesso genere.
namespace modTarvola
{

// Di una persona il nome, di una famiglia la coppia, di un evento data e luogo, di un testo il
// titolo e le prime parole, di un file il nome, di indirizzi e recapiti quello che hanno. Vuota se
// il record non c'è, o non ha nulla da dire. Lancia ado::Errore se non si può leggere.
QString descrizione(ado::Connection &connessione, const QString &codice);

} // namespace modTarvola
