#pragma once

#include "editors/fmEditor.h"

// L'operatore: chi trascrive, con la password per entrare, o un contatto, che non ne ha.
class fmOperatore : public fmEditor
{
    Q_OBJECT

public:
    // I modi che TipoOperatore ha oltre ai due generi di operatore: chi trascrive si registra, o
    // corregge i propri dati.
    enum Modo { NuovoTrascrittore = 0, PropriDati = 1 };

    explicit fmOperatore(QWidget *sopra);

    // Lancia ado::Errore anche quando TipoOperatore non è un modo, o il modo vuole un operatore
    // che manca.
    void Form_Load() override;

protected:
    void completaFinestra(QVBoxLayout *colonna) override;
    int categoria() const override { return modTarvola::CategoriaOperatore; }
    void caricato() override;
    QString controlla() const override;
    void completa() override;
    modTarvola::Scritto registra(modTarvola::Lavoro &lavoro) override;
    void salvato() override;
    bool restaAperta() const override { return true; }

private:
    bool contatto() const { return proprieta.TipoOperatore == modTarvola::Contatto; }
    QGroupBox *Frame3 = nullptr;
    bool m_passwordDaControllare = false;
};
