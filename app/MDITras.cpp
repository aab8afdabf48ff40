#include "app/MDITras.h"

#include "app/aiuto.h"
#include "app/apre_record.h"
#include "app/area.h"
#include "app/fmChiudi.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
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
      m_schede(
          m_area,
          [this](QMdiSubWindow *finestra) {
              m_area->colloca(finestra, QStringLiteral("fmScheda"));
          },
          [this](const fmScheda &pagina, const QString &codice) { apreRecord(pagina, codice); }),
      m_menu(this, {[this](VoceFile voce) { SubFileItem_Click(voce); },
                    [this](VoceFinestre voce) { SubFinestreItem_Click(voce); },
                    [this](VoceAiuto voce) { SubAiutoItem_Click(voce); },
                    [this](const QString &percorso) { apreUltimo(percorso); }}),
      m_archivi(
          this,
          [this] {
              mostraArchivi();
              m_riprese.offre(contesto().PercorsoCorrente);
          },
          [this](const ado::Connection *connessione) { return chiudeFinestre(connessione); }),
      m_custodia(this, m_archivi),
      m_riprese(this, [this](const bozze::Finestra &bozza) {
          m_schede.riprende(bozza, contesto().PercorsoCorrente, contesto().OperatoreCorrente);
      })
{
    avviaContesto();
    contesto().FaiBackUp = [this] {
        QMetaObject::invokeMethod(
            this, [this] { SubFileItem_Click(VoceFile::BackUp); }, Qt::QueuedConnection);
    };
    setObjectName(QStringLiteral("MDITras"));
    setWindowTitle(QStringLiteral("Tarvola"));
    setCentralWidget(m_area);
    mostraMenu({});
    connect(m_area, &QMdiArea::subWindowActivated, this, &MDITras::attivata);
    // Più tardi, quando chi ha scritto ha finito.
    connect(&annunci(), &Annunci::avvenuto, this, &MDITras::ricordaPosto, Qt::QueuedConnection);
    resize(screen()->availableSize() * 4 / 5);
    memoria::ricordaFinestra(this, objectName());
}

