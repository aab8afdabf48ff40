#include "browser/fmTabella.h"

#include "browser/modello_tabella.h"
#include "contesto/contesto.h"
#include "db/connessioni.h"
#include "editors/icone_generi.h"
#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/testo_semplice.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QMenu>
#include <QShortcut>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

using namespace modTarvola;

namespace
{

const QString colonnaCodice = QStringLiteral("Codice");

// " Archivio A1" quando il codice c'è.
QString parte(const QString &nome, const QString &codice)
{
    return codice.isEmpty() ? QString() : u' ' + nome + u' ' + codice;
}

} // namespace

fmTabella::fmTabella(ProprietaTabella dalle, ServiziTabella servizi, QWidget *sopra)
    : QWidget(sopra), proprieta(std::move(dalle)), m_servizi(std::move(servizi))
{
    setObjectName(QStringLiteral("fmTabella"));
    setWindowIcon(iconaDellaTabella(proprieta.TipoTabella));
    creaBarra();
    creaMenu();
    creaGriglia();
    auto *colonna = new QVBoxLayout(this);
    colonna->setContentsMargins({});
    colonna->setSpacing(0);
    colonna->addWidget(Toolbar1);
    colonna->addWidget(DataGrid1, 1);
    setFocusProxy(DataGrid1);
}

void fmTabella::creaGriglia()
{
    DataGrid1 = new QTableView(this);
    DataGrid1->setObjectName(QStringLiteral("DataGrid1"));
    DataGrid1->setAccessibleName(proprieta.TipoTabella);
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    DataGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    DataGrid1->setAlternatingRowColors(true);
    DataGrid1->setWordWrap(false);
    DataGrid1->setTabKeyNavigation(false);
    DataGrid1->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    DataGrid1->verticalHeader()->setVisible(false);
    // Altezza uguale per tutte le righe: in un milione di righe nessuna si misura.
    DataGrid1->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    DataGrid1->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    DataGrid1->horizontalHeader()->setHighlightSections(false);
    DataGrid1->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    DataGrid1->horizontalHeader()->setSectionsClickable(true);
    connect(DataGrid1->horizontalHeader(), &QHeaderView::sectionClicked, this,
            &fmTabella::DataGrid1_HeadClick);
    connect(DataGrid1, &QTableView::activated, this, [this] { esegue(ApriRiga); });
    // Il tasto Menu, per le tastiere che non l'hanno.
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F10, DataGrid1, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, [this] { mostraMenuRiga(); });
}

void fmTabella::Form_Load()
{
    // Il segno dei dettagli non è un ambito: da qui in poi resta tolto.
    const bool dettagli = proprieta.Ordinamento > 7;
    if (dettagli)
        proprieta.Ordinamento -= 8;
    m_connessione = &connessione();
    const Richiesta richiesta{
        proprieta.TipoTabella,    proprieta.Ordinamento,    dettagli,
        proprieta.ArchivioLocale, proprieta.RegistroLocale, proprieta.VoceLocale};
    adoTabella = new ModelloTabella(Elenco(richiesta, *m_connessione), this);
    DataGrid1->setModel(adoTabella);
    connect(DataGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &indice) { DataGrid1_RowColChange(indice.row()); });
    setWindowTitle(proprieta.TipoTabella);
    adoTabella->apre();
    vaiAllaRiga(0);
    memoria::ricordaColonne(DataGrid1->horizontalHeader(), proprieta.TipoTabella);
    adattaColonne();
    DataGrid1->viewport()->installEventFilter(this);
}

// Le altre chiavi aspettano che le prime righe siano sullo schermo.
bool fmTabella::eventFilter(QObject *oggetto, QEvent *evento)
{
    if (evento->type() == QEvent::Paint) {
        oggetto->removeEventFilter(this);
        adoTabella->continua();
    }
    return false;
}

// Le colonne si adattano alle prime righe, mai a tutte; un testo lungo non caccia le altre.
void fmTabella::adattaColonne()
{
    constexpr int righeGuardate = 20;
    const int massima = fontMetrics().averageCharWidth() * 60;
    const int bordo = fontMetrics().averageCharWidth() * 3;
    memoria::adattaColonne(DataGrid1->horizontalHeader(), [&](int colonna) {
        int larga = DataGrid1->horizontalHeader()->sectionSizeHint(colonna);
        for (int riga = 0; riga < qMin(righeGuardate, adoTabella->rowCount()); ++riga) {
            const QString testo = adoTabella->index(riga, colonna).data().toString();
            larga = qMax(larga, fontMetrics().horizontalAdvance(testo) + bordo);
        }
        return qMin(larga, massima);
    });
}

bool fmTabella::vuota() const
{
    return adoTabella == nullptr || adoTabella->rowCount() == 0;
}

int fmTabella::rigaCorrente() const
{
    return DataGrid1->currentIndex().row();
}

QString fmTabella::codiceCorrente() const
{
    return rigaCorrente() < 0 ? QString()
                              : adoTabella->campo(rigaCorrente(), colonnaCodice).toString();
}

int fmTabella::tipoCorrente() const
{
    return rigaCorrente() < 0 ? 0
                              : adoTabella->campo(rigaCorrente(), QStringLiteral("Tipo")).toInt();
}

void fmTabella::vaiAllaRiga(int riga)
{
    if (!vuota())
        DataGrid1->setCurrentIndex(adoTabella->index(qMax(riga, 0), 0));
}

