#include "editors/casella_testo.h"

#include "platform/finestre/limite.h"

#include <QLineEdit>

void nascondeCaratteri(QLineEdit *casella)
{
    casella->setEchoMode(QLineEdit::Password);
    // Il segno che cela i caratteri è dello stile, che ne sceglierebbe un altro.
    casella->setStyleSheet(QStringLiteral("lineedit-password-character: %1").arg(int{'*'}));
}

CasellaTesto::CasellaTesto(const DescrizioneCampo &descrizione, QWidget *sopra)
    : Casella(descrizione, sopra),
      m_riga(new QLineEdit(sopra)),
      m_limite(new Limite(m_riga, descrizione.lunghezza))
{
    sorveglia();
    connect(m_riga, &QLineEdit::textChanged, this, &CasellaTesto::daRileggere);
    // La riga dice prima che è stata scritta e poi che è cambiata: chi lo sa la trova da rileggere.
    connect(m_riga, &QLineEdit::textEdited, this, &CasellaTesto::daRileggere);
    connect(m_riga, &QLineEdit::textEdited, this, &Casella::cambiata);
}

void CasellaTesto::presenta()
{
    riscrive(scritto(mostrato()));
}

void CasellaTesto::riscrive(const QString &testo)
{
    m_limite->mostra(testo);
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
    return m_limite->nota(sopra);
}

CasellaPassword::CasellaPassword(const DescrizioneCampo &descrizione, QWidget *sopra)
    : CasellaTesto(descrizione, sopra)
{
    nascondeCaratteri(qobject_cast<QLineEdit *>(parte()));
}
