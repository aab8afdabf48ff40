#include "atti/fmCampi.h"

#include "atti/riga_pagina.h"
#include "platform/finestre/memoria_finestre.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace modTarvola;
using scheda::Uso;

namespace
{

enum Colonna { DellaRiga, DellaCasella, Ora, Inizio, Quante };

constexpr Uso usi[] = {Uso::Mostrata, Uso::Saltata, Uso::Nascosta};

QString detto(Uso uso)
{
    switch (uso) {
    case Uso::Mostrata:
        return fmCampi::tr("si vede");
    case Uso::Saltata:
        return fmCampi::tr("si vede, Tab la salta");
    default:
        return fmCampi::tr("nascosta finché è vuota");
    }
}

} // namespace

fmCampi::fmCampi(const scheda::Scheda &scheda, const scheda::Scelte &scelte,
                 const QString &registro, QWidget *sopra)
    : QDialog(sopra), m_elenco(new QTreeWidget(this)), m_usi(new QButtonGroup(this))
{
    setObjectName(QStringLiteral("fmCampi"));
    setWindowTitle(tr("Campi della scheda"));
    setSizeGripEnabled(true);
    disponi(registro);
    elenca(scheda, scelte);
    connect(m_elenco, &QTreeWidget::currentItemChanged, this, &fmCampi::mostraScelta);
    connect(m_usi, &QButtonGroup::idClicked, this, [this](int quale) { usa(usi[quale]); });
    m_elenco->installEventFilter(this);
    m_elenco->setCurrentItem(m_elenco->topLevelItem(0));
    m_elenco->setFocus();
    memoria::ricordaFinestra(this, objectName());
}

void fmCampi::elenca(const scheda::Scheda &scheda, const scheda::Scelte &scelte)
{
    for (const scheda::Riga &riga : scheda.righe) {
        const scheda::Posto &posto = *scheda.posto(riga.posto);
        for (const scheda::Casella &casella : riga.caselle) {
            const scheda::Luogo luogo{riga.posto, riga.evento, casella.campo};
            // Senza il codice un atto non si salva, e il ruolo sta al posto dell'etichetta.
            const bool siNasconde = casella.campo != QStringLiteral("CodiceVoce") &&
                                    casella.campo != QStringLiteral("Ruolo");
            auto *voce = new QTreeWidgetItem(m_elenco);
            voce->setText(DellaRiga, pagina::etichettaDi(posto, riga.evento));
            voce->setText(DellaCasella, pagina::etichettaDi(posto, riga.evento, casella.campo));
            voce->setText(Inizio, detto(casella.uso));
            m_voci.insert(voce, {luogo, casella.uso, casella.uso, siNasconde});
            mostra(voce, scelte.value(luogo, casella.uso));
        }
    }
    for (int i = 0; i < Quante; ++i)
        m_elenco->resizeColumnToContents(i);
}

void fmCampi::creaUsi(QWidget *sopra)
{
    auto *riga = new QHBoxLayout(sopra);
    int quale = 0;
    for (const QString &nome : {tr("Si &vede, e Tab vi si ferma"), tr("Si vede, e Tab la &salta"),
                                tr("&Nascosta finché è vuota")}) {
        auto *bottone = new QRadioButton(nome, sopra);
        bottone->setObjectName(QStringLiteral("Uso_%1").arg(quale));
        m_usi->addButton(bottone, quale++);
        riga->addWidget(bottone);
    }
    riga->addStretch();
}

void fmCampi::preparaElenco()
{
    m_elenco->setObjectName(QStringLiteral("Caselle"));
    m_elenco->setAccessibleName(tr("Caselle"));
    m_elenco->setAccessibleDescription(tr("La barra spaziatrice cambia l'uso della casella"));
    m_elenco->setRootIsDecorated(false);
    m_elenco->setUniformRowHeights(true);
    m_elenco->setAllColumnsShowFocus(true);
    m_elenco->setAlternatingRowColors(true);
    m_elenco->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_elenco->setTabKeyNavigation(false);
    m_elenco->setColumnCount(Quante);
    m_elenco->setHeaderLabels({tr("Riga"), tr("Casella"), tr("Come si usa"), tr("All'inizio")});
}

