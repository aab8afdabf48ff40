#include "db/schema/versioni.h"

#include <algorithm>

namespace modTarvola
{

int versioneDi(ado::Connection &connessione)
{
    return connessione.valore({QStringLiteral("PRAGMA user_version"), {}, {}}).toInt();
}

void rifiutaPiuNuovo(ado::Connection &connessione, int versione)
{
    const int sua = versioneDi(connessione);
    if (sua > versione) {
        throw ado::Errore(ado::Causa::VersioneNuova,
                          QStringLiteral("il file di archivi è della versione %1, più nuova di "
                                         "quella di questo programma (versione %2)")
                              .arg(sua)
                              .arg(versione));
    }
}

void portaAllaVersione(ado::Connection &connessione, std::span<const Passaggio> passaggi,
                       int versione)
{
    rifiutaPiuNuovo(connessione, versione);
    if (versioneDi(connessione) == versione)
        return;
    ado::Transazione transazione(connessione);
    // Un altro programma può averlo fatto nel frattempo.
    for (int sua = versioneDi(connessione) + 1; sua <= versione; ++sua) {
        const auto passaggio =
            std::find_if(passaggi.begin(), passaggi.end(),
                         [sua](const Passaggio &uno) { return uno.versione == sua; });
        if (passaggio == passaggi.end())
            throw ado::Errore(
                ado::Causa::NonArchivio,
                QStringLiteral("il file di archivi è della versione %1, che non si conosce")
                    .arg(sua - 1));
        for (const char *istruzione : passaggio->istruzioni)
            connessione.Execute({QString::fromUtf8(istruzione), {}, {}});
        connessione.Execute({QStringLiteral("PRAGMA user_version = %1").arg(sua), {}, {}});
    }
    transazione.conferma();
}

} // namespace modTarvola
