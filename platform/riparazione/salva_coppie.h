#pragma once

#include "platform/riparazione/opera.h"

#include <QSet>

namespace salvataggio
{

// Una coppia trovata in una pagina, con le colonne nell'ordine della sua tabella.
using Coppia = QList<pagine::Valore>;

// Le righe delle tabelle di coppie: senza chiave interna, stanno intere in ogni indice.
class SalvaCoppie
{
public:
    explicit SalvaCoppie(Opera &opera) : m_opera(opera) {}
    // Quelle dell'albero della tabella e dei suoi indici.
    void degliAlberi(Tabella &tabella);
    // Quelle delle pagine che nessun albero di coppie ha dato; dopo tutte le altre righe, che
    // dicono di chi possono essere.
    void orfane();

private:
    void diUnAlbero(Tabella &tabella, const QString &indice);
    QList<Coppia> coppieIn(const Tabella &tabella, const pagine::Pagina &pagina) const;
    QList<quint32> nonLette() const;
    bool attribuisce(quint32 numero, bool anchePerEsclusione);
    Tabella *diChiSono(const pagine::Pagina &pagina, bool anchePerEsclusione);

    Opera &m_opera;
    // Le pagine degli alberi delle coppie in cui ogni voce era una coppia della tabella.
    QSet<quint32> m_lette;
};

} // namespace salvataggio
