#pragma once

#include "editors/casella.h"

#include <vector>

class QGroupBox;
class QRadioButton;

// Una lettera fra poche, in un riquadro di bottoni; il primo, "?", è Null.
class CasellaScelta : public Casella
{
    Q_OBJECT

public:
    CasellaScelta(const DescrizioneCampo &descrizione, QWidget *sopra);

    // La lettera scelta; non valida se "?", anche al posto di un valore che non si offre.
    QString scritta() const override { return valore().toString(); }
    QVariant valore() const override;
    bool vuota() const override { return !valore().isValid(); }
    void setSolaLettura(bool sola) override;
    QWidget *parte() const override;
    void riprende() override;
    QLabel *etichetta(QWidget *sopra) override;
    void numera(int indice) override;

protected:
    void presenta() override;
    void mette(const QString &testo) override;

private:
    QGroupBox *m_riquadro;
    std::vector<QRadioButton *> m_bottoni;
};
