#include "db/ambiti.h"

#include "db/connessioni.h"
#include "db/generi.h"
#include "platform/motore/ado.h"

namespace modTarvola
{

namespace
{

constexpr int ambitoArchivio = 6;
constexpr int ambitoTutto = 7;

struct Ambito {
    const char *tabella;
    int ambito;
    const char *condizione;
};

// Le voci dell'archivio, del registro, della voce: la catena parte dall'archivio e scende per gli
// indici, e CROSS JOIN vieta al motore di percorrerla al contrario.
#define VOCI_DI_ARCHIVIO                                                                           \
    "FROM Archivi CROSS JOIN Registri ON Registri.Archivio = Archivi.Codice "                      \
    "CROSS JOIN Voci ON Voci.Registro = Registri.Codice "
#define DI_ARCHIVIO "WHERE Archivi.Codice = ?1"
#define DI_REGISTRO DI_ARCHIVIO " AND Registri.Codice = ?2"
#define DI_VOCE DI_REGISTRO " AND Voci.Codice = ?3"

#define IN_VOCI(tabella, filtro)                                                                   \
    tabella ".rowid IN (SELECT i.rowid " VOCI_DI_ARCHIVIO "CROSS JOIN " tabella                    \
            " i ON i.Voce = Voci.Codice " filtro ")"

#define DI_PROPRIETARIO(tabella, genere, filtro)                                                   \
    "SELECT d.rowid " VOCI_DI_ARCHIVIO "CROSS JOIN " genere " p ON p.Voce = Voci.Codice "          \
    "CROSS JOIN " tabella " d ON d.IdProprietario = p.Codice " filtro

#define EVENTI(filtro)                                                                             \
    "Eventi.rowid IN (" DI_PROPRIETARIO(                                                           \
        "Eventi", "Individui", filtro) " UNION ALL " DI_PROPRIETARIO("Eventi", "Famiglie",         \
                                                                     filtro) ")"

#define BINARI_DI_EVENTO(genere, filtro)                                                           \
    "SELECT d.rowid " VOCI_DI_ARCHIVIO "CROSS JOIN " genere " p ON p.Voce = Voci.Codice "          \
    "CROSS JOIN Eventi e ON e.IdProprietario = p.Codice "                                          \
    "CROSS JOIN Binari d ON d.IdProprietario = e.Codice " filtro

#define BINARI_DELLE_VOCI(filtro)                                                                  \
    "SELECT d.rowid " VOCI_DI_ARCHIVIO                                                             \
    "CROSS JOIN Binari d ON d.IdProprietario = Voci.Codice " filtro                                \
    " UNION ALL " DI_PROPRIETARIO("Binari", "Individui", filtro) " UNION ALL " DI_PROPRIETARIO(    \
        "Binari", "Famiglie",                                                                      \
        filtro) " UNION ALL " BINARI_DI_EVENTO("Individui",                                        \
                                               filtro) " UNION ALL " BINARI_DI_EVENTO("Famiglie",  \
                                                                                      filtro)

// Un ambito più stretto filtra per voce anche i registri: allora vale per un registro che quella
// voce contiene.
#define BINARI_DEI_REGISTRI(filtro)                                                                \
    "SELECT d.rowid FROM Archivi CROSS JOIN Registri ON Registri.Archivio = Archivi.Codice "       \
    "CROSS JOIN Binari d ON d.IdProprietario = Registri.Codice " filtro

constexpr Ambito ambiti[] = {
    {"Archivi", 0, ""},
    {"Registri", 0, "Registri.Archivio = ?1"},
    {"Registri", 6, "Registri.Archivio = ?1"},
    {"Registri", 7, ""},
    {"Voci", 0, "Voci.Registro = ?2"},
    {"Voci", 4, "Voci.rowid IN (SELECT Voci.rowid " VOCI_DI_ARCHIVIO DI_REGISTRO ")"},
    {"Voci", 6, "Voci.rowid IN (SELECT Voci.rowid " VOCI_DI_ARCHIVIO DI_ARCHIVIO ")"},
    {"Voci", 7, ""},
    {"Individui", 0, "Individui.Voce = ?3"},
    {"Individui", 4, IN_VOCI("Individui", DI_REGISTRO)},
    {"Individui", 6, IN_VOCI("Individui", DI_ARCHIVIO)},
    {"Individui", 7, ""},
    {"Famiglie", 0, "Famiglie.Voce = ?3"},
    {"Famiglie", 4, IN_VOCI("Famiglie", DI_REGISTRO)},
    {"Famiglie", 6, IN_VOCI("Famiglie", DI_ARCHIVIO)},
    {"Famiglie", 7, ""},
    {"Eventi", 0, EVENTI(DI_VOCE)},
    {"Eventi", 4, EVENTI(DI_REGISTRO)},
    {"Eventi", 6, EVENTI(DI_ARCHIVIO)},
    {"Eventi", 7, ""},
    {"Binari", 0, "Binari.rowid IN (" BINARI_DELLE_VOCI(DI_VOCE) ")"},
    {"Binari", 4,
     "Binari.rowid IN (" BINARI_DEI_REGISTRI(DI_REGISTRO) " UNION ALL " BINARI_DELLE_VOCI(
         DI_REGISTRO) ")"},
    {"Binari", 6,
     "Binari.rowid IN (SELECT d.rowid FROM Archivi CROSS JOIN Binari d "
     "ON d.IdProprietario = Archivi.Codice " DI_ARCHIVIO " UNION ALL " BINARI_DEI_REGISTRI(
         DI_ARCHIVIO) " UNION ALL " BINARI_DELLE_VOCI(DI_ARCHIVIO) ")"},
    {"Binari", 7, ""},
};

#define SALE_DALLA_VOCE(voce)                                                                      \
    "EXISTS (SELECT 1 FROM Voci CROSS JOIN Registri ON Registri.Codice = Voci.Registro "           \
    "WHERE Voci.Codice = " voce " AND Registri.Archivio = ?1)"

#define SALE_DAL_PROPRIETARIO(genere)                                                              \
    "EXISTS (SELECT 1 FROM " genere                                                                \
    " p WHERE p.Codice = Eventi.IdProprietario AND " SALE_DALLA_VOCE("p.Voce") ")"

// Le stesse righe dell'ambito 6, trovate da ciascuna salendo al suo archivio.
constexpr Ambito ambitiSalendo[] = {
    {"Voci", ambitoArchivio,
     "EXISTS (SELECT 1 FROM Registri WHERE Registri.Codice = Voci.Registro "
     "AND Registri.Archivio = ?1)"},
    {"Individui", ambitoArchivio, SALE_DALLA_VOCE("Individui.Voce")},
    {"Famiglie", ambitoArchivio, SALE_DALLA_VOCE("Famiglie.Voce")},
    {"Eventi", ambitoArchivio,
     "(" SALE_DAL_PROPRIETARIO("Individui") " OR " SALE_DAL_PROPRIETARIO("Famiglie") ")"},
};

const char *const conRuolo =
    "EXISTS (SELECT 1 FROM Traduzioni WHERE Traduzioni.Codice = Individui.Ruolo)";
const char *const conVoce =
    " AND EXISTS (SELECT 1 FROM Voci CROSS JOIN Registri ON Registri.Codice = Voci.Registro "
    "CROSS JOIN Archivi ON Archivi.Codice = Registri.Archivio "
    "WHERE Voci.Codice = Individui.Voce)";

// I dettagli mostrano solo chi ha ruolo, voce, registro e archivio; di un registro o di un archivio
// sono già scelti quelli che li hanno.
QString condizioneDettagli(int ambito)
{
    const bool giaScelti = ambito == 4 || ambito == 6;
    return QString::fromUtf8(conRuolo) + (giaScelti ? QString() : QString::fromUtf8(conVoce));
}

// Il luogo e la data dell'evento di un genere; con più eventi dello stesso genere, il maggiore.
QString colonneEvento(int genere, const char *nome)
{
    return QStringLiteral("max(CASE e.Tipo WHEN %1 THEN e.Luogo END COLLATE NOCASE) AS Luogo%2, "
                          "max(CASE e.Tipo WHEN %1 THEN e.Data END) AS Data%2, ")
        .arg(genere)
        .arg(QString::fromUtf8(nome));
}

// Gli eventi dell'individuo si leggono una volta sola, per tutte e otto le colonne.
QString letturaDettagli()
{
    return QStringLiteral("SELECT i.Codice, i.Nome, i.Soprannome, i.Cognome, i.Detto, i.Sesso, "
                          "Traduzioni.%1 AS Ruolo, i.Precisazione, i.Voce, i.Legittimo, i.\"Età\", "
                          "i.Vivente, i.Creazione, ")
               .arg(archivi().ColonnaLingua) +
           colonneEvento(Nascita, "Nascita") + colonneEvento(Battesimo, "Battesimo") +
           colonneEvento(Morte, "Morte") + colonneEvento(Sepoltura, "Sepoltura") +
           QStringLiteral("Archivi.Nome AS Nome, Registri.Titolo, Voci.Codice AS CodiceVoce "
                          "FROM Individui i CROSS JOIN Traduzioni ON Traduzioni.Codice = i.Ruolo "
                          "CROSS JOIN Voci ON Voci.Codice = i.Voce "
                          "CROSS JOIN Registri ON Registri.Codice = Voci.Registro "
                          "CROSS JOIN Archivi ON Archivi.Codice = Registri.Archivio "
                          "LEFT JOIN Eventi e ON e.IdProprietario = i.Codice "
                          "WHERE i.rowid = ? GROUP BY i.rowid");
}

} // namespace

QString condizioneAmbito(const QString &tabella, int ambito, bool dettagli)
{
    for (const Ambito &uno : ambiti) {
        if (tabella != QLatin1String(uno.tabella) || ambito != uno.ambito)
            continue;
        const QString condizione = QString::fromUtf8(uno.condizione);
        if (!dettagli || tabella != QStringLiteral("Individui"))
            return condizione;
        const QString anche = condizioneDettagli(ambito);
        return condizione.isEmpty() ? anche : condizione + QStringLiteral(" AND ") + anche;
    }
    throw ado::Errore(
        ado::Causa::Altro,
        QStringLiteral("l'ambito %1 non esiste per la tabella %2").arg(ambito).arg(tabella));
}

QString condizioneSalendo(const QString &tabella, int ambito, bool dettagli)
{
    for (const Ambito &uno : ambitiSalendo) {
        if (tabella != QLatin1String(uno.tabella) || ambito != uno.ambito)
            continue;
        const bool conDettagli = dettagli && tabella == QStringLiteral("Individui");
        return QString::fromUtf8(uno.condizione) +
               (conDettagli ? QStringLiteral(" AND ") + condizioneDettagli(ambito) : QString());
    }
    return {};
}

QString letturaRiga(const QString &tabella, int ambito, bool dettagli)
{
    if (tabella == QStringLiteral("Individui") && dettagli)
        return letturaDettagli();
    if (tabella != QStringLiteral("Binari"))
        return QStringLiteral("SELECT * FROM %1 WHERE rowid = ?").arg(tabella);
    // Un elenco non legge mai i contenuti: di un testo solo il principio, di un file nulla.
    const QString contenuto =
        ambito == ambitoTutto
            ? QStringLiteral(", CASE WHEN Tipo IN (12, 13) THEN substr(Campolungo, 1, 200) END "
                             "AS Campolungo")
            : QString();
    return QStringLiteral("SELECT Codice, Tipo, IdProprietario, Nome%1 FROM Binari WHERE rowid = ?")
        .arg(contenuto);
}

} // namespace modTarvola
