#include "app/fmBozze.h"

#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

fmBozze::fmBozze(QWidget *sopra, const QString &titolo, const QString &testo,
                 QList<bozze::Bozza> bozze, qsizetype scelte)
    : QDialog(sopra),
      m_bozze(std::move(bozze)),
      m_elenco(new QTreeWidget(this)),
      m_dettagli(new QPlainTextEdit(this)),
      m_riprende(new QPushButton(tr("&Riprendi"), this)),
      m_scarta(new QPushButton(tr("&Scarta"), this))
{
    setObjectName(QStringLiteral("fmBozze"));
    setWindowTitle(titolo);
    auto *spiega = new QLabel(testo, this);
    spiega->setTextFormat(Qt::PlainText);
    spiega->setWordWrap(true);
    creaElenco();
    auto *parti = new QSplitter(Qt::Vertical, this);
    parti->addWidget(m_elenco);
    parti->addWidget(m_dettagli);
    parti->setStretchFactor(0, 3);
    parti->setStretchFactor(1, 2);
    parti->setChildrenCollapsible(false);
    auto *colonna = new QVBoxLayout(this);
    colonna->addWidget(spiega);
    colonna->addWidget(parti, 1);
    colonna->addLayout(bottoni());
    connect(m_elenco, &QTreeWidget::itemSelectionChanged, this, &fmBozze::mostra);
    connect(m_elenco, &QTreeWidget::itemActivated, this, &QDialog::accept);
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 26);
    riempie(scelte);
    memoria::ricordaFinestra(this, objectName());
}

void fmBozze::creaElenco()
{
    m_elenco->setObjectName(QStringLiteral("Bozze"));
    m_elenco->setAccessibleName(tr("Bozze"));
    m_elenco->setHeaderLabels({tr("Che cosa"), tr("Dove"), tr("Quando")});
    m_elenco->setRootIsDecorated(false);
    m_elenco->setUniformRowHeights(true);
    m_elenco->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_dettagli->setReadOnly(true);
    m_dettagli->setTabChangesFocus(true);
    m_dettagli->setAccessibleName(tr("Ciò che è scritto nella bozza"));
}

QLayout *fmBozze::bottoni()
{
    auto *chiude = new QPushButton(tr("&Chiudi"), this);
    auto *riga = new QHBoxLayout;
    riga->addStretch();
    for (QPushButton *bottone : {m_riprende, m_scarta, chiude}) {
        bottone->setAutoDefault(false);
        riga->addWidget(bottone);
    }
    m_riprende->setDefault(true);
    m_riprende->setObjectName(QStringLiteral("Riprende"));
    m_scarta->setObjectName(QStringLiteral("Scarta"));
    connect(m_riprende, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_scarta, &QPushButton::clicked, this, &fmBozze::scartaScelte);
    connect(chiude, &QPushButton::clicked, this, &QDialog::reject);
    return riga;
}

void fmBozze::riempie(qsizetype scelte)
{
    m_elenco->clear();
    for (const bozze::Bozza &una : std::as_const(m_bozze)) {
        const QString quando = QLocale().toString(una.quando, QLocale::ShortFormat);
        auto *riga = new QTreeWidgetItem(m_elenco, {una.che(), una.dove(), quando});
        riga->setSelected(m_elenco->topLevelItemCount() <= scelte);
    }
    m_elenco->setCurrentItem(m_elenco->topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
    const int lettera = fontMetrics().averageCharWidth();
    m_elenco->setColumnWidth(0, lettera * 40);
    m_elenco->setColumnWidth(1, lettera * 38);
    mostra();
}

QList<bozze::Bozza> fmBozze::scelte() const
{
    QList<bozze::Bozza> tutte;
    for (int i = 0; i < m_elenco->topLevelItemCount(); ++i) {
        if (m_elenco->topLevelItem(i)->isSelected())
            tutte.append(m_bozze.at(i));
    }
    return tutte;
}

// Ciò che vi è scritto, per intero: da qui si può anche copiare.
void fmBozze::mostra()
{
    QStringList righe;
    const QList<bozze::Bozza> tutte = scelte();
    for (const bozze::Bozza &una : tutte) {
        for (const bozze::Finestra &finestra : una.finestre) {
            for (const bozze::Scritta &casella : finestra.caselle)
                righe.append(casella.etichetta + QStringLiteral(": ") + casella.testo);
        }
        righe.append(QString());
    }
    m_dettagli->setPlainText(righe.join(u'\n').trimmed());
    m_riprende->setEnabled(!tutte.isEmpty());
    m_scarta->setEnabled(!tutte.isEmpty());
}

void fmBozze::scartaScelte()
{
    const QList<bozze::Bozza> tutte = scelte();
    const QString domanda = tutte.size() == 1
                                ? tr("Scartare per sempre la bozza scelta?")
                                : tr("Scartare per sempre le %1 bozze scelte?").arg(tutte.size());
    if (!messaggi::chiede(this, domanda, messaggi::Domanda::PropostoNo))
        return;
    for (const bozze::Bozza &una : tutte) {
        scarta(una);
        m_bozze.removeOne(una);
    }
    if (m_bozze.isEmpty())
        return reject();
    riempie(1);
}
