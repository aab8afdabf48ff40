#include "platform/riparazione/salvataggio.h"

#include "platform/motore/definizioni.h"
#include "platform/riparazione/alberi.h"
#include "platform/riparazione/salvate.h"

#include <QSet>

#include <algorithm>
#include <numeric>

namespace salvataggio
{

using namespace pagine;

namespace
{

const Valore nulla;

// Una coppia trovata in una pagina, con le colonne nell'ordine della sua tabella.
using Coppia = QList<Valore>;

class Salvataggio
{
public:
    Salvataggio(const QString &danneggiato, bool badaAllaTestata, ado::Connection &nuovo,
                const Regole &regole, const provvisorio::Passo &passo);
    // Con `tiene` falso conta soltanto ciò che si salverebbe.
    QList<Conto> compie(bool tiene);

private:
    QHash<QString, Albero> previsti();
    bool unoIntero(const QStringList &alberi) const;
    void aspettaDa(const Tabella &tabella, const QString &indice);
    void righeDi(Tabella &tabella);
    void coppieDi(Tabella &tabella, const QString &indice);
    void orfane(Uso quali);
    void colloca(const Cella &cella, Uso da);
    QList<Coppia> coppieIn(const Tabella &tabella, const Pagina &pagina) const;
    void coppieOrfane();
    Tabella *diChiSono(const Pagina &pagina, bool anchePerEsclusione);
    bool accetta(Tabella &tabella, const Cella &cella, Uso da);
    bool ancoraViva(const Tabella &tabella, const QByteArray &codice, qint64 chiave, Uso da);
    bool adatta(const Tabella &tabella, const QList<Valore> &riga) const;
    void accosta(Tabella &tabella) const;
    void riparaCodice(const Tabella &tabella, qint64 chiave, QList<Valore> &riga, bool esatta);
    Cella conLaSuaChiave(const Tabella &tabella, const QList<Cella> &celle, qsizetype quale);
    Conto conta(const Tabella &tabella);
    void avanza(qint64 fatte) { provvisorio::avanza(m_passo, fatte, m_file.quante()); }

