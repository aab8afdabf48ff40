#pragma once

#include "platform/anteriore/jet_tabelle.h"

// Le righe di una tabella del formato anteriore, una per volta, e i campi lunghi a pezzi.
namespace jet
{

struct Campo {
    QByteArrayView byte; // vale finché si resta sulla riga
    bool nullo = true;
    bool guasto = false; // non si può leggere; è anche nullo
};

class Scorritore
{
public:
    Scorritore(Pagine &pagine, const Tabella &tabella);

    // Va alla riga seguente; falso dopo l'ultima. Salta le cancellate e conta le illeggibili.
    bool prossima();
    Campo campo(const Colonna &colonna) const;
    // Il valore di una colonna di numeri interi; niente se Null, guasta o di altro tipo.
    std::optional<qint64> intero(const Colonna &colonna) const;
    // Lo stesso di una colonna di date o di numeri con la virgola.
    std::optional<double> doppio(const Colonna &colonna) const;

    qint64 lette() const { return m_lette; }
    qint64 pagineGuaste() const { return m_pagineGuaste; }
    qint64 righeGuaste() const { return m_righeGuaste; }
    qint64 guasti() const { return m_pagineGuaste + m_righeGuaste; }
    // Quante pagine di dati si sono già lette.
    qint64 pagineLette() const { return static_cast<qint64>(m_prossimaPagina); }

private:
    bool prossimaPagina();
    bool apre(quint32 quale);
    bool analizza();

    Pagine &m_pagine;
    const Tabella &m_tabella;
    std::vector<quint32> m_elenco;
    size_t m_prossimaPagina = 0;
    Pagina m_pagina{};
    Pagina m_spostata{};
    int m_righe = 0;
    int m_prossimaRiga = 0;

    QByteArrayView m_byte;
    int m_colonne = 0;
    qsizetype m_maschera = 0;
    qsizetype m_fineFisse = 0;
    std::vector<qsizetype> m_confini;

    qint64 m_lette = 0;
    qint64 m_pagineGuaste = 0;
    qint64 m_righeGuaste = 0;
};

// Un campo di lunghezza libera, letto un pezzo per volta dalle pagine in cui sta.
class CampoLungo
{
public:
    // `residuo` sono i byte che i campi lunghi possono ancora occupare nel file: nessun byte è di
    // due campi, e così un file danneggiato non fa leggere più di quanto contiene.
    CampoLungo(Pagine &pagine, QByteArrayView campo, qint64 &residuo);

    qint64 lunghezza() const { return m_lunghezza; } // i byte leggibili
    bool intero() const { return m_intero; }         // falso se ne erano annunciati di più
    // Il pezzo seguente, di una pagina al più; vuoto alla fine.
    QByteArray legge();

private:
    std::optional<QByteArrayView> riga(quint32 scritto);
    qint64 misuraCatena(quint32 scritto, qint64 annunciata);

    Pagine &m_pagine;
    Pagina m_pagina{};
    QByteArrayView m_dentro;
    quint32 m_seguente = 0;
    bool m_catena = false;
    qint64 m_lunghezza = 0;
    qint64 m_letti = 0;
    bool m_intero = true;
};

} // namespace jet
