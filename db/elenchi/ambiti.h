#pragma once

#include <QString>

// Che cosa un elenco comprende, detto come condizione sulla tabella.
namespace modTarvola
{

// La condizione (dopo WHERE) sulle righe della tabella in un ambito: ?1, ?2 e ?3 sono i codici
// dell'archivio, del registro e della voce. Vuota se la tabella è elencata tutta. Fallisce con
// ado::Errore se la tabella non ha quell'ambito. Con i dettagli restano fuori gli individui senza
// ruolo noto o senza voce, registro e archivio.
QString condizioneAmbito(const QString &tabella, int ambito, bool dettagli);

// Le stesse righe di condizioneAmbito, quando quasi tutte sono di quell'archivio: trovate da
// ciascuna, così le prime si hanno senza cercarle tutte. Vuota dove non conviene.
QString condizioneSalendo(const QString &tabella, int ambito, bool dettagli);

// L'istruzione che legge una riga per chiave.
// Dei dettagli, il ruolo è nella colonna `lingua` di Traduzioni.
QString letturaRiga(const QString &tabella, int ambito, bool dettagli, const QString &lingua);

// Vero se quella colonna di un elenco della tabella, anche con i dettagli, contiene date.
bool eColonnaDiDate(const QString &tabella, const QString &colonna);

} // namespace modTarvola
