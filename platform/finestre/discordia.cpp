#include "platform/finestre/discordia.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace discordia
{

namespace
{

QTreeWidget *tavola(const QString &scritto, const QList<Casella> &caselle, QWidget *sopra)
{
    auto *tavola = new QTreeWidget(sopra);
    tavola->setObjectName(QStringLiteral("Differenze"));
    tavola->setAccessibleName(QObject::tr("Ciò che è diverso"));
    tavola->setHeaderLabels({QObject::tr("Casella"), scritto, QObject::tr("Nel file")});
    tavola->setRootIsDecorated(false);
    for (const Casella &una : caselle)
        new QTreeWidgetItem(tavola, {una.nome, una.scritto.simplified(), una.nelFile.simplified()});
    for (int i = 0; i < tavola->columnCount(); ++i)
        tavola->resizeColumnToContents(i);
    tavola->setCurrentItem(tavola->topLevelItem(0));
    return tavola;
}

} // namespace

Scelta chiede(QWidget *sopra, const Parole &parole, const QList<Casella> &caselle)
{
    QDialog finestra(sopra);
    finestra.setObjectName(QStringLiteral("Discordia"));
    finestra.setWindowTitle(parole.titolo);
    auto *testo = new QLabel(parole.testo, &finestra);
    testo->setTextFormat(Qt::PlainText);
    testo->setWordWrap(true);
    auto *colonna = new QVBoxLayout(&finestra);
    colonna->addWidget(testo);
    colonna->addWidget(tavola(parole.scritto, caselle, &finestra), 1);
    auto *riga = new QHBoxLayout;
    riga->addStretch();
    Scelta scelta = Annulla;
    const std::pair<QString, Scelta> bottoni[] = {
        {parole.tiene, Tiene}, {parole.prende, Prende}, {QObject::tr("&Annulla"), Annulla}};
    for (const auto &[nome, sua] : bottoni) {
        auto *bottone = new QPushButton(nome, &finestra);
        bottone->setAutoDefault(false);
        bottone->setDefault(sua == Annulla);
        QObject::connect(bottone, &QPushButton::clicked, &finestra,
                         [&scelta, &finestra, risposta = sua] {
                             scelta = risposta;
                             finestra.accept();
                         });
        riga->addWidget(bottone);
    }
    colonna->addLayout(riga);
    finestra.resize(finestra.fontMetrics().averageCharWidth() * 90,
                    finestra.fontMetrics().height() * 20);
    finestra.exec();
    return scelta;
}

} // namespace discordia
