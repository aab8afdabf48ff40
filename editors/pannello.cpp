#include "editors/pannello.h"

#include "db/schema/generi.h"
#include "editors/icone_generi.h"
#include "platform/finestre/tasti.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

enum Comandi { Nuovo, Elimina, Apri };

// Il codice del record sta nella riga, accanto all'etichetta che se ne vede.
constexpr int ruoloCodice = Qt::UserRole;

// Due padrini hanno la stessa etichetta: il suggerimento, e il lettore di schermo, dicono chi sono.
class Collegamento : public QTreeWidgetItem
{
public:
    Collegamento(QTreeWidget *elenco, const Elemento &elemento,
                 const PannelloCollegamenti *pannello)
        : QTreeWidgetItem(elenco, {elemento.Text}), m_pannello(pannello)
    {
        setData(0, ruoloCodice, elemento.Key);
    }

    QVariant data(int colonna, int ruolo) const override
    {
        if (ruolo != Qt::ToolTipRole && ruolo != Qt::AccessibleDescriptionRole)
            return QTreeWidgetItem::data(colonna, ruolo);
        const QString codice = data(0, ruoloCodice).toString();
        const QString parole = m_pannello->descrive ? m_pannello->descrive(codice) : QString();
        return parole.isEmpty() ? codice : QStringLiteral("%2 (%1)").arg(codice, parole);
    }

private:
    const PannelloCollegamenti *m_pannello;
};

} // namespace

PannelloCollegamenti::PannelloCollegamenti(QWidget *sopra) : QWidget(sopra)
{
    const char *const didascalie[] = {"Nuovo", "Elimina", "Apri"};
    for (int i : {Nuovo, Elimina, Apri}) {
        Command3[i] = new QPushButton(QString::fromUtf8(didascalie[i]), this);
        Command3[i]->setObjectName(QStringLiteral("Command3_%1").arg(i));
        Command3[i]->setAutoDefault(false);
    }
    connect(Command3[Nuovo], &QPushButton::clicked, this, &PannelloCollegamenti::nuovo);
    connect(Command3[Elimina], &QPushButton::clicked, this, &PannelloCollegamenti::elimina);
    connect(Command3[Apri], &QPushButton::clicked, this, &PannelloCollegamenti::apri);
    tasti::assegna(this, Qt::Key_Insert, Command3[Nuovo]);
    // Il combo è solo nella sua cornice, che così gli fa da nome per i lettori di schermo.
    auto *griglia = new QGridLayout(this);
    griglia->setContentsMargins({});
    griglia->addWidget(inserimento(), 0, 0, 2, 1);
    griglia->addLayout(accantoAlCombo(Command3[Nuovo]), 0, 1, 2, 1);
    griglia->addWidget(inseriti(), 2, 0, 3, 1);
    griglia->addWidget(Command3[Apri], 2, 1);
    griglia->addWidget(Command3[Elimina], 3, 1);
    griglia->setRowStretch(4, 1);
    // Si tabula come si legge, non nell'ordine in cui le parti sono nate.
    setTabOrder(ImageCombo1, Command3[Nuovo]);
    setTabOrder(Command3[Nuovo], ListView1);
    setTabOrder(ListView1, Command3[Apri]);
    setTabOrder(Command3[Apri], Command3[Elimina]);
    // Canc e Invio nelle caselle hanno il loro significato: qui valgono solo nell'elenco.
    tasti::assegna(ListView1, Qt::Key_Delete, Command3[Elimina]);
    Command3[Apri]->setToolTip(tasti::conTasto(Command3[Apri]->text(), Qt::Key_Return));
    auto *rilettura = new QShortcut(Qt::Key_F5, this);
    rilettura->setContext(Qt::WidgetWithChildrenShortcut);
    connect(rilettura, &QShortcut::activated, this, &PannelloCollegamenti::aggiorna);
}

// Il bottone sta all'altezza del combo, che la cornice tiene un margine più in su del proprio
// fondo.
QLayout *PannelloCollegamenti::accantoAlCombo(QWidget *bottone)
{
    auto *colonna = new QVBoxLayout;
    colonna->addStretch();
    colonna->addWidget(bottone);
    colonna->addSpacing(style()->pixelMetric(QStyle::PM_LayoutBottomMargin, nullptr, this));
    return colonna;
}

