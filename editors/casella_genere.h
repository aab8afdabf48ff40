#pragma once

#include "editors/casella.h"

class QComboBox;
class QIcon;

// Un codice scelto in un elenco, dove si legge con la sua etichetta.
class CasellaGenere : public Casella
{
    Q_OBJECT

public:
    CasellaGenere(const DescrizioneCampo &descrizione, QWidget *sopra);

    // Offre una voce in fondo all'elenco. Si offrono tutte prima di mostrare un valore.
    void offre(const QIcon &icona, const QString &etichetta, int codice);

    QString scritta() const override { return valore().toString(); }
    QVariant valore() const override;
    // Vero se nessuna voce è scelta, anche se il valore mostrato è uno che l'elenco non ha.
    bool vuota() const override;
    void setSolaLettura(bool sola) override;
    QWidget *parte() const override;
    void numera(int indice) override;

protected:
    void presenta() override;
    void mette(const QString &testo) override;

private:
    QComboBox *m_elenco;
};
