#include "atti/discordia.h"

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

QTreeWidget *tavola(const QList<Casella> &caselle, QWidget *sopra)
{
    auto *tavola = new QTreeWidget(sopra);
    tavola->setObjectName(QStringLiteral("Differenze"));
    tavola->setAccessibleName(QObject::tr("Ciò che è diverso"));
    tavola->setHeaderLabels(
        {QObject::tr("Casella"), QObject::tr("Nella pagina"), QObject::tr("Nel file")});
    tavola->setRootIsDecorated(false);
    for (const Casella &una : caselle)
        new QTreeWidgetItem(tavola,
                            {una.nome, una.nellaPagina.simplified(), una.nelFile.simplified()});
    for (int i = 0; i < tavola->columnCount(); ++i)
        tavola->resizeColumnToContents(i);
    tavola->setCurrentItem(tavola->topLevelItem(0));
    return tavola;
}

} // namespace

Scelta chiede(QWidget *sopra, const QList<Casella> &caselle, bool esiste)
{
    QDialog finestra(sopra);
    finestra.setObjectName(QStringLiteral("Discordia"));
    finestra.setWindowTitle(QObject::tr("L'atto è cambiato"));
    auto *testo = new QLabel(
        esiste ? QObject::tr("Mentre la pagina era aperta quest'atto è stato cambiato da un'altra "
                             "parte. Nulla è stato scritto.")
               : QObject::tr("Mentre la pagina era aperta quest'atto è stato eliminato da un'altra "
                             "parte. Nulla è stato scritto."),
        &finestra);
    testo->setTextFormat(Qt::PlainText);
    testo->setWordWrap(true);
    auto *colonna = new QVBoxLayout(&finestra);
    colonna->addWidget(testo);
    colonna->addWidget(tavola(caselle, &finestra), 1);
    auto *riga = new QHBoxLayout;
    riga->addStretch();
    Scelta scelta = Annulla;
    const std::pair<QString, Scelta> bottoni[] = {
        {esiste ? QObject::tr("&Tieni ciò che è nella pagina") : QObject::tr("&Scrivilo da capo"),
         Tiene},
        {esiste ? QObject::tr("&Prendi ciò che è nel file") : QObject::tr("&Lascialo perdere"),
         Prende},
        {QObject::tr("&Annulla"), Annulla}};
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
