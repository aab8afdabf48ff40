#include "atti/fmTasti.h"

#include "platform/finestre/memoria_finestre.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using comandi::Comando;
using comandi::Tasti;

namespace
{

enum Colonna { Nome, Finestra, Tasto, Primo, Quante };

QString scritto(const QKeySequence &tasto)
{
    return tasto.isEmpty() ? fmTasti::tr("nessuno") : tasto.toString(QKeySequence::NativeText);
}

bool soloModo(int tasto)
{
    return tasto == Qt::Key_Control || tasto == Qt::Key_Shift || tasto == Qt::Key_Alt ||
           tasto == Qt::Key_AltGr || tasto == Qt::Key_Meta || tasto == Qt::Key_CapsLock ||
           tasto == Qt::Key_NumLock || tasto == Qt::Key_Super_L || tasto == Qt::Key_Super_R;
}

// I tasti che nella casella fanno ciò che fanno in ogni finestra: a un comando non si danno.
bool esce(const QKeyEvent &evento)
{
    const auto modi = evento.modifiers() & ~Qt::KeypadModifier;
    switch (evento.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return modi == Qt::NoModifier;
    default:
        return evento.key() == Qt::Key_F1 ||
               (modi == Qt::AltModifier && evento.key() >= Qt::Key_Space &&
                evento.key() < Qt::Key_Escape);
    }
}

} // namespace

CasellaTasto::CasellaTasto(QWidget *sopra) : QLineEdit(sopra)
{
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
}

void CasellaTasto::mostra(const QKeySequence &tasto)
{
    m_premuto = tasto;
    setText(tasto.toString(QKeySequence::NativeText));
    emit cambiato();
}

// Un tasto che in un'altra finestra sarebbe un comando, qui è quello che si vuole dare.
bool CasellaTasto::event(QEvent *evento)
{
    if (evento->type() == QEvent::ShortcutOverride) {
        evento->setAccepted(!esce(*static_cast<QKeyEvent *>(evento)));
        return true;
    }
    return QLineEdit::event(evento);
}

void CasellaTasto::keyPressEvent(QKeyEvent *evento)
{
    if (esce(*evento)) {
        if (evento->key() == Qt::Key_Return || evento->key() == Qt::Key_Enter)
            emit returnPressed();
        else
            evento->ignore();
        return;
    }
    if (!soloModo(evento->key()))
        mostra(QKeySequence(
            QKeyCombination(evento->modifiers() & ~Qt::KeypadModifier, Qt::Key(evento->key()))));
}

fmTasti::fmTasti(QWidget *sopra)
    : QDialog(sopra),
      m_tasti(comandi::inVigore()),
      m_elenco(new QTreeWidget(this)),
      m_casella(new CasellaTasto(this)),
      m_nota(new QLabel(this))
{
    setObjectName(QStringLiteral("fmTasti"));
    setWindowTitle(tr("Tasti"));
    setSizeGripEnabled(true);
    m_elenco->setObjectName(QStringLiteral("Comandi"));
    m_casella->setObjectName(QStringLiteral("NuovoTasto"));
    m_nota->setObjectName(QStringLiteral("Nota"));
    m_assegna = bottone(QStringLiteral("Assegna"), tr("A&ssegna"), &fmTasti::assegna);
    m_toglie = bottone(QStringLiteral("Togli"), tr("&Togli il tasto"), &fmTasti::toglie);
    m_rimette = bottone(QStringLiteral("Rimetti"), tr("&Rimetti il primo"), &fmTasti::rimette);
    m_rimetteTutti =
        bottone(QStringLiteral("RimettiTutti"), tr("Rimetti t&utti"), &fmTasti::rimetteTutti);
    disponi();
    elenca();
    connect(m_elenco, &QTreeWidget::currentItemChanged, this, &fmTasti::mostraScelto);
    connect(m_elenco, &QTreeWidget::itemActivated, this, [this] { m_casella->setFocus(); });
    connect(m_casella, &CasellaTasto::cambiato, this, &fmTasti::racconta);
    connect(m_casella, &QLineEdit::returnPressed, this, &fmTasti::assegna);
    m_elenco->setCurrentItem(m_elenco->topLevelItem(0));
    m_elenco->setFocus();
    memoria::ricordaFinestra(this, objectName());
}

QPushButton *fmTasti::bottone(const QString &nome, const QString &didascalia,
                              void (fmTasti::*comando)())
{
    auto *nuovo = new QPushButton(didascalia, this);
    nuovo->setObjectName(nome);
    // Invio dà il tasto, o porta alla casella: non preme bottoni.
    nuovo->setAutoDefault(false);
    connect(nuovo, &QPushButton::clicked, this, comando);
    return nuovo;
}

