#include "db/lavoro/eliminazione.h"

#include "db/schema/orfani.h"
#include "db/schema/schema.h"
#include "db/schema/tabelle.h"

#include <QHash>

#include <algorithm>

namespace modTarvola
{

namespace
{

using catalogo::Colonna;
using catalogo::Forma;
using catalogo::Legame;
using catalogo::Posto;
using catalogo::Tabella;

// Un passo della pulizia: di quali tabelle si tolgono le righe il cui proprietario, in quella
// colonna, manca. Senza colonna: i record che nessuna coppia sostiene.
struct Passo {
    std::initializer_list<QStringView> tabelle;
    QStringView colonna;

    bool toglieDa(const Tabella &tabella) const
    {
        return std::find(tabelle.begin(), tabelle.end(), tabella.nome) != tabelle.end();
    }
};

constexpr Passo individui{{u"Individui"}, u"Voce"};
constexpr Passo famiglie{{u"Famiglie"}, u"Voce"};
constexpr Passo coppieSenzaFamiglia{{u"FamiglieConiugi", u"FamiglieGenitori"}, u"CodiceFamiglia"};
constexpr Passo famiglieVuote{{u"Famiglie"}, {}};
constexpr Passo coppieSenzaIndividuo{{u"FamiglieConiugi", u"FamiglieGenitori"}, u"CodiceIndividuo"};
constexpr Passo eventi{{u"Eventi"}, u"IdProprietario"};
constexpr Passo contesti{{u"OperatoriContesti"}, u"CodiceContesto"};
constexpr Passo operatoriSoli{{u"Operatori"}, {}};
constexpr Passo indirizzi{{u"Luoghi"}, u"IdProprietario"};
constexpr Passo recapiti{{u"Comunicazioni"}, u"IdProprietario"};
constexpr Passo allegati{{u"Binari"}, u"IdProprietario"};

using Passi = QList<const Passo *>;

// I passi di ciascuna tabella, nell'ordine: i proprietari prima di ciò che è loro. Con un indirizzo
// o un recapito va solo ciò che era suo; gli operatori rimasti soli aspettano un'altra volta.
// Nulla per le tabelle i cui record non si eliminano.
const Passi *passiDi(QChar lettera)
{
    static const Passi daVoci{&individui,     &coppieSenzaIndividuo,
                              &famiglie,      &coppieSenzaFamiglia,
                              &famiglieVuote, &eventi,
                              &contesti,      &operatoriSoli,
                              &indirizzi,     &recapiti,
                              &allegati};
    static const Passi daIndividui{
        &coppieSenzaIndividuo, &coppieSenzaFamiglia, &famiglieVuote, &eventi,  &contesti,
        &operatoriSoli,        &indirizzi,           &recapiti,      &allegati};
    static const Passi daEventi{&contesti, &operatoriSoli, &indirizzi, &recapiti, &allegati};
    static const Passi daIndirizzi{&contesti, &allegati};
    static const QHash<QChar, Passi> passi{
        {u'A', daVoci},      {u'R', daVoci},      {u'V', daVoci},
        {u'I', daIndividui}, {u'F', daIndividui}, {u'E', daEventi},
        {u'L', daIndirizzi}, {u'C', daIndirizzi}, {u'B', {}}};
    const auto suoi = passi.constFind(lettera);
    return suoi == passi.constEnd() ? nullptr : &*suoi;
}

QString fraApici(const QStringList &nomi)
{
    return u'\'' + nomi.join(QStringLiteral("','")) + u'\'';
}

// I codici scomparsi che la colonna può aver nominato: di tutti i proprietari, non serve dirlo.
QString dove(const Colonna &colonna)
{
    static const qsizetype quanti = [] {
        qsizetype proprietarie = 0;
        for (const Tabella &tabella : catalogo::tutte())
            proprietarie +=
                catalogo::dipendentiDi(tabella.nome, Legame::Sostenuto).isEmpty() ? 0 : 1;
        return proprietarie;
    }();
    QStringList nomi;
    for (const QStringView nome : colonna.proprietari)
        nomi.append(nome.toString());
    return nomi.size() == quanti ? QString()
                                 : QStringLiteral("WHERE Tabella IN (%1) ").arg(fraApici(nomi));
}

// Le righe che nominavano uno scomparso, o che sono annotate come orfane, e il cui proprietario
// davvero non c'è: le annotazioni di troppo non fanno danno.
QString pulizia(const Tabella &tabella, const Colonna &colonna)
{
    const QString manca = senzaProprietario(tabella.nome, colonna);
    // I legami sono annotati a coppie; si cercano per la colonna che porta il codice scomparso.
    if (tabella.forma == Forma::Coppie) {
        const bool prima = &colonna == tabella.colonne.data();
        return QStringLiteral("%2 IN (SELECT Codice FROM Scomparsi %3UNION ALL "
                              "SELECT %4 FROM Orfani WHERE Tabella = '%1') AND %5")
            .arg(tabella.nome, colonna.nome, dove(colonna),
                 prima ? QStringLiteral("Codice") : QStringLiteral("Altro"), manca);
    }
    return QStringLiteral("rowid IN (SELECT d.rowid FROM Scomparsi s CROSS JOIN "
                          "%1 d ON d.%2 = s.Codice %3UNION ALL SELECT d.rowid FROM Orfani o "
                          "CROSS JOIN %1 d ON d.Codice = o.Codice WHERE o.Tabella = '%1') AND %4")
        .arg(tabella.nome, colonna.nome, dove(colonna), manca);
}

// Chi lavora resta, anche se non ha ancora collegato nulla.
QString puliziaDeiSolitari(const Tabella &tabella)
{
    return QStringLiteral("Codice IN (SELECT Codice FROM Orfani WHERE Tabella = '%1') AND "
                          "Codice <> ?1 AND %2")
        .arg(tabella.senzaCoppie, senzaCoppie(tabella));
}

// Per ogni tabella del passo, quali righe se ne tolgono.
QStringList condizioniDi(const Passo &passo)
{
    QStringList testi;
    for (const QStringView nome : passo.tabelle) {
        const Tabella &tabella = catalogo::tabella(nome);
        testi.append(passo.colonna.isEmpty() ? puliziaDeiSolitari(tabella)
                                             : pulizia(tabella, *tabella.colonna(passo.colonna)));
    }
    return testi;
}

// Toglie righe e tiene a mente da quali tabelle.
class Cancellino
{
public:
    Cancellino(ado::Connection &connessione, const Seguito &seguito)
        : m_connessione(connessione), m_seguito(seguito)
    {
    }
    const QStringList &svuotate() const { return m_svuotate; }

