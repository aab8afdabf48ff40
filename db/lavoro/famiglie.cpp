#include "db/lavoro/famiglie.h"

#include "db/schema/generi.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

void aggiunge(ado::Connection &connessione, const char *tabella, const QString &individuo,
              const QString &famiglia)
{
    connessione.Execute(
        {QStringLiteral("INSERT OR IGNORE INTO %1 (CodiceIndividuo, CodiceFamiglia) VALUES (?, ?)")
             .arg(QLatin1String(tabella)),
         {individuo, famiglia},
         {}});
}

} // namespace

bool ConiugeGiaInserito(const std::vector<int> &inseriti, int ruolo)
{
    if (!eRuoloDiCoppia(ruolo) && !(ruolo >= 1 && ruolo <= 5) && ruolo != Padrino)
        return false;
    bool principale = false;
    bool coniuge = false;
    for (const int inserito : inseriti) {
        if (eRuoloDiCoppia(inserito)) {
            if (inserito == ruolo)
                return true;
            coniuge = true;
        } else {
            principale = principale || eIndividuo(inserito);
        }
    }
    // Una coppia è di due: con il principale dell'atto e il suo coniuge è piena.
    return principale && coniuge;
}

void AggiungiFamigliaConiugi(ado::Connection &connessione, const QString &individuo,
                             const QString &famiglia)
{
    aggiunge(connessione, "FamiglieConiugi", individuo, famiglia);
}

void AggiungiFamigliaGenitori(ado::Connection &connessione, const QString &individuo,
                              const QString &famiglia)
{
    aggiunge(connessione, "FamiglieGenitori", individuo, famiglia);
}

} // namespace modTarvola
