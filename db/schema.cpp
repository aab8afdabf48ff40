#include "db/schema.h"

#include "db/modello.h"
#include "db/orfani.h"
#include "db/versioni.h"

namespace modTarvola
{

const QString passwordArchivi = QStringLiteral("Brunivastelo");

namespace
{

// I codici si confrontano senza badare alle maiuscole; sono lettere e cifre ASCII.
const char *const istruzioni[] = {
    "CREATE TABLE Archivi (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, Nome TEXT,"
    " Abbreviazione TEXT, Gruppo TEXT, Modifica TEXT)",

    "CREATE TABLE Registri (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,"
    " Archivio TEXT COLLATE NOCASE, Tipo INTEGER, Titolo TEXT, Abbreviazione TEXT,"
    " EventiCitati TEXT, DataIniziale TEXT, DataFinale TEXT, Supporto TEXT, Classe TEXT,"
    " SottoClasse TEXT, Modifica TEXT)",
    "CREATE INDEX RegistriArchivio ON Registri (Archivio)",

    "CREATE TABLE Voci (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,"
    " Registro TEXT COLLATE NOCASE, Volume TEXT, Data TEXT, PaginaIniziale INTEGER,"
    " CodiceVoce TEXT, Modifica TEXT)",
    "CREATE INDEX VociRegistro ON Voci (Registro)",

    "CREATE TABLE Individui (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,"
    " Voce TEXT COLLATE NOCASE, Nome TEXT, Cognome TEXT, Soprannome TEXT, Detto TEXT,"
    " Precisazione TEXT, \"Età\" TEXT, Sesso TEXT, Legittimo TEXT, Vivente TEXT, Ruolo INTEGER,"
    " Creazione TEXT DEFAULT (datetime('now', 'localtime')), Modifica TEXT)",
    "CREATE INDEX IndividuiVoce ON Individui (Voce)",

    "CREATE TABLE Famiglie (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,"
    " Voce TEXT COLLATE NOCASE, Ruolo INTEGER, Modifica TEXT)",
    "CREATE INDEX FamiglieVoce ON Famiglie (Voce)",

    "CREATE TABLE FamiglieConiugi (CodiceFamiglia TEXT NOT NULL COLLATE NOCASE,"
    " CodiceIndividuo TEXT NOT NULL COLLATE NOCASE,"
    " PRIMARY KEY (CodiceFamiglia, CodiceIndividuo)) WITHOUT ROWID",
    "CREATE INDEX FamiglieConiugiIndividuo ON FamiglieConiugi (CodiceIndividuo)",

    "CREATE TABLE FamiglieGenitori (CodiceFamiglia TEXT NOT NULL COLLATE NOCASE,"
    " CodiceIndividuo TEXT NOT NULL COLLATE NOCASE,"
    " PRIMARY KEY (CodiceFamiglia, CodiceIndividuo)) WITHOUT ROWID",
    "CREATE INDEX FamiglieGenitoriIndividuo ON FamiglieGenitori (CodiceIndividuo)",

    "CREATE TABLE Eventi (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,"
    " IdProprietario TEXT COLLATE NOCASE, Tipo INTEGER, Data TEXT, Ora TEXT, Luogo TEXT,"
    " Indirizzo TEXT, Causa TEXT, Valore TEXT, Modifica TEXT)",
    "CREATE INDEX EventiProprietario ON Eventi (IdProprietario, Tipo)",

    "CREATE TABLE Binari (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, Tipo INTEGER,"
    " IdProprietario TEXT COLLATE NOCASE, Nome TEXT, Campolungo)",
    "CREATE INDEX BinariProprietario ON Binari (IdProprietario)",

    "CREATE TABLE Luoghi (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,"
    " IdProprietario TEXT COLLATE NOCASE, Indirizzo1 TEXT, Indirizzo2 TEXT, Indirizzo3 TEXT,"
    " \"Città\" TEXT, Stato TEXT, CodicePostale TEXT, Nazione TEXT, Modifica TEXT)",
    "CREATE INDEX LuoghiProprietario ON Luoghi (IdProprietario)",

    "CREATE TABLE Comunicazioni (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY,"
    " IdProprietario TEXT COLLATE NOCASE, Telefono TEXT, Cellulare TEXT, Fax TEXT,"
    " \"E-mail\" TEXT, PaginaWeb TEXT, Altro1 TEXT, Altro2 TEXT, Modifica TEXT)",
    "CREATE INDEX ComunicazioniProprietario ON Comunicazioni (IdProprietario)",

    "CREATE TABLE Operatori (Codice TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, Nome TEXT,"
    " Cognome TEXT, Password TEXT, Tipo INTEGER, Modifica TEXT)",

    "CREATE TABLE OperatoriContesti (CodiceOperatore TEXT NOT NULL COLLATE NOCASE,"
    " CodiceContesto TEXT NOT NULL COLLATE NOCASE,"
    " PRIMARY KEY (CodiceOperatore, CodiceContesto)) WITHOUT ROWID",
    "CREATE INDEX OperatoriContestiContesto ON OperatoriContesti (CodiceContesto)",

    "CREATE TABLE Traduzioni (Codice INTEGER PRIMARY KEY, Tipo INTEGER NOT NULL, L1 TEXT)",
};

// La prima versione non viene da nessun'altra; chi ne fa una nuova aggiunge qui il suo passaggio.
constexpr std::span<const Passaggio> passaggi;

} // namespace

const QStringList &tabelleConCodice()
{
    static const QStringList nomi{QStringLiteral("Archivi"),       QStringLiteral("Registri"),
                                  QStringLiteral("Voci"),          QStringLiteral("Individui"),
                                  QStringLiteral("Famiglie"),      QStringLiteral("Eventi"),
                                  QStringLiteral("Binari"),        QStringLiteral("Luoghi"),
                                  QStringLiteral("Comunicazioni"), QStringLiteral("Operatori")};
    return nomi;
}

const QStringList &tabelle()
{
    static const QStringList nomi =
        tabelleConCodice() +
        QStringList{QStringLiteral("FamiglieConiugi"), QStringLiteral("FamiglieGenitori"),
                    QStringLiteral("OperatoriContesti"), QStringLiteral("Traduzioni")};
    return nomi;
}

QString tabellaDiCodice(const QString &codice)
{
    for (const QString &tabella : tabelleConCodice()) {
        if (codice.startsWith(tabella.front(), Qt::CaseInsensitive))
            return tabella;
    }
    return {};
}

void creaSchema(ado::Connection &connessione)
{
    ado::Transazione transazione(connessione);
    for (const char *istruzione : istruzioni)
        connessione.Execute({QString::fromUtf8(istruzione), {}, {}});
    // Il numero più alto di una tabella è così una ricerca nell'indice, non una lettura intera.
    for (const QString &tabella : tabelleConCodice()) {
        // In una tabella con indici di espressioni il motore non scrive un campo a pezzi, e i file
        // si scrivono così: per loro si legge l'indice dei codici.
        if (tabella == QStringLiteral("Binari"))
            continue;
        connessione.Execute({QStringLiteral("CREATE INDEX %1Numero ON %1 "
                                            "(CAST(substr(Codice, 2) AS INTEGER))")
                                 .arg(tabella),
                             {},
                             {}});
    }
    creaSorveglianza(connessione);
    ado::proteggi(connessione, passwordArchivi);
    riempiTraduzioni(connessione);
    connessione.Execute({QStringLiteral("PRAGMA user_version = %1").arg(versioneSchema), {}, {}});
    transazione.conferma();
}

void verificaSchema(ado::Connection &connessione)
{
    portaAllaVersione(connessione, passaggi, versioneSchema);
    verificaTabelle(connessione);
}

void verificaTabelle(ado::Connection &connessione)
{
    for (const QString &tabella : tabelle()) {
        const QVariant presente = connessione.valore(
            {QStringLiteral("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?"),
             {tabella},
             {}});
        if (!presente.isValid())
            throw ado::Errore(ado::Causa::NonArchivio,
                              QStringLiteral("nel file manca la tabella %1").arg(tabella));
    }
}

} // namespace modTarvola
