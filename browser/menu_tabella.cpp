#include "browser/fmTabella.h"
#include "platform/messaggi.h"
#include "platform/tasti.h"

#include <QAction>
#include <QMenu>
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
    m_menu = {
        menuServizio(QStringLiteral("&File"),
                     {QStringLiteral("Apri"), QStringLiteral("Nuovo"),
                      QStringLiteral("Compatta e ripristina"), QStringLiteral("Back up"),
                      QStringLiteral("Recupera")},
                     m_servizi.SubFileItem_Click),
        menuComandi(),
        menuTabelle(),
        menuServizio(QStringLiteral("&Finestre"),
                     {QStringLiteral("Affianca in verticale"),
                      QStringLiteral("Affianca in orizzontale"), QStringLiteral("Cascata"),
                      QStringLiteral("Mostra")},
                     m_servizi.SubFinestreItem_Click),
        menuServizio(QStringLiteral("&Aiuto"),
                     {QStringLiteral("Manuale"), QStringLiteral("Home page"),
                      QStringLiteral("Scrivi a Tarvola")},
                     m_servizi.SubAiutoItem_Click),
    };
}

QMenu *fmTabella::menuServizio(const QString &titolo, const QStringList &voci,
                               const std::function<void(int)> &servizio)
{
    auto *menu = new QMenu(titolo, this);
    for (int i = 0; i < voci.size(); ++i) {
        QAction *azione = menu->addAction(voci.at(i));
        azione->setShortcut(tasti::delMenu(voci.at(i)));
        // Accodato: il comando può chiudere questo stesso visualizzatore.
        connect(
            azione, &QAction::triggered, window(), [servizio, i] { servizio(i + 1); },
            Qt::QueuedConnection);
    }
    return menu;
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