// Dopo una rilettura resta corrente lo stesso record, o quello dato se c'è.
void fmTabella::rilegge(const QString &codiceDaScegliere)
{
    const int prima = rigaCorrente();
    const qint64 chiave = prima < 0 ? -1 : adoTabella->chiave(prima);
    const bool eraVuota = vuota();
    adoTabella->rilegge();
    // Le larghezze di prima non dicono nulla delle righe nuove.
    if (eraVuota || !codiceDaScegliere.isEmpty())
        adattaColonne();
    int riga = codiceDaScegliere.isEmpty() ? -1 : adoTabella->rigaDi(codiceDaScegliere);
    if (riga < 0)
        riga = adoTabella->rigaDiChiave(chiave);
    // Se il record non c'è più si resta dov'era.
    if (riga < 0)
        riga = qMin(prima, adoTabella->rowCount() - 1);
    vaiAllaRiga(riga);
}

void fmTabella::DataGrid1_HeadClick(int colonna)
{
    messaggi::protetto(this, [&] {
        const int prima = rigaCorrente();
        const qint64 chiave = prima < 0 ? -1 : adoTabella->chiave(prima);
        if (adoTabella->ordina(colonna))
            vaiAllaRiga(adoTabella->rigaDiChiave(chiave));
    });
    // Il segno, che la testata ha già spostato, sta sulla colonna che ordina davvero.
    const int ordine = adoTabella->colonnaOrdine();
    DataGrid1->horizontalHeader()->setSortIndicatorShown(ordine >= 0);
    DataGrid1->horizontalHeader()->setSortIndicator(ordine, Qt::AscendingOrder);
}

void fmTabella::DataGrid1_RowColChange(int riga)
{
    if (riga < 0)
        return;
    const QString codice = adoTabella->campo(riga, colonnaCodice).toString();
    if (proprieta.TipoTabella == QStringLiteral("Archivi"))
        proprieta.ArchivioLocale = codice;
    else if (proprieta.TipoTabella == QStringLiteral("Registri"))
        proprieta.RegistroLocale = codice;
    else if (proprieta.TipoTabella == QStringLiteral("Voci"))
        proprieta.VoceLocale = codice;
}

void fmTabella::abilita(ComandoTabella comando, bool si)
{
    m_bottoni[comando]->setEnabled(si);
}

void fmTabella::Form_Activate()
{
    const QString &tabella = proprieta.TipoTabella;
    const bool contenitori = tabella == QStringLiteral("Archivi") ||
                             tabella == QStringLiteral("Registri") ||
                             tabella == QStringLiteral("Voci");
    const bool righe = !vuota();
    if (righe && contenitori)
        prendeContesto();
    abilita(Seleziona, righe && contenitori && tabella != QStringLiteral("Voci"));
    abilita(ApriRiga, righe);
    abilita(Aggiorna, righe);
    abilita(EliminaRiga, righe);
    abilita(NuovaRiga, contenitori);
    if (!contenitori) {
        TItem->setEnabled(false);
        XsubItem[NuovaRiga]->setEnabled(false);
    }
    if (!contenitori || (righe && tabella == QStringLiteral("Voci")))
        XsubItem[Seleziona]->setEnabled(false);
    setWindowTitle(testo_semplice::didascalia(didascalia()));
}

// La riga corrente diventa l'archivio, il registro o la voce su cui si lavora.
void fmTabella::prendeContesto()
{
    const QString codice = codiceCorrente();
    // Una riga che non si legge non cambia su che cosa si lavora.
    if (codice.isEmpty())
        return;
    if (proprieta.TipoTabella == QStringLiteral("Archivi")) {
        contesto().ArchivioCorrente = codice;
        proprieta.ArchivioLocale = codice;
    } else if (proprieta.TipoTabella == QStringLiteral("Registri")) {
        contesto().RegistroCorrente = codice;
        contesto().TipoRegistroCorrente =
            adoTabella->campo(rigaCorrente(), QStringLiteral("Tipo")).toInt();
        proprieta.RegistroLocale = codice;
    } else {
        contesto().VoceCorrente = codice;
        proprieta.VoceLocale = codice;
    }
}

QString fmTabella::didascalia() const
{
    const Contesto &ora = contesto();
    const QString inizio = proprieta.TipoTabella + QStringLiteral(" File ") + proprieta.Percorso;
    const QString archivio = parte(QStringLiteral("Archivio"), ora.ArchivioCorrente);
    const QString registro = parte(QStringLiteral("Registro"), ora.RegistroCorrente);
    const QString voce = parte(QStringLiteral("Voce"), ora.VoceCorrente);
    if (proprieta.TipoTabella == QStringLiteral("Archivi"))
        return inizio;
    if (proprieta.TipoTabella == QStringLiteral("Registri"))
        return inizio + archivio;
    // Una lista non vuota nomina sempre l'archivio, e quella delle voci anche il registro.
    const QString sempreArchivio = QStringLiteral(" Archivio ") + ora.ArchivioCorrente;
    if (proprieta.TipoTabella == QStringLiteral("Voci"))
        return vuota()
                   ? inizio + archivio + registro
                   : inizio + sempreArchivio + QStringLiteral(" Registro ") + ora.RegistroCorrente;
    return inizio + (vuota() ? archivio : sempreArchivio) + registro + voce;
}
