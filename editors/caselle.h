#pragma once

#include "contesto/bozza.h"
#include "editors/casella_testo.h"
#include "platform/finestre/discordia.h"
#include "platform/motore/recordset.h"

#include <vector>

class QBoxLayout;
class QGridLayout;

// Le caselle di un editore, legate ai campi del record.

// Una casella: il suo posto nella serie che le dà il nome, il campo, il posto nella griglia (riga
// -1: una riga per ciascuna, nell'ordine) e la cornice (vuota: "Dettagli"). Che cosa contiene lo
// dice il catalogo; di chi non ha un campo si dice qui.
struct DescrizioneCasella {
    int indice;
    QString campo;
    int riga = -1;
    int colonna = 0;
    QString cornice = {};
    DescrizioneCampo contenuto = {};
};

class Caselle
{
public:
    // Le caselle dei campi di una tabella; l'ordine dato è anche quello del tabulatore.
    Caselle(const QString &tabella, std::vector<DescrizioneCasella> descrizioni, QWidget *sopra);

    // Mette nella griglia le caselle della cornice chiamata così, con le loro etichette.
    void disponi(QGridLayout *griglia, QWidget *cornice, const QString &chiamata = {});
    // Le mette una dopo l'altra, quando si presentano da sé.
    void disponi(QBoxLayout *fila, const QString &chiamata);
    // Mostra i valori del record corrente.
    void mostra(const ado::Recordset &record);
    // Scrive nel record i valori delle caselle, che nessuna deve rifiutare.
    void scrivi(ado::Recordset &record) const;

    // Text1(indice).
    CasellaTesto *operator[](int indice) const;
    // La casella del campo, di qualunque formato.
    Casella *operator[](QStringView campo) const;
    const std::vector<Casella *> &tutte() const { return m_caselle; }
    // Ciò che è stato scritto e non è ancora nel record.
    QList<bozze::Scritta> scritte() const;
    // Rimette ciò che era scritto; rende le caselle in cui il record, intanto, è cambiato.
    QList<discordia::Casella> riprende(const QList<bozze::Scritta> &scritte);
    // Vero se tutte le caselle di testo date contengono solo spazi.
    bool vuote(const std::vector<int> &indici) const;
    void setReadOnly(bool sola);

private:
    std::vector<DescrizioneCasella> m_descrizioni;
    std::vector<Casella *> m_caselle;
};
