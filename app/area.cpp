#include "app/area.h"

#include "app/ultimi.h"
#include "contesto/comandi.h"
#include "platform/finestre/memoria_finestre.h"

#include <QEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QShortcut>
#include <QStyle>

#include <algorithm>

namespace
{

QString invito()
{
    const QString continua =
        ultimi::posto().percorso.isEmpty()
            ? QString()
            : comandi::suggerimento(QStringLiteral("file.continua")) +
                  QStringLiteral(" riprende dal registro dell'ultima volta,\n");
    return QStringLiteral("Per cominciare, dal menu File:\n%1"
                          "Nuovo (Ctrl+N) crea un file di archivi,\n"
                          "Apri (Ctrl+O) ne riprende uno.\n\n"
                          "Il manuale (F1) accompagna nella prima trascrizione.")
        .arg(continua);
}

QString chiave(const QMdiSubWindow *finestra)
{
    return QStringLiteral("elenchi/") + finestra->property("posto").toString();
}

void ricordaPosto(const QMdiSubWindow *finestra)
{
    memoria::ricorda(chiave(finestra) + QStringLiteral("-massima"), finestra->isMaximized());
    if (!finestra->isMaximized() && !finestra->isMinimized())
        memoria::ricorda(chiave(finestra), finestra->geometry());
}

} // namespace

Area::Area(QWidget *sopra) : QMdiArea(sopra), m_invito(new QLabel(viewport()))
{
    setAccessibleName(QStringLiteral("Elenchi aperti"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // Chiusa una finestra si torna a quella di prima, non alla prima di tutte.
    setActivationOrder(ActivationHistoryOrder);
    m_invito->setObjectName(QStringLiteral("Invito"));
    m_invito->setTextFormat(Qt::PlainText);
    m_invito->setAlignment(Qt::AlignCenter);
    m_invito->setWordWrap(true);
    m_invito->setAttribute(Qt::WA_TransparentForMouseEvents);
    creaTasti();
}

void Area::creaTasti()
{
    const auto assegna = [this](const QList<QKeySequence> &tasti, auto comando) {
        auto *scorciatoia = new QShortcut(this);
        scorciatoia->setKeys(tasti);
        connect(scorciatoia, &QShortcut::activated, this, comando);
    };
    assegna({Qt::CTRL | Qt::Key_Tab, Qt::CTRL | Qt::Key_F6}, [this] { attivaVicina(1); });
    assegna({Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, Qt::CTRL | Qt::SHIFT | Qt::Key_Tab,
             Qt::CTRL | Qt::SHIFT | Qt::Key_F6},
            [this] { attivaVicina(-1); });
    // Dove è già del menu della finestra, due volte lo stesso tasto non farebbe nulla.
    const QKeySequence chiusura = Qt::CTRL | Qt::Key_F4;
    if (!QKeySequence::keyBindings(QKeySequence::Close).contains(chiusura))
        assegna({chiusura}, &QMdiArea::closeActiveSubWindow);
}

// In giro nell'ordine in cui sono nate: con quello d'uso si andrebbe avanti e indietro fra due.
void Area::attivaVicina(int passi)
{
    const auto finestre = subWindowList(CreationOrder);
    const auto quante = static_cast<int>(finestre.size());
    const auto corrente = static_cast<int>(finestre.indexOf(currentSubWindow()));
    if (corrente >= 0)
        setActiveSubWindow(finestre[(corrente + passi + quante) % quante]);
}

bool Area::viewportEvent(QEvent *evento)
{
    const bool esito = QMdiArea::viewportEvent(evento);
    if (evento->type() == QEvent::Resize || evento->type() == QEvent::ChildPolished ||
        evento->type() == QEvent::ChildRemoved)
        disponiInvito();
    return esito;
}

void Area::disponiInvito()
{
    m_invito->setGeometry(viewport()->rect());
    const bool vuota = subWindowList().isEmpty();
    m_invito->setVisible(vuota);
    m_invito->setText(invito());
    // I lettori di schermo dell'area vedono solo le finestre: l'invito è la sua descrizione, e la
    // sentono perché finché è vuota i tasti vanno a lei.
    setAccessibleDescription(vuota ? m_invito->text() : QString());
    setFocusPolicy(vuota ? Qt::StrongFocus : Qt::NoFocus);
    if (vuota && window()->focusWidget() != this)
        setFocus();
}

void Area::colloca(QMdiSubWindow *finestra, const QString &nome)
{
    disponiInvito();
    const QRect nuovo = scalino(static_cast<int>(subWindowList().size()) - 1);
    finestra->setProperty("posto", nome);
    QRect posto = memoria::valore(chiave(finestra)).toRect();
    posto = posto.isValid() && !occupato(posto) ? dentro(posto) : nuovo;
    finestra->setGeometry(posto);
    if (memoria::valore(chiave(finestra) + QStringLiteral("-massima")).toBool())
        finestra->showMaximized();
    else
        finestra->show();
}

// Ogni finestra scala di una didascalia dalla precedente, senza uscire dall'area.
QRect Area::scalino(int numero) const
{
    const QSize area = viewport()->size();
    const int passo = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
    const int gradini = qMax(1, qMin(area.width(), area.height()) / 4 / passo);
    return {QPoint(passo, passo) * (numero % gradini), area * 3 / 4};
}

// La cascata del toolkit rimpicciolisce le finestre fino a non mostrare nulla.
void Area::cascata()
{
    const auto finestre = subWindowList(StackingOrder);
    int numero = 0;
    for (QMdiSubWindow *finestra : finestre) {
        finestra->showNormal();
        finestra->setGeometry(scalino(numero++));
        finestra->raise();
    }
}

// L'area può essere più piccola di quando il posto fu ricordato.
QRect Area::dentro(QRect posto) const
{
    const QRect area = viewport()->rect();
    posto.setSize(posto.size().boundedTo(area.size()));
    posto.moveLeft(qBound(0, posto.left(), area.width() - posto.width()));
    posto.moveTop(qBound(0, posto.top(), area.height() - posto.height()));
    return posto;
}

bool Area::occupato(const QRect &posto) const
{
    const auto finestre = subWindowList();
    return std::any_of(finestre.begin(), finestre.end(), [&posto](const QMdiSubWindow *altra) {
        return altra->isVisible() && altra->geometry() == posto;
    });
}

bool Area::eventFilter(QObject *oggetto, QEvent *evento)
{
    if (evento->type() == QEvent::Close) {
        if (const auto *finestra = qobject_cast<QMdiSubWindow *>(oggetto))
            ricordaPosto(finestra);
    }
    return QMdiArea::eventFilter(oggetto, evento);
}

void Area::ricordaPosti() const
{
    const auto finestre = subWindowList();
    for (const QMdiSubWindow *finestra : finestre)
        ricordaPosto(finestra);
}
