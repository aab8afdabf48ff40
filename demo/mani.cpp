#include "demo/mani.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QStyleOptionTitleBar>
#include <QTableView>
#include <QTest>
#include <QToolBar>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{

Qt::Key tastoDi(QChar lettera)
{
    if (lettera == u'\n')
        return Qt::Key_Return;
    const char16_t maiuscola = lettera.toUpper().unicode();
    return maiuscola < 0x100 ? Qt::Key(maiuscola) : Qt::Key_unknown;
}

QString senzaMnemonica(QString testo)
{
    return testo.remove(u'&');
}

// Il comando col nome dato, o che comincia così.
QAction *azioneDi(const QWidget *dove, const QString &comando, bool inizio = false)
{
    const auto azioni = dove->actions();
    for (QAction *azione : azioni) {
        const QString nome = senzaMnemonica(azione->text());
        if ((inizio ? nome.startsWith(comando) : nome == comando) && azione->isEnabled())
            return azione;
    }
    throw Guasto(u"no command "_s + comando);
}

int rigaCon(const QAbstractItemModel &modello, const QString &testo)
{
    for (int colonna = 0; colonna < modello.columnCount(); ++colonna) {
        const auto trovati =
            modello.match(modello.index(0, colonna), Qt::DisplayRole, testo, 1, Qt::MatchExactly);
        if (!trovati.isEmpty())
            return trovati.constFirst().row();
    }
    throw Guasto(u"no row shows "_s + testo);
}

Attesa sposta(const QPointer<QWindow> &finestra, QPoint posto)
{
    return gestoIntero([=] { QTest::mouseMove(finestra, posto); });
}

Attesa preme(const QPointer<QWindow> &finestra, QPoint posto)
{
    // Il tempo dopo il clic di prima, perché due clic non diventino un doppio clic.
    constexpr int pausa = QTest::mouseDoubleClickInterval;
    return gesto([=] { QTest::mousePress(finestra, Qt::LeftButton, {}, posto, pausa); });
}

Attesa rilascia(const QPointer<QWindow> &finestra, QPoint posto)
{
    return gesto([=] { QTest::mouseRelease(finestra, Qt::LeftButton, {}, posto); });
}

} // namespace

void Mani::verificaRaggiungibile(QWidget *oggetto, QPoint punto) const
{
    const QWidget *finestra = oggetto->window();
    const QWidget *sotto = finestra->childAt(oggetto->mapTo(finestra, punto));
    const bool scoperto =
        sotto == nullptr ? oggetto == finestra : sotto == oggetto || oggetto->isAncestorOf(sotto);
    if (finestra != davanti())
        throw Guasto(oggetto->objectName() + u" is behind "_s + davanti()->objectName());
    if (!oggetto->isVisible() || !oggetto->isEnabled() || !scoperto)
        throw Guasto(oggetto->objectName() + u" is hidden, covered or disabled"_s);
}

Passo Mani::clicca(QWidget *oggetto)
{
    // La parola di un bottone rotondo può essere più corta del suo posto: si clicca sul segno.
    const QPoint centro = oggetto->rect().center();
    const bool rotondo = qobject_cast<QRadioButton *>(oggetto) != nullptr;
    co_await clicca(oggetto, rotondo ? QPoint(centro.y(), centro.y()) : centro);
}

Passo Mani::clicca(QWidget *oggetto, QPoint punto)
{
    verificaRaggiungibile(oggetto, punto);
    const QPointer<QWindow> finestra = oggetto->window()->windowHandle();
    const QPoint posto = oggetto->mapTo(oggetto->window(), punto);
    co_await sposta(finestra, posto);
    co_await preme(finestra, posto);
    if (finestra != nullptr)
        co_await rilascia(finestra, posto);
}

Passo Mani::clicca(QString nome)
{
    co_await clicca(cerca(nome));
}

Passo Mani::scegliMenu(QString titolo, QString comando)
{
    auto *barra = principale().findChild<QMenuBar *>();
    co_await clicca(barra, barra->actionGeometry(azioneDi(barra, titolo)).center());
    co_await appareMenu(titolo);
    auto *menu = qobject_cast<QMenu *>(davanti());
    if (menu == nullptr)
        throw Guasto(u"no menu opened at "_s + titolo);
    co_await clicca(menu, menu->actionGeometry(azioneDi(menu, comando)).center());
}

Passo Mani::cliccaBarra(QString comando)
{
    const auto *barra = qobject_cast<QToolBar *>(cerca(u"Toolbar1"_s));
    co_await clicca(barra->widgetForAction(azioneDi(barra, comando)));
}

Passo Mani::vaiAllaRiga(QString testo)
{
    auto *griglia = qobject_cast<QTableView *>(cerca(u"DataGrid1"_s));
    const QAbstractItemModel *modello = griglia->model();
    const int riga = rigaCon(*modello, testo);
    co_await clicca(griglia->viewport(), griglia->visualRect(griglia->currentIndex()).center());
    for (int i = 0; i < modello->rowCount() && griglia->currentIndex().row() != riga; ++i)
        co_await premi(griglia->currentIndex().row() < riga ? Qt::Key_Down : Qt::Key_Up);
    if (griglia->currentIndex().row() != riga)
        throw Guasto(u"the arrow keys do not reach the row "_s + testo);
}

