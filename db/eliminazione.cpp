#include "db/eliminazione.h"

#include "db/schema.h"

namespace modTarvola
{

namespace
{

struct Passo {
    int numero;
    const char *istruzione;
};

// La pulizia, passo per passo; `?1` è l'operatore che sta lavorando. Un proprietario Null vale
// come scomparso.
constexpr Passo passi[] = {
    {1, "DELETE FROM Individui WHERE NOT EXISTS "
        "(SELECT 1 FROM Voci WHERE Voci.Codice = Individui.Voce)"},
    {2, "DELETE FROM Famiglie WHERE NOT EXISTS "
        "(SELECT 1 FROM Voci WHERE Voci.Codice = Famiglie.Voce)"},
    {3, "DELETE FROM FamiglieConiugi WHERE NOT EXISTS "
        "(SELECT 1 FROM Famiglie WHERE Famiglie.Codice = FamiglieConiugi.CodiceFamiglia)"},
    {3, "DELETE FROM FamiglieGenitori WHERE NOT EXISTS "
        "(SELECT 1 FROM Famiglie WHERE Famiglie.Codice = FamiglieGenitori.CodiceFamiglia)"},
    {3, "DELETE FROM Famiglie WHERE NOT EXISTS "
        "(SELECT 1 FROM FamiglieConiugi WHERE CodiceFamiglia = Famiglie.Codice) AND NOT EXISTS "
        "(SELECT 1 FROM FamiglieGenitori WHERE CodiceFamiglia = Famiglie.Codice)"},
    {4, "DELETE FROM FamiglieConiugi WHERE NOT EXISTS "
        "(SELECT 1 FROM Individui WHERE Individui.Codice = FamiglieConiugi.CodiceIndividuo)"},
    {4, "DELETE FROM FamiglieGenitori WHERE NOT EXISTS "
        "(SELECT 1 FROM Individui WHERE Individui.Codice = FamiglieGenitori.CodiceIndividuo)"},
    {5, "DELETE FROM Eventi WHERE NOT EXISTS "
        "(SELECT 1 FROM Individui WHERE Individui.Codice = Eventi.IdProprietario) AND NOT EXISTS "
        "(SELECT 1 FROM Famiglie WHERE Famiglie.Codice = Eventi.IdProprietario)"},
};

} // namespace

void elimina(ado::Connection &connessione, const QString &codice, const QString & /*operatore*/)
{
    const QString tabella = tabellaDiCodice(codice);
    if (tabella.isEmpty() || tabella == QStringLiteral("Operatori"))
        return;
    ado::Transazione transazione(connessione);
    connessione.Execute(
        {QStringLiteral("DELETE FROM %1 WHERE Codice = ?").arg(tabella), {codice}, {}});
    for (const Passo &passo : passi)
        connessione.Execute({QString::fromUtf8(passo.istruzione), {}, {}});
    transazione.conferma();
}

} // namespace modTarvola
