#include "db/formule/allineamento.h"

#include <algorithm>
#include <limits>

namespace modTarvola::formule
{

namespace
{

constexpr float memoria = 0.93F; // quanto di un costo resta all'elemento dopo
constexpr float saltaParola = 0.75F;
constexpr float saltaSegno = 0.4F;
constexpr float daCapo = 2.5F; // il più che costi cominciare in mezzo a un atto
constexpr float altraCasella = 0.4F;
constexpr float stessoTesto = 0.1F;
constexpr float casellaOParola = 0.55F;
constexpr float parolaOSegno = 1;

float salto(const Elemento &elemento)
{
    return elemento.parola ? saltaParola : saltaSegno;
}

} // namespace

void Allineamento::azzera()
{
    m_inizi.clear();
    m_righe.clear();
    m_scritti.clear();
}

void Allineamento::comincia()
{
    size_t quanti = 0;
    for (const AttoLetto &atto : m_letti.atti()) {
        m_inizi.push_back(quanti);
        quanti += atto.elementi.size() + 1;
    }
    m_inizi.push_back(quanti);
    Riga prima(quanti);
    for (size_t a = 0; a < m_letti.atti().size(); ++a) {
        float costo = 0;
        const auto &elementi = m_letti.atti()[a].elementi;
        for (size_t j = 0; j <= elementi.size(); ++j) {
            prima[m_inizi[a] + j] = costo;
            if (j < elementi.size())
                costo = std::min(daCapo, costo + salto(elementi[j]));
        }
    }
    m_righe.push_back(std::move(prima));
}

void Allineamento::torna(size_t quanti)
{
    if (m_righe.empty())
        comincia();
    m_righe.resize(std::min(m_righe.size(), quanti + 1));
    m_scritti.resize(std::min(m_scritti.size(), quanti));
}

// Quanto costa leggere il testo dell'elemento per ciascuno di quelli noti.
const std::vector<float> &Allineamento::costi(const Elemento &elemento)
{
    std::vector<float> &suoi = m_costi[elemento.testo];
    const auto noti = static_cast<size_t>(m_letti.testi().quanti());
    const QString &testo = m_letti.testi().testo(elemento.testo);
    for (size_t i = suoi.size(); i < noti; ++i)
        suoi.push_back(i == 0 ? 1.F : distanza(testo, m_letti.testi().testo(static_cast<int>(i))));
    return suoi;
}

float Allineamento::fra(const Elemento &scritto, const Elemento &letto,
                        const std::vector<float> &costi)
{
    if (scritto.chiavi.empty() && letto.chiavi.empty())
        return scritto.parola == letto.parola ? costi[static_cast<size_t>(letto.testo)]
                                              : parolaOSegno;
    if (scritto.chiavi.empty() || letto.chiavi.empty())
        return scritto.testo == letto.testo ? stessoTesto : casellaOParola;
    auto una = scritto.chiavi.begin();
    auto altra = letto.chiavi.begin();
    while (una != scritto.chiavi.end() && altra != letto.chiavi.end()) {
        if (*una / vesti == *altra / vesti)
            return 0;
        ++(*una < *altra ? una : altra);
    }
    return scritto.testo == letto.testo ? stessoTesto : altraCasella;
}

void Allineamento::avanza(const Elemento &elemento)
{
    if (m_righe.empty())
        comincia();
    const std::vector<float> &suoi = costi(elemento);
    const Riga &prima = m_righe.back();
    Riga nuova(prima.size());
    const float saltato = salto(elemento);
    for (size_t a = 0; a < m_letti.atti().size(); ++a) {
        const auto &elementi = m_letti.atti()[a].elementi;
        const size_t inizio = m_inizi[a];
        nuova[inizio] = prima[inizio] * memoria + saltato;
        for (size_t j = 0; j < elementi.size(); ++j) {
            const float uguale = prima[inizio + j] * memoria + fra(elemento, elementi[j], suoi);
            const float diPiu = prima[inizio + j + 1] * memoria + saltato;
            const float diMeno = nuova[inizio + j] + salto(elementi[j]);
            nuova[inizio + j + 1] = std::min({uguale, diPiu, diMeno});
        }
    }
    m_righe.push_back(std::move(nuova));
    m_scritti.push_back(elemento);
}

std::vector<Allineamento::Posto> Allineamento::posti(size_t quanti) const
{
    std::vector<Posto> trovati(m_letti.atti().size());
    for (size_t a = 0; a < trovati.size(); ++a) {
        const float *riga = m_righe[quanti].data() + m_inizi[a];
        const size_t lunga = m_inizi[a + 1] - m_inizi[a];
        const auto minimo = std::min_element(riga, riga + lunga);
        trovati[a] = {static_cast<int>(minimo - riga), *minimo};
    }
    return trovati;
}

} // namespace modTarvola::formule
