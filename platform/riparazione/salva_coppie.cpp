#include "platform/riparazione/salva_coppie.h"

#include "platform/riparazione/accostamento.h"

#include <algorithm>

namespace salvataggio
{

using namespace pagine;

namespace
{

// La coppia da una voce di indice, che la dà nel suo ordine, o da una riga, di una tabella rifatta;
// vuota se non lo è.
QList<Valore> coppiaDa(const QList<Valore> &voce, const Tabella &tabella, const QList<int> &ordine,
                       Genere genere)
{
    if (genere == Genere::Tabella && !tabella.posti.isEmpty())
        return riordinata(tabella, voce);
    QList<Valore> riga = voce;
    if (riga.size() != tabella.colonne.size())
        return {};
    for (qsizetype i = 0; i < qMin(riga.size(), ordine.size()); ++i)
        riga[ordine.at(i)] = voce.at(i);
    return riga;
}

} // namespace

// Una tabella senza chiave interna si ritrova intera in ciascuno dei suoi indici.
void SalvaCoppie::diUnAlbero(Tabella &tabella, const QString &indice)
{
    const QList<int> ordine = tabella.ordine.value(indice);
    const auto pagine = m_opera.alberi[indice].pagine;
    for (const quint32 numero : pagine) {
        const Pagina pagina = m_opera.file.pagina(numero);
        // Sopra le foglie le voci di un indice sono righe, quelle di una tabella no.
        if (pagina.genere == Genere::Tabella && !pagina.foglia)
            continue;
        bool tutte = true;
        for (const Cella &cella : pagina.celle) {
            Carico carico(m_opera.file, cella);
            const auto voce = carico.colonne();
            const QList<Valore> riga =
                voce ? coppiaDa(*voce, tabella, ordine, pagina.genere) : QList<Valore>();
            if (m_opera.adatta(tabella, riga))
                m_opera.salvate.inserisce(tabella, 0, riga, carico);
            else
                tutte = false;
        }
        if (tutte)
            m_lette.insert(numero);
        else if (indice == tabella.nome)
            tabella.sana = false;
    }
}

void SalvaCoppie::degliAlberi(Tabella &tabella)
{
    diUnAlbero(tabella, tabella.nome);
    for (const QString &indice : std::as_const(tabella.indici))
        diUnAlbero(tabella, indice);
}

// Le coppie della pagina che possono essere della tabella, nell'uno o nell'altro verso.
QList<Coppia> SalvaCoppie::coppieIn(const Tabella &tabella, const Pagina &pagina) const
{
    QList<Coppia> trovate;
    for (const Cella &cella : pagina.celle) {
        const auto voce = Carico(m_opera.file, cella).colonne();
        if (!voce || voce->size() != tabella.colonne.size())
            continue;
        const Coppia rovescia(voce->crbegin(), voce->crend());
        if (m_opera.adatta(tabella, *voce))
            trovate.append(*voce);
        else if (m_opera.adatta(tabella, rovescia))
            trovate.append(rovescia);
    }
    return trovate;
}

// La tabella di cui sono le coppie della pagina: quella che ne ha già la metà; o quella che i
// record che nominano dicono per più della metà; o la sola cui manchi qualcosa. Nulla se non si sa.
Tabella *SalvaCoppie::diChiSono(const Pagina &pagina, bool anchePerEsclusione)
{
    QList<Tabella *> possibili;
    for (Tabella &tabella : m_opera.salvate.tabelle()) {
        if (tabella.conRowid)
            continue;
        const QList<Coppia> coppie = coppieIn(tabella, pagina);
        if (coppie.isEmpty())
            continue;
        const auto quante = [&coppie](const auto &condizione) {
            return std::count_if(coppie.cbegin(), coppie.cend(), condizione);
        };
        if (2 * quante([&](const Coppia &una) { return m_opera.salvate.contiene(tabella, una); }) >=
            coppie.size())
            return &tabella;
        if (m_opera.alberi[tabella.nome].intero && tabella.sana)
            continue;
        if (m_opera.regole.diCoppia && 2 * quante([&](const Coppia &una) {
                                           return m_opera.regole.diCoppia(una.at(0), una.at(1)) ==
                                                  tabella.nome;
                                       }) > coppie.size())
            return &tabella;
        possibili.append(&tabella);
    }
    return anchePerEsclusione && possibili.size() == 1 ? possibili.constFirst() : nullptr;
}

QList<quint32> SalvaCoppie::nonLette() const
{
    QList<quint32> pagine;
    for (quint32 numero = 2; numero <= m_opera.file.quante(); ++numero) {
        const Uso uso = m_opera.alberi.uso().at(numero);
        if ((uso == Uso::Ignoto || uso == Uso::Albero) && !m_lette.contains(numero))
            pagine.append(numero);
    }
    return pagine;
}

// Falso se la pagina è di coppie e ancora non si sa di quale tabella.
bool SalvaCoppie::attribuisce(quint32 numero, bool anchePerEsclusione)
{
    m_opera.avanza(numero);
    const Pagina pagina = m_opera.file.pagina(numero);
    if (pagina.genere != Genere::Indice)
        return true;
    Tabella *sua = diChiSono(pagina, anchePerEsclusione);
    if (sua == nullptr)
        return false;
    for (const Coppia &coppia : coppieIn(*sua, pagina)) {
        Carico nessuno(m_opera.file, {});
        m_opera.salvate.inserisce(*sua, 0, coppia, nessuno);
    }
    return true;
}

// Le pagine di coppie, della tabella o del suo indice, cui nessun albero porta più, o che un albero
// d'altri si è preso. Una pagina è tutta di una tabella: si comincia da quelle di cui si sa, e
// ciascuna può dire qualcosa delle altre. Per esclusione si attribuisce solo quando nient'altro
// aiuta più: una sola pagina data per errore porterebbe con sé le altre.
void SalvaCoppie::orfane()
{
    QList<quint32> restano = nonLette();
    for (const bool anchePerEsclusione : {false, true}) {
        for (qsizetype prima = -1; prima != restano.size() && !restano.isEmpty();) {
            prima = restano.size();
            restano.removeIf(
                [&](quint32 numero) { return attribuisce(numero, anchePerEsclusione); });
        }
    }
}

} // namespace salvataggio
