#pragma once

#include <QString>
#include <QStringView>

#include <optional>

// Date, ore e numeri come li scrive chi legge in italiano, e il confronto dei testi dell'archivio.
//
// Nell'archivio una data è il testo "AAAA-MM-GG" o, con l'ora, "AAAA-MM-GG HH:MM:SS" (ISO 8601,
// calendario gregoriano esteso all'indietro, anni da 0100 a 9999): così in ordine di testo è anche
// in ordine di tempo. Qui questa forma si dice ISO.
namespace italiano
{

// Legge una data: "4/3/1750", "04 03 1750", "4-3-1750", "4.3.1750", "1° marzo 1750", "4 mar. 1750",
// "1750-03-04", anche con il giorno della settimana davanti, che non viene confrontato con la data.
// I mesi si possono abbreviare fino a tre lettere; l'anno vuole almeno tre cifre.
// Restituisce "AAAA-MM-GG", niente se il testo non è una data.
std::optional<QString> leggiData(QStringView testo);

// Legge un'ora ("10", "10:30", "10.30", "10:30:15"), una data seguita da un'ora, con virgola o
// spazio in mezzo, o una data sola, che vale la sua mezzanotte. Un'ora sola cade nel giorno dato
// (ISO; vuoto o non ISO vale il 30 dicembre 1899).
// Restituisce "AAAA-MM-GG HH:MM:SS", niente se il testo non si riconosce.
std::optional<QString> leggiOra(QStringView testo, QStringView giorno = {});

// Legge un numero di pagina da 0 a 2147483647 ("12", "1.000", "12,5"). I decimali si arrotondano
// all'intero, la metà per eccesso, dopo il controllo dei limiti. Niente se il testo non è un numero
// o è fuori dai limiti.
std::optional<qint64> leggiPagina(QStringView testo);

// Queste mostrano un valore ISO; un testo che non è ISO torna com'è, perché nulla vada perduto.
QString mostraData(QStringView iso);       // "04 03 1750"
QString mostraDataEstesa(QStringView iso); // "4 mar 1750"
QString mostraDataBreve(QStringView iso);  // "04/03/1750", con " 10:30:00" se il valore ha un'ora
QString mostraOra(QStringView iso);        // "mercoledì, 4 mar 1750, 10:30:0"

// Vero se i testi differiscono al più per maiuscole e minuscole (confronto canonico senza caso,
// Unicode, D145). Accenti e spazi contano; "è" composta o scomposta è la stessa.
bool uguali(QStringView a, QStringView b);

// Ordine alfabetico italiano: negativo, zero o positivo. Maiuscole e minuscole sono pari, l'accento
// decide solo a parità del resto, spazi e apostrofi contano. Serve a ordinare: zero non vuol dire
// uguali().
int confronta(QStringView a, QStringView b);

// Data e ora locali di adesso, "AAAA-MM-GG HH:MM:SS".
QString adesso();

} // namespace italiano
