#pragma once

#include "db/atto/scheda.h"
#include "texts/testo_proposto.h"

class QLabel;

// Un testo lungo della pagina, con la sua etichetta.
class TestoPagina : public QWidget
{
    Q_OBJECT

public:
    // `righe` è quanto è alto almeno.
    TestoPagina(const QString &posto, const QString &etichetta, int righe, QWidget *sopra);

    const QString &posto() const { return m_posto; }
    TestoProposto *testo() const { return m_testo; }
    modTarvola::scheda::Uso uso = modTarvola::scheda::Uso::Mostrata;
    modTarvola::scheda::Uso inizio = uso; // quello che la scheda dà
    // Si mostra o si nasconde secondo ciò che contiene e il suo uso.
    void rivede();

    void mostra(const QString &testo);
    // Vero se chi trascrive lo ha cambiato.
    bool scritto() const { return m_scritto; }
    void segnaScritto() { m_scritto = true; }
    QString valore() const { return m_testo->toPlainText(); }

signals:
    void cambiato();

private:
    QString m_posto;
    TestoProposto *m_testo;
    bool m_scritto = false;
};
