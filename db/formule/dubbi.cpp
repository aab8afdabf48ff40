#include "db/formule/campioni.h"

#include <array>
#include <cmath>

// Ciò che toglie, o cambia, la sicurezza di un pronostico.
namespace modTarvola::formule
{

namespace
{

// Le desinenze di un sesso, e quelle dell'altro.
constexpr std::array<std::pair<const char *, const char *>, 9> desinenze{{{"o", "a"},
                                                                          {"a", "o"},
                                                                          {"us", "a"},
                                                                          {"um", "am"},
                                                                          {"am", "um"},
                                                                          {"a", "us"},
                                                                          {"i", "ae"},
                                                                          {"ae", "i"},
                                                                          {"e", "a"}}};

} // namespace

// La parte della sicurezza che resta quando altre caselle spiegano altrettanto bene ciò che si è
// visto, e adesso darebbero un altro testo.
double Pronosticatore::ambigua(int chiave, const Campioni &campioni,
                               const Allineamento &allineamento, size_t quanti, int luogo) const
{
    const QString mio = reso(chiave, luogo).testo;
    double mia = std::exp(preferenza(chiave, allineamento, quanti));
    double altre = 0;
    QStringList gia;
    for (const Campione &uno : campioni) {
        if (uno.elemento == nullptr)
            continue;
        for (const int altra : uno.elemento->chiavi) {
            const QString testo = reso(altra, luogo).testo;
            if (testo.isEmpty() || testo == mio || gia.contains(testo))
                continue;
            const bool sempre = std::all_of(campioni.begin(), campioni.end(), [&](const auto &c) {
                return c.etichetta != diCasella(chiave) ||
                       std::binary_search(c.elemento->chiavi.begin(), c.elemento->chiavi.end(),
                                          altra);
            });
            if (!sempre)
                continue;
            gia.append(testo);
            altre += std::exp(preferenza(altra, allineamento, quanti));
        }
    }
    return mia / (mia + altre);
}

// Una parola detta finora solo di un altro sesso: se se ne conosce la compagna, è quella; se
// potrebbe cambiare desinenza, non si è più sicuri.
void Pronosticatore::concorda(const Campioni &campioni, Candidato &candidato) const
{
    const Nomi &testi = m_letti.testi();
    const int testo = testi.cerca(candidato.testo);
    constexpr qsizetype corta = 3;
    if (candidato.chiave != 0 || !candidato.parola || candidato.testo.size() < corta)
        return;
    for (int tratto = 1; tratto < m_letti.quantiTratti(); ++tratto) {
        const int adesso = m_letti.diSesso(tratto) ? valore(m_pronte.tratti, tratto) : 0;
        if (adesso == 0 || m_letti.volte(testo, tratto, adesso) > 0)
            continue;
        const bool altrove =
            std::all_of(campioni.begin(), campioni.end(), [&](const Campione &uno) {
                return uno.etichetta != diParola(testo) ||
                       (valore(uno.atto->tratti, tratto) != adesso &&
                        valore(uno.atto->tratti, tratto) != 0);
            });
        if (!altrove)
            continue;
        bool cambia = false;
        for (const auto &[da, a] : desinenze) {
            const QLatin1String vecchia(da);
            if (!candidato.testo.endsWith(vecchia))
                continue;
            cambia = true;
            const QString altra = candidato.testo.chopped(vecchia.size()) + QLatin1String(a);
            if (m_letti.volte(testi.cerca(altra), tratto, adesso) > 0) {
                candidato.testo = altra;
                return;
            }
        }
        if (cambia)
            candidato.sicurezza *= 0.55;
        return;
    }
}

// Vero se della persona di cui si parla c'è, o manca, qualcosa come in nessuno degli atti di prima.
bool Pronosticatore::novita(const Campioni &campioni, const Allineamento &allineamento,
                            size_t quanti) const
{
    const Elemento *ultimo = nullptr;
    for (size_t i = quanti; i-- > 0 && ultimo == nullptr;) {
        if (!allineamento.scritto(i).chiavi.empty())
            ultimo = &allineamento.scritto(i);
    }
    if (ultimo == nullptr)
        return false;
    const QString &posto = m_letti.posto(Chiave::casella(ultimo->chiavi.front()));
    for (int tratto = 1; tratto < m_letti.quantiTratti(); ++tratto) {
        if (m_letti.presenza(tratto) != posto)
            continue;
        const int adesso = valore(m_pronte.tratti, tratto);
        if (std::none_of(campioni.begin(), campioni.end(), [&](const Campione &uno) {
                return valore(uno.atto->tratti, tratto) == adesso;
            }))
            return true;
    }
    return false;
}

// Una casella declinata di cui è già scritta una parte: le parole già scritte, se le somigliano, e
// poi le forme delle altre.
Pronosticatore::Completa Pronosticatore::completa(Candidato &candidato, const QString &coda) const
{
    const auto nome =
        std::find_if(m_pronte.nomi.begin(), m_pronte.nomi.end(), [&](const auto &uno) {
            return uno.casella == Chiave::casella(candidato.chiave);
        });
    const QString scritto = coda.trimmed();
    if (nome == m_pronte.nomi.end() || !scritto.front().isUpper())
        return Completa::No;
    QStringList parole = scritto.split(u' ');
    const bool aMeta = !coda.back().isSpace();
    const qsizetype intere = parole.size() - (aMeta ? 1 : 0);
    if (parole.size() > nome->parole.size() || intere >= nome->parole.size())
        return Completa::No;
    for (qsizetype i = 0; i < intere; ++i) {
        if (!m_letti.declinazioni().conosce(nome->parole.at(i), parole.at(i)) &&
            !somiglia(nome->parole.at(i), parole.at(i)))
            return Completa::No;
    }
    if (aMeta && !inizia(nome->parole.at(intere), parole.last()))
        return Completa::No;
    const QString luogo = m_letti.luogo(candidato.chiave, candidato.luogo);
    for (qsizetype i = intere; i < nome->parole.size(); ++i) {
        const auto forma = m_letti.declinazioni().forma(nome->parole.at(i), luogo);
        const bool cominciata = aMeta && i == intere;
        if (forma.sicurezza <= 0 || (cominciata && !forma.testo.startsWith(parole.last())))
            return Completa::Forse;
        candidato.sicurezza = std::min(candidato.sicurezza, forma.sicurezza);
        if (cominciata)
            parole.last() = forma.testo;
        else
            parole.append(forma.testo);
    }
    candidato.testo = parole.join(u' ');
    return Completa::Si;
}

// Quanto ci si fida ancora, se l'ultima parola non è quella che c'è di solito.
double Pronosticatore::rottura(const Campioni &campioni, const Allineamento &allineamento,
                               size_t quanti) const
{
    if (quanti == 0)
        return 1;
    double tutti = 0;
    double uguali = 0;
    double maggiore = 0;
    Pesi soliti;
    for (const Campione &uno : campioni) {
        tutti += uno.peso;
        if (uno.prima == nullptr)
            continue;
        if (stessi(allineamento.scritto(quanti - 1), *uno.prima, false))
            uguali += uno.peso;
        double &suo = soliti.di(uno.prima->testo);
        suo += uno.peso;
        maggiore = std::max(maggiore, suo);
    }
    return 1 - 0.4 * (1 - uguali / tutti) * (maggiore / tutti);
}

} // namespace modTarvola::formule
