#pragma once

#include "editors/fmEditor.h"

class CasellaGenere;

// Il registro: un libro dell'archivio, di un tipo che si fissa quando è creato.
class fmRegistro : public fmEditor
{
    Q_OBJECT

public:
    explicit fmRegistro(QWidget *sopra);

protected:
    int categoria() const override { return modTarvola::CategoriaRegistro; }
    void caricato() override;
    void completaNuovo() override;
    void salvato() override;
    bool siDispone() const override { return false; }

private:
    CasellaGenere *tipo() const;
};
