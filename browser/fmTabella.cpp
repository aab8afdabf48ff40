#include "browser/fmTabella.h"

#include "browser/griglia.h"
#include "browser/modello_tabella.h"
#include "browser/tabelle.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "editors/icone_generi.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/testo_semplice.h"

#include <QAction>
#include <QActionGroup>
#include <QContextMenuEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScrollBar>
#include <QToolBar>
#include <QVBoxLayout>

using namespace modTarvola;

namespace
{

constexpr int segnoDettagli = 8;
const QString colonnaCodice = QStringLiteral("Codice");

std::vector<ComandoElenco> aggiunti(const ServiziTabella &servizi, const GenereElenco &genere)
{
    return servizi.altriComandi ? servizi.altriComandi(genere) : std::vector<ComandoElenco>();
}

} // namespace

fmTabella::fmTabella(ProprietaTabella dalle, ServiziTabella servizi, QWidget *sopra)
    : QWidget(sopra),
      proprieta(std::move(dalle)),
      m_genere(genereElenco(proprieta.TipoTabella)),
      m_servizi(std::move(servizi)),
      m_barre(this, aggiunti(m_servizi, m_genere)),
      TItem(menuTabelle(this)),
      DataGrid1(new Griglia(m_genere.tabella, this))
{
    setObjectName(QStringLiteral("fmTabella"));
    setWindowIcon(iconaDellaTabella(m_genere.tabella));
    auto *colonna = new QVBoxLayout(this);
    colonna->setContentsMargins({});
    colonna->setSpacing(0);
    colonna->addWidget(m_barre.barra());
    colonna->addWidget(DataGrid1, 1);
    setFocusProxy(DataGrid1);
    connect(DataGrid1, &Griglia::activated, this, [this] { esegue(comandoApre()); });
    connect(DataGrid1, &Griglia::menuChiesto, this, [this] { mostraMenuRiga(); });
    connect(DataGrid1, &Griglia::rigaCambiata, this, [this](int riga) {
        if (riga >= 0 && m_genere.contenitore())
            proprieta.*m_genere.locale = codiceCorrente();
    });
    // Più tardi, quando chi ha scritto ha finito.
    connect(&annunci(), &Annunci::avvenuto, this, &fmTabella::riceve, Qt::QueuedConnection);
}

// Un milione di righe non si rilegge per una che nasce: nell'ordine in cui furono scritte viene
// ultima.
void fmTabella::riceve(const Annuncio &annuncio)
{
    if (adoTabella == nullptr || !stessoFile(annuncio.archivio, proprieta.Percorso))
        return;
    messaggi::protetto(this, [&] {
        if (annuncio.ripresa)
            return ritrova(annuncio);
        const bool nati = annuncio.dice(Cambiamento::Nuovo, m_genere.tabella);
        const bool daRileggere = vuota() || adoTabella->colonnaOrdine() >= 0;
        if (nati && !daRileggere)
            adoTabella->aggiungeNuove();
        mostraCambiamenti(annuncio.dice(Cambiamento::Eliminato, m_genere.tabella) ||
                          (nati && daRileggere));
    });
}

// Ciò che un passo annullato o ripetuto rimette sta al suo posto, non in fondo; nell'elenco che si
// usa si sceglie il primo.
void fmTabella::ritrova(const Annuncio &annuncio)
{
    const auto suo = std::find_if(
        annuncio.cambiamenti.begin(), annuncio.cambiamenti.end(), [this](const Cambiamento &uno) {
            return uno.tabella == m_genere.tabella && uno.specie != Cambiamento::Eliminato &&
                   !uno.codice.isEmpty();
        });
    const auto *finestra = qobject_cast<const QMdiSubWindow *>(parentWidget());
    if (suo != annuncio.cambiamenti.end() && finestra != nullptr &&
        finestra->mdiArea()->currentSubWindow() == finestra)
        aggiorna(suo->codice);
    else
        mostraCambiamenti(true);
}

void fmTabella::Form_Load()
{
    // Il segno dei dettagli non è un ambito: da qui in poi resta tolto.
    m_dettagli = proprieta.Ordinamento >= segnoDettagli;
    if (m_dettagli)
        proprieta.Ordinamento -= segnoDettagli;
    m_connessione = &connessione();
    const Richiesta richiesta{
        proprieta.TipoTabella,    proprieta.Ordinamento,    m_dettagli,
        proprieta.ArchivioLocale, proprieta.RegistroLocale, proprieta.VoceLocale,
        contesto().ColonnaLingua};
    adoTabella = new ModelloTabella(Elenco(richiesta, *m_connessione), this);
    adoTabella->apre();
    DataGrid1->mostra(adoTabella);
    setWindowTitle(proprieta.TipoTabella);
}

bool fmTabella::vuota() const
{
    return adoTabella == nullptr || adoTabella->rowCount() == 0;
}

QString fmTabella::codiceCorrente() const
{
    return campoCorrente(colonnaCodice).toString();
}

QVariant fmTabella::campoCorrente(const QString &nome) const
{
    const int riga = DataGrid1->rigaCorrente();
    return riga < 0 ? QVariant() : adoTabella->campo(riga, nome);
}

void fmTabella::Form_Activate()
{
    if (m_genere.contenitore())
        prendeContesto();
    else
        TItem->setEnabled(false);
    m_barre.abilita();
    setWindowTitle(testo_semplice::didascalia(didascalia()));
}

