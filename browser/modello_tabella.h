#pragma once

#include "db/elenchi/elenco.h"

#include <QAbstractTableModel>
#include <QCache>

#include <functional>
#include <vector>

// L'elenco di un visualizzatore come lo vede la griglia: tiene le chiavi delle righe e legge
// dall'archivio soltanto le righe che si vedono.
class ModelloTabella : public QAbstractTableModel
{
    Q_OBJECT

public:
    ModelloTabella(modTarvola::Elenco elenco, QObject *padre);

    int rowCount(const QModelIndex &padre = {}) const override;
    int columnCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int ruolo) const override;
    QVariant headerData(int sezione, Qt::Orientation verso, int ruolo) const override;

    // Legge le prime chiavi, così un milione di righe si vede subito. Lancia ado::Errore; allora
    // l'elenco resta vuoto.
    void apre();
    // Da quando le prime righe si vedono: legge le altre chiavi ogni volta che il programma non ha
    // altro da fare. Non fa nulla se non ne mancano.
    void continua();
    // Rilegge tutte le chiavi nell'ordine corrente. Lancia ado::Errore; allora l'elenco è vuoto.
    void rilegge();
    // Un testo lungo quanto i più lunghi della colonna, dove si sa; altrimenti vuoto.
    QString esempio(int colonna) const;
    // Aggiunge in fondo le chiavi nate dopo le altre, senza rileggere queste. Lancia ado::Errore.
    void aggiungeNuove();
    bool ordinabile(int colonna) const { return m_elenco.ordinabile(colonna); }
    // Ordina per una colonna, se si può; falso se non si può.
    bool ordina(int colonna);
    // Vero se un guasto ha fermato la lettura delle chiavi: ne mancano.
    bool incompleto() const { return m_incompleto; }
    // La colonna che dà l'ordine; -1 se nessuna.
    int colonnaOrdine() const { return m_colonnaOrdine; }

    // Il valore del campo in una riga, com'è nell'archivio.
    QVariant campo(int riga, const QString &nome) const;
    // Vero se la riga è ancora nell'archivio, e del record che si vedeva; da qui in poi mostra ciò
    // che c'è ora. Lancia ado::Errore se non si può leggere.
    bool conferma(int riga);
    // Dimentica le righe lette: quelle che si vedono si rileggono, le chiavi restano.
    void rinfresca();
    // La riga del record col codice dato; -1 se non è nell'elenco.
    int rigaDi(const QString &codice) const;
    // La chiave di una riga, che resta la stessa anche dopo un ordinamento.
    qint64 chiave(int riga) const { return m_chiavi.at(static_cast<size_t>(riga)); }
    int rigaDiChiave(qint64 chiave) const;

private:
    QVariantList valori(int riga) const;
    void leggeAncora(int lettura, int attesa = 0);
    bool leggePezzo();
    void sostituisce(const std::function<std::vector<qint64>()> &legge);

    modTarvola::Elenco m_elenco;
    std::vector<qint64> m_chiavi;
    int m_colonnaOrdine = -1;
    // Cresce a ogni rilettura, così i pezzi chiesti prima non si aggiungono più.
    int m_lettura = 0;
    int m_pezzo = 0;
    bool m_incompleto = false;
    bool m_daContinuare = false;
    mutable QCache<qint64, QVariantList> m_righe;
};
