#pragma once

#include "editors/fmEditor.h"

// L'individuo: una persona nominata in una voce.
class fmIndividuo : public fmEditor
{
    Q_OBJECT

public:
    explicit fmIndividuo(QWidget *sopra);

    // Sceglie il sesso ("M" o "F") e non lo lascia cambiare.
    void imponeSesso(const QString &lettera);
    // Il sesso scelto nella finestra; vuoto se non è detto.
    QString sessoScelto() const;

protected:
    void completaFinestra(QVBoxLayout *colonna) override;
    int categoria() const override { return modTarvola::CategoriaIndividuo; }
    void caricato() override;
    void dopoCollegamenti() override;
    QString rifiutoNuovo(int genere) const override;
    void completaNuovo() override;
    void salvato() override;
    bool nuovoProprio(const Elemento &genere) override;
    bool apriProprio(const Elemento &collegamento) override;

private:
    Casella *sesso() const;
    void apreFamiglia(const Elemento &famiglia, const QString &codiceFamiglia);
    void apreEvento(const Elemento &evento, const QString &codiceEvento);

    QString NomeIndividuoLocale;
};
