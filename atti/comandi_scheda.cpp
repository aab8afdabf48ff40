#include "atti/colonne.h"
#include "atti/fmCampi.h"
#include "atti/fmScheda.h"
#include "atti/fmTasti.h"
#include "atti/pagina.h"
#include "contesto/comandi.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/atto/altro_in_atto.h"
#include "editors/eliminazione.h"
#include "editors/icone_generi.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/tasti.h"
#include "platform/motore/recordset.h"

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QToolBar>
#include <QVBoxLayout>

// La testa della pagina, il suo menu e i comandi che agiscono su una casella o una persona.

using namespace modTarvola;
using scheda::Come;
using scheda::SchedaAtto;

struct fmScheda::Voce {
    QString id; // fra i comandi nostri; vuoto: un separatore
    bool inBarra = false;
    std::function<void()> compie = {};
};

std::vector<fmScheda::Voce> fmScheda::voci()
{
    return {
        {QStringLiteral("scheda.salva"), true, [this] { salva(); }},
        {QStringLiteral("scheda.salvaENuovo"), true, [this] { salvaENuovo(); }},
        {QStringLiteral("scheda.nuovo"), false, [this] { nuovo(); }},
        {},
        {QStringLiteral("scheda.precedente"), true, [this] { vicino(false); }},
        {QStringLiteral("scheda.successivo"), true, [this] { vicino(true); }},
        {},
        {QStringLiteral("scheda.comePrimaCasella"), false, [this] { comeNellAttoPrima(false); }},
        {QStringLiteral("scheda.comePrimaPersona"), false, [this] { comeNellAttoPrima(true); }},
        {QStringLiteral("scheda.altraPersona"), false, [this] { aggiungePersona(); }},
        {QStringLiteral("scheda.togliPersona"), false,
         [this] { esegue([this] { togliePersona(); }); }},
        {},
        {QStringLiteral("scheda.spegneProposte"), false, [this] { spegneProposte(); }},
        {QStringLiteral("scheda.proposteTolte"), false, [this] { mostraTolte(); }},
        {QStringLiteral("scheda.campi"), false, [this] { esegue([this] { scegliCampi(); }); }},
        {QStringLiteral("scheda.tasti"), false, [this] { fmTasti(window()).exec(); }},
    };
}

void fmScheda::creaMenu()
{
    m_menu = new QMenu(tr("&Scheda"), this);
    m_menu->setObjectName(QStringLiteral("SchedaItem"));
    m_barra = new QToolBar(this);
    m_barra->setObjectName(QStringLiteral("BarraScheda"));
    tasti::chiama(m_barra, tr("Comandi della scheda"));
    for (const Voce &voce : voci()) {
        if (voce.id.isEmpty()) {
            m_menu->addSeparator();
            continue;
        }
        auto *azione = new QAction(this);
        comandi::lega(azione, voce.id);
        azione->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(azione, &QAction::triggered, this, voce.compie);
        // In sola lettura restano i comandi che non scrivono.
        static const QStringList senzaScrivere{QStringLiteral("scheda.precedente"),
                                               QStringLiteral("scheda.successivo"),
                                               QStringLiteral("scheda.tasti")};
        azione->setEnabled(proprieta.TipoLock != ado::adLockReadOnly ||
                           senzaScrivere.contains(voce.id));
        m_menu->addAction(azione);
        addAction(azione);
        if (voce.inBarra)
            m_barra->addAction(azione);
    }
}

void fmScheda::creaTesta()
{
    auto *testa = new QWidget(this);
    auto *riga = new QHBoxLayout(testa);
    m_titolo = new QLabel(testa);
    m_titolo->setTextFormat(Qt::PlainText);
    QFont carattere = m_titolo->font();
    carattere.setPointSizeF(carattere.pointSizeF() * 1.25);
    m_titolo->setFont(carattere);
    riga->setContentsMargins(fontMetrics().averageCharWidth() * 2, 0, 0, 0);
    riga->addWidget(m_titolo, 1);
    riga->addWidget(m_barra);
    layout()->addWidget(testa);
}

void fmScheda::aggiornaTesta()
{
    const auto valore = [this](const char *campo) {
        const Campo *suo =
            m_pagina->campo({QStringLiteral("voce"), 0, 0, QString::fromUtf8(campo)});
        return suo == nullptr ? QString() : suo->testo();
    };
    QString titolo = m_titoloRegistro;
    const QString numero = valore("CodiceVoce");
    const QString volume = valore("Volume");
    if (!volume.isEmpty())
        titolo += tr(" · volume %1").arg(volume);
    titolo += proprieta.VoceLocale.isEmpty() ? tr(" · nuovo atto") : tr(" · atto");
    if (!numero.isEmpty())
        titolo += u' ' + numero;
    if (m_ripresa)
        titolo += tr(" · bozza");
    if (m_altrove == Altrove::Cambiato)
        titolo += tr(" · cambiato da un'altra parte");
    else if (m_altrove == Altrove::Eliminato)
        titolo += tr(" · eliminato da un'altra parte");
    m_titolo->setText(titolo);
    setWindowTitle(tr("Scheda File %1 Registro %2 Voce %3")
                       .arg(proprieta.Percorso, proprieta.RegistroLocale, proprieta.VoceLocale)
                       .trimmed() +
                   (daRegistrare() ? QStringLiteral(" *") : QString()));
}