    File m_file;
    ado::Connection &m_nuovo;
    const Regole &m_regole;
    const provvisorio::Passo &m_passo;
    Salvate m_salvate;
    Alberi m_alberi;
    // Vero se si sa di ogni pagina libera che lo è.
    bool m_libereIntere;
    // Le pagine degli alberi delle coppie in cui ogni voce era una coppia della tabella.
    QSet<quint32> m_lette;
};

Salvataggio::Salvataggio(const QString &danneggiato, bool badaAllaTestata, ado::Connection &nuovo,
                         const Regole &regole, const provvisorio::Passo &passo)
    : m_file(danneggiato, badaAllaTestata),
      m_nuovo(nuovo),
      m_regole(regole),
      m_passo(passo),
      m_salvate(nuovo),
      m_alberi(m_file, previsti()),
      m_libereIntere(m_alberi.uso().count(Uso::Libera) == m_file.libere())
{
}

QHash<QString, Albero> Salvataggio::previsti()
{
    QHash<QString, Albero> tutti;
    for (const Tabella &tabella : m_salvate.tabelle()) {
        const Genere genere = tabella.conRowid ? Genere::Tabella : Genere::Indice;
        tutti.insert(tabella.nome, {tabella.nome, tabella.nome, genere, {}, true});
        for (const QString &indice : tabella.indici)
            tutti.insert(indice, {indice, tabella.nome, Genere::Indice, {}, true});
    }
    return tutti;
}

bool Salvataggio::unoIntero(const QStringList &alberi) const
{
    return std::any_of(alberi.cbegin(), alberi.cend(),
                       [this](const QString &nome) { return m_alberi[nome].intero; });
}

QList<Conto> Salvataggio::compie(bool tiene)
{
    ado::Transazione transazione(m_nuovo);
    for (const Tabella &tabella : m_salvate.tabelle()) {
        for (const QString &indice : tabella.testimoni)
            aspettaDa(tabella, indice);
    }
    for (Tabella &tabella : m_salvate.tabelle()) {
        accosta(tabella);
        if (tabella.conRowid) {
            righeDi(tabella);
            continue;
        }
        coppieDi(tabella, tabella.nome);
        for (const QString &indice : std::as_const(tabella.indici))
            coppieDi(tabella, indice);
    }
    orfane(Uso::Ignoto);
    coppieOrfane();
    // Per ultime: una riga che c'è già vale più della sua copia fra le libere.
    orfane(Uso::Libera);
    QList<Conto> conti;
    for (const Tabella &tabella : m_salvate.tabelle())
        conti.append(conta(tabella));
    if (tiene)
        transazione.conferma();
    return conti;
}

void Salvataggio::aspettaDa(const Tabella &tabella, const QString &indice)
{
    const auto pagine = m_alberi[indice].pagine;
    for (const quint32 numero : pagine) {
        avanza(0);
        const auto celle = m_file.pagina(numero).celle;
        for (const Cella &cella : celle) {
            const auto voce = Carico(m_file, cella).colonne();
            if (!voce || voce->size() < 2 || voce->constLast().tipo != Valore::Intero)
                continue;
            const QByteArray codice = m_regole.codice(tabella.nome, indice, voce->constFirst());
            if (!codice.isEmpty())
                m_salvate.aspetta(tabella, indice, voce->constLast().intero, codice);
        }
    }
}

// Una tabella che altri hanno rifatto può avere colonne in più, o in un altro ordine: dove le sue
// vanno a finire. Una colonna di nome sconosciuto, dove la nostra manca, è la nostra col nome
// rovinato.
void Salvataggio::accosta(Tabella &tabella) const
{
    const QStringList sue = ado::colonneScritte(m_alberi.definizione(tabella.nome));
    const auto postoDi = [](const QStringList &nomi, const QString &nome) {
        const auto posto = std::find_if(nomi.begin(), nomi.end(), [&nome](const QString &uno) {
            return uno.compare(nome, Qt::CaseInsensitive) == 0;
        });
        return posto == nomi.end() ? qsizetype{-1} : posto - nomi.begin();
    };
    tabella.posti.clear();
    if (sue == tabella.colonne)
        return;
    for (qsizetype i = 0; i < sue.size(); ++i) {
        const qsizetype posto = postoDi(tabella.colonne, sue.at(i));
        const bool rovinata =
            posto < 0 && i < tabella.colonne.size() && postoDi(sue, tabella.colonne.at(i)) < 0;
        tabella.posti.append(rovinata ? i : posto);
    }
}

// La riga come sarebbe nella tabella nostra; le colonne che non ha restano Null.
QList<Valore> riordinata(const Tabella &tabella, const QList<Valore> &riga)
{
    QList<Valore> nuova(tabella.colonne.size());
    for (qsizetype i = 0; i < qMin(riga.size(), tabella.posti.size()); ++i) {
        const qsizetype posto = tabella.posti.at(i);
        const bool lungoNelMezzo = riga.at(i).tipo == Valore::Lungo && posto != nuova.size() - 1;
        if (posto >= 0 && !lungoNelMezzo)
            nuova[posto] = riga.at(i);
    }
    return nuova;
}

void Salvataggio::righeDi(Tabella &tabella)
{
    const auto pagine = m_alberi[tabella.nome].pagine;
    for (const quint32 numero : pagine) {
        avanza(numero);
        const Pagina pagina = m_file.pagina(numero);
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

// Una tabella senza chiave interna si ritrova intera in ciascuno dei suoi indici.
void Salvataggio::coppieDi(Tabella &tabella, const QString &indice)
{
    const QList<int> ordine = tabella.ordine.value(indice);
    const auto pagine = m_alberi[indice].pagine;
    for (const quint32 numero : pagine) {
        const Pagina pagina = m_file.pagina(numero);
        // Sopra le foglie le voci di un indice sono righe, quelle di una tabella no.
        if (pagina.genere == Genere::Tabella && !pagina.foglia)
            continue;
        bool tutte = true;
        for (const Cella &cella : pagina.celle) {
            Carico carico(m_file, cella);
            const auto voce = carico.colonne();
            const QList<Valore> riga =
                voce ? coppiaDa(*voce, tabella, ordine, pagina.genere) : QList<Valore>();
            if (adatta(tabella, riga))
                m_salvate.inserisce(tabella, 0, riga, carico);
            else
                tutte = false;
        }
        if (tutte)
            m_lette.insert(numero);
        else if (indice == tabella.nome)
            tabella.sana = false;
    }
}

// Le pagine cui nessun albero porta più: chi sta sopra è rotto, le righe possono essere sane. Fra
// quelle che il file dà per libere può stare una viva finita fuori posto.
void Salvataggio::orfane(Uso quali)
{
    for (quint32 numero = 2; numero <= m_file.quante(); ++numero) {
        if (m_alberi.uso().at(numero) != quali)
            continue;
        avanza(numero);
        const Pagina pagina = m_file.pagina(numero);
        if (pagina.genere != Genere::Tabella || !pagina.foglia)
            continue;
        for (const Cella &cella : pagina.celle)
            colloca(cella, quali);
    }
}

void Salvataggio::colloca(const Cella &cella, Uso da)
{
    for (Tabella &tabella : m_salvate.tabelle()) {
        if (tabella.conRowid && accetta(tabella, cella, da))
            return;
    }
}

// Le coppie della pagina che possono essere della tabella, nell'uno o nell'altro verso.
QList<Coppia> Salvataggio::coppieIn(const Tabella &tabella, const Pagina &pagina) const
{
    QList<Coppia> trovate;
    for (const Cella &cella : pagina.celle) {
        const auto voce = Carico(m_file, cella).colonne();
        if (!voce || voce->size() != tabella.colonne.size())
            continue;
        const Coppia rovescia(voce->crbegin(), voce->crend());
        if (adatta(tabella, *voce))
            trovate.append(*voce);
        else if (adatta(tabella, rovescia))
            trovate.append(rovescia);
    }
    return trovate;
}

// Le pagine di coppie, della tabella o del suo indice, cui nessun albero porta più, o che un albero
// d'altri si è preso. Una pagina è tutta di una tabella: si comincia da quelle di cui si sa, e
// ciascuna può dire qualcosa delle altre.
void Salvataggio::coppieOrfane()
{
    QList<quint32> restano;
    for (quint32 numero = 2; numero <= m_file.quante(); ++numero) {
        const Uso uso = m_alberi.uso().at(numero);
        if ((uso == Uso::Ignoto || uso == Uso::Albero) && !m_lette.contains(numero))
            restano.append(numero);
    }
    for (const bool anchePerEsclusione : {false, true}) {
        for (bool ancora = true; ancora;) {
            QList<quint32> ignote;
            for (const quint32 numero : std::as_const(restano)) {
                avanza(numero);
                const Pagina pagina = m_file.pagina(numero);
                if (pagina.genere != Genere::Indice)
                    continue;
                Tabella *sua = diChiSono(pagina, anchePerEsclusione);
                if (sua == nullptr) {
                    ignote.append(numero);
                    continue;
                }
                for (const Coppia &coppia : coppieIn(*sua, pagina)) {
                    Carico nessuno(m_file, {});
                    m_salvate.inserisce(*sua, 0, coppia, nessuno);
                }
            }
            ancora = ignote.size() < restano.size() && !ignote.isEmpty();
            restano = ignote;
        }
    }
}

// La tabella di cui sono le coppie della pagina: quella che ne ha già la metà; o quella che i
// record che nominano dicono per più della metà; o la sola cui manchi qualcosa. Nulla se non si sa.
Tabella *Salvataggio::diChiSono(const Pagina &pagina, bool anchePerEsclusione)
{
    QList<Tabella *> possibili;
    for (Tabella &tabella : m_salvate.tabelle()) {
        if (tabella.conRowid)
            continue;
        const QList<Coppia> coppie = coppieIn(tabella, pagina);
        if (coppie.isEmpty())
            continue;
        const auto quante = [&coppie](const auto &condizione) {
            return std::count_if(coppie.cbegin(), coppie.cend(), condizione);
        };
        if (2 * quante([&](const Coppia &una) { return m_salvate.contiene(tabella, una); }) >=
            coppie.size())
            return &tabella;
        if (m_alberi[tabella.nome].intero && tabella.sana)
            continue;
        if (m_regole.diCoppia && 2 * quante([&](const Coppia &una) {
                                     return m_regole.diCoppia(una.at(0), una.at(1)) == tabella.nome;
                                 }) > coppie.size())
            return &tabella;
        possibili.append(&tabella);
    }
    return anchePerEsclusione && possibili.size() == 1 ? possibili.constFirst() : nullptr;
}

bool Salvataggio::adatta(const Tabella &tabella, const QList<Valore> &riga) const
{
    return m_regole.adatta(tabella.nome, riga.value(0, nulla), riga.value(1, nulla));
}

// Falso se la riga, trovata fuori dal suo albero, era già stata cancellata per quanto se ne sa.
bool Salvataggio::ancoraViva(const Tabella &tabella, const QByteArray &codice, qint64 chiave,
                             Uso da)
{
    const Albero suo = m_alberi[tabella.nome];
    // In una pagina libera è viva solo se al suo albero manca qualcosa e un indice la nomina, lei e
    // la sua chiave. Dove gli indici non nominano nulla deve mancare l'albero intero.
    if (da == Uso::Libera && tabella.testimoni.isEmpty())
        return suo.pagine.isEmpty();
    if (da == Uso::Libera)
        return !suo.intero && m_salvate.aspettata(tabella, codice, chiave);
    // In una pagina che potrebbe essere libera basta che un indice intero non la smentisca.
    return m_libereIntere || !unoIntero(tabella.testimoni) || m_salvate.aspettata(tabella, codice);
}

// `da` dice che cosa si sa della pagina della cella: che è dell'albero della tabella, o libera, o
// nulla.
bool Salvataggio::accetta(Tabella &tabella, const Cella &cella, Uso da)
{
    const bool orfana = da != Uso::Albero;
    const auto seguito = catena(m_file, cella, m_alberi.uso());
    if (!seguito)
        return false;
    Carico carico(m_file, cella);
    auto riga = carico.colonne(orfana ? Lettura::Esatta : Lettura::Comunque);
    const qsizetype colonne = tabella.colonne.size();
    // Una riga che non torna con la sua lunghezza ha dentro qualcosa di rovinato: entra se il suo
    // posto è nell'albero e un indice la nomina.
    if (riga && !carico.esatta() &&
        (riga->size() != colonne || m_salvate.codiceDi(tabella, cella.chiave, 1).isEmpty()))
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
    if (!adatta(tabella, *riga))
        return false;
    if (orfana && !ancoraViva(tabella, riga->constFirst().byte, cella.chiave, da))
        return false;
    if (!m_salvate.inserisce(tabella, cella.chiave, *riga, carico))
        return false;
    for (const quint32 numero : *seguito)
        m_alberi.uso()[numero] = Uso::Seguito;
    return true;
}

// Un codice rovinato si riprende dagli indici che nominano la stessa riga: da uno, se non è più un
// codice; da tutti d'accordo, se è diventato quello di un'altra.
void Salvataggio::riparaCodice(const Tabella &tabella, qint64 chiave, QList<Valore> &riga,
                               bool esatta)
{
    if (tabella.testimoni.isEmpty())
        return;
    const bool codiceSuo = esatta && adatta(tabella, riga);
    const QByteArray codice =
        m_salvate.codiceDi(tabella, chiave, codiceSuo ? tabella.testimoni.size() : 1);
    if (!codice.isEmpty())
        riga[0] = {Valore::Testo, 0, 0, codice};
}

// In una foglia le chiavi crescono: di una fuori posto vale più il codice, e la chiave è quella che
// tutti gli indici gli danno. Altrimenti la riga finirebbe sotto il codice di un'altra.
Cella Salvataggio::conLaSuaChiave(const Tabella &tabella, const QList<Cella> &celle,
                                  qsizetype quale)
{
    Cella cella = celle.at(quale);
    const bool inOrdine = (quale == 0 || celle.at(quale - 1).chiave < cella.chiave) &&
                          (quale + 1 == celle.size() || cella.chiave < celle.at(quale + 1).chiave);
    if (inOrdine || tabella.testimoni.isEmpty() || !tabella.posti.isEmpty())
        return cella;
    const auto riga = Carico(m_file, cella).colonne();
    if (riga && adatta(tabella, *riga))
        cella.chiave =
            m_salvate.chiaveDi(tabella, riga->constFirst().byte, tabella.testimoni.size())
                .value_or(cella.chiave);
    return cella;
}

Conto Salvataggio::conta(const Tabella &tabella)
{
    const QStringList prove = tabella.conRowid ? tabella.testimoni : tabella.indici;
    const bool manca = !tabella.sana || !m_alberi[tabella.nome].intero;
    Conto conto{tabella.nome, tabella.salvate, 0, manca && !unoIntero(prove)};
    // Un albero senza guasti può essere di un'altra tabella, e così un indice: contro il primo
    // valgono solo tutti i secondi insieme.
    if (!tabella.testimoni.isEmpty())
        conto.perdute = m_salvate.perdute(tabella, manca ? 1 : tabella.testimoni.size());
    return conto;
}

} // namespace

QList<Conto> salva(const QString &danneggiato, ado::Connection &nuovo, const Regole &regole,
                   const provvisorio::Passo &passo)
{
    const auto compie = [&](bool badaAllaTestata, bool tiene) {
        return Salvataggio(danneggiato, badaAllaTestata, nuovo, regole, passo).compie(tiene);
    };
    const auto righe = [](const QList<Conto> &conti) {
        return std::accumulate(
            conti.cbegin(), conti.cend(), qint64{0},
            [](qint64 somma, const Conto &conto) { return somma + conto.salvate; });
    };
    if (File(danneggiato).dimensione() == paginaPredefinita)
        return compie(true, true);
    // Una testata che mente sulla misura delle pagine ne nasconde molte: si prova nei due modi.
    const bool badaAllaTestata = righe(compie(true, false)) > righe(compie(false, false));
    return compie(badaAllaTestata, true);
}

} // namespace salvataggio
