#pragma once

#include "editors/casella_formati.h"

// Un'ora col suo giorno ("mercoledì, 4 mar 1750, 10:30:0"). Il valore è ISO, con l'ora.
//
// Può seguire la casella di una data: un'ora scritta da sola cade in quel giorno, e quando la data
// si corregge la segue chi era nello stesso giorno o in nessuno. Un'ora che di giorno ne ha un
// altro, perché così la si è scritta, lo tiene. Finché nessuno tocca le due caselle il valore resta
// quello mostrato.
class CasellaOra : public CasellaLetta
{
    Q_OBJECT

public:
    using CasellaLetta::CasellaLetta;

    // Da qui in poi il giorno segue quella data, che deve vivere quanto questa casella.
    void segue(const Casella *unaData);

    bool siControllaLasciandola() const override { return false; }

protected:
    QString scritto(const QVariant &valore) const override;
    std::optional<QVariant> legge(const QString &testo) const override;
    QString motivo() const override;
    void presenta() override;

private:
    QString giorno() const;
    void segueGiorno();

    const Casella *m_data = nullptr;
    // L'ultimo giorno che la data ha avuto da quando la si corregge.
    QString m_giorno;
};
