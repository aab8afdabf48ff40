#include "editors/casella_testo.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace
{

constexpr int senzaLimite = 32767;

} // namespace

void nascondeCaratteri(QLineEdit *casella)
{
    casella->setEchoMode(QLineEdit::Password);
    // Il segno che cela i caratteri è dello stile, che ne sceglierebbe un altro.
    casella->setStyleSheet(QStringLiteral("lineedit-password-character: %1").arg(int{'*'}));
}

CasellaTesto::CasellaTesto(const DescrizioneCampo &descrizione, QWidget *sopra)
    : Casella(descrizione, sopra), m_riga(new QLineEdit(sopra))
{
    sorveglia();
    misura({});
    connect(m_riga, &QLineEdit::textChanged, this, &CasellaTesto::daRileggere);
    connect(m_riga, &QLineEdit::textEdited, this, [this](const QString &testo) {
        misura(testo);
        if (testo.size() < m_riga->maxLength())
            annota({});
        emit cambiata();
    });
    connect(m_riga, &QLineEdit::inputRejected, this, [this] {
        annota(tr("Al massimo %1 caratteri: il resto non è entrato")
                   .arg(this->descrizione().lunghezza));
    });
}

// Chi è già troppo lungo può restare tale, non crescere.
void CasellaTesto::misura(const QString &testo)
{
    const int lunghezza = descrizione().lunghezza;
    m_riga->setMaxLength(lunghezza == 0 ? senzaLimite
                                        : std::max(lunghezza, static_cast<int>(testo.size())));
}

void CasellaTesto::presenta()
{
    riscrive(scritto(mostrato()));
    annota({});
}

void CasellaTesto::riscrive(const QString &testo)
{
    misura(testo);
    m_riga->setText(testo);
    m_riga->setCursorPosition(0);
    m_daLeggere = true;
}

QString CasellaTesto::testo() const
{
    return m_riga->text();
}

const std::optional<QVariant> &CasellaTesto::letto() const
{
    if (m_daLeggere) {
        const QString testo = m_riga->text();
        if (testo.trimmed().isEmpty())
            m_letto = QVariant();
        else
            m_letto = testo == scritto(mostrato()) ? mostrato() : legge(testo);
        m_daLeggere = false;
    }
    return m_letto;
}

QVariant CasellaTesto::valore() const
{
    return letto().value_or(QVariant());
}

QString CasellaTesto::rifiuto() const
{
    return letto() ? QString() : motivo();
}

std::optional<QVariant> CasellaTesto::legge(const QString &testo) const
{
    return testo.trimmed();
}

bool CasellaTesto::vuota() const
{
    return m_riga->text().trimmed().isEmpty();
}

void CasellaTesto::setSolaLettura(bool sola)
{
    m_riga->setReadOnly(sola);
}

QWidget *CasellaTesto::parte() const
{
    return m_riga;
}

void CasellaTesto::riprende()
{
    m_riga->setFocus();
    m_riga->selectAll();
}

void CasellaTesto::numera(int indice)
{
    m_riga->setObjectName(QStringLiteral("Text1_%1").arg(indice));
}

QLabel *CasellaTesto::nota(QWidget *sopra)
{
    m_nota = new QLabel(sopra);
    m_nota->setTextFormat(Qt::PlainText);
    m_nota->setWordWrap(true);
    m_nota->hide();
    return m_nota;
}

// Chi non vede la sente appena compare, e tornando alla casella.
void CasellaTesto::annota(const QString &nota)
{
    const bool nuova = m_riga->accessibleDescription() != nota;
    m_riga->setAccessibleDescription(nota);
    if (m_nota == nullptr)
        return;
    m_nota->setText(nota);
    m_nota->setVisible(!nota.isEmpty());
    if (nuova && !nota.isEmpty()) {
        QAccessibleEvent avviso(m_nota, QAccessible::Alert);
        QAccessible::updateAccessibility(&avviso);
    }
}

CasellaPassword::CasellaPassword(const DescrizioneCampo &descrizione, QWidget *sopra)
    : CasellaTesto(descrizione, sopra)
{
    nascondeCaratteri(qobject_cast<QLineEdit *>(parte()));
}
