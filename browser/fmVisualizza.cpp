#include "browser/fmVisualizza.h"

#include "contesto/contesto.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using modTarvola::contesto;

fmVisualizza::fmVisualizza(QWidget *sopra) : QDialog(sopra)
{
    setObjectName(QStringLiteral("fmVisualizza"));
    setWindowTitle(QStringLiteral("Visualizza voci in:"));
    const char *const cornici[] = {"Archivio", "Registro", "Voce", "Dettagli"};
    const char *const opzioni[] = {"Corrente", "Tutti", "Corrente", "Tutti",
                                   "Corrente", "Tutte", "No",       "Si"};
    auto *colonna = new QVBoxLayout(this);
    for (int i = 0; i < 4; ++i) {
        Frame1[i] = new QGroupBox(QString::fromUtf8(cornici[i]), this);
        Frame1[i]->setObjectName(QStringLiteral("Frame1_%1").arg(i));
        auto *riga = new QHBoxLayout(Frame1[i]);
        for (int j = i * 2; j < i * 2 + 2; ++j) {
            Option1[j] = new QRadioButton(QString::fromUtf8(opzioni[j]), Frame1[i]);
            Option1[j]->setObjectName(QStringLiteral("Option1_%1").arg(j));
            riga->addWidget(Option1[j], 1);
        }
        Option1[i * 2]->setChecked(true);
        colonna->addWidget(Frame1[i]);
    }
    for (QRadioButton *opzione : Option1)
        connect(opzione, &QRadioButton::toggled, this, &fmVisualizza::Option1_Click);
    auto *Command1 = new QPushButton(QStringLiteral("OK"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setDefault(true);
    connect(Command1, &QPushButton::clicked, this, &fmVisualizza::Command1_Click);
    colonna->addWidget(Command1, 0, Qt::AlignRight);
    setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    contesto().AmbitoScelto = 0;
}

void fmVisualizza::nasconde(Parte parte)
{
    Frame1[parte]->setVisible(false);
}

void fmVisualizza::spegne(Parte parte, const QString &perche)
{
    Frame1[parte]->setEnabled(false);
    Frame1[parte]->setToolTip(perche);
    Frame1[parte]->setAccessibleDescription(perche);
}

void fmVisualizza::preimposta(int opzione)
{
    Option1[opzione]->setChecked(true);
}

// Chi vuole tutti gli archivi vuole tutti i registri, e chi vuole tutti i registri tutte le voci.
void fmVisualizza::Option1_Click()
{
    Frame1[Registro]->setEnabled(!Option1[tuttiGliArchivi]->isChecked());
    if (Option1[tuttiGliArchivi]->isChecked())
        Option1[tuttiIRegistri]->setChecked(true);
    Frame1[Voce]->setEnabled(!Option1[tuttiIRegistri]->isChecked());
    if (Option1[tuttiIRegistri]->isChecked())
        Option1[tutteLeVoci]->setChecked(true);
}

void fmVisualizza::Command1_Click()
{
    int ambito = 0;
    int valore = 1;
    for (const int opzione : {tuttiGliArchivi, tuttiIRegistri, tutteLeVoci, conDettagli}) {
        if (Option1[opzione]->isChecked())
            ambito += valore;
        valore *= 2;
    }
    contesto().AmbitoScelto = ambito;
    accept();
}
