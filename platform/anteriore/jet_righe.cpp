#include "platform/anteriore/jet_righe.h"

#include <unordered_set>

namespace jet
{

namespace
{

constexpr quint32 proprietarioDiLunghi = 0x4c41564c; // "LVAL"
constexpr qsizetype testaDiCampoLungo = 12;
constexpr quint32 parteLunghezza = 0x3fffffff;

enum Specie : quint32 { InCatena = 0, InUnaPagina = 1, NellaRiga = 2 };

qsizetype byteDi(Tipo tipo)
{
    switch (tipo) {
    case Tipo::Byte:
        return 1;
    case Tipo::Intero:
        return 2;
    case Tipo::Lungo:
        return 4;
    case Tipo::Doppio:
    case Tipo::Data:
        return 8;
    default:
        return 0;
    }
}

} // namespace

Scorritore::Scorritore(Pagine &pagine, const Tabella &tabella)
    : m_pagine(pagine), m_tabella(tabella)
{
    PagineDiTabella trovate = pagineDi(pagine, tabella);
    m_elenco = std::move(trovate.pagine);
    if (!trovate.mappaIntera)
        ++m_pagineGuaste;
}

bool Scorritore::prossima()
{
    for (;;) {
        while (m_prossimaRiga == m_righe) {
            if (!prossimaPagina())
                return false;
        }
        const auto quale = static_cast<quint32>(m_prossimaRiga++);
        if (apre(quale)) {
            ++m_lette;
            return true;
        }
    }
}

bool Scorritore::prossimaPagina()
{
    m_righe = 0;
    m_prossimaRiga = 0;
    if (m_prossimaPagina == m_elenco.size())
        return false;
    const quint32 quale = m_elenco[m_prossimaPagina++];
    const auto suo = m_pagine.legge(quale, m_pagina) ? proprietario(m_pagina) : std::nullopt;
    const int righe = suo == m_tabella.definizione ? quanteRighe(m_pagina) : -1;
    if (righe >= 0)
        m_righe = righe;
    else if (suo != proprietarioDiLunghi)
        ++m_pagineGuaste;
    return true;
}

// Falso se la riga è cancellata o guasta.
bool Scorritore::apre(quint32 quale)
{
    auto trovata = riga(m_pagina, quale);
    if (trovata && trovata->cancellata)
        return false;
    if (trovata && trovata->altrove) {
        const QByteArrayView dove = trovata->byte;
        trovata.reset();
        if (dove.size() >= 4) {
            const Posto posto(numero<quint32>(dove, 0));
            if (m_pagine.legge(posto.pagina, m_spostata) &&
                proprietario(m_spostata) == m_tabella.definizione)
                trovata = riga(m_spostata, posto.riga);
        }
        // Una riga che non porta il segno di spostata si leggerebbe due volte.
        if (trovata && (!trovata->cancellata || trovata->altrove))
            trovata.reset();
    }
    if (trovata) {
        m_byte = trovata->byte;
        if (analizza())
            return true;
    }
    ++m_righeGuaste;
    return false;
}

// In capo alla riga sta il numero delle colonne, in coda la maschera di quelle non Null; prima
// della maschera, all'indietro, quante sono le variabili e dove ciascuna comincia.
bool Scorritore::analizza()
{
    m_confini.clear();
    if (m_byte.size() < 2)
        return false;
    m_colonne = numero<quint16>(m_byte, 0);
    m_maschera = m_byte.size() - (m_colonne + 7) / 8;
    if (m_colonne == 0 || m_colonne > m_tabella.colonneMassime || m_maschera < 2)
        return false;
    m_fineFisse = m_maschera;
    if (m_tabella.variabili == 0)
        return true;
    if (m_maschera < 4)
        return false;
    const int variabili = numero<quint16>(m_byte, m_maschera - 2);
    const qsizetype fine = m_maschera - 2 - 2 * (variabili + 1);
    if (variabili > m_tabella.variabili || fine < 2)
        return false;
    qsizetype precedente = 2;
    for (int i = 0; i <= variabili; ++i) {
        const qsizetype confine = numero<quint16>(m_byte, m_maschera - 4 - 2 * i);
        if (confine < precedente || confine > fine)
            return false;
        m_confini.push_back(confine);
        precedente = confine;
    }
    m_fineFisse = m_confini.front();
    return true;
}

Campo Scorritore::campo(const Colonna &colonna) const
{
    if (colonna.numero >= m_colonne)
        return {};
    const auto maschera = static_cast<quint8>(m_byte[m_maschera + colonna.numero / 8]);
    const bool presente = (maschera >> (colonna.numero % 8) & 1) != 0;
    if (colonna.tipo == Tipo::Booleano)
        return {QByteArrayView(presente ? "\1" : "\0", 1), false, false};
    if (!presente)
        return {};
    if (colonna.fissa) {
        if (2 + colonna.posto + colonna.lunghezza > m_fineFisse)
            return {{}, true, true};
        return {m_byte.sliced(2 + colonna.posto, colonna.lunghezza), false, false};
    }
    if (colonna.posto + 1 >= static_cast<qsizetype>(m_confini.size()))
        return {{}, true, true};
    const auto posto = static_cast<size_t>(colonna.posto);
    return {m_byte.sliced(m_confini[posto], m_confini[posto + 1] - m_confini[posto]), false, false};
}

std::optional<qint64> Scorritore::intero(const Colonna &colonna) const
{
    const Campo letto = campo(colonna);
    if (letto.nullo)
        return std::nullopt;
    if (colonna.tipo == Tipo::Booleano)
        return letto.byte[0] == 0 ? 0 : -1;
    if (letto.byte.size() != byteDi(colonna.tipo))
        return std::nullopt;
    switch (colonna.tipo) {
    case Tipo::Byte:
        return static_cast<quint8>(letto.byte[0]);
    case Tipo::Intero:
        return numero<qint16>(letto.byte, 0);
    case Tipo::Lungo:
        return numero<qint32>(letto.byte, 0);
    default:
        return std::nullopt;
    }
}

std::optional<double> Scorritore::doppio(const Colonna &colonna) const
{
    const Campo letto = campo(colonna);
    if (letto.nullo || letto.byte.size() != byteDi(Tipo::Doppio))
        return std::nullopt;
    return numero<double>(letto.byte, 0);
}

CampoLungo::CampoLungo(Pagine &pagine, QByteArrayView campo, qint64 &residuo) : m_pagine(pagine)
{
    if (campo.size() < testaDiCampoLungo) {
        m_intero = false;
        return;
    }
    const auto testa = numero<quint32>(campo, 0);
    const qint64 annunciata = testa & parteLunghezza;
    const quint32 specie = testa >> 30;
    m_seguente = numero<quint32>(campo, 4);
    if (specie == NellaRiga) {
        m_dentro = campo.sliced(testaDiCampoLungo);
        m_lunghezza = qMin(annunciata, qint64{m_dentro.size()});
    } else if (annunciata <= residuo) {
        if (specie == InUnaPagina)
            m_lunghezza =
                qMin(annunciata, qint64{riga(m_seguente).value_or(QByteArrayView()).size()});
        else if (specie == InCatena)
            m_lunghezza = misuraCatena(m_seguente, annunciata);
        m_catena = specie == InCatena;
        residuo -= m_lunghezza;
    }
    m_intero = m_lunghezza == annunciata;
}

std::optional<QByteArrayView> CampoLungo::riga(quint32 scritto)
{
    const Posto posto(scritto);
    if (!m_pagine.legge(posto.pagina, m_pagina) || proprietario(m_pagina) != proprietarioDiLunghi)
        return std::nullopt;
    const auto trovata = jet::riga(m_pagina, posto.riga);
    if (!trovata || trovata->cancellata || trovata->altrove)
        return std::nullopt;
    return trovata->byte;
}

// Quanti byte della catena si possono leggere: finisce anche dove torna su sé stessa.
qint64 CampoLungo::misuraCatena(quint32 scritto, qint64 annunciata)
{
    std::unordered_set<quint32> visti;
    qint64 trovati = 0;
    while (trovati < annunciata && visti.insert(scritto).second) {
        const auto pezzo = riga(scritto);
        if (!pezzo || pezzo->size() < 4)
            break;
        trovati += pezzo->size() - 4;
        scritto = numero<quint32>(*pezzo, 0);
    }
    return qMin(trovati, annunciata);
}

QByteArray CampoLungo::legge()
{
    const qint64 mancano = m_lunghezza - m_letti;
    QByteArrayView pezzo = m_catena ? QByteArrayView() : m_dentro;
    if (!m_catena && pezzo.isEmpty())
        pezzo = riga(m_seguente).value_or(QByteArrayView());
    while (m_catena && mancano > 0 && pezzo.isEmpty()) {
        pezzo = riga(m_seguente).value_or(QByteArrayView());
        if (pezzo.size() < 4)
            return {};
        m_seguente = numero<quint32>(pezzo, 0);
        pezzo = pezzo.sliced(4);
    }
    pezzo = pezzo.first(qMin(qint64{pezzo.size()}, mancano));
    m_letti += pezzo.size();
    return pezzo.toByteArray();
}

} // namespace jet
