#pragma once

#include "editors/fmEditor.h"

// L'evento: qualcosa che accadde a un individuo o a una famiglia.
class fmEvento : public fmEditor
{
    Q_OBJECT

public:
    explicit fmEvento(QWidget *sopra);

protected:
    void completaFinestra(QVBoxLayout *colonna) override;
    int categoria() const override { return modTarvola::CategoriaEvento; }
    void completaNuovo() override;
    void salvato() override;
};
