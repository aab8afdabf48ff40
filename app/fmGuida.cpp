#include "app/fmGuida.h"

#include "platform/disco/shell.h"
#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/tasti.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPointer>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTextBlock>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

const QString paginaIniziale = u"htm/inizio.htm"_s;
const QString chiaveIngrandimento = u"fmGuida/ingrandimento"_s;
constexpr int passiMassimi = 12;
constexpr int ruoloFile = Qt::UserRole;

} // namespace

VistaGuida::VistaGuida(QWidget *sopra) : QTextBrowser(sopra)
{
    setObjectName(u"Pagina"_s);
    setAccessibleName(u"Pagina del manuale"_s);
    document()->setDocumentMargin(fontMetrics().height());
}

QVariant VistaGuida::loadResource(int tipo, const QUrl &nome)
{
    const QString percorso = document()->baseUrl().resolved(nome).toLocalFile();
    if (tipo == QTextDocument::ImageResource)
        return figura(percorso);
    if (tipo != QTextDocument::HtmlResource && tipo != QTextDocument::StyleSheetResource)
        return QTextBrowser::loadResource(tipo, nome);
    QFile file(percorso);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString testo = QString::fromUtf8(file.readAll());
    return tipo == QTextDocument::HtmlResource
               ? senzaFigureMancanti(testo, QFileInfo(percorso).path())
               : testo;
}

QVariant VistaGuida::figura(const QString &percorso) const
{
    const QImage letta = QImageReader(percorso).read();
    const double punti = devicePixelRatioF();
    const int massima =
        static_cast<int>((viewport()->width() - 4 * fontMetrics().height()) * punti);
    if (letta.isNull() || letta.width() <= massima)
        return letta;
    QImage ridotta = letta.scaledToWidth(massima, Qt::SmoothTransformation);
    ridotta.setDevicePixelRatio(punti);
    return ridotta;
}

void VistaGuida::evidenzia(const QString &parole)
{
    QList<ExtraSelection> trovate;
    const QStringList cercate = paroleCercate(parole);
    for (QTextBlock riga = document()->begin(); riga.isValid(); riga = riga.next()) {
        const QString piano = ripiegato(riga.text());
        for (const QString &parola : cercate) {
            for (qsizetype posto = piano.indexOf(parola); posto >= 0;
                 posto = piano.indexOf(parola, posto + parola.size())) {
                ExtraSelection evidenza;
                evidenza.cursor = QTextCursor(riga);
                evidenza.cursor.setPosition(riga.position() + static_cast<int>(posto));
                evidenza.cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor,
                                             static_cast<int>(parola.size()));
                evidenza.format.setBackground(palette().highlight());
                evidenza.format.setForeground(palette().highlightedText());
                trovate.append(evidenza);
            }
        }
    }
    setExtraSelections(trovate);
    if (trovate.isEmpty())
        return;
    QTextCursor prima = trovate.constFirst().cursor;
    prima.clearSelection();
    setTextCursor(prima);
    ensureCursorVisible();
}

fmGuida::fmGuida(const QString &cartella, QWidget *sopra)
    : QMainWindow(sopra, Qt::Window),
      m_cartella(cartella),
      m_pagine(cartella),
      m_vista(new VistaGuida(this))
{
    setObjectName(u"fmGuida"_s);
    setWindowTitle(u"Manuale di Tarvola"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    creaBarra();
    auto *divisa = new QSplitter(this);
    divisa->setObjectName(u"Divisione"_s);
    divisa->setChildrenCollapsible(false);
    divisa->addWidget(colonna());
    divisa->addWidget(m_vista);
    divisa->setStretchFactor(1, 1);
    setCentralWidget(divisa);
    riempieContenuti();
    connect(m_vista, &QTextBrowser::sourceChanged, this, &fmGuida::segueContenuti);
    const int lettera = fontMetrics().averageCharWidth();
    divisa->setSizes({lettera * 36, lettera * 100});
    resize(lettera * 136, fontMetrics().height() * 40);
    memoria::ricordaFinestra(this, objectName());
    ingrandisce(memoria::valore(chiaveIngrandimento).toInt());
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_cerca->setFocus();
        m_cerca->selectAll();
    });
}

