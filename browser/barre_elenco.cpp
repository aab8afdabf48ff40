#include "browser/barre_elenco.h"

#include "browser/fmTabella.h"
#include "contesto/comandi.h"
#include "platform/finestre/tasti.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>

BarreElenco::BarreElenco(fmTabella *elenco, const std::vector<ComandoElenco> &altri)
    : m_elenco(elenco),
      Toolbar1(new QToolBar(elenco)),
      Xitem(new QMenu(u'&' + elenco->genere().tabella, elenco))
{
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    tasti::chiama(Toolbar1, QStringLiteral("Comandi"));
    Toolbar1->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    Xitem->setObjectName(QStringLiteral("Xitem"));
    for (const ComandoElenco &comando : comandiElenco())
        aggiunge(comando);
    if (altri.empty())
        return;
    Toolbar1->addSeparator();
    Xitem->addSeparator();
    for (const ComandoElenco &comando : altri)
        aggiunge(comando);
}

QAction *BarreElenco::azione(const ComandoElenco &comando)
{
    auto *azione = new QAction(QIcon(comando.icona), comando.nome, m_elenco);
    QObject::connect(azione, &QAction::triggered, m_elenco,
                     [elenco = m_elenco, comando] { elenco->esegue(comando); });
    return azione;
}

// Il tasto è della voce del menu, che è nella barra finché l'elenco è attivo; il bottone lo dice.
void BarreElenco::aggiunge(const ComandoElenco &comando)
{
    QAction *bottone = azione(comando);
    QAction *voce = azione(comando);
    bottone->setObjectName(QStringLiteral("Toolbar1_%1").arg(m_pulsanti.size() + 1));
    if (comando.id.isEmpty()) {
        bottone->setToolTip(tasti::conTasto(bottone->text(), comando.tasto));
        voce->setShortcut(comando.tasto);
    } else {
        comandi::lega(bottone, comando.id, comandi::Porta::SoloNome);
        comandi::lega(voce, comando.id);
    }
    Toolbar1->addAction(bottone);
    Xitem->addAction(voce);
    m_pulsanti.push_back({comando, bottone, voce});
}

void BarreElenco::abilita()
{
    for (const auto &[comando, bottone, voce] : m_pulsanti) {
        const bool vale = !comando.abilitato || comando.abilitato(*m_elenco);
        bottone->setEnabled(vale);
        if (!comando.abilitatoNelMenu)
            voce->setEnabled(vale);
        else if (!comando.abilitatoNelMenu(*m_elenco))
            voce->setEnabled(false);
    }
}
