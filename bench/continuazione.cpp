#include "bench/continuazione.h"

#include <algorithm>
#include <vector>

namespace continuazione
{

namespace
{

// Dove finisce la parola che si prenderebbe stando in `da`.
qsizetype fineParola(const QString &proposta, qsizetype da)
{
    while (da < proposta.size() && proposta.at(da).isSpace())
        ++da;
    while (da < proposta.size() && !proposta.at(da).isSpace())
        ++da;
    return da;
}

} // namespace

qsizetype giuste(const QString &scritto, const QString &tutto, const QString &proposta)
{
    if (!tutto.startsWith(scritto))
        return 0;
    const QStringView resto = QStringView(tutto).mid(scritto.size());
    const auto fin = std::mismatch(proposta.begin(), proposta.end(), resto.begin(), resto.end());
    return fin.first - proposta.begin();
}

// All'indietro da dove la proposta smette di essere giusta: quanti tasti mancano da ogni posto. Ciò
// che si prende di troppo si cancella una lettera per volta.
Mossa sceglie(const QString &scritto, const QString &tutto, const QString &proposta,
              qsizetype tratto)
{
    if (!tutto.startsWith(scritto))
        return Mossa::Indietro;
    const qsizetype buone = giuste(scritto, tutto, proposta);
    std::vector<qsizetype> costi(static_cast<size_t>(buone) + 1, 0);
    const auto fino = [&](qsizetype fine) {
        return 1 + (fine > buone ? fine - buone : costi[static_cast<size_t>(fine)]);
    };
    for (qsizetype da = buone - 1; da > 0; --da) {
        qsizetype meno = std::min(fino(da + 1), fino(fineParola(proposta, da)));
        if (da < tratto)
            meno = std::min(meno, fino(tratto));
        costi[static_cast<size_t>(da)] = std::min(meno, fino(proposta.size()));
    }
    if (buone == 0)
        return Mossa::Lettera;
    const std::pair<qsizetype, Mossa> mosse[] = {{fino(proposta.size()), Mossa::Tutto},
                                                 {fino(tratto), Mossa::Tratto},
                                                 {fino(fineParola(proposta, 0)), Mossa::Parola},
                                                 {fino(1), Mossa::Lettera}};
    return std::min_element(
               std::begin(mosse), std::end(mosse),
               [](const auto &una, const auto &altra) { return una.first < altra.first; })
        ->second;
}

} // namespace continuazione