// Ciò che nell'atto non ha una casella: Invio, o due clic, lo aprono nel suo editore.
void fmScheda::creaAltro()
{
    m_piede = new QWidget(this);
    m_altro = new QListWidget(m_piede);
    m_altro->setObjectName(QStringLiteral("Altro"));
    auto *etichetta = new QLabel(tr("A&ltro"), m_piede);
    etichetta->setBuddy(m_altro);
    m_altro->setAccessibleName(tr("Altro in questo atto"));
    const int lettera = fontMetrics().averageCharWidth();
    etichetta->setFixedWidth(colonne::etichetta(this));
    etichetta->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_altro->setFlow(QListView::LeftToRight);
    m_altro->setWrapping(true);
    m_altro->setResizeMode(QListView::Adjust);
    m_altro->setSpacing(2);
    m_altro->setTabKeyNavigation(false);
    m_altro->setFixedHeight(fontMetrics().height() * 2 + lettera);
    auto *riga = new QHBoxLayout(m_piede);
    riga->setContentsMargins(lettera * 2, 0, lettera * 2, lettera);
    riga->setSpacing(0);
    riga->addWidget(etichetta);
    riga->addWidget(m_altro, 1);
    m_piede->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    layout()->addWidget(m_piede);
    connect(m_altro, &QListWidget::itemActivated, this, [this](const QListWidgetItem *scelto) {
        const QString codice = scelto->data(Qt::UserRole).toString();
        esegue([this, codice] {
            if (apreRecord && puoChiudersi()) {
                apreRecord(codice);
                rilegge();
            }
        });
    });
}

void fmScheda::aggiornaAltro()
{
    m_altro->clear();
    if (!m_prima.codice.isEmpty()) {
        const auto altri =
            altroInAtto(*m_connessione, contesto().ColonnaLingua, SchedaAtto(*m_scheda, m_prima));
        for (const AltroRecord &uno : altri) {
            auto *voce = new QListWidgetItem(iconaDelGenere(uno.genere), uno.testo, m_altro);
            voce->setData(Qt::UserRole, uno.codice);
        }
    }
    m_piede->setVisible(m_altro->count() > 0);
}

// Riprende dall'atto che precede il valore della casella, o tutta la persona.
void fmScheda::comeNellAttoPrima(bool tuttaLaPersona)
{
    Campo *qui = m_pagina->campoCorrente();
    if (qui == nullptr || m_precedente.codice.isEmpty())
        return;
    const SchedaAtto prima(*m_scheda, m_precedente);
    for (RigaPagina *riga : m_pagina->righe()) {
        const bool sua = tuttaLaPersona && riga->riga().posto == qui->dove.posto;
        if (riga->riga().evento != qui->dove.evento && !sua)
            continue;
        for (Campo *campo : riga->campi()) {
            if (campo != qui && (!sua || campo->dove.quale != qui->dove.quale ||
                                 campo->dove.evento != qui->dove.evento))
                continue;
            const QVariant valore = prima.valore(campo->dove);
            if (!valore.toString().isEmpty())
                campo->scrive(valore);
        }
    }
}

// Chi sceglie resta nella casella in cui era, se si vede ancora.
void fmScheda::scegliCampi()
{
    fmCampi finestra(*m_scheda, scheda::leggeScelte(*m_connessione, proprieta.RegistroLocale),
                     m_titoloRegistro, window());
    if (finestra.exec() != QDialog::Accepted)
        return;
    scheda::scriveScelte(*m_connessione, proprieta.RegistroLocale, finestra.scelte());
    usaCampi(finestra.scelte());
    const QWidget *qui = m_pagina->focusWidget();
    if (qui == nullptr || !qui->isVisibleTo(m_pagina))
        m_pagina->comincia();
}

void fmScheda::aggiungePersona()
{
    const Campo *qui = m_pagina->campoCorrente();
    QString posto = QStringLiteral("altre");
    if (qui != nullptr && m_scheda->posto(qui->dove.posto)->come == Come::Elenco)
        posto = qui->dove.posto;
    RigaPagina *riga = m_pagina->aggiungeRiga(posto);
    if (riga == nullptr)
        return;
    Campo *nome = riga->campo(QStringLiteral("Nome"));
    m_pagina->scopre(nome);
    m_pagina->scorreA(riga);
    nome->casella()->riprende();
}

// Chi è già nell'archivio si elimina come da un elenco, con il suo avvertimento; prima si decide di
// ciò che è scritto. Chi non lo è ancora si vuota.
void fmScheda::togliePersona()
{
    const Campo *qui = m_pagina->campoCorrente();
    const Come come = qui == nullptr ? Come::Voce : m_scheda->posto(qui->dove.posto)->come;
    if (come == Come::Voce || come == Come::Coppia)
        return messaggi::avvisa(this, tr("Portare prima la tastiera in una casella della persona"));
    if (proprieta.TipoLock == ado::adLockReadOnly)
        return;
    const scheda::Indirizzo dove = qui->dove;
    const PersonaDiAtto *persona =
        m_prima.persona(SchedaAtto(*m_scheda, m_prima).persona(dove.posto, dove.quale));
    if (persona == nullptr)
        return m_pagina->vuota(dove.posto, dove.quale);
    if (persona->diAltraVoce)
        return messaggi::avvisa(this, tr("Questa persona è di un altro atto: si toglie da quello"));
    const QString codice = persona->codice;
    if (!puoChiudersi())
        return;
    EliminaVoce(window(), codice, proprieta.ConOperatore);
    rilegge();
}
