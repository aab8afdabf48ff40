#include "texts/testo_proposto.h"

#include "contesto/comandi.h"
#include "platform/finestre/tasti.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolTip>

#include <memory>
#include <utility>

namespace
{

// Toglie la proposta da ogni riga in cui fosse rimasta. Il documento non ne sa nulla: cambia solo
// la disposizione, come quando si colora una parola.
void sgombra(QTextDocument *documento)
{
    for (QTextBlock riga = documento->begin(); riga.isValid(); riga = riga.next()) {
        QTextLayout *disposta = riga.layout();
        if (disposta->preeditAreaText().isEmpty())
            continue;
        disposta->setPreeditArea(-1, {});
        disposta->clearFormats();
        documento->markContentsDirty(riga.position(), riga.length());
    }
}

} // namespace

TestoProposto::TestoProposto(QWidget *sopra) : QPlainTextEdit(sopra)
{
    creaComandi();
    // Chiunque cambi il testo lo trova senza la proposta: la riga si dispone secondo ciò che è.
    connect(document(), &QTextDocument::contentsChange, this, [this] {
        m_proposta = {};
        sgombra(document());
    });
    const auto forse = [this] {
        if (!m_inCorso)
            ripropone();
    };
    connect(this, &QPlainTextEdit::textChanged, this, forse);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, forse);
}

// I tasti che prendono sono del testo come le frecce, e non si cambiano; gli altri sì.
void TestoProposto::creaComandi()
{
    nuovoComando(tr("Prendi il tratto propost&o"), Qt::Key_Right, [this] { prende(Tratto); });
    nuovoComando(tr("Prendi la paro&la proposta"), Qt::CTRL | Qt::Key_Right,
                 [this] { prende(Parola); });
    nuovoComando(tr("Prendi tutto &il testo proposto"), Qt::Key_End, [this] { prende(Tutto); });
    nuovoComando(tr("Niente proposte nel testo &di questo atto"), Qt::Key_Escape,
                 [this] { taccia(!m_tace); });
    m_tacere = m_comandi.last();
    m_tacere->setCheckable(true);
    auto *stende = new QAction(this);
    comandi::lega(stende, QStringLiteral("testo.distende"));
    stende->setShortcutContext(Qt::WidgetShortcut);
    stende->setEnabled(false);
    connect(stende, &QAction::triggered, this, &TestoProposto::distende);
    addAction(stende);
    m_stende = stende;
}

void TestoProposto::nuovoComando(const QString &nome, const QKeySequence &tasto,
                                 const std::function<void()> &compie)
{
    auto *azione = new QAction(nome, this);
    azione->setShortcut(tasto);
    azione->setShortcutContext(Qt::WidgetShortcut);
    azione->setToolTip(tasti::conTasto(nome, tasto));
    azione->setEnabled(false);
    connect(azione, &QAction::triggered, this, compie);
    addAction(azione);
    m_comandi.append(azione);
}

QList<QAction *> TestoProposto::comandi() const
{
    return m_comandi + QList<QAction *>{m_stende};
}

void TestoProposto::fonteLetta(const QString &guasto)
{
    if (!guasto.isEmpty()) {
        for (QAction *uno : std::as_const(m_comandi))
            uno->setToolTip(tr("Gli atti del registro non si sono letti: %1").arg(guasto));
    }
    ripropone();
}

void TestoProposto::abbrevia(std::function<QString(const QString &)> distende)
{
    m_distende = std::move(distende);
    m_stende->setEnabled(m_distende != nullptr && !isReadOnly());
}

