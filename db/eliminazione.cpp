#include "db/eliminazione.h"

#include "db/schema.h"

namespace modTarvola
{

namespace
{

// Un passo della pulizia: quali righe guardare fra quelle annotate, e quando toglierle. Le
// condizioni valgono per la riga; le annotazioni di troppo non fanno danno.
struct Passo {
    int numero;
    const char *istruzione;
};

// Le righe della tabella che dipendono da un record scomparso, o che sono annotate come orfane.
#define CANDIDATI(tabella, colonna, scomparsi)                                                     \
    "DELETE FROM " tabella " WHERE rowid IN (SELECT d.rowid FROM Scomparsi s CROSS JOIN " tabella  \
    " d ON d." colonna " = s.Codice " scomparsi                                                    \
    " UNION ALL SELECT d.rowid FROM Orfani o CROSS JOIN " tabella                                  \
    " d ON d.Codice = o.Codice WHERE o.Tabella = '" tabella "') AND "

// I legami sono annotati a coppie; si cercano per la colonna che porta il codice scomparso.
#define COPPIE(tabella, colonna, annotata, dove, condizione)                                       \
    "DELETE FROM " tabella " WHERE " colonna " IN (SELECT Codice FROM Scomparsi " dove             \
    " UNION ALL SELECT " annotata " FROM Orfani WHERE Tabella = '" tabella "') AND " condizione

#define NON_IN(tabella, codice)                                                                    \
    "NOT EXISTS (SELECT 1 FROM " tabella " WHERE " tabella ".Codice = " codice ")"

#define IN_NESSUNA_DELLE_NOVE(codice)                                                                                     \
    NON_IN("Archivi", codice)                                                                                             \
    " AND " NON_IN("Registri", codice) " AND " NON_IN("Voci", codice) " AND " NON_IN("Individui", codice) " AND " NON_IN( \
        "Famiglie",                                                                                                       \
        codice) " AND " NON_IN("Eventi",                                                                                  \
                               codice) " AND " NON_IN("Luoghi",                                                           \
                                                      codice) " AND " NON_IN("Comunicazioni",                             \
                                                                             codice) " AND"                               \
                                                                                     " " NON_IN(                          \
                                                                                         "Operato"                        \
                                                                                         "ri",                            \
                                                                                         codice)

#define SENZA_FAMIGLIA(tabella)                                                                    \
    COPPIE(tabella, "CodiceFamiglia", "Codice", "WHERE Tabella = 'Famiglie'",                      \
           NON_IN("Famiglie", tabella ".CodiceFamiglia"))

#define SENZA_INDIVIDUO(tabella)                                                                   \
    COPPIE(tabella, "CodiceIndividuo", "Altro", "WHERE Tabella = 'Individui'",                     \
           NON_IN("Individui", tabella ".CodiceIndividuo"))

constexpr Passo passi[] = {
    {1,
     CANDIDATI("Individui", "Voce", "WHERE s.Tabella = 'Voci'") NON_IN("Voci", "Individui.Voce")},
    {2, CANDIDATI("Famiglie", "Voce", "WHERE s.Tabella = 'Voci'") NON_IN("Voci", "Famiglie.Voce")},
    {3, SENZA_FAMIGLIA("FamiglieConiugi")},
    {3, SENZA_FAMIGLIA("FamiglieGenitori")},
    {3, "DELETE FROM Famiglie WHERE Codice IN (SELECT Codice FROM Orfani WHERE Tabella = 'Vuote') "
        "AND NOT EXISTS (SELECT 1 FROM FamiglieConiugi WHERE CodiceFamiglia = Famiglie.Codice) "
        "AND NOT EXISTS (SELECT 1 FROM FamiglieGenitori WHERE CodiceFamiglia = Famiglie.Codice)"},
    {4, SENZA_INDIVIDUO("FamiglieConiugi")},
    {4, SENZA_INDIVIDUO("FamiglieGenitori")},
    {5, CANDIDATI("Eventi", "IdProprietario", "WHERE s.Tabella IN ('Individui', 'Famiglie')")
            NON_IN("Individui", "Eventi.IdProprietario") " AND " NON_IN("Famiglie",
                                                                        "Eventi.IdProprietario")},
    {6, COPPIE("OperatoriContesti", "CodiceContesto", "Altro", "",
               IN_NESSUNA_DELLE_NOVE("OperatoriContesti.CodiceContesto"))},
    {6, "DELETE FROM Operatori WHERE Codice IN (SELECT Codice FROM Orfani WHERE Tabella = 'Soli') "
        "AND Codice <> ?1 AND NOT EXISTS (SELECT 1 FROM OperatoriContesti "
        "WHERE CodiceOperatore = Operatori.Codice)"},
    {7, CANDIDATI("Luoghi", "IdProprietario", "WHERE s.Tabella IN ('Operatori', 'Archivi')")
            NON_IN("Operatori", "Luoghi.IdProprietario") " AND " NON_IN("Archivi",
                                                                        "Luoghi.IdProprietario")},
    {8, CANDIDATI("Comunicazioni", "IdProprietario", "WHERE s.Tabella IN ('Operatori', 'Archivi')")
            NON_IN("Operatori", "Comunicazioni.IdProprietario") " AND " NON_IN(
                "Archivi", "Comunicazioni.IdProprietario")},
    {9, CANDIDATI("Binari", "IdProprietario", "") IN_NESSUNA_DELLE_NOVE("Binari.IdProprietario")},
};

// Per ogni lettera i passi nell'ordine, e i record scomparsi di cui quei passi non lasciano nulla.
struct Pulizia {
    char lettera = 0;
    std::initializer_list<int> passi;
    const char *esauriti = nullptr;
};

const Pulizia pulizie[] = {
    {'A',
     {1, 4, 2, 3, 5, 6, 7, 8, 9},
     "'Archivi','Registri','Voci','Individui','Famiglie','Eventi'"},
    {'R',
     {1, 4, 2, 3, 5, 6, 7, 8, 9},
     "'Archivi','Registri','Voci','Individui','Famiglie','Eventi'"},
    {'V',
     {1, 4, 2, 3, 5, 6, 7, 8, 9},
     "'Archivi','Registri','Voci','Individui','Famiglie','Eventi'"},
    {'B', {}, ""},
    {'I', {4, 3, 5, 6, 7, 8, 9}, "'Archivi','Registri','Individui','Famiglie','Eventi'"},
    {'F', {4, 3, 5, 6, 7, 8, 9}, "'Archivi','Registri','Individui','Famiglie','Eventi'"},
    {'E', {6, 7, 8, 9}, "'Archivi','Registri','Eventi'"},
    {'L', {6, 9}, "'Registri','Eventi'"},
    {'C', {6, 9}, "'Registri','Eventi'"},
};

void eliminaConIContenuti(ado::Connection &connessione, const QString &tabella,
                          const QString &codice)
{
    if (tabella == QStringLiteral("Archivi")) {
        connessione.Execute({QStringLiteral("DELETE FROM Voci WHERE Registro IN "
                                            "(SELECT Codice FROM Registri WHERE Archivio = ?)"),
                             {codice},
                             {}});
        connessione.Execute(
            {QStringLiteral("DELETE FROM Registri WHERE Archivio = ?"), {codice}, {}});
    } else if (tabella == QStringLiteral("Registri")) {
        connessione.Execute({QStringLiteral("DELETE FROM Voci WHERE Registro = ?"), {codice}, {}});
    }
    connessione.Execute(
        {QStringLiteral("DELETE FROM %1 WHERE Codice = ?").arg(tabella), {codice}, {}});
}

void esegue(ado::Connection &connessione, int numero, const QString &operatore)
{
    for (const Passo &passo : passi) {
        if (passo.numero == numero)
            connessione.Execute({QString::fromUtf8(passo.istruzione), {operatore}, {}});
    }
}

// Le annotazioni di cui non resta nulla da fare non si portano dietro. Di operatori, indirizzi e
// recapiti tolti dopo il passo 6 possono restare i collegamenti: quelli aspettano la prossima
// volta.
void dimentica(ado::Connection &connessione, const Pulizia &pulizia, const QString &operatore)
{
    if (pulizia.passi.size() == 0)
        return;
    const QString esauriti = QString::fromUtf8(pulizia.esauriti);
    connessione.Execute(
        {QStringLiteral("DELETE FROM Scomparsi WHERE Tabella IN (%1)").arg(esauriti), {}, {}});
    connessione.Execute({QStringLiteral("DELETE FROM Orfani WHERE Tabella = 'OperatoriContesti' "
                                        "OR Tabella = 'Soli' AND Codice <> ?"),
                         {operatore},
                         {}});
    if (esauriti.contains(QStringLiteral("'Voci'")))
        connessione.Execute({QStringLiteral("DELETE FROM Orfani WHERE Tabella <> 'Soli'"), {}, {}});
}

} // namespace

void elimina(ado::Connection &connessione, const QString &codice, const QString &operatore,
             const Avanzata &avanza)
{
    for (const Pulizia &pulizia : pulizie) {
        if (codice.isEmpty() || codice.front().toUpper() != QLatin1Char(pulizia.lettera))
            continue;
        int compiuti = 0;
        const int totale = static_cast<int>(pulizia.passi.size()) + 1;
        ado::Transazione transazione(connessione);
        const ado::Sorveglianza sorveglianza(connessione,
                                             [&] { return !avanza || avanza(compiuti, totale); });
        eliminaConIContenuti(connessione, tabellaDiCodice(codice), codice);
        for (const int passo : pulizia.passi) {
            ++compiuti;
            esegue(connessione, passo, operatore);
        }
        dimentica(connessione, pulizia, operatore);
        transazione.conferma();
        return;
    }
}

} // namespace modTarvola
