#include "atti/testo_pagina.h"

#include "atti/colonne.h"

#include <QHBoxLayout>
#include <QLabel>

namespace
{

constexpr int righeFisse = 2; // fin qui l'altezza non cresce con la pagina

} // namespace

TestoPagina::TestoPagina(const QString &posto, const QString &etichetta, int righe, QWidget *sopra)
    : QWidget(sopra), m_posto(posto), m_testo(new TestoProposto(this))
{
    const int lettera = fontMetrics().averageCharWidth();
    auto *riga = new QHBoxLayout(this);
    riga->setContentsMargins({});
    riga->setSpacing(0);
    auto *scritta = new QLabel(etichetta, this);
    scritta->setTextFormat(Qt::PlainText);
    scritta->setFixedWidth(colonne::etichetta(this));
    scritta->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    scritta->setBuddy(m_testo);
    riga->addWidget(scritta);
    riga->addWidget(m_testo, 1);
    m_testo->setObjectName(QStringLiteral("Testo_") + posto);
    m_testo->setAccessibleName(etichetta);
    m_testo->setTabChangesFocus(true);
    m_testo->setMinimumHeight(fontMetrics().lineSpacing() * righe + 2 * lettera);
    if (righe <= righeFisse)
        m_testo->setMaximumHeight(m_testo->minimumHeight());
    connect(m_testo, &QPlainTextEdit::textChanged, this, [this] {
        m_scritto = true;
        emit cambiato();
    });
}

void TestoPagina::mostra(const QString &testo)
{
    // Ciò che c'è già resta com'è, col cursore e con ciò che si può annullare.
    const QSignalBlocker silenzio(m_testo);
    if (m_testo->toPlainText() != testo)
        m_testo->setPlainText(testo);
    m_scritto = false;
    rivede();
}

void TestoPagina::rivede()
{
    setVisible(uso != modTarvola::scheda::Uso::Nascosta || !valore().isEmpty());
}
