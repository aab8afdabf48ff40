#include "app/fmStoria.h"

#include "db/archivio/connessioni.h"
#include "db/storia/ritorno.h"
#include "platform/finestre/avanzamento.h"
#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace modTarvola;

bool riprende(QWidget *sopra, const storia::Passo &passo)
{
    const QString che =
        (passo.annullato ? QObject::tr("Ripetizione di\n") : QObject::tr("Annullamento di\n")) +
        passo.nome;
    try {
        return avanzamento::compie(sopra, che, [&passo](const avanzamento::Passo &avanza) {
            riprendeFino(connessione(), passo, [&avanza] { return avanza(0, 1); });
        });
    } catch (const storia::Impedimento &impedito) {
        messaggi::avvisa(sopra, che + QObject::tr("\nnon riuscito: ") + impedito.testo());
    } catch (const ado::Errore &errore) {
        // Chi smette a metà sa che nulla è cambiato.
        if (errore.causa() != ado::Causa::Interrotto)
            throw;
    }
    return false;
}

fmStoria::fmStoria(QWidget *sopra)
    : QDialog(sopra),
      m_elenco(new QTreeWidget(this)),
      m_quanto(new QLabel(this)),
      m_riprende(new QPushButton(this)),
      m_svuota(new QPushButton(tr("S&vuota…"), this))
{
    setObjectName(QStringLiteral("fmStoria"));
    setWindowTitle(tr("Storia"));
    m_elenco->setObjectName(QStringLiteral("Passi"));
    m_elenco->setAccessibleName(tr("Passi, dal più recente"));
    m_elenco->setColumnCount(3);
    m_elenco->setHeaderLabels({tr("Quando"), tr("Che cosa"), tr("Stato")});
    m_elenco->setRootIsDecorated(false);
    m_elenco->setUniformRowHeights(true);
    m_elenco->setAllColumnsShowFocus(true);
    m_elenco->header()->setStretchLastSection(false);
    m_elenco->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_quanto->setTextFormat(Qt::PlainText);
    m_quanto->setWordWrap(true);
    auto *chiude = new QPushButton(tr("&Chiudi"), this);
    auto *bottoni = new QHBoxLayout;
    bottoni->addWidget(m_svuota);
    bottoni->addStretch();
    bottoni->addWidget(m_riprende);
    bottoni->addWidget(chiude);
    for (QPushButton *uno : {m_svuota, m_riprende, chiude})
        uno->setAutoDefault(false);
    auto *colonna = new QVBoxLayout(this);
    colonna->addWidget(m_elenco, 1);
    colonna->addWidget(m_quanto);
    colonna->addLayout(bottoni);
    setTabOrder(m_elenco, m_riprende);
    setTabOrder(m_riprende, m_svuota);
    setTabOrder(m_svuota, chiude);
    connect(m_elenco, &QTreeWidget::currentItemChanged, this, &fmStoria::scelto);
    connect(m_elenco, &QTreeWidget::itemActivated, this, &fmStoria::svolge);
    connect(m_riprende, &QPushButton::clicked, this, &fmStoria::svolge);
    connect(m_svuota, &QPushButton::clicked, this, &fmStoria::svuota);
    connect(chiude, &QPushButton::clicked, this, &QDialog::reject);
    const QFontMetrics misure(font());
    resize(misure.averageCharWidth() * 100, misure.height() * 24);
    memoria::ricordaFinestra(this, objectName());
}

void fmStoria::mostra()
{
    carica();
    m_elenco->setFocus();
    exec();
}

void fmStoria::carica()
{
    m_passi = storia::elenco(connessione());
    const QSignalBlocker zitto(m_elenco);
    m_elenco->clear();
    QTreeWidgetItem *ultimo = nullptr;
    for (const storia::Passo &passo : std::as_const(m_passi)) {
        auto *riga = new QTreeWidgetItem(
            m_elenco, {QLocale().toString(passo.quando, QStringLiteral("dd/MM/yyyy HH:mm:ss")),
                       passo.nome.simplified(), passo.annullato ? tr("annullato") : QString()});
        riga->setToolTip(1, passo.nome.toHtmlEscaped());
        if (passo.annullato) {
            for (int i = 0; i < m_elenco->columnCount(); ++i)
                riga->setForeground(i, palette().brush(QPalette::Disabled, QPalette::Text));
        } else if (ultimo == nullptr) {
            ultimo = riga;
        }
    }
    m_elenco->resizeColumnToContents(0);
    m_elenco->resizeColumnToContents(2);
    m_elenco->setCurrentItem(ultimo != nullptr ? ultimo : m_elenco->topLevelItem(0));
    m_quanto->setText(
        m_passi.isEmpty()
            ? tr("Di questo archivio non si ricorda nessun passo.")
            : tr("Passi ricordati: %1. Nell'archivio occupano %2; le copie non li hanno.")
                  .arg(m_passi.size())
                  .arg(QLocale().formattedDataSize(storia::peso(connessione()), 1,
                                                   QLocale::DataSizeSIFormat)));
    m_svuota->setEnabled(!m_passi.isEmpty());
    scelto();
}

void fmStoria::scelto()
{
    const int riga = m_elenco->indexOfTopLevelItem(m_elenco->currentItem());
    const bool annullato = riga >= 0 && m_passi.at(riga).annullato;
    m_riprende->setEnabled(riga >= 0);
    m_riprende->setText(annullato ? tr("&Ripeti fino a qui") : tr("&Annulla fino a qui"));
}

// L'elenco si rilegge in ogni caso: un altro programma può aver cambiato la storia.
void fmStoria::svolge()
{
    messaggi::protetto(this, [this] {
        const int riga = m_elenco->indexOfTopLevelItem(m_elenco->currentItem());
        if (riga >= 0)
            riprende(this, m_passi.at(riga));
    });
    messaggi::protetto(this, [this] { carica(); });
}

void fmStoria::svuota()
{
    if (!messaggi::chiede(this,
                          tr("Dimenticare tutti i passi di questo archivio?\nCiò che è stato "
                             "eliminato sparirà anche dal file, e nulla di ciò che è stato fatto "
                             "finora si potrà più annullare."),
                          messaggi::Domanda::PropostoNo))
        return;
    messaggi::protetto(this, [this] {
        storia::svuota(connessione());
        carica();
    });
}
