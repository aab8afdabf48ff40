#include "db/atto/lessico.h"

#include "platform/lingua/piegatura.h"

#include <QHashFunctions>

#include <algorithm>
#include <numeric>
#include <tuple>

namespace modTarvola
{

namespace
{

// Oltre, non è un nome da proporre ma un discorso.
constexpr qsizetype lungoAlMassimo = 120;
constexpr size_t postiIniziali = 64;

bool minore(QByteArrayView uno, QByteArrayView altro)
{
    return std::lexicographical_compare(
        uno.begin(), uno.end(), altro.begin(), altro.end(), [](char a, char b) {
            return static_cast<unsigned char>(a) < static_cast<unsigned char>(b);
        });
}

size_t segno(QByteArrayView testo)
{
    return qHashBits(testo.data(), static_cast<size_t>(testo.size()));
}

} // namespace

QByteArrayView Lessico::vista(size_t posto, size_t lungo) const
{
    return {m_byte.data() + posto, static_cast<qsizetype>(lungo)};
}

QByteArrayView Lessico::da(const Inizio &inizio) const
{
    return piegato(m_voci[inizio.voce]).sliced(inizio.dove);
}

size_t Lessico::byte() const
{
    return m_byte.capacity() + m_voci.capacity() * sizeof(Voce) +
           m_posti.capacity() * sizeof(quint32) + m_inizi.capacity() * sizeof(Inizio);
}

Lessico::Voce *Lessico::trova(QByteArrayView cercato)
{
    if (m_posti.empty())
        return nullptr;
    const size_t maschera = m_posti.size() - 1;
    for (size_t i = segno(cercato) & maschera; m_posti[i] != 0; i = (i + 1) & maschera) {
        Voce &voce = m_voci[m_posti[i] - 1];
        if (testo(voce) == cercato)
            return &voce;
    }
    return nullptr;
}

// Rifà la tavola dei posti, larga almeno il doppio delle voci.
void Lessico::riposta()
{
    size_t quanti = postiIniziali;
    while (quanti < m_voci.size() * 2)
        quanti *= 2;
    m_posti.assign(quanti, 0);
    for (size_t v = 0; v < m_voci.size(); ++v) {
        size_t i = segno(testo(m_voci[v])) & (quanti - 1);
        while (m_posti[i] != 0)
            i = (i + 1) & (quanti - 1);
        m_posti[i] = static_cast<quint32>(v + 1);
    }
}

void Lessico::aggiunge(QByteArrayView nuovo, const QString &pulito)
{
    const QByteArray forma = italiano::piegato(pulito).toUtf8();
    // Una tavola mezza piena, e la memoria che i tre vettori avranno con gli inizi di parola.
    const size_t occupati = m_byte.size() + m_voci.size() * (sizeof(Voce) + 2 * sizeof(Inizio)) +
                            m_posti.size() * sizeof(quint32);
    if (occupati > m_limite)
        sfoltisce();
    const auto posto = static_cast<quint32>(m_byte.size());
    m_byte.insert(m_byte.end(), nuovo.begin(), nuovo.end());
    m_byte.insert(m_byte.end(), forma.begin(), forma.end());
    m_voci.push_back({posto, static_cast<quint16>(nuovo.size()), static_cast<quint16>(forma.size()),
                      0, 0, 0, 0});
    if (m_voci.size() * 2 > m_posti.size())
        return riposta();
    const size_t maschera = m_posti.size() - 1;
    size_t i = segno(nuovo) & maschera;
    while (m_posti[i] != 0)
        i = (i + 1) & maschera;
    m_posti[i] = static_cast<quint32>(m_voci.size());
}

// Toglie la metà dei testi: i più rari, e fra i pari chi c'è da più tempo.
void Lessico::sfoltisce()
{
    std::vector<quint32> ordine(m_voci.size());
    std::iota(ordine.begin(), ordine.end(), 0U);
    const auto mezzo = ordine.begin() + static_cast<std::ptrdiff_t>(ordine.size() / 2);
    std::nth_element(ordine.begin(), mezzo, ordine.end(), [this](quint32 uno, quint32 altro) {
        return std::pair(m_voci[uno].volte, uno) < std::pair(m_voci[altro].volte, altro);
    });
    std::sort(mezzo, ordine.end());
    std::vector<char> byte;
    std::vector<Voce> voci;
    for (auto una = mezzo; una != ordine.end(); ++una) {
        const Voce &voce = voci.emplace_back(m_voci[*una]);
        const auto inizio = m_byte.begin() + voce.posto;
        voci.back().posto = static_cast<quint32>(byte.size());
        byte.insert(byte.end(), inizio, inizio + voce.lungo + voce.piegato);
    }
    m_byte = std::move(byte);
    m_voci = std::move(voci);
    m_inizi.clear();
    m_ordinate = 0;
    riposta();
}

void Lessico::conta(QByteArrayView scritto, quint32 recente, char sesso)
{
    if (scritto.isEmpty() || scritto.size() > lungoAlMassimo)
        return;
    Voce *voce = trova(scritto);
    if (voce == nullptr) {
        const QString pulito = QString::fromUtf8(scritto).simplified();
        const QByteArray suo = pulito.toUtf8();
        if (suo.isEmpty() || suo.size() > lungoAlMassimo)
            return;
        if (suo != scritto)
            voce = trova(suo);
        if (voce == nullptr) {
            aggiunge(suo, pulito);
            voce = &m_voci.back();
        }
    }
    ++voce->volte;
    voce->recente = std::max(voce->recente, recente);
    voce->maschi += sesso == 'M' ? 1 : 0;
    voce->femmine += sesso == 'F' ? 1 : 0;
}

void Lessico::ordina()
{
    const auto prima = static_cast<std::ptrdiff_t>(m_inizi.size());
    for (; m_ordinate < m_voci.size(); ++m_ordinate) {
        const QByteArrayView forma = piegato(m_voci[m_ordinate]);
        for (qsizetype posto = 0; posto < forma.size(); ++posto) {
            if (posto == 0 || forma[posto - 1] == ' ')
                m_inizi.push_back({static_cast<quint32>(m_ordinate), static_cast<quint32>(posto)});
        }
    }
    const auto precede = [this](const Inizio &uno, const Inizio &altro) {
        return minore(da(uno), da(altro));
    };
    std::sort(m_inizi.begin() + prima, m_inizi.end(), precede);
    std::inplace_merge(m_inizi.begin(), m_inizi.begin() + prima, m_inizi.end(), precede);
}

void Lessico::chiude()
{
    ordina();
    m_posti = {};
    m_byte.shrink_to_fit();
    m_voci.shrink_to_fit();
    m_inizi.shrink_to_fit();
}

std::vector<Lessico::Inizio>::const_iterator Lessico::primo(QByteArrayView cercato) const
{
    return std::lower_bound(
        m_inizi.begin(), m_inizi.end(), cercato,
        [this](const Inizio &uno, QByteArrayView altro) { return minore(da(uno), altro); });
}

QStringList Lessico::cerca(QByteArrayView cercato, size_t quanti, bool dalPrincipio) const
{
    if (cercato.isEmpty() || quanti == 0)
        return {};
    const auto merito = [this](const Inizio &uno) {
        const Voce &voce = m_voci[uno.voce];
        return std::tuple(voce.volte, uno.dove == 0, voce.recente, ~uno.voce);
    };
    const auto meglio = [&merito](const Inizio &uno, const Inizio &altro) {
        return merito(uno) > merito(altro);
    };
    // I migliori finora, in un mucchio che ha il peggiore in cima: i trovati non si copiano.
    std::vector<Inizio> scelti;
    scelti.reserve(quanti + 1);
    for (auto uno = primo(cercato); uno != m_inizi.end() && da(*uno).startsWith(cercato); ++uno) {
        if ((dalPrincipio && uno->dove != 0) ||
            (scelti.size() == quanti && !meglio(*uno, scelti.front())))
            continue;
        // Lo stesso testo si trova più volte se più parole cominciano così.
        const auto stesso = std::find_if(scelti.begin(), scelti.end(), [uno](const Inizio &altro) {
            return altro.voce == uno->voce;
        });
        if (stesso != scelti.end()) {
            stesso->dove = std::min(stesso->dove, uno->dove);
            std::make_heap(scelti.begin(), scelti.end(), meglio);
            continue;
        }
        scelti.push_back(*uno);
        std::push_heap(scelti.begin(), scelti.end(), meglio);
        if (scelti.size() > quanti) {
            std::pop_heap(scelti.begin(), scelti.end(), meglio);
            scelti.pop_back();
        }
    }
    std::sort_heap(scelti.begin(), scelti.end(), meglio);
    QStringList testi;
    for (const Inizio &uno : scelti)
        testi.append(QString::fromUtf8(testo(m_voci[uno.voce])));
    return testi;
}

std::pair<quint32, quint32> Lessico::sessi(QByteArrayView parola) const
{
    std::pair<quint32, quint32> somma;
    if (parola.isEmpty())
        return somma;
    for (auto uno = primo(parola); uno != m_inizi.end() && da(*uno).startsWith(parola); ++uno) {
        const QByteArrayView forma = da(*uno);
        const bool intera = forma.size() == parola.size() || forma[parola.size()] == ' ';
        if (uno->dove == 0 && intera) {
            somma.first += m_voci[uno->voce].maschi;
            somma.second += m_voci[uno->voce].femmine;
        }
    }
    return somma;
}

} // namespace modTarvola
