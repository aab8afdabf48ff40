#include "app/storia.h"

#include "app/fmStoria.h"
#include "contesto/comandi.h"
#include "db/archivio/connessioni.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/testo_semplice.h"

#include <QAction>

using namespace modTarvola;

MenuModifica::MenuModifica(QWidget *finestra)
    : QMenu(tr("&Modifica"), finestra), m_finestra(finestra)
{
    setObjectName(QStringLiteral("ModificaItem"));
    const auto azione = [this](const char *id, const std::function<void()> &compie) {
        auto *nuova = addAction(QString());
        comandi::lega(nuova, QString::fromUtf8(id));
        connect(nuova, &QAction::triggered, this,
                [this, compie] { messaggi::protetto(m_finestra, compie); });
        return nuova;
    };
    m_annulla = azione("modifica.annulla", [this] { svolge(true); });
    m_ripeti = azione("modifica.ripeti", [this] { svolge(false); });
    addSeparator();
    m_storia = azione("modifica.storia", [this] { fmStoria(m_finestra).mostra(); });
    connect(this, &QMenu::aboutToShow, this,
            [this] { messaggi::protetto(m_finestra, [this] { aggiorna(); }); });
    // Il tasto vale anche a menu chiuso, quando i nomi non sono aggiornati.
    connect(
        this, &QMenu::aboutToHide, this,
        [this] {
            for (QAction *una : {m_annulla, m_ripeti, m_storia})
                una->setEnabled(true);
        },
        Qt::QueuedConnection);
}

// I nomi dei passi vengono dall'archivio: una voce di menu li mostra come sono, e non troppo
// lunghi.
void MenuModifica::aggiorna()
{
    constexpr qsizetype massimo = 60;
    const bool aperto = connessione().State() != ado::adStateClosed;
    const auto veste = [](QAction *azione, const QString &id,
                          const std::optional<storia::Passo> &passo) {
        const QString nome = comandi::comando(id).nome;
        QString quale = passo ? passo->nome.simplified() : QString();
        if (quale.size() > massimo)
            quale = quale.left(massimo - 1).trimmed() + u'…';
        azione->setText(passo ? QStringLiteral("%1: %2").arg(nome, testo_semplice::voceDi(quale))
                              : nome);
        azione->setEnabled(passo.has_value());
    };
    veste(m_annulla, QStringLiteral("modifica.annulla"),
          aperto ? storia::daAnnullare(connessione()) : std::nullopt);
    veste(m_ripeti, QStringLiteral("modifica.ripeti"),
          aperto ? storia::daRipetere(connessione()) : std::nullopt);
    m_storia->setEnabled(aperto);
}

void MenuModifica::svolge(bool annulla)
{
    if (connessione().State() == ado::adStateClosed)
        return;
    const auto passo =
        annulla ? storia::daAnnullare(connessione()) : storia::daRipetere(connessione());
    if (passo)
        riprende(m_finestra, *passo);
    else
        messaggi::avvisa(m_finestra, annulla ? tr("Non c'è nulla da annullare")
                                             : tr("Non c'è nulla da ripetere"));
}