void fmGuida::creaBarra()
{
    auto *barra = addToolBar(u"Comandi del manuale"_s);
    tasti::chiama(barra, barra->windowTitle());
    barra->setObjectName(u"Barra"_s);
    barra->setMovable(false);
    barra->setContextMenuPolicy(Qt::PreventContextMenu);
    barra->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto comando = [&](const QString &nome, const QIcon &icona, const QKeySequence &tasto,
                             auto fa) {
        QAction *azione = barra->addAction(icona, nome);
        azione->setObjectName(nome);
        azione->setShortcut(tasto);
        azione->setToolTip(tasti::conTasto(nome, tasto));
        connect(azione, &QAction::triggered, this, fa);
        return azione;
    };
    const auto icona = [this](QStyle::StandardPixmap quale) {
        return style()->standardIcon(quale, nullptr, this);
    };
    QAction *indietro = comando(u"Indietro"_s, icona(QStyle::SP_ArrowBack), Qt::ALT | Qt::Key_Left,
                                [this] { m_vista->backward(); });
    QAction *avanti = comando(u"Avanti"_s, icona(QStyle::SP_ArrowForward), Qt::ALT | Qt::Key_Right,
                              [this] { m_vista->forward(); });
    comando(u"Inizio"_s, icona(QStyle::SP_DirHomeIcon), Qt::ALT | Qt::Key_Home,
            [this] { vai(paginaIniziale); });
    barra->addSeparator();
    comando(u"Ingrandisci"_s, {}, QKeySequence::ZoomIn, [this] { ingrandisce(1); });
    comando(u"Riduci"_s, {}, QKeySequence::ZoomOut, [this] { ingrandisce(-1); });
    for (QAction *azione : {indietro, avanti})
        azione->setEnabled(false);
    connect(m_vista, &QTextBrowser::backwardAvailable, indietro, &QAction::setEnabled);
    connect(m_vista, &QTextBrowser::forwardAvailable, avanti, &QAction::setEnabled);
}

QWidget *fmGuida::colonna()
{
    auto *parte = new QWidget(this);
    m_contenuti = new QTreeWidget(parte);
    m_contenuti->setObjectName(u"Contenuti"_s);
    m_contenuti->setAccessibleName(u"Contenuti"_s);
    m_contenuti->setHeaderLabel(u"Contenuti"_s);
    m_contenuti->setUniformRowHeights(true);
    m_cerca = new QLineEdit(parte);
    m_cerca->setObjectName(u"Cerca"_s);
    m_cerca->setClearButtonEnabled(true);
    auto *etichetta = new QLabel(u"&Cerca nel manuale"_s, parte);
    etichetta->setBuddy(m_cerca);
    m_trovate = new QListWidget(parte);
    m_trovate->setObjectName(u"Trovate"_s);
    m_trovate->setAccessibleName(u"Pagine trovate"_s);
    m_trovate->setWordWrap(true);
    m_trovate->setVisible(false);
    m_nessuna = new QLabel(u"Nessuna pagina ha queste parole."_s, parte);
    m_nessuna->setObjectName(u"Nessuna"_s);
    m_nessuna->setWordWrap(true);
    m_nessuna->setVisible(false);
    auto *righe = new QVBoxLayout(parte);
    righe->addWidget(etichetta);
    righe->addWidget(m_cerca);
    righe->addWidget(m_nessuna);
    righe->addWidget(m_trovate, 2);
    righe->addWidget(m_contenuti, 3);
    collegaColonna();
    return parte;
}

void fmGuida::collegaColonna()
{
    connect(m_cerca, &QLineEdit::textChanged, this, &fmGuida::cerca);
    connect(m_cerca, &QLineEdit::returnPressed, this, [this] {
        if (m_trovate->count() > 0)
            m_trovate->setCurrentRow(0);
    });
    connect(m_trovate, &QListWidget::currentItemChanged, this, [this](QListWidgetItem *scelta) {
        if (scelta == nullptr)
            return;
        vai(scelta->data(ruoloFile).toString());
        m_vista->evidenzia(m_cerca->text());
    });
    connect(m_contenuti, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *scelto) {
        if (scelto != nullptr && !scelto->data(0, ruoloFile).toString().isEmpty())
            vai(scelto->data(0, ruoloFile).toString());
    });
}

void fmGuida::riempieContenuti()
{
    QTreeWidgetItem *sezione = nullptr;
    for (const GuidaPagine::Pagina &pagina : m_pagine.pagine()) {
        if (sezione == nullptr || sezione->text(0) != pagina.sezione)
            sezione = new QTreeWidgetItem(m_contenuti, {pagina.sezione});
        auto *voce = new QTreeWidgetItem(sezione, {pagina.titolo});
        voce->setData(0, ruoloFile, pagina.file);
    }
    m_contenuti->expandAll();
}

