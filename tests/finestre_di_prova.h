#pragma once

#include "comune.h"
#include "persona.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTreeWidget>

// Ciò che si fa con un editore, e i legami che ne nascono.

inline QLineEdit *casella(const QWidget *finestra, int indice)
{
    return parte<QLineEdit>(finestra, QStringLiteral("Text1_%1").arg(indice));
}

// Riempie le prime caselle, nell'ordine.
inline void riempie(const QWidget *finestra, const QStringList &testi)
{
    for (int i = 0; i < testi.size(); ++i)
        compila(finestra, QStringLiteral("Text1_%1").arg(i), testi.at(i));
}

inline void salva(const QWidget *finestra)
{
    preme(finestra, QStringLiteral("Command1"));
}

// Sceglie un genere e preme "Nuovo".
inline void nuovo(const QWidget *finestra, const QString &genere)
{
    parte<QComboBox>(finestra, QStringLiteral("ImageCombo1"))->setCurrentText(genere);
    preme(finestra, QStringLiteral("Command3_0"));
}

// Sceglie il collegamento col codice dato e preme "Apri".
inline void apri(const QWidget *finestra, const QString &codice)
{
    auto *elenco = parte<QTreeWidget>(finestra, QStringLiteral("ListView1"));
    for (int i = 0; i < elenco->topLevelItemCount(); ++i) {
        if (elenco->topLevelItem(i)->data(0, Qt::UserRole) == codice)
            elenco->setCurrentItem(elenco->topLevelItem(i));
    }
    QVERIFY(elenco->currentItem() != nullptr);
    QCOMPARE(elenco->currentItem()->data(0, Qt::UserRole).toString(), codice);
    preme(finestra, QStringLiteral("Command3_2"));
}

// "O1A1", "O1V1": ogni legame fra operatore e record.
inline QStringList legami()
{
    return colonna(
        QStringLiteral("SELECT CodiceOperatore || CodiceContesto AS Legame FROM OperatoriContesti "
                       "ORDER BY Legame"));
}