void TestoProposto::distende()
{
    const QString prima = primaDelCursore();
    qsizetype inizio = prima.size();
    while (inizio > 0 && prima.at(inizio - 1).isLetterOrNumber())
        --inizio;
    const QString parola = prima.mid(inizio);
    const QString intera = m_distende ? m_distende(parola) : QString();
    if (intera.isEmpty()) {
        QToolTip::showText(viewport()->mapToGlobal(cursorRect().bottomLeft()),
                           tr("«%1» non è un'abbreviazione: menu Scheda, Abbreviazioni…")
                               .arg(parola.toHtmlEscaped()),
                           this);
        return;
    }
    QTextCursor cursore = textCursor();
    cursore.clearSelection();
    cursore.beginEditBlock();
    cursore.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor,
                         static_cast<int>(parola.size()));
    cursore.insertText(intera);
    cursore.endEditBlock();
    setTextCursor(cursore);
    ensureCursorVisible();
}

// Il menu solito della casella, poi ciò che è nostro.
void TestoProposto::contextMenuEvent(QContextMenuEvent *evento)
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    if (m_continua || m_distende) {
        menu->addSeparator();
        menu->addActions(comandi());
    }
    menu->exec(evento->globalPos());
}

void TestoProposto::continua(Continua fonte)
{
    m_continua = std::move(fonte);
    ripropone();
}

void TestoProposto::taccia(bool tace)
{
    const bool cambia = std::exchange(m_tace, tace) != tace;
    ripropone();
    if (cambia)
        emit taciuta(tace);
}

bool TestoProposto::puoProporre() const
{
    if (!m_continua || m_tace || isReadOnly() || !hasFocus() || textCursor().hasSelection())
        return false;
    const QString dopo = toPlainText().mid(textCursor().position()).trimmed();
    return dopo.isEmpty() || dopo == u'.';
}

// Ciò che il testo propone qui. Il punto che c'è già non si propone un'altra volta.
TestoProposto::Seguito TestoProposto::cerca() const
{
    if (!puoProporre())
        return {};
    const QString tutto = toPlainText();
    const int qui = textCursor().position();
    Seguito trovata = m_continua(tutto.left(qui));
    if (tutto.mid(qui).trimmed() == u'.' && trovata.testo.endsWith(u'.'))
        trovata.testo.chop(1);
    trovata.tratto = std::clamp<qsizetype>(trovata.tratto, 0, trovata.testo.size());
    trovata.parola = std::clamp<qsizetype>(trovata.parola, 0, trovata.testo.size());
    return trovata;
}

QString TestoProposto::primaDelCursore() const
{
    return toPlainText().left(textCursor().position());
}

void TestoProposto::ripropone()
{
    mostra(cerca());
}

void TestoProposto::nasconde()
{
    mostra({});
}

// La disposizione della riga cambia altezza: ciò che si vede resta dov'è.
void TestoProposto::mostra(const Seguito &proposta)
{
    const QScopedValueRollback<bool> noi(m_inCorso, true);
    const int alto = verticalScrollBar()->value();
    sgombra(document());
    m_proposta = proposta;
    if (!proposta.testo.isEmpty()) {
        const QTextBlock riga = textCursor().block();
        const int dove = textCursor().positionInBlock();
        QTextLayout *disposta = riga.layout();
        disposta->setPreeditArea(
            dove, QString(proposta.testo).replace(u'\n', QChar(QChar::LineSeparator)));
        QTextCharFormat tratto;
        tratto.setForeground(palette().placeholderText());
        QTextCharFormat resto = tratto;
        tratto.setUnderlineStyle(QTextCharFormat::DotLine);
        const int lungo = static_cast<int>(proposta.tratto);
        disposta->setFormats(
            {{dove, lungo, tratto},
             {dove + lungo, static_cast<int>(proposta.testo.size()) - lungo, resto}});
        document()->markContentsDirty(riga.position(), riga.length());
    }
    verticalScrollBar()->setValue(alto);
    racconta();
}

void TestoProposto::racconta()
{
    const bool niente = m_proposta.testo.isEmpty();
    const QString detta = niente ? QString() : tr("proposta: %1").arg(m_proposta.testo.trimmed());
    if (accessibleDescription() != detta)
        setAccessibleDescription(detta);
    for (QAction *uno : std::as_const(m_comandi))
        uno->setEnabled(!niente);
    m_tacere->setEnabled(m_continua && (m_tace || !niente));
    m_tacere->setChecked(m_tace);
}

