#include "demo/occhi.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{

// Dopo quanto ci si contenta di una finestra che il gestore non ha reso attiva.
constexpr int millisecondiPerAttiva = 2'000;
constexpr int millisecondiPerDisegno = 250;

bool conGestore()
{
    return QGuiApplication::platformName() == u"xcb"_s;
}

bool esposta(const QWidget *finestra)
{
    const QWindow *vera = finestra->windowHandle();
    return finestra->isVisible() && vera != nullptr && vera->isExposed();
}

} // namespace

Occhi::Occhi(QMainWindow &principale, QString cartella)
    : m_principale(principale), m_cartella(std::move(cartella))
{
}

QWidget *Occhi::davanti() const
{
    if (QWidget *menu = QApplication::activePopupWidget())
        return menu;
    if (QWidget *modale = QApplication::activeModalWidget())
        return modale;
    return &m_principale;
}

QWidget *Occhi::visualizzatore() const
{
    const auto *area = m_principale.findChild<QMdiArea *>();
    const QMdiSubWindow *attiva = area->activeSubWindow();
    return attiva == nullptr ? nullptr : attiva->widget();
}

QWidget *Occhi::cerca(const QString &nome) const
{
    QWidget *dove = davanti();
    if (dove == &m_principale && visualizzatore() != nullptr)
        dove = visualizzatore();
    const auto trovati = dove->findChildren<QWidget *>(nome);
    for (QWidget *trovato : trovati) {
        if (trovato->isVisible() && trovato->window() == dove->window())
            return trovato;
    }
    throw Guasto(u"%1 is not in %2"_s.arg(nome, dove->objectName()));
}

Attesa Occhi::appare(const QString &nome) const
{
    QElapsedTimer esposizione;
    return aspetta(u"the window "_s + nome, [=, this]() mutable {
        const QWidget *finestra = davanti();
        if (finestra->objectName() != nome || !esposta(finestra))
            return false;
        if (!esposizione.isValid())
            esposizione.start();
        // Fuori dagli schermi veri nessuno rende attiva una finestra.
        return !conGestore() || finestra->isActiveWindow() ||
               esposizione.hasExpired(millisecondiPerAttiva);
    });
}

Attesa Occhi::appareElenco(const QString &tabella) const
{
    return aspetta(u"the list "_s + tabella, [=, this] {
        return davanti() == &m_principale && visualizzatore() != nullptr &&
               visualizzatore()->windowTitle().startsWith(tabella + u" File "_s);
    });
}

Attesa Occhi::appareMenu(const QString &titolo) const
{
    return aspetta(u"the menu "_s + titolo, [] {
        const QWidget *menu = QApplication::activePopupWidget();
        return menu != nullptr && esposta(menu);
    });
}

Attesa Occhi::spareMenu(const QString &titolo) const
{
    return aspetta(u"the end of the menu "_s + titolo,
                   [] { return QApplication::activePopupWidget() == nullptr; });
}

Attesa Occhi::appareMessaggio(const QString &testo, bool tutto) const
{
    return aspetta(u"the message \"%1\""_s.arg(testo), [=, this] {
        const auto *scatola = qobject_cast<QMessageBox *>(davanti());
        return scatola != nullptr && esposta(scatola) &&
               (tutto ? scatola->text() == testo : scatola->text().startsWith(testo));
    });
}

Attesa Occhi::scompare(const QPointer<QWidget> &finestra, const QString &nome) const
{
    return aspetta(u"the end of "_s + nome, [finestra] { return finestra == nullptr; });
}

Attesa Occhi::disegno()
{
    QElapsedTimer orologio;
    orologio.start();
    return aspetta(u"the drawing"_s,
                   [orologio] { return orologio.hasExpired(millisecondiPerDisegno); });
}

Passo Occhi::fotografa(QString nome, bool tutte)
{
    if (m_fotografie.contains(nome))
        co_return;
    m_fotografie.append(nome);
    co_await disegno();
    salvaImmagine(nome, tutte);
}

void Occhi::salvaImmagine(const QString &nome, bool tutte) const
{
    QWidget *finestra = davanti();
    QRect ritaglio = finestra->windowHandle()->frameGeometry();
    const auto finestre = QApplication::topLevelWidgets();
    for (const QWidget *altra : finestre) {
        if (tutte && altra->isVisible() && altra->windowHandle() != nullptr)
            ritaglio |= altra->windowHandle()->frameGeometry();
    }
    // Dove lo schermo non si può fotografare la finestra si disegna da sé, senza cornice.
    QScreen *schermo = finestra->screen();
    QPixmap immagine = conGestore() ? schermo->grabWindow(0) : QPixmap();
    if (immagine.isNull()) {
        immagine = finestra->grab();
    } else {
        ritaglio = (ritaglio & schermo->geometry()).translated(-schermo->geometry().topLeft());
        const qreal scala = immagine.devicePixelRatio();
        immagine = immagine.copy(
            QRectF(ritaglio.topLeft() * scala, QSizeF(ritaglio.size()) * scala).toRect());
    }
    const QString percorso = m_cartella + u'/' + nome + u".png"_s;
    if (!immagine.save(percorso))
        throw Guasto(u"cannot write "_s + percorso);
}
