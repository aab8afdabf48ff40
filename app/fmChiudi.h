#pragma once

#include <QDialog>

// La domanda alla chiusura del programma; la risposta è in SceltaChiusura. Chiusa dalla cornice è
// "&Annulla chiudi".
class fmChiudi : public QDialog
{
    Q_OBJECT

public:
    explicit fmChiudi(QWidget *sopra);
};
