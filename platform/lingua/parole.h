#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

// Le parole di un testo italiano, come le vuole un controllo ortografico.
namespace parole
{

// Una parola: dove comincia e quanto è lunga, in unità UTF-16.
struct Parola {
    qsizetype inizio = 0;
    qsizetype lunghezza = 0;
};

// La prima parola che comincia al posto dato o dopo; niente se non ce n'è più. Una parola è fatta
// di lettere, con gli accenti anche scomposti, e degli apostrofi che tiene in mezzo ("dell'anno") o
// in fondo ("po'", "de'"); l'apostrofo che chiude una parola fra virgolette semplici non è suo. Ciò
// che contiene cifre, le lettere sole e i numeri romani in maiuscolo non sono parole.
std::optional<Parola> prossima(QStringView testo, qsizetype da);

// I pezzi di una parola con apostrofi: "dell'anno" dà "dell'" e "anno". Una parola sola se non ha
// apostrofi in mezzo.
std::vector<Parola> pezzi(QStringView testo, const Parola &parola);

// Vero per ' e per ’.
bool eApostrofo(QChar carattere);

// Da dove a dove va la frase che contiene la parola.
Parola frase(const QString &testo, const Parola &parola);

} // namespace parole