Passo Mani::mostraElenco(QString tabella)
{
    co_await scegliMenu(u"Finestre"_s, u"Mostra"_s);
    co_await appare(u"Mostra"_s);
    const QPointer<QWidget> elenco = davanti();
    auto *menu = qobject_cast<QMenu *>(elenco);
    co_await clicca(menu,
                    menu->actionGeometry(azioneDi(menu, tabella + u" File "_s, true)).center());
    co_await scompare(elenco, u"Mostra"_s);
    co_await appareElenco(tabella);
}

Passo Mani::chiudiElenco()
{
    const QPointer<QWidget> elenco = visualizzatore();
    QWidget *cornice = elenco->parentWidget();
    QStyleOptionTitleBar titolo;
    titolo.initFrom(cornice);
    titolo.titleBarFlags = cornice->windowFlags();
    titolo.rect.setHeight(cornice->style()->pixelMetric(QStyle::PM_TitleBarHeight, &titolo));
    co_await clicca(cornice, cornice->style()
                                 ->subControlRect(QStyle::CC_TitleBar, &titolo,
                                                  QStyle::SC_TitleBarCloseButton, cornice)
                                 .center());
    co_await scompare(elenco, u"a list"_s);
}

Attesa Mani::premi(Qt::Key tasto, Qt::KeyboardModifiers modi) const
{
    const QPointer<QWindow> finestra = davanti()->windowHandle();
    return gestoIntero([=] { QTest::keyClick(finestra, tasto, modi); });
}

Attesa Mani::batti(const QString &testo) const
{
    const QPointer<QWindow> finestra = davanti()->windowHandle();
    return gestoIntero([=] {
        for (const QChar lettera : testo) {
            const auto modi = lettera.isUpper() ? Qt::ShiftModifier : Qt::NoModifier;
            const QString battuto = lettera == u'\n' ? u"\r"_s : QString(lettera);
            QTest::sendKeyEvent(QTest::Click, finestra, tastoDi(lettera), battuto, modi);
        }
    });
}

Passo Mani::scrivi(QString casella, QString testo)
{
    if (testo.isEmpty())
        co_return;
    QWidget *dove = cerca(casella);
    co_await clicca(dove);
    co_await premi(Qt::Key_A, Qt::ControlModifier);
    co_await batti(testo);
    const auto *riga = qobject_cast<QLineEdit *>(dove);
    if (riga != nullptr && riga->text() != testo)
        throw Guasto(u"%1 shows \"%2\" after typing \"%3\""_s.arg(casella, riga->text(), testo));
}

Passo Mani::scegli(QString combo, QString voce)
{
    const auto *scelta = qobject_cast<QComboBox *>(cerca(combo));
    const QWidget *finestra = davanti();
    constexpr int caselleAlPiu = 40;
    for (int i = 0; i < caselleAlPiu && finestra->focusWidget() != scelta; ++i)
        co_await premi(Qt::Key_Tab);
    if (finestra->focusWidget() != scelta)
        throw Guasto(u"the Tab key does not reach "_s + combo);
    co_await premi(Qt::Key_F4);
    co_await appareMenu(combo);
    co_await premi(Qt::Key_Home);
    for (int i = 0; i < scelta->count() && scelta->view()->currentIndex().data() != voce; ++i)
        co_await premi(Qt::Key_Down);
    co_await premi(Qt::Key_Return);
    co_await spareMenu(combo);
    if (scelta->currentText() != voce)
        throw Guasto(
            u"%1 shows \"%2\" instead of \"%3\""_s.arg(combo, scelta->currentText(), voce));
}

Passo Mani::chiudi(QString bottone)
{
    const QPointer<QWidget> finestra = davanti();
    const QString nome = finestra->objectName();
    co_await clicca(bottone);
    co_await scompare(finestra, nome);
}

Passo Mani::rispondi(QString testo, QString bottone, QString fotografia)
{
    co_await rispondiAInizio(testo, bottone, fotografia, true);
}

Passo Mani::rispondiAInizio(QString inizio, QString bottone, QString fotografia, bool tutto)
{
    co_await appareMessaggio(inizio, tutto);
    if (!fotografia.isEmpty())
        co_await fotografa(fotografia);
    const QPointer<QWidget> scatola = davanti();
    const auto bottoni = scatola->findChildren<QAbstractButton *>();
    for (QAbstractButton *uno : bottoni) {
        if (senzaMnemonica(uno->text()) != bottone)
            continue;
        co_await clicca(uno);
        co_await scompare(scatola, inizio);
        co_return;
    }
    throw Guasto(u"the message \"%1\" has no button %2"_s.arg(inizio, bottone));
}

Attesa Mani::chiudiPrincipale() const
{
    QWindow *finestra = principale().windowHandle();
    return gesto([finestra] { finestra->close(); });
}
