#pragma once

#include "db/formule/pronostico.h"

#include <algorithm>

// Ciò con cui i campioni di un pronostico si pesano e si confrontano.
namespace modTarvola::formule
{

inline constexpr double oblio = 0.97;    // quanto un atto pesa meno di quello che lo segue
inline constexpr double discordia = 1.5; // quanto pesa meno per ogni punto di costo
inline constexpr double trascurabile = 0.03;
inline constexpr double spiegaAbbastanza = 0.4;

inline int diCasella(int chiave)
{
    return chiave * 2 + 1;
}

inline int diParola(int testo)
{
    return testo * 2;
}

inline bool eCasella(int etichetta)
{
    return etichetta % 2 != 0;
}

inline int valore(const Tratti &tratti, int quale)
{
    const auto dove = static_cast<size_t>(quale);
    return dove < tratti.size() ? tratti[dove] : 0;
}

inline bool piena(const std::vector<char> &piene, int casella)
{
    const auto dove = static_cast<size_t>(casella);
    return dove < piene.size() && piene[dove] != 0;
}

// Vero se i due elementi sono la stessa parola, o la stessa casella: `certa` se non basta che una
// parola somigli a quella della casella.
inline bool stessi(const Elemento &uno, const Elemento &altro, bool certa)
{
    if (uno.testo == altro.testo)
        return true;
    return std::any_of(uno.chiavi.begin(), uno.chiavi.end(), [&](int chiave) {
        return (!certa || Chiave::forma(chiave) != FormaDeclinata) &&
               std::binary_search(altro.chiavi.begin(), altro.chiavi.end(), chiave);
    });
}

// Dove un atto riprende, se ciò che viene è di una casella che adesso manca: "detto il Moro".
inline size_t oltreLaCasella(const std::vector<Elemento> &elementi, size_t dove,
                             const std::vector<char> &piene)
{
    constexpr size_t davanti = 2;
    for (size_t i = dove; i < std::min(elementi.size(), dove + davanti + 1); ++i) {
        const auto &chiavi = elementi[i].chiavi;
        if (chiavi.empty())
            continue;
        const bool manca = std::all_of(chiavi.begin(), chiavi.end(), [&](int chiave) {
            return !piena(piene, Chiave::casella(chiave));
        });
        return manca && elementi[i].sicura ? i + 1 : dove;
    }
    return dove;
}

// Pesi per numero, pochi e in ordine d'arrivo.
class Pesi
{
public:
    double &di(int numero)
    {
        for (auto &[suo, peso] : m_pesi) {
            if (suo == numero)
                return peso;
        }
        m_pesi.emplace_back(numero, 0);
        return m_pesi.back().second;
    }
    auto begin() const { return m_pesi.begin(); }
    auto end() const { return m_pesi.end(); }

private:
    std::vector<std::pair<int, double>> m_pesi;
};

} // namespace modTarvola::formule
