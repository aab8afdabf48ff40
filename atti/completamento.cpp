#include "atti/completamento.h"

#include "atti/campo.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

QLineEdit *rigaDi(const Campo *campo)
{
    return campo == nullptr ? nullptr : qobject_cast<QLineEdit *>(campo->fuoco());
}

} // namespace

Completamento::Completamento(std::function<QStringList(const Campo &)> cerca, QWidget *sopra)
    : QFrame(sopra), m_cerca(std::move(cerca)), m_elenco(new QListWidget(this))
{
    setObjectName(QStringLiteral("Completamento"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setFocusPolicy(Qt::NoFocus);
    m_elenco->setFocusPolicy(Qt::NoFocus);
    m_elenco->setFrameShape(QFrame::NoFrame);
    m_elenco->setAccessibleName(tr("Proposte"));
    m_elenco->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_elenco->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_elenco->setUniformItemSizes(true);
    m_elenco->setToolTip(tr("Invio la prende e va oltre, la freccia a destra la prende e resta; "
                            "Maiusc+Canc non la propone più"));
    auto *colonna = new QVBoxLayout(this);
    colonna->setContentsMargins({});
    colonna->addWidget(m_elenco);
    connect(m_elenco, &QListWidget::itemClicked, this, [this] { prende(); });
    hide();
}

void Completamento::segue(Campo *campo)
{
    m_campo = campo;
    const QLineEdit *riga = rigaDi(campo);
    const bool infondo = riga != nullptr && riga->cursorPosition() == riga->text().size() &&
                         !riga->text().trimmed().isEmpty();
    const QStringList trovate = infondo ? m_cerca(*campo) : QStringList();
    if (trovate.isEmpty()) {
        nasconde();
        return;
    }
    m_elenco->clear();
    m_elenco->addItems(trovate);
    m_elenco->setCurrentRow(0);
    colloca();
    show();
    raise();
    racconta();
}

void Completamento::nasconde()
{
    if (isHidden())
        return;
    hide();
    if (m_campo != nullptr)
        m_campo->fuoco()->setAccessibleDescription({});
}

// Sotto la casella, o sopra dove sotto non c'è posto; larga almeno come lei.
void Completamento::colloca()
{
    const QWidget *casella = m_campo->fuoco();
    const QPoint angolo = casella->mapTo(parentWidget(), QPoint(0, casella->height()));
    const int riga = m_elenco->sizeHintForRow(0);
    const int larga = std::max(casella->width(), m_elenco->sizeHintForColumn(0) + 2 * riga);
    const int alta = riga * m_elenco->count() + 2 * frameWidth();
    const QRect spazio = parentWidget()->rect();
    const int x = std::clamp(angolo.x(), 0, std::max(0, spazio.width() - larga));
    const int y =
        angolo.y() + alta <= spazio.height() ? angolo.y() : angolo.y() - casella->height() - alta;
    setGeometry(x, std::max(0, y), larga, alta);
}

void Completamento::racconta()
{
    m_campo->fuoco()->setAccessibleDescription(tr("proposta %1 di %2: %3")
                                                   .arg(m_elenco->currentRow() + 1)
                                                   .arg(m_elenco->count())
                                                   .arg(scelta()));
}

QString Completamento::scelta() const
{
    return isHidden() || m_elenco->currentItem() == nullptr ? QString()
                                                            : m_elenco->currentItem()->text();
}

void Completamento::prende()
{
    const QString testo = scelta();
    Campo *campo = m_campo;
    nasconde();
    if (testo.isEmpty() || campo == nullptr)
        return;
    campo->scrive(testo);
    if (QLineEdit *riga = rigaDi(campo))
        riga->end(false);
}

// In fondo al testo la freccia a destra non va da nessuna parte: prende la proposta.
bool Completamento::prendeERimane()
{
    const QLineEdit *riga = rigaDi(m_campo);
    if (riga == nullptr || riga->cursorPosition() != riga->text().size())
        return false;
    Campo *campo = m_campo;
    prende();
    segue(campo);
    return true;
}

void Completamento::scorre(int passo)
{
    const int quante = m_elenco->count();
    m_elenco->setCurrentRow((m_elenco->currentRow() + passo + quante) % quante);
    racconta();
}

bool Completamento::tasto(QKeyEvent *evento, bool &avanti)
{
    avanti = false;
    if (isHidden() || m_campo == nullptr)
        return false;
    const auto modi = evento->modifiers() & ~Qt::KeypadModifier;
    switch (evento->key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
        scorre(evento->key() == Qt::Key_Down ? 1 : -1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        avanti = modi == Qt::NoModifier;
        if (avanti)
            prende();
        return avanti;
    case Qt::Key_Right:
        return modi == Qt::NoModifier && prendeERimane();
    case Qt::Key_Escape:
        nasconde();
        return true;
    case Qt::Key_Delete:
        if (modi != Qt::ShiftModifier)
            return false;
        emit nonPiu(m_campo, scelta());
        segue(m_campo);
        return true;
    default:
        return false;
    }
}
