#pragma once

#include <QStringList>

#include <functional>
#include <optional>

// Un archivio del formato anteriore riscritto come archivio nuovo.
namespace modTarvola
{

// Che cosa di una tabella è passato nell'archivio nuovo, e che cosa no.
struct TabellaConvertita {
    QString nome;
    qint64 annunciate = 0; // le righe che la tabella dice di avere
    qint64 lette = 0;
    qint64 rifiutate = 0;      // lette, ma senza codice o con un codice già preso
    qint64 righeGuaste = 0;    // che non si sono potute leggere
    qint64 pagineGuaste = 0;   // compresa la mappa delle pagine
    qint64 valoriGuasti = 0;   // presi in parte, o Null perché illeggibili
    QStringList colonneIgnote; // non sono dell'archivio e restano fuori
    QStringList colonneMancanti;

    bool intera() const;
};

struct Resoconto {
    QList<TabellaConvertita> tabelle; // quelle dell'archivio
    QStringList tabelleIgnote;        // non sono dell'archivio e restano fuori
    bool catalogoIntero = true;

    // Vero se non c'è nulla da dire a chi converte.
    bool intero() const;
};

// Quanto è fatto di quanto; rende falso se chi guarda ha annullato.
using PassoConversione = std::function<bool(qint64 fatto, qint64 totale)>;

// Vero se il file comincia come un archivio del formato anteriore.
bool diFormatoAnteriore(const QString &percorso);
// Fallisce con ado::Errore se il file non si può convertire: un'altra password, una tabella che
// manca o non si può leggere.
void verificaFormatoAnteriore(const QString &percorso);
// Scrive in `nuovo`, che non deve esistere, l'archivio con le righe di `vecchio`, poi rilegge i due
// e li confronta valore per valore. Niente se si è annullato; fallisce con ado::Errore. Quando non
// riesce `nuovo` non resta. `vecchio` è soltanto letto.
std::optional<Resoconto> converte(const QString &vecchio, const QString &nuovo,
                                  const PassoConversione &passo);

} // namespace modTarvola
