#include "browser/griglia.h"

#include "browser/modello_tabella.h"
#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"

#include <QHeaderView>
#include <QShortcut>

Griglia::Griglia(const QString &nome, QWidget *sopra) : QTableView(sopra)
{
    setObjectName(QStringLiteral("DataGrid1"));
    setAccessibleName(nome);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->setVisible(false);
    // Altezza uguale per tutte le righe: in un milione di righe nessuna si misura.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setSectionsClickable(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &Griglia::ordina);
    // Il tasto Menu, per le tastiere che non l'hanno.
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F10, this, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &Griglia::menuChiesto);
}

void Griglia::mostra(ModelloTabella *modello)
{
    m_modello = modello;
    setModel(modello);
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &indice) { emit rigaCambiata(indice.row()); });
    vaAllaRiga(0);
    memoria::ricordaColonne(horizontalHeader(), accessibleName());
    adattaColonne(Larghezza::Giusta);
}

// Le altre chiavi aspettano che le prime righe siano sullo schermo.
void Griglia::paintEvent(QPaintEvent *evento)
{
    QTableView::paintEvent(evento);
    if (m_modello != nullptr)
        m_modello->continua();
}

// Le colonne si adattano alle prime righe e a quelle che si vedono, mai a tutte; un testo lungo non
// caccia le altre.
int Griglia::larghezza(int colonna) const
{
    constexpr int righeGuardate = 20;
    const int massima = fontMetrics().averageCharWidth() * 60;
    const int bordo = fontMetrics().averageCharWidth() * 3;
    int larga = qMax(horizontalHeader()->sectionSizeHint(colonna),
                     fontMetrics().horizontalAdvance(m_modello->esempio(colonna)) + bordo);
    const auto guarda = [&](int riga) {
        const QString testo = m_modello->index(riga, colonna).data().toString();
        larga = qMax(larga, fontMetrics().horizontalAdvance(testo) + bordo);
    };
    for (int riga = 0; riga < qMin(righeGuardate, m_modello->rowCount()); ++riga)
        guarda(riga);
    const int prima = rowAt(0);
    const int ultima = rowAt(viewport()->height() - 1);
    for (int riga = prima; prima >= righeGuardate && riga <= ultima; ++riga)
        guarda(riga);
    return qMin(larga, massima);
}

void Griglia::adattaColonne(Larghezza come)
{
    memoria::adattaColonne(horizontalHeader(), [&](int colonna) {
        const int larga = larghezza(colonna);
        return come == Larghezza::Giusta ? larga
                                         : qMax(larga, horizontalHeader()->sectionSize(colonna));
    });
}

QItemSelectionModel::SelectionFlags Griglia::selectionCommand(const QModelIndex &indice,
                                                              const QEvent *evento) const
{
    const auto comando = QTableView::selectionCommand(indice, evento);
    return comando & QItemSelectionModel::Deselect
               ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
               : comando;
}

void Griglia::vaAllaRiga(int riga)
{
    if (m_modello->rowCount() > 0)
        setCurrentIndex(m_modello->index(qMax(riga, 0), 0));
}

void Griglia::rilegge(const QString &codiceDaScegliere)
{
    const int prima = rigaCorrente();
    const qint64 chiave = prima < 0 ? -1 : m_modello->chiave(prima);
    const bool eraVuota = m_modello->rowCount() == 0;
    m_modello->rilegge();
    // Le larghezze di un elenco vuoto non dicono nulla delle righe nuove.
    adattaColonne(eraVuota ? Larghezza::Giusta : Larghezza::Cresce);
    int riga = codiceDaScegliere.isEmpty() ? -1 : m_modello->rigaDi(codiceDaScegliere);
    if (riga < 0)
        riga = m_modello->rigaDiChiave(chiave);
    if (riga < 0)
        riga = qMin(prima, m_modello->rowCount() - 1);
    vaAllaRiga(riga);
}

void Griglia::rinfresca()
{
    m_modello->rinfresca();
    adattaColonne(Larghezza::Cresce);
}

void Griglia::ordina(int colonna)
{
    messaggi::protetto(this, [&] {
        const int prima = rigaCorrente();
        const qint64 chiave = prima < 0 ? -1 : m_modello->chiave(prima);
        if (m_modello->ordina(colonna))
            vaAllaRiga(m_modello->rigaDiChiave(chiave));
    });
    // Il segno, che la testata ha già spostato, sta sulla colonna che ordina davvero.
    const int ordine = m_modello->colonnaOrdine();
    horizontalHeader()->setSortIndicatorShown(ordine >= 0);
    horizontalHeader()->setSortIndicator(ordine, Qt::AscendingOrder);
}
