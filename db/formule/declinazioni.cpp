#include "db/formule/declinazioni.h"

#include <algorithm>

namespace modTarvola::formule
{

namespace
{

qsizetype comuni(const QString &una, const QString &altra)
{
    const qsizetype minima = std::min(una.size(), altra.size());
    qsizetype i = 0;
    while (i < minima && una.at(i) == altra.at(i))
        ++i;
    return i;
}

// I voti per una forma, e da quante parole diverse.
struct Voti {
    QHash<QString, double> pesi;
    QHash<QString, int> prove;

    void vota(const QString &forma, double peso)
    {
        pesi[forma] += peso;
        ++prove[forma];
    }

    Declinazioni::Forma migliore(int provePerBastare, double pieno) const
    {
        double tutti = 0;
        auto prima = pesi.cend();
        for (auto una = pesi.cbegin(); una != pesi.cend(); ++una) {
            tutti += *una;
            if (prima == pesi.cend() || *una > *prima ||
                (*una == *prima && una.key() < prima.key()))
                prima = una;
        }
        if (prima == pesi.cend() || prove.value(prima.key()) < provePerBastare)
            return {};
        const int n = prove.value(prima.key());
        return {prima.key(), pieno * (*prima / tutti) * (n / (n + 0.3))};
    }
};

// "Antonio" → "Antonius" dice "o" → "us": ciò che segue la parte comune, con le lettere che si
// vogliono di questa.
bool applica(const QString &da, const QString &a, const QString &parola, qsizetype contesto,
             QString &forma)
{
    const qsizetype comune = comuni(da, a);
    if (comune < 2 || comune < contesto)
        return false;
    const QString vecchia = da.sliced(comune - contesto);
    if (!parola.endsWith(vecchia) || parola.size() - vecchia.size() < 1)
        return false;
    forma = parola.chopped(vecchia.size()) + a.sliced(comune - contesto);
    return true;
}

} // namespace

void Declinazioni::impara(const QString &casella, const QString &testo, const QString &luogo)
{
    auto &viste = m_viste[casella];
    const auto sua = std::find_if(viste.begin(), viste.end(), [&](const Vista &una) {
        return una.luogo == luogo && una.testo == testo;
    });
    ++m_volta;
    if (sua == viste.end())
        viste.push_back({luogo, testo, 1, m_volta});
    else
        *sua = {luogo, testo, sua->volte + 1, m_volta};
    QStringList &qui = m_nelLuogo[luogo];
    if (!qui.contains(casella))
        qui.append(casella);
    ++m_basi[testo][casella];
}

bool Declinazioni::conosce(const QString &casella, const QString &testo) const
{
    return m_basi.value(testo).contains(casella);
}

QStringList Declinazioni::forme(const QString &casella) const
{
    QStringList tutte;
    const auto viste = m_viste.value(casella);
    for (const Vista &una : viste) {
        if (!tutte.contains(una.testo))
            tutte.append(una.testo);
    }
    return tutte;
}

QString Declinazioni::base(const QString &testo) const
{
    const auto basi = m_basi.value(testo);
    QString migliore;
    int volte = 0;
    int altre = 0;
    for (auto una = basi.cbegin(); una != basi.cend(); ++una) {
        altre += *una;
        if (*una > volte) {
            volte = *una;
            migliore = una.key();
        }
    }
    // Due parole che prendono la stessa forma non dicono quale sia.
    return volte * 4 >= altre * 3 ? migliore : QString();
}

bool Declinazioni::immutate(const QString &luogo) const
{
    int uguali = 0;
    int tutte = 0;
    for (auto una = m_viste.cbegin(); una != m_viste.cend(); ++una) {
        for (const Vista &vista : *una) {
            if (!vista.luogo.startsWith(luogo))
                continue;
            tutte += vista.volte;
            uguali += vista.testo == una.key() ? vista.volte : 0;
        }
    }
    constexpr int poche = 4;
    return tutte >= poche && uguali * 10 >= tutte * 9;
}

// Quella detta di più; a parità la più vicina.
const Declinazioni::Vista *Declinazioni::vista(const QString &casella, const QString &luogo) const
{
    const auto viste = m_viste.constFind(casella);
    if (viste == m_viste.constEnd())
        return nullptr;
    const Vista *migliore = nullptr;
    for (const Vista &una : *viste) {
        if (una.luogo == luogo && (migliore == nullptr || una.volte > migliore->volte ||
                                   (una.volte == migliore->volte && una.ultima > migliore->ultima)))
            migliore = &una;
    }
    return migliore;
}

Declinazioni::Forma Declinazioni::forma(const QString &casella, const QString &luogo) const
{
    if (const Vista *qui = vista(casella, luogo); qui != nullptr) {
        int tutte = 0;
        const auto viste = m_viste.value(casella);
        for (const Vista &una : viste)
            tutte += una.luogo == luogo ? una.volte : 0;
        return {qui->testo, (qui->volte + 0.45) / (tutte + 0.5)};
    }
    const Forma altrove = daAltriLuoghi(casella, luogo);
    constexpr double abbastanza = 0.7;
    if (altrove.sicurezza >= abbastanza)
        return altrove;
    const Forma desinenza = perDesinenza(casella, luogo);
    return desinenza.sicurezza > altrove.sicurezza ? desinenza : altrove;
}

// Dove gli altri nomi che stanno qui prendono la stessa forma, la prende anche questo; dove ne
// prendono un'altra, cambia come loro.
Declinazioni::Forma Declinazioni::daAltriLuoghi(const QString &casella, const QString &luogo) const
{
    const auto viste = m_viste.constFind(casella);
    if (viste == m_viste.constEnd())
        return {};
    const QStringList compagni = m_nelLuogo.value(luogo);
    Voti voti;
    for (const Vista &mia : *viste) {
        for (const QString &compagno : compagni) {
            const Vista *qui = vista(compagno, luogo);
            const Vista *la = vista(compagno, mia.luogo);
            QString nuova;
            if (qui == nullptr || la == nullptr)
                continue;
            for (qsizetype contesto = 3; contesto >= 0; --contesto) {
                // Senza una lettera in comune non c'è motivo di credere che cambi così.
                const bool uguali = qui->testo == la->testo;
                if (uguali && contesto > 0) {
                    if (mia.testo.right(contesto) == compagno.right(contesto) ||
                        mia.testo.right(contesto) == la->testo.right(contesto)) {
                        voti.vota(mia.testo, 1 << contesto);
                        break;
                    }
                    continue;
                }
                if (!uguali && applica(la->testo, qui->testo, mia.testo, contesto, nuova)) {
                    voti.vota(nuova, 1 << contesto);
                    break;
                }
            }
        }
    }
    return voti.migliore(2, 1);
}

Declinazioni::Forma Declinazioni::perDesinenza(const QString &casella, const QString &luogo) const
{
    const QStringList compagni = m_nelLuogo.value(luogo);
    Voti voti;
    for (const QString &compagno : compagni) {
        const Vista *qui = vista(compagno, luogo);
        if (qui == nullptr)
            continue;
        QString nuova;
        for (qsizetype contesto = 4; contesto >= 0; --contesto) {
            const bool uguali = compagno == qui->testo;
            if (uguali) {
                if (contesto > 0 && casella.right(contesto) == compagno.right(contesto)) {
                    voti.vota(casella, 1 << (2 * contesto));
                    break;
                }
                continue;
            }
            if (applica(compagno, qui->testo, casella, contesto, nuova)) {
                voti.vota(nuova, 1 << (2 * contesto));
                break;
            }
        }
    }
    return voti.migliore(2, 0.9);
}

} // namespace modTarvola::formule
