#include "app/MDITras.h"

#include "app/aiuto.h"
#include "app/area.h"
#include "app/fmChiudi.h"
#include "contesto/contesto.h"
#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/testo_semplice.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScreen>

using namespace modTarvola;

MDITras::MDITras()
    : m_area(new Area(this)),
      m_menu(this, {[this](VoceFile voce) { SubFileItem_Click(voce); },
                    [this](VoceFinestre voce) { SubFinestreItem_Click(voce); },
                    [this](VoceAiuto voce) { SubAiutoItem_Click(voce); }}),
      m_archivi(
          this,
          [this] {
              ProprietaTabella proprieta;
              proprieta.TipoTabella = QStringLiteral("Archivi");
              proprieta.Percorso = contesto().PercorsoCorrente;
              proprieta.ConOperatore = contesto().OperatoreCorrente;
              apre(proprieta);
          },
          [this](const ado::Connection *connessione) { chiudeFinestre(connessione); }),
      m_custodia(this, m_archivi)
{
    avviaContesto();
    setObjectName(QStringLiteral("MDITras"));
    setWindowTitle(QStringLiteral("Tarvola"));
    setCentralWidget(m_area);
    mostraMenu({});
    connect(m_area, &QMdiArea::subWindowActivated, this, &MDITras::attivata);
    resize(screen()->availableSize() * 4 / 5);
    memoria::ricordaFinestra(this, objectName());
}

MDITras::~MDITras()
{
    // L'area annuncia le sue finestre anche mentre muore, quando i menu non ci sono più.
    disconnect(m_area, nullptr, this, nullptr);
}

// Una barra sola: i menu comuni, con in mezzo quelli della finestra attiva.
void MDITras::mostraMenu(const QList<QMenu *> &propri)
{
    menuBar()->clear();
    for (QMenu *uno : m_menu.barra(propri))
        menuBar()->addMenu(uno);
}

// Il segnale viene anche a vuoto, quando una finestra si riduce a icona o il fuoco va altrove.
void MDITras::attivata(QMdiSubWindow *finestra)
{
    if (finestra == nullptr && m_area->currentSubWindow() != nullptr)
        return;
    if (finestra == m_attiva && finestra != nullptr)
        return;
    m_attiva = finestra;
    auto *tabella = finestra == nullptr ? nullptr : qobject_cast<fmTabella *>(finestra->widget());
    mostraMenu(tabella == nullptr ? QList<QMenu *>() : tabella->menu());
    if (tabella != nullptr)
        messaggi::protetto(this, [tabella] { tabella->Form_Activate(); });
}

QList<fmTabella *> MDITras::visualizzatori() const
{
    QList<fmTabella *> tutti;
    const auto finestre = m_area->subWindowList();
    for (QMdiSubWindow *finestra : finestre) {
        if (auto *tabella = qobject_cast<fmTabella *>(finestra->widget()))
            tutti.append(tabella);
    }
    return tutti;
}

void MDITras::apre(const ProprietaTabella &proprieta)
{
    auto tabella = std::make_unique<fmTabella>(
        proprieta, ServiziTabella{[this](const ProprietaTabella &altra) { apre(altra); }}, this);
    tabella->Form_Load();
    QMdiSubWindow *finestra = m_area->addSubWindow(tabella.release());
    finestra->setAttribute(Qt::WA_DeleteOnClose);
    finestra->setWindowIcon(finestra->widget()->windowIcon());
    m_area->colloca(finestra, proprieta.TipoTabella);
    // Anche se intanto la finestra principale non è attiva, perché si chiude un dialogo: quando
    // torna attiva i tasti vanno all'elenco nuovo.
    finestra->widget()->setFocus();
}

void MDITras::chiudeFinestre(const ado::Connection *connessione)
{
    const auto finestre = m_area->subWindowList();
    for (QMdiSubWindow *finestra : finestre) {
        const auto *tabella = qobject_cast<fmTabella *>(finestra->widget());
        if (tabella != nullptr && tabella->usa(connessione))
            delete finestra;
    }
    attivata(m_area->currentSubWindow());
}