void fmTasti::disponi()
{
    const int lettera = fontMetrics().averageCharWidth();
    m_elenco->setAccessibleName(tr("Comandi"));
    m_elenco->setRootIsDecorated(false);
    m_elenco->setUniformRowHeights(true);
    m_elenco->setAllColumnsShowFocus(true);
    m_elenco->setAlternatingRowColors(true);
    m_elenco->setColumnCount(Quante);
    m_elenco->setHeaderLabels({tr("Comando"), tr("Dove vale"), tr("Tasto"), tr("Primo tasto")});
    m_elenco->header()->setStretchLastSection(false);
    m_elenco->header()->setSectionResizeMode(Nome, QHeaderView::Stretch);
    auto *etichetta = new QLabel(tr("&Nuovo tasto"), this);
    etichetta->setBuddy(m_casella);
    m_nota->setTextFormat(Qt::PlainText);
    m_nota->setWordWrap(true);
    m_nota->setMinimumHeight(fontMetrics().lineSpacing() * 2);
    m_nota->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    auto *scelta = new QHBoxLayout;
    scelta->addWidget(etichetta);
    scelta->addWidget(m_casella, 1);
    for (QPushButton *uno : {m_assegna, m_toglie, m_rimette})
        scelta->addWidget(uno);
    auto *fondo = new QHBoxLayout;
    fondo->addWidget(m_rimetteTutti);
    fondo->addStretch();
    fondo->addWidget(bottone(QStringLiteral("OK"), tr("&OK"), &fmTasti::conferma));
    fondo->addWidget(bottone(QStringLiteral("Annulla"), tr("&Annulla"), &QDialog::reject));
    auto *colonna = new QVBoxLayout(this);
    colonna->addWidget(m_elenco, 1);
    colonna->addLayout(scelta);
    colonna->addWidget(m_nota);
    colonna->addLayout(fondo);
    resize(lettera * 110, fontMetrics().lineSpacing() * 30);
}

// Una riga per comando, nell'ordine del catalogo; in grassetto i tasti che non sono i primi.
void fmTasti::elenca()
{
    const auto &tutti = comandi::catalogo();
    if (m_elenco->topLevelItemCount() == 0) {
        for (const Comando &uno : tutti) {
            auto *riga = new QTreeWidgetItem(m_elenco);
            riga->setText(Nome, uno.piano());
            riga->setText(Finestra, uno.finestre());
            riga->setText(Primo, scritto(uno.primo));
            riga->setData(Nome, Qt::UserRole, uno.id);
            riga->setSizeHint(Nome, {0, fontMetrics().lineSpacing() * 4 / 3});
        }
    }
    for (int i = 0; i < m_elenco->topLevelItemCount(); ++i) {
        QTreeWidgetItem *riga = m_elenco->topLevelItem(i);
        const Comando &suo = tutti.at(static_cast<size_t>(i));
        riga->setText(Tasto, scritto(m_tasti.di(suo.id)));
        QFont carattere = m_elenco->font();
        carattere.setBold(m_tasti.di(suo.id) != suo.primo);
        riga->setFont(Tasto, carattere);
    }
    for (int colonna = Finestra; colonna < Quante; ++colonna) {
        m_elenco->resizeColumnToContents(colonna);
        m_elenco->setColumnWidth(colonna, m_elenco->columnWidth(colonna) +
                                              2 * fontMetrics().averageCharWidth());
    }
    m_rimetteTutti->setEnabled(m_tasti != Tasti());
    mostraScelto();
}

QString fmTasti::scelto() const
{
    const QTreeWidgetItem *riga = m_elenco->currentItem();
    return riga == nullptr ? QString() : riga->data(Nome, Qt::UserRole).toString();
}

void fmTasti::mostraScelto()
{
    m_casella->mostra(m_tasti.di(scelto()));
}

// Che cosa vuol dire il tasto della casella per il comando scelto.
void fmTasti::racconta()
{
    const QString id = scelto();
    if (id.isEmpty())
        return;
    const QKeySequence tasto = m_casella->premuto();
    const bool suo = tasto == m_tasti.di(id);
    const bool primo = tasto == comandi::comando(id).primo;
    const QString motivo =
        suo || primo ? QString() : comandi::impedimento(tasto, comandi::comando(id).dove);
    const Comando *altro = m_tasti.conflitto(id, tasto);
    QString nota;
    if (!motivo.isEmpty())
        nota = tr("%1 non si può dare: %2.").arg(scritto(tasto), motivo);
    else if (altro != nullptr)
        nota = tr("%1 è già di «%2» (%3): se si assegna, quello resta senza tasto.")
                   .arg(scritto(tasto), altro->piano(), altro->finestre());
    else if (suo)
        nota = tr("Per cambiarlo andare nella casella e premere il tasto nuovo.");
    else
        nota = tr("%1 è libero.").arg(scritto(tasto));
    m_nota->setText(nota);
    m_casella->setAccessibleDescription(nota);
    m_assegna->setEnabled(!suo && motivo.isEmpty());
    m_toglie->setEnabled(!m_tasti.di(id).isEmpty());
    m_rimette->setEnabled(m_tasti.di(id) != comandi::comando(id).primo);
}

// A chi lo aveva prima il tasto si toglie: due insieme non ne farebbero nessuno.
void fmTasti::da(const QKeySequence &tasto)
{
    const QString id = scelto();
    while (const Comando *altro = m_tasti.conflitto(id, tasto))
        m_tasti.da(altro->id, {});
    m_tasti.da(id, tasto);
    elenca();
}

void fmTasti::assegna()
{
    if (m_assegna->isEnabled())
        da(m_casella->premuto());
}

void fmTasti::toglie()
{
    da({});
}

void fmTasti::rimette()
{
    da(comandi::comando(scelto()).primo);
}

void fmTasti::rimetteTutti()
{
    m_tasti = Tasti();
    elenca();
}

void fmTasti::conferma()
{
    if (m_tasti != comandi::inVigore())
        comandi::cambia(m_tasti);
    accept();
}