MDITras::~MDITras()
{
    // L'area annuncia le sue finestre anche mentre muore, quando i menu non ci sono più.
    disconnect(m_area, nullptr, this, nullptr);
    contesto().FaiBackUp = {};
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
    auto *scheda = finestra == nullptr ? nullptr : qobject_cast<fmScheda *>(finestra->widget());
    mostraMenu(tabella != nullptr  ? tabella->menu()
               : scheda != nullptr ? scheda->menu()
                                   : QList<QMenu *>());
    if (scheda != nullptr)
        messaggi::protetto(this, [scheda] { scheda->Form_Activate(); });
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

fmTabella *MDITras::apre(const ProprietaTabella &proprieta)
{
    auto tabella = std::make_unique<fmTabella>(
        proprieta,
        ServiziTabella{[this](const ProprietaTabella &altra) { apre(altra); },
                       [this](const GenereElenco &genere) { return m_schede.comandi(genere); }},
        this);
    tabella->Form_Load();
    QMdiSubWindow *finestra = m_area->addSubWindow(tabella.release());
    finestra->setAttribute(Qt::WA_DeleteOnClose);
    finestra->setWindowIcon(finestra->widget()->windowIcon());
    m_area->colloca(finestra, proprieta.TipoTabella);
    // Anche se intanto la finestra principale non è attiva, perché si chiude un dialogo: quando
    // torna attiva i tasti vanno all'elenco nuovo.
    finestra->widget()->setFocus();
    return qobject_cast<fmTabella *>(finestra->widget());
}

bool MDITras::chiudeFinestre(const ado::Connection *connessione)
{
    if (!m_schede.possonoChiudersi(connessione))
        return false;
    const QList<fmScheda *> schede = m_schede.aperte();
    for (const fmScheda *scheda : schede) {
        if (scheda->usa(connessione))
            delete scheda->parentWidget();
    }
    if (std::exchange(m_chiusiDiPrima, false))
        m_chiusi.clear();
    const auto finestre = m_area->subWindowList(QMdiArea::StackingOrder);
    for (QMdiSubWindow *finestra : finestre) {
        const auto *tabella = qobject_cast<fmTabella *>(finestra->widget());
        if (tabella == nullptr || !tabella->usa(connessione))
            continue;
        m_chiusi.push_back({tabella->stato(), finestra->geometry(), finestra->windowState()});
        delete finestra;
    }
    m_menu.offreRiapertura(!m_chiusi.empty());
    attivata(m_area->currentSubWindow());
    return true;
}

// Un record della pagina nel suo editore, come lo aprirebbe il suo elenco.
void MDITras::apreRecord(const fmScheda &pagina, const QString &codice)
{
    apreNelSuoEditore(this, pagina.proprieta, codice);
}

// Di un file che non c'è più non c'è nulla da riaprire.
void MDITras::nuovo()
{
    m_archivi.nuovo();
    if (m_chiusiDiPrima)
        return;
    m_chiusi.clear();
    m_menu.offreRiapertura(false);
}

// La copia non cambia il file: riuscita o no, chi lavorava ritrova i suoi elenchi.
void MDITras::backUp()
{
    m_custodia.backUp();
    if (!m_chiusiDiPrima)
        riapreElenchi();
}

// Dal più sotto al più sopra, che resta davanti com'era. Chi non si può riaprire si può riprovare.
void MDITras::riapreElenchi()
{
    while (!m_chiusi.empty()) {
        const ElencoChiuso &chiuso = m_chiusi.front();
        ApriArchivio(chiuso.stato.proprieta.Percorso);
        fmTabella *tabella = apre(chiuso.stato.proprieta);
        tabella->riprende(chiuso.stato);
        auto *finestra = qobject_cast<QMdiSubWindow *>(tabella->parentWidget());
        const auto stato = chiuso.comera & (Qt::WindowMaximized | Qt::WindowMinimized);
        finestra->setWindowState(stato);
        if (!stato)
            finestra->setGeometry(chiuso.posto);
        m_chiusi.erase(m_chiusi.begin());
    }
    m_menu.offreRiapertura(false);
}

void MDITras::SubFileItem_Click(VoceFile voce)
{
    messaggi::protetto(this, [this, voce] {
        m_chiusiDiPrima = true;
        switch (voce) {
        case VoceFile::Apri:
            return m_archivi.apre();
        case VoceFile::Nuovo:
            return nuovo();
        case VoceFile::Compatta:
            return m_custodia.compatta();
        case VoceFile::BackUp:
            return backUp();
        case VoceFile::Recupera:
            return m_custodia.recupera();
        case VoceFile::Riapri:
            return riapreElenchi();
        case VoceFile::Continua:
            return continua();
        case VoceFile::Bozze:
            return m_riprese.mostraUltime();
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

// Due elenchi possono avere la stessa didascalia, che dice su che cosa si lavora: allora si
// aggiunge che cosa abbracciano, e in che ordine sono nati se nemmeno questo basta.
QStringList MDITras::nomiDelleFinestre() const
{
    QStringList nomi;
    const auto finestre = m_area->subWindowList();
    for (const QMdiSubWindow *finestra : finestre)
        nomi.append(testo_semplice::voceDi(finestra->windowTitle()));
    const auto distingue = [&nomi](const std::function<QString(qsizetype, qsizetype)> &aggiunta) {
        const QStringList prima = nomi;
        for (qsizetype i = 0; i < prima.size(); ++i) {
            if (prima.count(prima.at(i)) > 1)
                nomi[i] += aggiunta(i, prima.first(i).count(prima.at(i)) + 1);
        }
    };
    distingue([&finestre](qsizetype i, qsizetype /*volta*/) {
        const auto *tabella = qobject_cast<fmTabella *>(finestre.at(i)->widget());
        const QString ambito = tabella == nullptr ? QString() : tabella->ambito();
        return ambito.isEmpty() ? QString() : QStringLiteral(" – ") + ambito;
    });
    distingue([](qsizetype /*i*/, qsizetype volta) { return QStringLiteral(" (%1)").arg(volta); });
    return nomi;
}

// Un menu con le finestre aperte: quella scelta viene davanti.
void MDITras::mostra()
{
    QMenu elenco(this);
    elenco.setObjectName(QStringLiteral("Mostra"));
    const auto finestre = m_area->subWindowList();
    QStringList nomi = nomiDelleFinestre();
    for (QMdiSubWindow *finestra : finestre) {
        QAction *azione = elenco.addAction(nomi.takeFirst());
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
    int scelta = fmChiudi(this).chiede();
    for (; scelta == ChiusuraBackUp; scelta = fmChiudi(this).chiede())
        SubFileItem_Click(VoceFile::BackUp);
    evento->setAccepted(scelta == ChiusuraChiudi && m_schede.possonoChiudersi(nullptr));
    if (evento->isAccepted())
        m_area->ricordaPosti();
}