void fmCampi::disponi(const QString &registro)
{
    const int lettera = fontMetrics().averageCharWidth();
    auto *testo = new QLabel(tr("Le caselle della pagina, nel registro «%1». Una casella con "
                                "qualcosa dentro si vede sempre.")
                                 .arg(registro),
                             this);
    testo->setTextFormat(Qt::PlainText);
    testo->setWordWrap(true);
    preparaElenco();
    auto *cornice = new QGroupBox(tr("La casella scelta, o le caselle"), this);
    creaUsi(cornice);
    auto *fondo = new QHBoxLayout;
    const auto bottone = [this, fondo](const QString &nome, const QString &scritta) {
        auto *nuovo = new QPushButton(scritta, this);
        nuovo->setObjectName(nome);
        nuovo->setAutoDefault(false);
        fondo->addWidget(nuovo);
        return nuovo;
    };
    connect(bottone(QStringLiteral("ComeAllInizio"), tr("&Come all'inizio")), &QPushButton::clicked,
            this, &fmCampi::comeAllInizio);
    fondo->addStretch();
    QPushButton *si = bottone(QStringLiteral("OK"), tr("&OK"));
    si->setDefault(true);
    connect(si, &QPushButton::clicked, this, &QDialog::accept);
    connect(bottone(QStringLiteral("Annulla"), tr("&Annulla")), &QPushButton::clicked, this,
            &QDialog::reject);
    auto *colonna = new QVBoxLayout(this);
    colonna->addWidget(testo);
    colonna->addWidget(m_elenco, 1);
    colonna->addWidget(cornice);
    colonna->addLayout(fondo);
    resize(lettera * 95, fontMetrics().lineSpacing() * 32);
}

// Ciò che non è come all'inizio si vede.
void fmCampi::mostra(QTreeWidgetItem *voce, Uso uso)
{
    Voce &sua = m_voci[voce];
    sua.ora = uso;
    voce->setText(Ora, detto(uso));
    QFont carattere = voce->font(Ora);
    carattere.setBold(uso != sua.inizio);
    voce->setFont(Ora, carattere);
}

void fmCampi::mostraScelta()
{
    QTreeWidgetItem *voce = m_elenco->currentItem();
    if (voce == nullptr)
        return;
    const Voce &sua = m_voci[voce];
    const auto quale = std::find(std::begin(usi), std::end(usi), sua.ora) - std::begin(usi);
    m_usi->button(static_cast<int>(quale))->setChecked(true);
    m_usi->button(2)->setEnabled(sua.siNasconde);
}

// A tutte le caselle scelte; quelle che non si nascondono restano come sono.
void fmCampi::usa(Uso uso)
{
    const auto scelte = m_elenco->selectedItems();
    for (QTreeWidgetItem *voce : scelte) {
        if (uso != Uso::Nascosta || m_voci[voce].siNasconde)
            mostra(voce, uso);
    }
    mostraScelta();
}

// Nell'elenco la barra spaziatrice passa da un uso all'altro.
bool fmCampi::eventFilter(QObject *oggetto, QEvent *evento)
{
    if (evento->type() != QEvent::KeyPress ||
        static_cast<QKeyEvent *>(evento)->key() != Qt::Key_Space)
        return QDialog::eventFilter(oggetto, evento);
    const int quanti = m_usi->button(2)->isEnabled() ? 3 : 2;
    usa(usi[(m_usi->checkedId() + 1) % quanti]);
    return true;
}

void fmCampi::comeAllInizio()
{
    for (auto una = m_voci.begin(); una != m_voci.end(); ++una)
        mostra(una.key(), una->inizio);
    mostraScelta();
}

scheda::Scelte fmCampi::scelte() const
{
    scheda::Scelte diverse;
    for (const Voce &una : m_voci) {
        if (una.ora != una.inizio)
            diverse.insert(una.luogo, una.ora);
    }
    return diverse;
}
