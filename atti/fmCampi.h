#pragma once

#include "db/atto/campi_pagina.h"

#include <QDialog>
#include <QMap>

class QButtonGroup;
class QTreeWidget;
class QTreeWidgetItem;

// "Campi": quali caselle della pagina di un registro si vedono, e su quali il tabulatore si ferma.
// Vale tutto insieme, con OK.
class fmCampi : public QDialog
{
    Q_OBJECT

public:
    fmCampi(const modTarvola::scheda::Scheda &scheda, const modTarvola::scheda::Scelte &scelte,
            const QString &registro, QWidget *sopra);

    // Ciò che si è scelto di diverso da come la scheda lo dà.
    modTarvola::scheda::Scelte scelte() const;

protected:
    bool eventFilter(QObject *oggetto, QEvent *evento) override;

private:
    void elenca(const modTarvola::scheda::Scheda &scheda, const modTarvola::scheda::Scelte &scelte);
    void preparaElenco();
    void creaUsi(QWidget *sopra);
    void disponi(const QString &registro);
    void mostra(QTreeWidgetItem *voce, modTarvola::scheda::Uso uso);
    void mostraScelta();
    void usa(modTarvola::scheda::Uso uso);
    void comeAllInizio();

    // Una casella dell'elenco, con l'uso che ha all'inizio e quello di ora.
    struct Voce {
        modTarvola::scheda::Luogo luogo;
        modTarvola::scheda::Uso inizio = modTarvola::scheda::Uso::Mostrata;
        modTarvola::scheda::Uso ora = modTarvola::scheda::Uso::Mostrata;
        bool siNasconde = true;
    };
    QMap<QTreeWidgetItem *, Voce> m_voci;
    QTreeWidget *m_elenco;
    QButtonGroup *m_usi;
};
