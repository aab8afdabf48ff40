#pragma once

#include <QStringList>

#include <vector>

class QWidget;

// Le colonne della pagina: dopo quella delle etichette ce ne sono otto, uguali in tutte le righe, e
// una casella ne prende una o più.
namespace colonne
{

// Il posto di una casella nella sua riga, che può avere più linee.
struct Posto {
    int linea = 0;
    int prima = 0; // la prima e l'ultima delle colonne che prende
    int ultima = 0;
    bool operator==(const Posto &) const = default;
};

// I posti delle caselle date per nome di campo, nell'ordine in cui si leggono: ognuna nella colonna
// sua o, se è presa, in quelle che seguono; ciò che non vi sta va alla linea dopo.
std::vector<Posto> dispone(const QStringList &campi, bool diEvento);

// Le misure, in punti dello schermo, col carattere della finestra data.
int etichetta(const QWidget *sopra);       // la colonna delle etichette, con il suo margine
int larghezzaMinima(const QWidget *sopra); // sotto cui una riga taglierebbe le didascalie
// Da dove e per quanto va la casella, in una riga larga così.
struct Tratto {
    int da = 0;
    int largo = 0;
};
Tratto tratto(const Posto &posto, int larghezza, const QWidget *sopra);

} // namespace colonne