QWidget *PannelloCollegamenti::inserimento()
{
    auto *cornice = new QGroupBox(QStringLiteral("Inserisci Collegamento"), this);
    ImageCombo1 = new QComboBox(cornice);
    ImageCombo1->setObjectName(QStringLiteral("ImageCombo1"));
    ImageCombo1->setMaxVisibleItems(20);
    auto *riga = new QHBoxLayout(cornice);
    riga->addWidget(ImageCombo1);
    return cornice;
}

QWidget *PannelloCollegamenti::inseriti()
{
    ListView1 = new QTreeWidget(this);
    ListView1->setObjectName(QStringLiteral("ListView1"));
    ListView1->setHeaderLabel(QStringLiteral("Collegamenti Inseriti"));
    ListView1->setAccessibleName(QStringLiteral("Collegamenti Inseriti"));
    ListView1->setRootIsDecorated(false);
    ListView1->setUniformRowHeights(true);
    ListView1->setMinimumHeight(fontMetrics().height() * 8);
    connect(ListView1, &QTreeWidget::itemActivated, this, &PannelloCollegamenti::apri);
    return ListView1;
}

void PannelloCollegamenti::offre(const Elemento &genere)
{
    m_generi.push_back(genere);
    ImageCombo1->addItem(iconaDelGenere(genere.Tag), genere.Text, genere.Key);
    ImageCombo1->setCurrentIndex(-1);
}

std::optional<Elemento> PannelloCollegamenti::genereScelto() const
{
    const int scelto = ImageCombo1->currentIndex();
    if (scelto < 0)
        return {};
    return m_generi.at(static_cast<size_t>(scelto));
}

void PannelloCollegamenti::svuota()
{
    ListView1->clear();
    m_collegamenti.clear();
}

void PannelloCollegamenti::aggiunge(const Elemento &collegamento)
{
    m_collegamenti.push_back(collegamento);
    auto *elemento = new Collegamento(ListView1, collegamento, this);
    elemento->setIcon(0, iconaDelGenere(collegamento.Tag));
}

std::optional<Elemento> PannelloCollegamenti::collegamentoScelto() const
{
    // La riga corrente può non essere scelta: Ctrl e un clic la tolgono dalla scelta.
    QTreeWidgetItem *corrente = ListView1->currentItem();
    if (corrente == nullptr || !corrente->isSelected())
        return {};
    const int scelto = ListView1->indexOfTopLevelItem(corrente);
    return m_collegamenti.at(static_cast<size_t>(scelto));
}

bool PannelloCollegamenti::sceglie(const QString &codice)
{
    const auto suo = std::find_if(m_collegamenti.begin(), m_collegamenti.end(),
                                  [&codice](const Elemento &uno) { return uno.Key == codice; });
    const bool trovato = suo != m_collegamenti.end();
    const auto posto = trovato ? static_cast<int>(suo - m_collegamenti.begin()) : 0;
    ListView1->setCurrentItem(ListView1->topLevelItem(posto));
    return trovato;
}

bool PannelloCollegamenti::sceglieGenere(int genere)
{
    const auto suo = std::find_if(m_generi.begin(), m_generi.end(),
                                  [genere](const Elemento &uno) { return uno.Tag == genere; });
    if (suo == m_generi.end())
        return false;
    ImageCombo1->setCurrentIndex(static_cast<int>(suo - m_generi.begin()));
    return true;
}

void PannelloCollegamenti::sceglieNuovo(const std::vector<Elemento> &prima)
{
    const auto nuovo = std::find_if(
        m_collegamenti.begin(), m_collegamenti.end(), [&prima](const Elemento &collegamento) {
            return collegamento.Tag != modTarvola::Trascrittore &&
                   std::none_of(prima.begin(), prima.end(), [&collegamento](const Elemento &altro) {
                       return altro.Key == collegamento.Key;
                   });
        });
    if (nuovo != m_collegamenti.end())
        sceglie(nuovo->Key);
}

void PannelloCollegamenti::abilita(bool solaLettura)
{
    const bool qualcuno = !m_collegamenti.empty();
    Command3[Apri]->setEnabled(qualcuno);
    Command3[Elimina]->setEnabled(qualcuno && !solaLettura);
    Command3[Nuovo]->setEnabled(!solaLettura);
    ImageCombo1->setEnabled(!solaLettura);
}
