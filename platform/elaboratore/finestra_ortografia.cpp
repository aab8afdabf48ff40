#include "platform/elaboratore/finestra_ortografia.h"

#include "platform/finestre/messaggi.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>

namespace
{

QLabel *etichetta(const QString &didascalia, QWidget *di, QWidget *sopra)
{
    auto *nuova = new QLabel(didascalia, sopra);
    nuova->setBuddy(di);
    return nuova;
}

} // namespace

FinestraOrtografia::FinestraOrtografia(Correttore &correttore, dizionario::Dizionario &dizionario)
    : m_correttore(correttore),
      m_dizionario(dizionario),
      m_frase(new QPlainTextEdit(this)),
      m_nuova(new QLineEdit(this)),
      m_suggerimenti(new QListWidget(this))
{
    setObjectName(QStringLiteral("FinestraOrtografia"));
    setWindowTitle(QStringLiteral("Controllo ortografico"));
    // Le altre finestre sono ridotte a icona: questa sta da sola.
    setWindowModality(Qt::ApplicationModal);
    auto *riga = new QHBoxLayout(this);
    riga->addWidget(parola(), 1);
    riga->addWidget(comandi());
    mostra();
}

QWidget *FinestraOrtografia::parola()
{
    auto *parte = new QWidget(this);
    m_frase->setObjectName(QStringLiteral("Frase"));
    m_frase->setReadOnly(true);
    m_frase->setTabChangesFocus(true);
    m_frase->setAccessibleName(QStringLiteral("Frase"));
    m_frase->setFixedHeight(fontMetrics().lineSpacing() * 6);
    m_frase->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    m_nuova->setObjectName(QStringLiteral("Nuova"));
    m_suggerimenti->setObjectName(QStringLiteral("Suggerimenti"));
    m_suggerimenti->setAccessibleName(QStringLiteral("Suggerimenti"));
    connect(m_suggerimenti, &QListWidget::currentTextChanged, this, [this](const QString &scelto) {
        if (!scelto.isEmpty())
            m_nuova->setText(scelto);
    });
    connect(m_suggerimenti, &QListWidget::itemActivated, this, [this] { cambia(false); });
    connect(m_nuova, &QLineEdit::textChanged, this, [this](const QString &testo) {
        m_cambia->setEnabled(!testo.trimmed().isEmpty());
        m_cambiaTutte->setEnabled(!testo.trimmed().isEmpty());
    });
    auto *colonna = new QVBoxLayout(parte);
    colonna->setContentsMargins({});
    colonna->addWidget(etichetta(QStringLiteral("&Frase"), m_frase, parte));
    colonna->addWidget(m_frase);
    colonna->addWidget(etichetta(QStringLiteral("&Parola"), m_nuova, parte));
    colonna->addWidget(m_nuova);
    colonna->addWidget(etichetta(QStringLiteral("&Suggerimenti"), m_suggerimenti, parte));
    colonna->addWidget(m_suggerimenti, 1);
    return parte;
}

QWidget *FinestraOrtografia::comandi()
{
    auto *parte = new QWidget(this);
    auto *colonna = new QVBoxLayout(parte);
    colonna->setContentsMargins({});
    m_cambia =
        comando(QStringLiteral("&Cambia"), QStringLiteral("Cambia"), [this] { cambia(false); });
    m_cambia->setDefault(true);
    m_cambiaTutte = comando(QStringLiteral("Cambia &tutte"), QStringLiteral("CambiaTutte"),
                            [this] { cambia(true); });
    const auto ignora = [this](bool tutte) {
        m_correttore.ignora(tutte);
        prossima();
    };
    colonna->addWidget(
        comando(QStringLiteral("&Ignora"), QStringLiteral("Ignora"), [ignora] { ignora(false); }));
    colonna->addWidget(comando(QStringLiteral("I&gnora tutte"), QStringLiteral("IgnoraTutte"),
                               [ignora] { ignora(true); }));
    colonna->addWidget(comando(QStringLiteral("&Aggiungi al dizionario"),
                               QStringLiteral("Aggiungi"), [this] { aggiungi(); }));
    colonna->addSpacing(fontMetrics().height());
    colonna->addWidget(m_cambia);
    colonna->addWidget(m_cambiaTutte);
    colonna->addStretch();
    colonna->addWidget(
        comando(QStringLiteral("C&hiudi"), QStringLiteral("Chiudi"), [this] { reject(); }));
    return parte;
}

QPushButton *FinestraOrtografia::comando(const QString &didascalia, const QString &nome,
                                         const std::function<void()> &azione)
{
    auto *bottone = new QPushButton(didascalia, this);
    bottone->setObjectName(nome);
    bottone->setAutoDefault(false);
    connect(bottone, &QPushButton::clicked, this,
            [this, azione] { messaggi::protetto(this, azione); });
    return bottone;
}

void FinestraOrtografia::mostra()
{
    mostraFrase();
    m_suggerimenti->clear();
    m_suggerimenti->addItems(m_correttore.suggerimenti());
    m_nuova->setText(m_correttore.parola());
    if (m_suggerimenti->count() > 0)
        m_suggerimenti->setCurrentRow(0);
    m_nuova->setFocus();
    m_nuova->selectAll();
}

void FinestraOrtografia::mostraFrase()
{
    const parole::Parola posto = m_correttore.posto();
    const parole::Parola frase = parole::frase(m_correttore.testo(), posto);
    m_frase->setPlainText(m_correttore.testo().mid(frase.inizio, frase.lunghezza));
    QTextEdit::ExtraSelection evidenza;
    evidenza.cursor = QTextCursor(m_frase->document());
    evidenza.cursor.setPosition(static_cast<int>(posto.inizio - frase.inizio));
    m_frase->setTextCursor(evidenza.cursor);
    evidenza.cursor.setPosition(static_cast<int>(posto.inizio - frase.inizio + posto.lunghezza),
                                QTextCursor::KeepAnchor);
    evidenza.format.setBackground(palette().highlight());
    evidenza.format.setForeground(palette().highlightedText());
    evidenza.format.setFontWeight(QFont::Bold);
    m_frase->setExtraSelections({evidenza});
    m_frase->ensureCursorVisible();
}

void FinestraOrtografia::prossima()
{
    if (m_correttore.avanza())
        mostra();
    else
        accept();
}

void FinestraOrtografia::cambia(bool tutte)
{
    m_correttore.cambia(m_nuova->text().trimmed(), tutte);
    prossima();
}

void FinestraOrtografia::aggiungi()
{
    m_dizionario.aggiungi(m_correttore.parola());
    m_correttore.ignora(true);
    prossima();
}