void fmGuida::vai(const QString &pagina)
{
    const auto &tutte = m_pagine.pagine();
    const bool presente = std::any_of(tutte.begin(), tutte.end(),
                                      [&](const auto &una) { return una.file == pagina; });
    const QUrl indirizzo =
        QUrl::fromLocalFile(m_cartella + u'/' + (presente ? pagina : paginaIniziale));
    if (m_vista->source().adjusted(QUrl::RemoveFragment) != indirizzo)
        m_vista->setSource(indirizzo);
}

// Nei contenuti resta scelta la pagina che si legge, comunque vi si sia arrivati.
void fmGuida::segueContenuti(const QUrl &pagina)
{
    const QString file = pagina.toLocalFile();
    for (QTreeWidgetItemIterator voce(m_contenuti); *voce != nullptr; ++voce) {
        const QString sua = (*voce)->data(0, ruoloFile).toString();
        if (!sua.isEmpty() && file.endsWith(u'/' + sua)) {
            m_contenuti->setCurrentItem(*voce);
            return;
        }
    }
}

void fmGuida::cerca(const QString &parole)
{
    m_trovate->clear();
    for (const size_t posto : m_pagine.cerca(parole)) {
        const GuidaPagine::Pagina &pagina = m_pagine.pagine().at(posto);
        auto *voce = new QListWidgetItem(pagina.titolo, m_trovate);
        voce->setToolTip(m_pagine.attorno(posto, parole));
        voce->setData(ruoloFile, pagina.file);
    }
    const bool cercate = !paroleCercate(parole).isEmpty();
    m_trovate->setVisible(cercate && m_trovate->count() > 0);
    m_nessuna->setVisible(cercate && m_trovate->count() == 0);
    m_vista->setExtraSelections({});
}

void fmGuida::ingrandisce(int passi)
{
    const int nuovo = qBound(-passiMassimi / 3, m_ingrandimento + passi, passiMassimi);
    m_vista->zoomIn(nuovo - m_ingrandimento);
    m_ingrandimento = nuovo;
    memoria::ricorda(chiaveIngrandimento, nuovo);
}

namespace
{

// Quando il dialogo si chiude il manuale passa a chi gli stava sotto, o alla finestra principale.
void lascia(fmGuida *manuale, const QDialog *dialogo)
{
    if (manuale == nullptr || manuale->parentWidget() != dialogo)
        return;
    QWidget *sotto = dialogo->parentWidget();
    const auto finestre = QApplication::topLevelWidgets();
    for (QWidget *finestra : finestre) {
        if (sotto == nullptr && qobject_cast<QMainWindow *>(finestra) != nullptr)
            sotto = finestra;
    }
    const bool visibile = manuale->isVisible();
    manuale->setParent(sotto == nullptr ? nullptr : sotto->window(), Qt::Window);
    manuale->setVisible(visibile);
}

} // namespace

void mostraGuida(QWidget *sopra, const QString &pagina)
{
    static QPointer<fmGuida> sola;
    const QString cartella = shell::fileDelProgramma(u"guida"_s);
    if (cartella.isEmpty() || !QFile::exists(cartella + u"/indice.xml"_s))
        return;
    QWidget *modale = QApplication::activeModalWidget();
    QWidget *padre = modale != nullptr ? modale : sopra->window();
    if (sola == nullptr)
        sola = new fmGuida(cartella, padre);
    else if (sola->parentWidget() != padre && sola != padre)
        sola->setParent(padre, Qt::Window);
    if (auto *dialogo = qobject_cast<QDialog *>(padre)) {
        QObject::connect(dialogo, &QDialog::finished, sola, [dialogo] { lascia(sola, dialogo); });
    }
    if (sola->isMinimized())
        sola->showNormal();
    sola->vai(pagina);
    sola->show();
    sola->raise();
    sola->activateWindow();
}

namespace
{

class TastoGuida : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *oggetto, QEvent *evento) override
    {
        if (evento->type() != QEvent::KeyPress || !oggetto->isWidgetType())
            return false;
        const auto *tasto = static_cast<QKeyEvent *>(evento);
        QWidget *finestra = qobject_cast<QWidget *>(oggetto)->window();
        if (tasto->key() != Qt::Key_F1 || tasto->modifiers() != Qt::NoModifier ||
            qobject_cast<QDialog *>(finestra) == nullptr)
            return false;
        messaggi::protetto(finestra, [finestra] {
            mostraGuida(finestra, u"htm/%1.htm"_s.arg(finestra->objectName()));
        });
        return true;
    }
};

} // namespace

void installaTastoGuida(QApplication &applicazione)
{
    applicazione.installEventFilter(new TastoGuida(&applicazione));
}
