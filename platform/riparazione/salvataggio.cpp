#include "platform/riparazione/salvataggio.h"

#include "platform/motore/definizioni.h"
#include "platform/riparazione/accostamento.h"
#include "platform/riparazione/salva_coppie.h"
#include "platform/riparazione/salva_righe.h"

#include <numeric>

namespace salvataggio
{

using namespace pagine;

namespace
{

// Le righe che le voci dell'indice nominano: le si aspetta.
void aspettaDa(Opera &opera, const Tabella &tabella, const QString &indice)
{
    const auto pagine = opera.alberi[indice].pagine;
    for (const quint32 numero : pagine) {
        opera.avanza(0);
        const auto celle = opera.file.pagina(numero).celle;
        for (const Cella &cella : celle) {
            const auto voce = Carico(opera.file, cella).colonne();
            if (!voce || voce->size() < 2 || voce->constLast().tipo != Valore::Intero)
                continue;
            const QByteArray codice = opera.regole.codice(tabella.nome, indice, voce->constFirst());
            if (!codice.isEmpty())
                opera.salvate.aspetta(tabella, indice, voce->constLast().intero, codice);
        }
    }
}

Conto conta(Opera &opera, const Tabella &tabella)
{
    const QStringList prove = tabella.conRowid ? tabella.testimoni : tabella.indici;
    const bool manca = !tabella.sana || !opera.alberi[tabella.nome].intero;
    Conto conto{tabella.nome, tabella.salvate, 0, manca && !opera.unoIntero(prove)};
    // Un albero senza guasti può essere di un'altra tabella, e così un indice: contro il primo
    // valgono solo tutti i secondi insieme.
    if (!tabella.testimoni.isEmpty())
        conto.perdute = opera.salvate.perdute(tabella, manca ? 1 : tabella.testimoni.size());
    return conto;
}

// Con `tiene` falso conta soltanto ciò che si salverebbe.
QList<Conto> compie(Opera &opera, ado::Connection &nuovo, bool tiene)
{
    ado::Transazione transazione(nuovo);
    SalvaRighe righe(opera);
    SalvaCoppie coppie(opera);
    for (const Tabella &tabella : opera.salvate.tabelle()) {
        for (const QString &indice : tabella.testimoni)
            aspettaDa(opera, tabella, indice);
    }
    for (Tabella &tabella : opera.salvate.tabelle()) {
        accosta(tabella, ado::colonneScritte(opera.alberi.definizione(tabella.nome)));
        if (tabella.conRowid)
            righe.dellAlbero(tabella);
        else
            coppie.degliAlberi(tabella);
    }
    righe.orfane(Uso::Ignoto);
    coppie.orfane();
    // Per ultime: una riga che c'è già vale più della sua copia fra le libere.
    righe.orfane(Uso::Libera);
    QList<Conto> conti;
    for (const Tabella &tabella : opera.salvate.tabelle())
        conti.append(conta(opera, tabella));
    if (tiene)
        transazione.conferma();
    return conti;
}

} // namespace

QList<Conto> salva(const QString &danneggiato, ado::Connection &nuovo, const Regole &regole,
                   const provvisorio::Passo &passo)
{
    const auto prova = [&](bool badaAllaTestata, bool tiene) {
        Opera opera(danneggiato, badaAllaTestata, nuovo, regole, passo);
        return compie(opera, nuovo, tiene);
    };
    const auto righe = [](const QList<Conto> &conti) {
        return std::accumulate(
            conti.cbegin(), conti.cend(), qint64{0},
            [](qint64 somma, const Conto &conto) { return somma + conto.salvate; });
    };
    if (File(danneggiato).dimensione() == paginaPredefinita)
        return prova(true, true);
    // Una testata che mente sulla misura delle pagine ne nasconde molte: si prova nei due modi.
    const bool badaAllaTestata = righe(prova(true, false)) > righe(prova(false, false));
    return prova(badaAllaTestata, true);
}

} // namespace salvataggio