void fmTabella::prendeContesto()
{
    const QString codice = codiceCorrente();
    // Una riga che non si legge non cambia su che cosa si lavora.
    if (codice.isEmpty())
        return;
    contesto().*m_genere.corrente = codice;
    proprieta.*m_genere.locale = codice;
    if (m_genere.livello == Livello::Registro)
        contesto().TipoRegistroCorrente = campoCorrente(QStringLiteral("Tipo")).toInt();
}

QString fmTabella::didascalia() const
{
    QString testo = m_genere.tabella + QStringLiteral(" File ") + proprieta.Percorso;
    const std::pair<QString, QString> correnti[] = {
        {QStringLiteral(" Archivio "), contesto().ArchivioCorrente},
        {QStringLiteral(" Registro "), contesto().RegistroCorrente},
        {QStringLiteral(" Voce "), contesto().VoceCorrente}};
    for (int i = 0; i < m_genere.nominati; ++i) {
        const auto &[nome, codice] = correnti[i];
        if (!codice.isEmpty() || (!vuota() && i < m_genere.sempreNominati))
            testo += nome + codice;
    }
    return testo;
}

void fmTabella::aggiorna(const QString &codiceDaScegliere)
{
    DataGrid1->rilegge(codiceDaScegliere);
    Form_Activate();
}

StatoTabella fmTabella::stato() const
{
    StatoTabella stato{proprieta, adoTabella->colonnaOrdine(), codiceCorrente()};
    if (m_dettagli)
        stato.proprieta.Ordinamento += segnoDettagli;
    return stato;
}

void fmTabella::riprende(const StatoTabella &stato)
{
    if (stato.colonnaOrdine >= 0)
        DataGrid1->ordina(stato.colonnaOrdine);
    // Il record può essere fra quelli che non si sono ancora letti.
    if (!stato.codiceCorrente.isEmpty() && stato.codiceCorrente != codiceCorrente())
        aggiorna(stato.codiceCorrente);
}

QString fmTabella::ambito() const
{
    const QString codici[] = {proprieta.ArchivioLocale, proprieta.RegistroLocale,
                              proprieta.VoceLocale};
    const char *const nomi[] = {"archivio ", "registro ", "voce "};
    // Senza un ambito più largo si elenca ciò che sta nel contenitore di un livello sopra.
    const int livello = proprieta.Ordinamento == 6   ? 0
                        : proprieta.Ordinamento == 4 ? 1
                                                     : static_cast<int>(m_genere.livello) - 1;
    if (proprieta.Ordinamento != 7 && livello < 0)
        return {};
    return (proprieta.Ordinamento == 7 ? QStringLiteral("tutto")
                                       : QString::fromUtf8(nomi[livello]) + codici[livello]) +
           (m_dettagli ? QStringLiteral(", con i dettagli") : QString());
}

void fmTabella::mostraCambiamenti(bool chiavi)
{
    const int inCima = DataGrid1->verticalScrollBar()->value();
    if (chiavi)
        DataGrid1->rilegge({});
    else
        DataGrid1->rinfresca();
    DataGrid1->verticalScrollBar()->setValue(inCima);
    m_barre.abilita();
}

void fmTabella::esegue(const ComandoElenco &comando)
{
    messaggi::protetto(this, [&] {
        ApriArchivio(proprieta.Percorso);
        if (adoTabella->incompleto())
            DataGrid1->rilegge({});
        if (!comando.suRiga || rigaPronta())
            comando.compie(*this);
    });
}

// Senza una riga corrente i comandi che ne vogliono una non fanno nulla. Di una riga eliminata
// altrove si aprirebbe un record nuovo, o si eliminerebbe un altro.
bool fmTabella::rigaPronta() const
{
    const int riga = DataGrid1->rigaCorrente();
    if (riga < 0)
        return false;
    if (!adoTabella->conferma(riga))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("la riga non si legge più: aggiornare l'elenco"));
    return true;
}

void fmTabella::contextMenuEvent(QContextMenuEvent *evento)
{
    const QWidget *righe = DataGrid1->viewport();
    if (evento->reason() == QContextMenuEvent::Keyboard)
        mostraMenuRiga();
    else if (righe->rect().contains(righe->mapFromGlobal(evento->globalPos())))
        mostraMenuRiga(evento->globalPos());
    else
        evento->ignore();
}

// I comandi, e l'ordine per chi non clicca sulle testate; sotto la riga, se non è dato il posto.
void fmTabella::mostraMenuRiga(std::optional<QPoint> posto)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(m_barre.menu()->actions());
    menu->addSeparator();
    menu->addMenu(menuOrdine(menu));
    const QRect riga = DataGrid1->visualRect(DataGrid1->currentIndex());
    menu->popup(posto.value_or(DataGrid1->viewport()->mapToGlobal(riga.bottomLeft())));
}

QMenu *fmTabella::menuOrdine(QMenu *sopra)
{
    auto *ordine = new QMenu(QStringLiteral("&Ordina per"), sopra);
    auto *unaSola = new QActionGroup(ordine);
    for (int colonna = 0; colonna < adoTabella->columnCount(); ++colonna) {
        if (!adoTabella->ordinabile(colonna))
            continue;
        QAction *azione = ordine->addAction(
            adoTabella->headerData(colonna, Qt::Horizontal, Qt::DisplayRole).toString());
        azione->setCheckable(true);
        unaSola->addAction(azione);
        azione->setChecked(colonna == adoTabella->colonnaOrdine());
        connect(azione, &QAction::triggered, DataGrid1,
                [this, colonna] { DataGrid1->ordina(colonna); });
    }
    ordine->setEnabled(!ordine->isEmpty());
    return ordine;
}
