#include "atti/colonne.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QWidget>

#include <algorithm>
#include <array>
#include <numeric>

namespace colonne
{

namespace
{

// Quanto è larga ogni colonna rispetto alle altre.
constexpr std::array<int, 8> pesi{10, 6, 8, 7, 10, 6, 5, 5};
constexpr int colonne = static_cast<int>(pesi.size());
constexpr double pesoMinimo = 1.45; // in lettere: le didascalie più lunghe ci stanno appena

// Le colonne che un campo prende, quando sono libere.
struct Casa {
    const char *campo;
    int prima;
    int ultima;
};

constexpr Casa case_[] = {
    {"Volume", 0, 0},       {"PaginaIniziale", 1, 1}, {"CodiceVoce", 2, 3}, {"Nome", 0, 1},
    {"Cognome", 2, 2},      {"Sesso", 3, 3},          {"Età", 3, 3},        {"Legittimo", 4, 4},
    {"Precisazione", 4, 4}, {"Detto", 5, 5},          {"Soprannome", 3, 3}, {"Vivente", 6, 6},
    {"Ora", 1, 1},          {"Luogo", 2, 3},          {"Causa", 4, 5},      {"Indirizzo", 4, 4},
    {"Valore", 6, 7},
};

Casa casaDi(const QString &campo, bool diEvento)
{
    if (campo == QStringLiteral("Data"))
        return diEvento ? Casa{"Data", 0, 0} : Casa{"Data", 4, 4};
    for (const Casa &una : case_) {
        if (campo == QString::fromUtf8(una.campo))
            return una;
    }
    return {"", 4, 4};
}

int peso(int prima, int ultima)
{
    return std::accumulate(pesi.begin() + prima, pesi.begin() + ultima + 1, 0);
}

// L'ultima delle colonne, da quella data, che insieme bastano; oltre la fine se non bastano.
int finoA(int prima, int quanto)
{
    int ultima = prima;
    while (ultima < colonne && peso(prima, ultima) < quanto)
        ++ultima;
    return ultima;
}

int lettera(const QWidget *sopra)
{
    return sopra->fontMetrics().averageCharWidth();
}

} // namespace

std::vector<Posto> dispone(const QStringList &campi, bool diEvento)
{
    std::vector<Posto> posti;
    int linea = 0;
    int libera = 0;
    for (const QString &campo : campi) {
        const Casa casa = casaDi(campo, diEvento);
        Posto suo{linea, casa.prima, casa.ultima};
        if (casa.prima < libera) {
            suo.prima = libera;
            suo.ultima = libera < colonne ? finoA(libera, peso(casa.prima, casa.ultima)) : colonne;
            if (suo.ultima >= colonne)
                suo = {++linea, casa.prima, casa.ultima};
        }
        libera = suo.ultima + 1;
        posti.push_back(suo);
    }
    return posti;
}

int etichetta(const QWidget *sopra)
{
    // L'etichetta più lunga, col numero o con la freccia di chi la sceglie.
    return sopra->fontMetrics().horizontalAdvance(
               QCoreApplication::translate("RigaPagina", "Padrino/Madrina")) +
           lettera(sopra) * 5;
}

int larghezzaMinima(const QWidget *sopra)
{
    return etichetta(sopra) + static_cast<int>(peso(0, colonne - 1) * pesoMinimo * lettera(sopra));
}

Tratto tratto(const Posto &posto, int larghezza, const QWidget *sopra)
{
    const int inizio = etichetta(sopra);
    const int spazio = lettera(sopra) * 5 / 4;
    const int tutto = larghezza - inizio + spazio;
    const int somma = std::max(1, peso(0, colonne - 1));
    const int da = posto.prima == 0 ? 0 : tutto * peso(0, posto.prima - 1) / somma;
    const int a = tutto * peso(0, posto.ultima) / somma;
    return {inizio + da, a - da - spazio};
}

} // namespace colonne
