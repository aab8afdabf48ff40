#include "platform/riparazione/salva_righe.h"

#include "platform/riparazione/accostamento.h"

namespace salvataggio
{

using namespace pagine;

void SalvaRighe::dellAlbero(Tabella &tabella)
{
    const auto pagine = m_opera.alberi[tabella.nome].pagine;
    for (const quint32 numero : pagine) {
        m_opera.avanza(numero);
        const Pagina pagina = m_opera.file.pagina(numero);
        if (!pagina.foglia)
            continue;
        for (qsizetype i = 0; i < pagina.celle.size(); ++i) {
            const Cella cella = conLaSuaChiave(tabella, pagina.celle, i);
            if (accetta(tabella, cella, Uso::Albero))
                continue;
            tabella.sana = false;
            colloca(cella, Uso::Ignoto);
        }
    }
}

// Le pagine cui nessun albero porta più: chi sta sopra è rotto, le righe possono essere sane. Fra
// quelle che il file dà per libere può stare una viva finita fuori posto.
void SalvaRighe::orfane(Uso quali)
{
    for (quint32 numero = 2; numero <= m_opera.file.quante(); ++numero) {
        if (m_opera.alberi.uso().at(numero) != quali)
            continue;
        m_opera.avanza(numero);
        const Pagina pagina = m_opera.file.pagina(numero);
        if (pagina.genere != Genere::Tabella || !pagina.foglia)
            continue;
        for (const Cella &cella : pagina.celle)
            colloca(cella, quali);
    }
}

void SalvaRighe::colloca(const Cella &cella, Uso da)
{
    for (Tabella &tabella : m_opera.salvate.tabelle()) {
        if (tabella.conRowid && accetta(tabella, cella, da))
            return;
    }
}

// Falso se la riga, trovata fuori dal suo albero, era già stata cancellata per quanto se ne sa.
bool SalvaRighe::ancoraViva(const Tabella &tabella, const QByteArray &codice, qint64 chiave, Uso da)
{
    const Albero suo = m_opera.alberi[tabella.nome];
    // In una pagina libera è viva solo se al suo albero manca qualcosa e un indice la nomina, lei e
    // la sua chiave. Dove gli indici non nominano nulla deve mancare l'albero intero.
    if (da == Uso::Libera && tabella.testimoni.isEmpty())
        return suo.pagine.isEmpty();
    if (da == Uso::Libera)
        return !suo.intero && m_opera.salvate.aspettata(tabella, codice, chiave);
    // In una pagina che potrebbe essere libera basta che un indice intero non la smentisca.
    return m_opera.libereIntere || !m_opera.unoIntero(tabella.testimoni) ||
           m_opera.salvate.aspettata(tabella, codice);
}

// `da` dice che cosa si sa della pagina della cella: che è dell'albero della tabella, o libera, o
// nulla.
bool SalvaRighe::accetta(Tabella &tabella, const Cella &cella, Uso da)
{
    const bool orfana = da != Uso::Albero;
    const auto seguito = catena(m_opera.file, cella, m_opera.alberi.uso());
    if (!seguito)
        return false;
    Carico carico(m_opera.file, cella);
    auto riga = carico.colonne(orfana ? Lettura::Esatta : Lettura::Comunque);
    const qsizetype colonne = tabella.colonne.size();
    // Una riga che non torna con la sua lunghezza ha dentro qualcosa di rovinato: entra se il suo
    // posto è nell'albero e un indice la nomina.
    if (riga && !carico.esatta() &&
        (riga->size() != colonne || m_opera.salvate.codiceDi(tabella, cella.chiave, 1).isEmpty()))
        return false;
    if (riga && !orfana && !tabella.posti.isEmpty())
        riga = riordinata(tabella, *riga);
    // Le righe scritte prima che la tabella avesse le ultime colonne ne hanno di meno.
    if (!riga || riga->size() > colonne || (orfana && riga->size() != colonne))
        return false;
    riga->resize(colonne);
    if (tabella.chiaveIntera >= 0)
        (*riga)[tabella.chiaveIntera] = {Valore::Intero, cella.chiave, 0, {}};
    if (!orfana)
        riparaCodice(tabella, cella.chiave, *riga, carico.esatta());
    if (!m_opera.adatta(tabella, *riga))
        return false;
    if (orfana && !ancoraViva(tabella, riga->constFirst().byte, cella.chiave, da))
        return false;
    if (!m_opera.salvate.inserisce(tabella, cella.chiave, *riga, carico))
        return false;
    for (const quint32 numero : *seguito)
        m_opera.alberi.uso()[numero] = Uso::Seguito;
    return true;
}

// Un codice rovinato si riprende dagli indici che nominano la stessa riga: da uno, se non è più un
// codice; da tutti d'accordo, se è diventato quello di un'altra.
void SalvaRighe::riparaCodice(const Tabella &tabella, qint64 chiave, QList<Valore> &riga,
                              bool esatta)
{
    if (tabella.testimoni.isEmpty())
        return;
    const bool codiceSuo = esatta && m_opera.adatta(tabella, riga);
    const QByteArray codice =
        m_opera.salvate.codiceDi(tabella, chiave, codiceSuo ? tabella.testimoni.size() : 1);
    if (!codice.isEmpty())
        riga[0] = {Valore::Testo, 0, 0, codice};
}

// In una foglia le chiavi crescono: di una fuori posto vale più il codice, e la chiave è quella che
// tutti gli indici gli danno. Altrimenti la riga finirebbe sotto il codice di un'altra.
Cella SalvaRighe::conLaSuaChiave(const Tabella &tabella, const QList<Cella> &celle, qsizetype quale)
{
    Cella cella = celle.at(quale);
    const bool inOrdine = (quale == 0 || celle.at(quale - 1).chiave < cella.chiave) &&
                          (quale + 1 == celle.size() || cella.chiave < celle.at(quale + 1).chiave);
    if (inOrdine || tabella.testimoni.isEmpty() || !tabella.posti.isEmpty())
        return cella;
    const auto riga = Carico(m_opera.file, cella).colonne();
    if (riga && m_opera.adatta(tabella, *riga))
        cella.chiave =
            m_opera.salvate.chiaveDi(tabella, riga->constFirst().byte, tabella.testimoni.size())
                .value_or(cella.chiave);
    return cella;
}

} // namespace salvataggio