void MDITras::SubFileItem_Click(VoceFile voce)
{
    messaggi::protetto(this, [this, voce] {
        switch (voce) {
        case VoceFile::Apri:
            return m_archivi.apre();
        case VoceFile::Nuovo:
            return m_archivi.nuovo();
        case VoceFile::Compatta:
            return m_custodia.compatta();
        case VoceFile::BackUp:
            return m_custodia.backUp();
        case VoceFile::Recupera:
            return m_custodia.recupera();
        }
    });
}

void MDITras::apreArchivio(const QString &percorso)
{
    messaggi::protetto(this, [this, &percorso] {
        if (QFileInfo(percorso).isFile())
            m_archivi.apreCorrente(percorso);
        else
            messaggi::avvisa(this, QStringLiteral("Il file\n") + percorso +
                                       (QFileInfo::exists(percorso)
                                            ? QStringLiteral("\nnon si può aprire: non è un file")
                                            : QStringLiteral("\nnon esiste")));
    });
}

void MDITras::SubAiutoItem_Click(VoceAiuto voce)
{
    messaggi::protetto(this, [this, voce] { ComandoAiuto(this, voce); });
}

void MDITras::SubFinestreItem_Click(VoceFinestre voce)
{
    messaggi::protetto(this, [this, voce] {
        switch (voce) {
        case VoceFinestre::InVerticale:
            return affianca(Qt::Horizontal);
        case VoceFinestre::InOrizzontale:
            return affianca(Qt::Vertical);
        case VoceFinestre::Cascata:
            return m_area->cascata();
        case VoceFinestre::Mostra:
            return mostra();
        }
    });
}

// Dividere l'area a mano: l'affiancamento del toolkit fa una griglia, non colonne né righe.
void MDITras::affianca(Qt::Orientation verso)
{
    const auto finestre = m_area->subWindowList(QMdiArea::StackingOrder);
    // Le barre di scorrimento che ora ci sono, affiancate le finestre non servono più.
    const QSize area = m_area->maximumViewportSize();
    const int quante = static_cast<int>(finestre.size());
    for (int i = 0; i < quante; ++i) {
        QMdiSubWindow *finestra = finestre.at(quante - 1 - i);
        finestra->showNormal();
        if (verso == Qt::Horizontal)
            finestra->setGeometry(area.width() * i / quante, 0, area.width() / quante,
                                  area.height());
        else
            finestra->setGeometry(0, area.height() * i / quante, area.width(),
                                  area.height() / quante);
    }
}

// Un menu con le finestre aperte: quella scelta viene davanti.
void MDITras::mostra()
{
    QMenu elenco(this);
    elenco.setObjectName(QStringLiteral("Mostra"));
    const auto finestre = m_area->subWindowList();
    for (QMdiSubWindow *finestra : finestre) {
        QAction *azione = elenco.addAction(testo_semplice::voceDi(finestra->windowTitle()));
        azione->setCheckable(true);
        azione->setChecked(finestra == m_attiva);
        connect(azione, &QAction::triggered, finestra, [this, finestra] {
            if (finestra->isMinimized())
                finestra->showNormal();
            m_area->setActiveSubWindow(finestra);
        });
    }
    elenco.exec(m_area->mapToGlobal(m_area->rect().center()));
}

void MDITras::closeEvent(QCloseEvent *evento)
{
    do {
        fmChiudi(this).exec();
        if (contesto().SceltaChiusura == ChiusuraBackUp)
            SubFileItem_Click(VoceFile::BackUp);
    } while (contesto().SceltaChiusura == ChiusuraBackUp);
    evento->setAccepted(contesto().SceltaChiusura == ChiusuraChiudi);
    if (evento->isAccepted())
        m_area->ricordaPosti();
}
