#pragma once

#include <QDialog>

// La domanda alla chiusura del programma. Chiusa dalla cornice è "&Annulla chiudi".
class fmChiudi : public QDialog
{
    Q_OBJECT

public:
    explicit fmChiudi(QWidget *sopra);

    // Mostra la domanda e rende la risposta, una SceltaChiusuraFinestra, che resta in
    // SceltaChiusura.
    int chiede();

private:
    int m_scelta;
};
