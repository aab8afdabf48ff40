#pragma once

#include "platform/riparazione/opera.h"

namespace salvataggio
{

// Le righe delle tabelle che hanno una chiave interna.
class SalvaRighe
{
public:
    explicit SalvaRighe(Opera &opera) : m_opera(opera) {}
    // Quelle dell'albero della tabella; quelle che non possono essere sue si danno a chi le vuole.
    void dellAlbero(Tabella &tabella);
    // Quelle delle pagine cui nessun albero porta, di cui si sa quanto dice `quali`.
    void orfane(pagine::Uso quali);

private:
    void colloca(const pagine::Cella &cella, pagine::Uso da);
    bool accetta(Tabella &tabella, const pagine::Cella &cella, pagine::Uso da);
    bool ancoraViva(const Tabella &tabella, const QByteArray &codice, qint64 chiave,
                    pagine::Uso da);
    void riparaCodice(const Tabella &tabella, qint64 chiave, QList<pagine::Valore> &riga,
                      bool esatta);
    pagine::Cella conLaSuaChiave(const Tabella &tabella, const QList<pagine::Cella> &celle,
                                 qsizetype quale);

    Opera &m_opera;
};

} // namespace salvataggio
