#pragma once

#include "editors/fmEditor.h"

// La voce: un atto del registro, con gli individui e le famiglie che nomina.
class fmVoce : public fmEditor
{
    Q_OBJECT

public:
    explicit fmVoce(QWidget *sopra);

protected:
    int categoria() const override;
    void completaNuovo() override;
    void salvato() override;
    bool nuovoProprio(const Elemento &genere) override;
    bool apriProprio(const Elemento &collegamento) override;

private:
    void apreIndividuo(const Elemento &ruolo, const QString &individuo);
    void apreFamiglia(int genere, const QString &famiglia);
};
