#include "db/formule/pronostico.h"

#include <algorithm>

namespace modTarvola::formule
{

namespace
{

double cruda(const Pronostico &pronostico)
{
    return std::min(1.0, pronostico.primo.sicurezza * pronostico.fiducia);
}

} // namespace

size_t Prove::quale(const Pronostico &pronostico, bool cominciata)
{
    static constexpr std::array confini{0.6, 0.75, 0.85, 0.92, 0.96, 0.98};
    const auto grado = static_cast<size_t>(
        std::upper_bound(confini.begin(), confini.end(), cruda(pronostico)) - confini.begin());
    const int chiave = pronostico.primo.chiave;
    const size_t sua = cominciata                                ? 3
                       : chiave == 0                             ? 0
                       : Chiave::forma(chiave) == FormaDeclinata ? 2
                                                                 : 1;
    return sua * gradi + grado;
}

void Prove::conta(const Pronostico &pronostico, bool cominciata, bool giusto)
{
    constexpr double oblio = 0.99;
    Conto &suo = m_conti[quale(pronostico, cominciata)];
    suo.tutti = suo.tutti * oblio + 1;
    suo.giusti = suo.giusti * oblio + (giusto ? 1 : 0);
}

double Prove::sicurezza(const Pronostico &pronostico, bool cominciata) const
{
    // Prima delle prove si crede al calcolo, che è prudente.
    constexpr double prudenza = 0.8;
    constexpr double fede = 4;
    const double prima = 1 - (1 - cruda(pronostico)) * prudenza;
    const Conto &suo = m_conti[quale(pronostico, cominciata)];
    return (suo.giusti + fede * prima) / (suo.tutti + fede);
}

} // namespace modTarvola::formule