void TestoProposto::prende(Quanto quanto)
{
    const Seguito qui = m_proposta;
    if (qui.testo.isEmpty())
        return;
    const qsizetype chiesto = quanto == Parola   ? qui.parola
                              : quanto == Tratto ? qui.tratto
                                                 : qui.testo.size();
    {
        const QScopedValueRollback<bool> noi(m_inCorso, true);
        nasconde();
        QTextCursor cursore = textCursor();
        cursore.beginEditBlock();
        cursore.insertText(qui.testo.left(chiesto > 0 ? chiesto : qui.testo.size()));
        cursore.endEditBlock();
        setTextCursor(cursore);
    }
    ripropone();
    ensureCursorVisible();
}

// Il comando cui il tasto appartiene, finché c'è una proposta su cui agire.
QAction *TestoProposto::comandoDi(const QKeyEvent *evento) const
{
    if (m_proposta.testo.isEmpty())
        return nullptr;
    const QKeySequence tasto(QKeyCombination(evento->modifiers() & ~Qt::KeypadModifier,
                                             static_cast<Qt::Key>(evento->key())));
    for (QAction *uno : m_comandi) {
        if (uno->shortcut() == tasto)
            return uno;
    }
    return nullptr;
}

bool TestoProposto::event(QEvent *evento)
{
    if (evento->type() == QEvent::ShortcutOverride &&
        comandoDi(static_cast<QKeyEvent *>(evento)) != nullptr) {
        evento->accept();
        return true;
    }
    return QPlainTextEdit::event(evento);
}

void TestoProposto::keyPressEvent(QKeyEvent *evento)
{
    if (QAction *comando = comandoDi(evento)) {
        comando->trigger();
        return;
    }
    const Seguito era = std::exchange(m_proposta, {});
    const QString prima = primaDelCursore();
    {
        const QScopedValueRollback<bool> noi(m_inCorso, true);
        sgombra(document());
        QPlainTextEdit::keyPressEvent(evento);
    }
    ripropone();
    // Chi scrive le lettere che si vedevano ci passa attraverso.
    const QString ora = primaDelCursore();
    const QStringView scritte = QStringView(ora).mid(std::min(prima.size(), ora.size()));
    if (m_proposta.testo.isEmpty() && !scritte.isEmpty() && puoProporre() &&
        ora.startsWith(prima) && era.testo.startsWith(scritte) && scritte.size() < era.testo.size())
        mostra({era.testo.mid(scritte.size()), std::max<qsizetype>(era.parola - scritte.size(), 0),
                std::max<qsizetype>(era.tratto - scritte.size(), 0)});
}

// Ciò che un metodo di immissione sta componendo sta dove sta la proposta: una cosa alla volta.
void TestoProposto::inputMethodEvent(QInputMethodEvent *evento)
{
    nasconde();
    {
        const QScopedValueRollback<bool> noi(m_inCorso, true);
        QPlainTextEdit::inputMethodEvent(evento);
    }
    if (evento->preeditString().isEmpty())
        ripropone();
}

void TestoProposto::mousePressEvent(QMouseEvent *evento)
{
    nasconde();
    QPlainTextEdit::mousePressEvent(evento);
    ripropone();
}

void TestoProposto::focusInEvent(QFocusEvent *evento)
{
    QPlainTextEdit::focusInEvent(evento);
    ripropone();
}

void TestoProposto::focusOutEvent(QFocusEvent *evento)
{
    nasconde();
    QPlainTextEdit::focusOutEvent(evento);
}

void TestoProposto::changeEvent(QEvent *evento)
{
    QPlainTextEdit::changeEvent(evento);
    if (evento->type() == QEvent::PaletteChange || evento->type() == QEvent::ReadOnlyChange)
        ripropone();
}
