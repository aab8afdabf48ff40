#pragma once

#include "editors/fmEditor.h"

// I telefoni, la posta elettronica e le pagine di un archivio o di un operatore.
class fmRecapito : public fmEditor
{
    Q_OBJECT

public:
    explicit fmRecapito(QWidget *sopra);

protected:
    int categoria() const override { return modTarvola::CategoriaRecapiti; }
    void completaNuovo() override;
};
