#pragma once

#include "atti/campo.h"

#include <QWidget>

#include <vector>

class QGridLayout;
class QHBoxLayout;
class QLabel;

// Una riga della pagina: l'etichetta e le sue caselle, in colonne che hanno le stesse misure in
// tutte le righe.
class RigaPagina : public QWidget
{
    Q_OBJECT

public:
    RigaPagina(const modTarvola::scheda::Riga &riga, const QString &tabella, bool rientrata,
               QWidget *sopra);

    // La persona della riga, quando sta già nell'atto; 0 se no. Vale per gli elenchi.
    int chiave = 0;

    const modTarvola::scheda::Riga &riga() const { return m_riga; }
    // L'etichetta che si legge e quella che si sente; il posto nell'elenco.
    void chiama(const QString &etichetta, int quale);
    // Le caselle, nell'ordine in cui si leggono; quelle nascoste nascono quando servono.
    const std::vector<Campo *> &campi() const { return m_campi; }
    // La casella del campo, fatta nascere se occorre; nulla se la riga non l'ha.
    Campo *campo(const QString &nome);
    // Mostra o nasconde le caselle secondo ciò che contengono e l'uso di ciascuna.
    void rivede();
    bool vuota() const;
    // I ruoli fra cui si sceglie, dove il ruolo sta al posto dell'etichetta.
    void offreRuoli(const std::vector<std::pair<int, QString>> &ruoli);

signals:
    void cambiata(Campo *campo);
    void nata(Campo *campo);

private:
    Campo *nasce(const modTarvola::scheda::Casella &casella);
    Campo *crea(const modTarvola::scheda::Casella &casella);
    void dispone();

    modTarvola::scheda::Riga m_riga;
    QString m_tabella;
    QString m_chi;
    int m_quale = 0;
    QGridLayout *m_griglia;
    QLabel *m_capo;
    QHBoxLayout *m_celle[4] = {};
    std::vector<Campo *> m_campi;
};
