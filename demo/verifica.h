#pragma once

#include "demo/esempi.h"
#include "demo/scena.h"

#include <QMap>
#include <QStringList>

// Che cosa deve stare nell'archivio quando gli atti sono stati battuti, e il confronto.
namespace verifica
{

// I campi di una riga che hanno un valore; quelli che mancano sono Null.
using Riga = QMap<QString, QString>;
using Tabelle = QMap<QString, QList<Riga>>;

struct Esito {
    QStringList differenze;
    QMap<QString, int> righe;
};

// Come sta in una riga il contenuto di un file: il suo SHA-256.
QString impronta(const QByteArray &byte);

// Le righe che gli atti devono lasciare in ogni tabella, coi codici presi nell'ordine in cui i
// record si battono, e i legami con chi li ha trascritti.
Tabelle attese(const std::vector<esempi::Archivio> &archivi, const Credenziali &trascrittore);

// Apre il file col motore e confronta ogni riga di ogni tabella con quella attesa. `inizio` e
// `fine` (AAAA-MM-GG HH:MM:SS) sono i limiti di Creazione e Modifica; `modello` è l'archivio
// vuoto, che dà le righe di Traduzioni. Lancia ado::Errore se un file non si può leggere.
Esito confronta(const QString &percorso, const QString &modello, Tabelle attese,
                const QString &inizio, const QString &fine);

} // namespace verifica
