#include "browser/fmTabella.h"
#include "browser/modello_tabella.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/tasti.h"

#include <QAction>
#include <QActionGroup>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTableView>
#include <QToolBar>

namespace
{

struct Comando {
    const char *nome = nullptr;
    const char *icona = nullptr;
    ComandoTabella numero = Seleziona;
    QKeyCombination tasto = Qt::Key_unknown;
};

constexpr Comando comandi[] = {
    {"Seleziona", ":/icone/seleziona.svg", Seleziona, Qt::CTRL | Qt::Key_Return},
    {"Apri", ":/icone/apri.svg", ApriRiga, Qt::Key_Return},
    {"Nuovo", ":/icone/nuovo.svg", NuovaRiga, Qt::Key_Insert},
    {"Aggiorna", ":/icone/aggiorna.svg", Aggiorna, Qt::Key_F5},
    {"Elimina", ":/icone/elimina.svg", EliminaRiga, Qt::Key_Delete},
};

} // namespace

void fmTabella::creaBarra()
{
    Toolbar1 = new QToolBar(this);
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    tasti::chiama(Toolbar1, QStringLiteral("Comandi"));
    Toolbar1->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const Comando &comando : comandi) {
        const ComandoTabella numero = comando.numero;
        auto *azione = new QAction(QIcon(QString::fromUtf8(comando.icona)),
                                   QString::fromUtf8(comando.nome), this);
        azione->setObjectName(QStringLiteral("Toolbar1_%1").arg(numero));
        azione->setToolTip(tasti::conTasto(azione->text(), comando.tasto));
        connect(azione, &QAction::triggered, this, [this, numero] { esegue(numero); });
        Toolbar1->addAction(azione);
        m_bottoni[numero] = azione;
    }
}

// Di ogni menu è padrone il visualizzatore; la finestra principale lo mostra quando è attivo.
void fmTabella::creaMenu()
{
    m_menu = {menuComandi(), menuTabelle()};
}

QMenu *fmTabella::menuComandi()
{
    auto *menu = new QMenu(u'&' + proprieta.TipoTabella, this);
    menu->setObjectName(QStringLiteral("Xitem"));
    for (const Comando &comando : comandi) {
        const ComandoTabella numero = comando.numero;
        XsubItem[numero] = menu->addAction(QIcon(QString::fromUtf8(comando.icona)),
                                           QString::fromUtf8(comando.nome));
        XsubItem[numero]->setShortcut(comando.tasto);
        connect(XsubItem[numero], &QAction::triggered, this, [this, numero] { esegue(numero); });
    }
    return menu;
}

QMenu *fmTabella::menuTabelle()
{
    TItem = new QMenu(QStringLiteral("&Tabelle"), this);
    TItem->setObjectName(QStringLiteral("TItem"));
    const char *const voci[] = {"Archivi",  "Registri", "Voci",           "Individui",
                                "Famiglie", "Eventi",   "Testi e Oggetti"};
    int numero = 0;
    for (const char *voce : voci) {
        ++numero;
        connect(TItem->addAction(QString::fromUtf8(voce)), &QAction::triggered, this,
                [this, numero] { TsubItem_Click(numero); });
    }
    return TItem;
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
    menu->addActions(m_menu.constFirst()->actions());
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
        connect(azione, &QAction::triggered, this,
                [this, colonna] { DataGrid1_HeadClick(colonna); });
    }
    ordine->setEnabled(!ordine->isEmpty());
    return ordine;
}
