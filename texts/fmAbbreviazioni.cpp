#include "texts/fmAbbreviazioni.h"

#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/tasti.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

using modTarvola::Abbreviazione;

fmAbbreviazioni::fmAbbreviazioni(const QList<Abbreviazione> &presenti, QWidget *sopra)
    : QDialog(sopra), m_tavola(new QTableWidget(0, 2, this))
{
    setObjectName(QStringLiteral("fmAbbreviazioni"));
    setWindowTitle(tr("Abbreviazioni"));
    m_tavola->setAccessibleName(tr("Abbreviazioni dell'archivio"));
    m_tavola->setHorizontalHeaderLabels({tr("Abbreviazione"), tr("Testo")});
    m_tavola->horizontalHeader()->setStretchLastSection(true);
    m_tavola->verticalHeader()->hide();
    m_tavola->setTabKeyNavigation(true);
    m_tavola->setEditTriggers(QAbstractItemView::AllEditTriggers);
    for (const Abbreviazione &una : presenti)
        aggiunge(una);

    auto *spiega = new QLabel(
        tr("Scritta l'abbreviazione nel testo di un atto, un tasto la distende (menu Scheda)."),
        this);
    spiega->setWordWrap(true);
    auto *bottoni =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    auto *nuova = bottoni->addButton(tr("&Nuova"), QDialogButtonBox::ActionRole);
    auto *elimina = bottoni->addButton(tr("&Elimina"), QDialogButtonBox::ActionRole);
    for (QAbstractButton *uno : bottoni->buttons())
        qobject_cast<QPushButton *>(uno)->setAutoDefault(false);
    tasti::assegna(this, Qt::Key_Insert, nuova);
    tasti::assegna(this, Qt::CTRL | Qt::Key_Delete, elimina);
    connect(nuova, &QPushButton::clicked, this, &fmAbbreviazioni::nuova);
    connect(elimina, &QPushButton::clicked, this, &fmAbbreviazioni::elimina);
    connect(bottoni, &QDialogButtonBox::accepted, this, &fmAbbreviazioni::accept);
    connect(bottoni, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *colonna = new QVBoxLayout(this);
    colonna->addWidget(spiega);
    colonna->addWidget(m_tavola, 1);
    colonna->addWidget(bottoni);
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 20);
    memoria::ricordaFinestra(this, objectName());
    if (presenti.isEmpty())
        fmAbbreviazioni::nuova();
    else
        m_tavola->setCurrentCell(0, 0);
    m_tavola->setFocus();
}

void fmAbbreviazioni::aggiunge(const Abbreviazione &una)
{
    const int riga = m_tavola->rowCount();
    m_tavola->insertRow(riga);
    m_tavola->setItem(riga, 0, new QTableWidgetItem(una.breve));
    m_tavola->setItem(riga, 1, new QTableWidgetItem(una.testo));
}

void fmAbbreviazioni::nuova()
{
    aggiunge({});
    m_tavola->setCurrentCell(m_tavola->rowCount() - 1, 0);
    m_tavola->setFocus();
}

void fmAbbreviazioni::elimina()
{
    m_tavola->removeRow(m_tavola->currentRow());
    m_tavola->setFocus();
}

QList<Abbreviazione> fmAbbreviazioni::scritte() const
{
    QList<Abbreviazione> tutte;
    for (int riga = 0; riga < m_tavola->rowCount(); ++riga) {
        const Abbreviazione una{m_tavola->item(riga, 0)->text().trimmed(),
                                m_tavola->item(riga, 1)->text()};
        if (!una.breve.isEmpty() || !una.testo.trimmed().isEmpty())
            tutte.append(una);
    }
    return tutte;
}

void fmAbbreviazioni::accept()
{
    // Ciò che si sta scrivendo in una cella vale.
    m_tavola->setFocus();
    m_tavola->setCurrentItem(m_tavola->currentItem());
    const QList<Abbreviazione> tutte = scritte();
    qsizetype quale = 0;
    const QString rifiuto = modTarvola::rifiutoDi(tutte, quale);
    if (rifiuto.isEmpty())
        return QDialog::accept();
    messaggi::avvisa(this, rifiuto);
    for (int riga = 0; riga < m_tavola->rowCount(); ++riga) {
        const Abbreviazione &sua = tutte.at(quale);
        if (m_tavola->item(riga, 0)->text().trimmed() == sua.breve &&
            m_tavola->item(riga, 1)->text() == sua.testo)
            m_tavola->setCurrentCell(riga, sua.testo.trimmed().isEmpty() ? 1 : 0);
    }
}

bool cambiaAbbreviazioni(ado::Connection &connessione, QWidget *sopra)
{
    fmAbbreviazioni finestra(modTarvola::abbreviazioni(connessione), sopra);
    if (finestra.exec() != QDialog::Accepted)
        return false;
    modTarvola::scriveAbbreviazioni(connessione, finestra.scritte());
    return true;
}
