#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// Le pagine del manuale, come le elenca indice.xml nella cartella della guida.
class GuidaPagine
{
public:
    struct Pagina {
        QString file; // relativo alla cartella, come "htm/inizio.htm"
        QString titolo;
        QString sezione;
        QString testo;
    };

    // Le pagine che mancano o non si leggono non ci sono; senza indice non ce n'è nessuna.
    explicit GuidaPagine(const QString &cartella);

    const std::vector<Pagina> &pagine() const { return m_pagine; }
    // I posti delle pagine che contengono tutte le parole, senza badare a maiuscole e accenti;
    // prima quelle che le hanno nel titolo. Nessuno se non ci sono parole.
    std::vector<size_t> cerca(const QString &parole) const;
    // Le prime parole attorno alla prima delle parole cercate.
    QString attorno(size_t pagina, const QString &parole) const;

private:
    std::vector<Pagina> m_pagine;
};

// Il testo senza maiuscole né accenti, per cercarvi. Ogni lettera resta una lettera: i posti sono
// gli stessi del testo composto (NFC).
QString ripiegato(const QString &testo);
// Le parole cercate, ripiegate, una per una.
QStringList paroleCercate(const QString &parole);

// Il testo della pagina senza le figure la cui immagine manca nella cartella data.
QString senzaFigureMancanti(const QString &html, const QString &cartella);
