#pragma once

#include "editors/fmEditor.h"

// L'indirizzo postale di un archivio o di un operatore.
class fmLuogo : public fmEditor
{
    Q_OBJECT

public:
    explicit fmLuogo(QWidget *sopra);

protected:
    int categoria() const override { return modTarvola::CategoriaRecapiti; }
    QString rifiutoNuovo(int genere) const override;
    void completaNuovo() override;
};
