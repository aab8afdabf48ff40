#include "platform/finestre/limite.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace
{

constexpr int senzaLimite = 32767;

} // namespace

Limite::Limite(QLineEdit *riga, int lunghezza) : QObject(riga), m_riga(riga), m_lunghezza(lunghezza)
{
    misura(riga->text());
    connect(riga, &QLineEdit::textEdited, this, [this](const QString &testo) {
        misura(testo);
        if (testo.size() < m_riga->maxLength())
            dice({});
    });
    connect(riga, &QLineEdit::inputRejected, this, [this] {
        dice(tr("Al massimo %1 caratteri: il resto non è entrato").arg(m_lunghezza));
    });
}

// Chi è già troppo lungo può restare tale, non crescere.
void Limite::misura(const QString &testo)
{
    m_riga->setMaxLength(m_lunghezza == 0 ? senzaLimite
                                          : std::max(m_lunghezza, static_cast<int>(testo.size())));
}

void Limite::mostra(const QString &testo)
{
    misura(testo);
    m_riga->setText(testo);
    m_riga->setCursorPosition(0);
    dice({});
}

QLabel *Limite::nota(QWidget *sopra)
{
    m_nota = nuovaNota(sopra);
    return m_nota;
}

void Limite::dice(const QString &testo)
{
    m_riga->setAccessibleDescription(testo);
    if (m_nota != nullptr)
        annota(m_nota, testo);
}

QLabel *nuovaNota(QWidget *sopra)
{
    auto *nota = new QLabel(sopra);
    nota->setTextFormat(Qt::PlainText);
    nota->setWordWrap(true);
    nota->hide();
    return nota;
}

void annota(QLabel *nota, const QString &testo)
{
    if (nota->text() == testo)
        return;
    nota->setText(testo);
    nota->setVisible(!testo.isEmpty());
    if (testo.isEmpty())
        return;
    QAccessibleEvent avviso(nota, QAccessible::Alert);
    QAccessible::updateAccessibility(&avviso);
}
