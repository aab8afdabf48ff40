#pragma once

#include "app/guida_pagine.h"

#include <QMainWindow>
#include <QTextBrowser>

class QApplication;
class QLabel;
class QLineEdit;
class QListWidget;
class QSplitter;
class QTreeWidget;

// Una pagina del manuale: le figure che mancano non si vedono, quelle larghe si riducono.
class VistaGuida : public QTextBrowser
{
    Q_OBJECT

public:
    explicit VistaGuida(QWidget *sopra);

    QVariant loadResource(int tipo, const QUrl &nome) override;
    // Mette in evidenza le parole nella pagina e va alla prima.
    void evidenzia(const QString &parole);

private:
    QVariant figura(const QString &percorso) const;
};

// La finestra del manuale: i contenuti e la ricerca a sinistra, la pagina a destra.
class fmGuida : public QMainWindow
{
    Q_OBJECT

public:
    fmGuida(const QString &cartella, QWidget *sopra);

    // Mostra la pagina ("htm/inizio.htm"), o quella iniziale se non c'è.
    void vai(const QString &pagina);
    const GuidaPagine &pagine() const { return m_pagine; }

private:
    void creaBarra();
    QWidget *colonna();
    void collegaColonna();
    void riempieContenuti();
    void cerca(const QString &parole);
    void segueContenuti(const QUrl &pagina);
    void ingrandisce(int passi);

    QString m_cartella;
    GuidaPagine m_pagine;
    VistaGuida *m_vista;
    QTreeWidget *m_contenuti = nullptr;
    QLineEdit *m_cerca = nullptr;
    QListWidget *m_trovate = nullptr;
    QLabel *m_nessuna = nullptr;
    int m_ingrandimento = 0;
};

// Mostra il manuale alla pagina data, senza fermare le altre finestre: quella che c'è già, o una
// nuova. Davanti a una finestra modale il manuale le si mette sopra, e resta quando lei si chiude.
// Se il manuale manca non si mostra nulla.
void mostraGuida(QWidget *sopra, const QString &pagina);
// In ogni finestra di dialogo F1 apre la pagina che parla di lei.
void installaTastoGuida(QApplication &applicazione);
