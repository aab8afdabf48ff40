#pragma once

#include "db/archivio/corrispondenza.h"

#include <functional>

// La rilettura di un archivio convertito, accanto alla fonte da cui viene.
namespace modTarvola
{

class Confronto
{
public:
    // `massimo` è quello con cui le righe si sono scritte; `avanza` è chiamata di quando in quando.
    Confronto(ado::Connection &archivio, jet::Pagine &fonte, qint64 massimo,
              std::function<void(const Lettura &)> avanza);

    // Confronta ogni riga e ogni valore di una tabella. `rifiutate` sono i numeri d'ordine, in
    // ordine, delle righe che non sono entrate; `lette` quante la fonte ne ha rese nello scrivere.
    // Fallisce con ado::Errore alla prima differenza.
    void tabella(const Corrispondenza &come, const std::vector<quint32> &rifiutate, qint64 lette);

private:
    bool riga(const Corrispondenza &come, Lettura &lettura, const RigaLetta &attesa);
    bool lungo(const Corrispondenza &come, Lettura &lettura, const RigaLetta &attesa,
               qint64 chiave);

    ado::Connection &m_archivio;
    jet::Pagine &m_fonte;
    qint64 m_massimo;
    std::function<void(const Lettura &)> m_avanza;
    ado::Comando m_ricerca;
};

} // namespace modTarvola
