#include "atti/tolte.h"

#include "atti/repertorio.h"
#include "db/atto/scheda.h"
#include "db/schema/generi.h"
#include "platform/finestre/messaggi.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace modTarvola;

namespace tolte
{

namespace
{

// "padre Cognome" come si legge nella pagina: "Padre: Cognome".
QString nomeDellaCasella(const QString &dove)
{
    for (const int tipo : {RegistroBattesimi, RegistroMatrimoni, RegistroMorti}) {
        const scheda::Posto *posto = scheda::diTipo(tipo)->posto(dove.section(u' ', 0, 0));
        if (posto != nullptr)
            return posto->etichetta + QStringLiteral(": ") + dove.section(u' ', 1, 1);
    }
    return dove;
}

class Finestra : public QDialog
{
public:
    Finestra(QWidget *sopra, Repertorio &repertorio) : QDialog(sopra), m_repertorio(repertorio)
    {
        setObjectName(QStringLiteral("ProposteTolte"));
        setWindowTitle(tr("Proposte tolte"));
        auto *testo = new QLabel(
            tr("Ciò che in quest'archivio non viene più proposto. Si toglie una proposta con "
               "Maiusc+Canc quando è scelta nell'elenco sotto la casella."),
            this);
        testo->setWordWrap(true);
        m_elenco = new QTreeWidget(this);
        m_elenco->setObjectName(QStringLiteral("Tolte"));
        m_elenco->setAccessibleName(windowTitle());
        m_elenco->setHeaderLabels({tr("Casella"), tr("Non si propone")});
        m_elenco->setRootIsDecorated(false);
        auto *colonna = new QVBoxLayout(this);
        colonna->addWidget(testo);
        colonna->addWidget(m_elenco, 1);
        if (!repertorio.motivo().isEmpty()) {
            auto *guasto = new QLabel(
                tr("Le proposte non vengono da tutto l'archivio: %1").arg(repertorio.motivo()),
                this);
            guasto->setTextFormat(Qt::PlainText);
            guasto->setWordWrap(true);
            colonna->addWidget(guasto);
        }
        colonna->addLayout(bottoni());
        riempie();
        const int lettera = fontMetrics().averageCharWidth();
        resize(lettera * larga, lettera * alta);
    }

private:
    static constexpr int larga = 70;
    static constexpr int alta = 45;

    QLayout *bottoni()
    {
        auto *riga = new QHBoxLayout;
        riga->addStretch();
        const auto bottone = [&](const QString &nome, const std::function<void()> &compie) {
            auto *uno = new QPushButton(nome, this);
            uno->setAutoDefault(false);
            connect(uno, &QPushButton::clicked, this, compie);
            riga->addWidget(uno);
            return uno;
        };
        m_una = bottone(tr("&Proponi di nuovo"), [this] {
            if (const QTreeWidgetItem *scelta = m_elenco->currentItem())
                rimette({tolta(scelta)});
        });
        m_tutte = bottone(tr("Proponi di nuovo &tutto"),
                          [this] { rimette(m_repertorio.tolte().values()); });
        bottone(tr("&Chiudi"), [this] { accept(); })->setDefault(true);
        return riga;
    }

    static PropostaTolta tolta(const QTreeWidgetItem *riga)
    {
        return {riga->data(0, Qt::UserRole).toString(), riga->data(1, Qt::UserRole).toString()};
    }

    void riempie()
    {
        const int prima = m_elenco->indexOfTopLevelItem(m_elenco->currentItem());
        m_elenco->clear();
        for (const PropostaTolta &una : m_repertorio.tolte()) {
            const bool casella = una.testo.isEmpty();
            auto *riga =
                new QTreeWidgetItem(m_elenco, {casella ? nomeDellaCasella(una.dove) : una.dove,
                                               casella ? tr("niente") : una.testo});
            riga->setData(0, Qt::UserRole, una.dove);
            riga->setData(1, Qt::UserRole, una.testo);
        }
        m_elenco->sortItems(1, Qt::AscendingOrder);
        m_elenco->sortItems(0, Qt::AscendingOrder);
        m_elenco->resizeColumnToContents(0);
        const int quante = m_elenco->topLevelItemCount();
        m_elenco->setCurrentItem(
            m_elenco->topLevelItem(std::clamp(prima, 0, std::max(0, quante - 1))));
        m_una->setEnabled(quante > 0);
        m_tutte->setEnabled(quante > 0);
    }

    void rimette(const QList<PropostaTolta> &quali)
    {
        messaggi::protetto(this, [&] {
            for (const PropostaTolta &una : quali)
                m_repertorio.rimette(una);
        });
        riempie();
    }

    Repertorio &m_repertorio;
    QTreeWidget *m_elenco;
    QPushButton *m_una = nullptr;
    QPushButton *m_tutte = nullptr;
};

} // namespace

void mostra(QWidget *sopra, Repertorio &repertorio)
{
    Finestra(sopra, repertorio).exec();
}

} // namespace tolte
