#pragma once

#include "platform/disco/provvisorio.h"
#include "platform/motore/ado.h"

// La compattazione di un archivio e la prova che una copia vale l'originale.
namespace jro
{

// Finché vive, nessun altro programma cambia il file; leggerlo si può. Fallisce con la causa
// Occupato se qualcuno lo sta cambiando.
class Fermo
{
public:
    // `apre` apre la connessione all'archivio.
    explicit Fermo(const std::function<void(ado::Connection &connessione)> &apre);

private:
    ado::Connection m_connessione;
};

// Scrive una copia compatta dell'archivio in un file che non deve esistere e la porta sul disco.
// La password, che è una riga dell'archivio, passa con le altre.
void CompactDatabase(ado::Connection &origine, const QString &nuovo,
                     const provvisorio::Passo &passo);

// Fallisce con la causa Danneggiato se il file non è integro.
void verificaIntegrita(ado::Connection &archivio, const provvisorio::Passo &passo);

// Fallisce con la causa Danneggiato se le due parti non hanno le stesse tabelle con le stesse
// righe, o se nell'origine una tabella e i suoi indici non vanno d'accordo. Le tabelle di `senza`
// sono solo dell'origine.
void confronta(ado::Connection &origine, ado::Connection &copia, const provvisorio::Passo &passo,
               const QStringList &senza = {});

} // namespace jro
