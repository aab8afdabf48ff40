#pragma once

#include "editors/fmEditor.h"

// La famiglia: una coppia di coniugi, o i genitori di una persona. Non ha dettagli suoi.
class fmFamiglia : public fmEditor
{
    Q_OBJECT

public:
    explicit fmFamiglia(QWidget *sopra);

protected:
    int categoria() const override { return modTarvola::CategoriaFamiglia; }
    bool siOffre(int genere) const override { return TipoInseribile(genere); }
    void caricato() override;
    void dopoCollegamenti() override;
    QString rifiutoNuovo(int genere) const override;
    void completaNuovo() override;
    modTarvola::Scritto registra(modTarvola::Lavoro &lavoro) override;
    void salvato() override { CaricaCollegamenti(); }
    bool salvaChiudendo() const override { return false; }
    bool nuovoProprio(const Elemento &genere) override;
    bool apriProprio(const Elemento &collegamento) override;

private:
    bool TipoInseribile(int genere) const;
    void tornaNuova();
    void nuovoIndividuo(const Elemento &ruolo);
    void nuovoMembro(const Elemento &ruolo);
    void iscrive(modTarvola::Lavoro &lavoro, const QString &membro);
    void apreMembro(const Elemento &membro);
    void apreEvento(const Elemento &evento, const QString &codice, const QString &didascalia);

    QString m_rinata; // la famiglia registrata di nuovo con un membro
};
