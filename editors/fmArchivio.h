#pragma once

#include "editors/fmEditor.h"

// L'archivio: chi conserva i registri.
class fmArchivio : public fmEditor
{
    Q_OBJECT

public:
    explicit fmArchivio(QWidget *sopra);

protected:
    int categoria() const override { return modTarvola::CategoriaArchivio; }
    void salvato() override;
};