    // Toglie le righe della tabella per cui la condizione vale.
    void toglie(QStringView tabella, const QString &dove, const QVariantList &valori)
    {
        const QString nome = tabella.toString();
        if (m_seguito.prima)
            m_seguito.prima(nome, dove, valori);
        const int quante = m_connessione.Execute(
            {QStringLiteral("DELETE FROM %1 WHERE %2").arg(nome, dove), valori, {}});
        if (quante == 0)
            return;
        if (m_seguito.dopo)
            m_seguito.dopo(nome, quante);
        if (!m_svuotate.contains(nome))
            m_svuotate.append(nome);
    }

private:
    ado::Connection &m_connessione;
    const Seguito &m_seguito;
    QStringList m_svuotate;
};

void esegue(Cancellino &cancellino, const Passo &passo, const QString &operatore)
{
    thread_local QHash<const Passo *, QStringList> pronte;
    if (!pronte.contains(&passo))
        pronte.insert(&passo, condizioniDi(passo));
    const QVariantList valori = passo.colonna.isEmpty() ? QVariantList{operatore} : QVariantList();
    auto tabella = passo.tabelle.begin();
    for (const QString &dove : std::as_const(pronte[&passo]))
        cancellino.toglie(*tabella++, dove, valori);
}

// Le istruzioni che tolgono ciò che sta dentro i record della tabella, dal fondo: con un archivio
// vanno i registri, e con i registri le voci. `quali` dice i loro codici.
void svuota(Cancellino &cancellino, QStringView tabella, const QString &quali,
            const QString &codice)
{
    for (const Posto &dentro : catalogo::dipendentiDi(tabella, Legame::Contenuto)) {
        const QStringView nome = dentro.tabella->nome;
        const QString suoi = QStringLiteral("%1 %2").arg(dentro.colonna->nome, quali);
        svuota(cancellino, nome,
               QStringLiteral("IN (SELECT Codice FROM %1 WHERE %2)").arg(nome, suoi), codice);
        cancellino.toglie(nome, suoi, {codice});
    }
}

void eliminaConIContenuti(Cancellino &cancellino, const Tabella &tabella, const QString &codice)
{
    svuota(cancellino, tabella.nome, QStringLiteral("= ?"), codice);
    cancellino.toglie(tabella.nome, QStringLiteral("Codice = ?"), {codice});
}

// Il posto dell'ultimo passo che toglie record della tabella lasciando indietro righe di quella
// colonna; -1 se si tolgono solo all'inizio. Chi va perché nessuna coppia lo sostiene non ne
// lascia.
qsizetype ultimaTolta(const Passi &passi, const Tabella &tabella, const Posto &dipendente)
{
    const bool sostegno = dipendente.tabella->forma == Forma::Coppie &&
                          dipendente.colonna == dipendente.tabella->colonne.data();
    for (qsizetype i = passi.size() - 1; i >= 0; --i) {
        if (passi.at(i)->toglieDa(tabella) && !(sostegno && passi.at(i)->colonna.isEmpty()))
            return i;
    }
    return -1;
}

qsizetype passoDi(const Passi &passi, const Posto &posto)
{
    for (qsizetype i = 0; i < passi.size(); ++i) {
        if (passi.at(i)->toglieDa(*posto.tabella) && passi.at(i)->colonna == posto.colonna->nome)
            return i;
    }
    return -1;
}

// Le tabelle dei cui scomparsi quei passi non lasciano nulla: ciò che li nominava si è cercato dopo
// che se n'era andato l'ultimo. Di operatori, indirizzi e recapiti tolti dopo i collegamenti questi
// possono restare, e aspettano la prossima volta.
QStringList esauriti(const Passi &passi)
{
    QStringList nomi;
    for (const Tabella &tabella : catalogo::tutte()) {
        const auto dipendenti = catalogo::dipendentiDi(tabella.nome, Legame::Sostenuto);
        const bool tutti =
            std::all_of(dipendenti.begin(), dipendenti.end(), [&](const Posto &posto) {
                return passoDi(passi, posto) > ultimaTolta(passi, tabella, posto);
            });
        if (!dipendenti.isEmpty() && tutti)
            nomi.append(tabella.nome.toString());
    }
    return nomi;
}

// Le annotazioni di cui non resta nulla da fare non si portano dietro.
void dimentica(ado::Connection &connessione, const Passi &passi, const QString &operatore)
{
    const QStringList finiti = esauriti(passi);
    connessione.Execute(
        {QStringLiteral("DELETE FROM Scomparsi WHERE Tabella IN (%1)").arg(fraApici(finiti)),
         {},
         {}});
    connessione.Execute(
        {QStringLiteral("DELETE FROM Orfani WHERE Tabella = 'OperatoriContesti'"), {}, {}});
    if (passi.contains(&operatoriSoli))
        connessione.Execute(
            {QStringLiteral("DELETE FROM Orfani WHERE Tabella = 'Soli' AND Codice <> ?"),
             {operatore},
             {}});
    if (passi.contains(&individui))
        connessione.Execute({QStringLiteral("DELETE FROM Orfani WHERE Tabella <> 'Soli'"), {}, {}});
}

// Ciò che si era scelto per le pagine di un registro va con lui.
void dimenticaLePagine(ado::Connection &connessione, const QString &codice)
{
    const QString tabella = QStringLiteral("CampiPagina");
    const QString di = tabellaDiCodice(codice);
    if ((di == QStringLiteral("Archivi") || di == QStringLiteral("Registri")) &&
        haTabella(connessione, tabella))
        connessione.Execute({QStringLiteral("DELETE FROM %1 WHERE Registro NOT IN (SELECT Codice "
                                            "FROM Registri)")
                                 .arg(tabella),
                             {},
                             {}});
}

} // namespace

QStringList elimina(ado::Connection &connessione, const QString &codice, const QString &operatore,
                    const Avanzata &avanza, const Seguito &seguito)
{
    const Tabella *tabella = catalogo::diCodice(codice);
    const Passi *suoi = tabella == nullptr ? nullptr : passiDi(tabella->lettera());
    if (suoi == nullptr)
        return {};
    const Passi &passi = *suoi;
    int compiuti = 0;
    const int totale = static_cast<int>(passi.size()) + 1;
    ado::Transazione transazione(connessione);
    const ado::Sorveglianza sorveglianza(connessione,
                                         [&] { return !avanza || avanza(compiuti, totale); });
    Cancellino cancellino(connessione, seguito);
    eliminaConIContenuti(cancellino, *tabella, codice);
    dimenticaLePagine(connessione, codice);
    for (const Passo *passo : passi) {
        ++compiuti;
        esegue(cancellino, *passo, operatore);
    }
    if (!passi.isEmpty())
        dimentica(connessione, passi, operatore);
    transazione.conferma();
    return cancellino.svuotate();
}

} // namespace modTarvola
