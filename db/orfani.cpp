#include "db/orfani.h"

#include "db/schema.h"

namespace modTarvola
{

namespace
{

// Chi può essere proprietario di che cosa: la tabella, la colonna, le tabelle dei proprietari.
struct Appartenenza {
    const char *tabella;
    const char *colonna;
    const char *proprietari;
};

const char *const noveTabelle = "Archivi Registri Voci Individui Famiglie Eventi Luoghi "
                                "Comunicazioni Operatori";

const Appartenenza appartenenze[] = {
    {"Individui", "Voce", "Voci"},
    {"Famiglie", "Voce", "Voci"},
    {"FamiglieConiugi", "CodiceFamiglia", "Famiglie"},
    {"FamiglieConiugi", "CodiceIndividuo", "Individui"},
    {"FamiglieGenitori", "CodiceFamiglia", "Famiglie"},
    {"FamiglieGenitori", "CodiceIndividuo", "Individui"},
    {"Eventi", "IdProprietario", "Individui Famiglie"},
    {"OperatoriContesti", "CodiceContesto", noveTabelle},
    {"Luoghi", "IdProprietario", "Operatori Archivi"},
    {"Comunicazioni", "IdProprietario", "Operatori Archivi"},
    {"Binari", "IdProprietario", noveTabelle},
};

// "NOT EXISTS (…) AND NOT EXISTS (…)": il codice non è di nessuna delle tabelle.
QString scomparso(const QString &codice, const char *proprietari)
{
    QStringList condizioni;
    const auto nomi = QString::fromUtf8(proprietari).split(u' ');
    for (const QString &nome : nomi)
        condizioni.append(
            QStringLiteral("NOT EXISTS (SELECT 1 FROM %1 WHERE %1.Codice = %2)").arg(nome, codice));
    return condizioni.join(QStringLiteral(" AND "));
}

// Le colonne con cui una riga si ritrova: il codice, o la coppia delle tabelle di legame.
QString identita(const QString &tabella, const QString &riga)
{
    if (tabella == QStringLiteral("OperatoriContesti"))
        return QStringLiteral("%1.CodiceOperatore, %1.CodiceContesto").arg(riga);
    if (tabella.startsWith(QStringLiteral("Famiglie")) && tabella != QStringLiteral("Famiglie"))
        return QStringLiteral("%1.CodiceFamiglia, %1.CodiceIndividuo").arg(riga);
    return QStringLiteral("%1.Codice, ''").arg(riga);
}

void esegue(ado::Connection &connessione, const QString &istruzione)
{
    connessione.Execute({istruzione, {}, {}});
}

void sorvegliaProprietari(ado::Connection &connessione)
{
    for (const QString &tabella : tabelleConCodice()) {
        if (tabella == QStringLiteral("Binari"))
            continue;
        const QString annota =
            QStringLiteral("BEGIN INSERT OR IGNORE INTO Scomparsi VALUES ('%1', OLD.Codice); END")
                .arg(tabella);
        esegue(connessione,
               QStringLiteral("CREATE TRIGGER %1Eliminato AFTER DELETE ON %1 ").arg(tabella) +
                   annota);
        esegue(connessione, QStringLiteral("CREATE TRIGGER %1Rinominato AFTER UPDATE OF Codice ON "
                                           "%1 WHEN OLD.Codice <> NEW.Codice ")
                                    .arg(tabella) +
                                annota);
    }
}

void sorvegliaAppartenenze(ado::Connection &connessione)
{
    for (const Appartenenza &una : appartenenze) {
        const QString tabella = QString::fromUtf8(una.tabella);
        const QString colonna = QString::fromUtf8(una.colonna);
        const QString seManca =
            QStringLiteral("WHEN %1 BEGIN INSERT OR IGNORE INTO Orfani VALUES ('%2', %3); END")
                .arg(scomparso(QStringLiteral("NEW.") + colonna, una.proprietari), tabella,
                     identita(tabella, QStringLiteral("NEW")));
        esegue(connessione, QStringLiteral("CREATE TRIGGER %1%2Inserito AFTER INSERT ON %1 %3")
                                .arg(tabella, colonna, seManca));
        // Anche una riga che cambia il proprio codice va annotata da capo.
        const bool legame = !tabelleConCodice().contains(tabella);
        esegue(connessione,
               QStringLiteral("CREATE TRIGGER %1%2Cambiato AFTER UPDATE%4 ON %1 %3")
                   .arg(tabella, colonna, seManca,
                        legame ? QString() : QStringLiteral(" OF Codice, ") + colonna));
    }
}

// Una famiglia senza membri o un operatore senza collegamenti non ha nessuno che la tenga.
void sorvegliaSolitari(ado::Connection &connessione)
{
    for (const auto &[tabella, segno] : {std::pair{"Famiglie", "Vuote"}, {"Operatori", "Soli"}}) {
        for (const char *quando : {"INSERT", "UPDATE OF Codice"}) {
            esegue(connessione,
                   QStringLiteral("CREATE TRIGGER %1%2%4 AFTER %3 ON %1 BEGIN "
                                  "INSERT OR IGNORE INTO Orfani VALUES ('%2', NEW.Codice, ''); END")
                       .arg(QString::fromUtf8(tabella), QString::fromUtf8(segno),
                            QString::fromUtf8(quando), QString::fromUtf8(quando).left(6)));
        }
    }
    const char *const legami[][3] = {{"FamiglieConiugi", "CodiceFamiglia", "Vuote"},
                                     {"FamiglieGenitori", "CodiceFamiglia", "Vuote"},
                                     {"OperatoriContesti", "CodiceOperatore", "Soli"}};
    for (const auto &legame : legami) {
        const QString tabella = QString::fromUtf8(legame[0]);
        const QString colonna = QString::fromUtf8(legame[1]);
        const QString segno = QString::fromUtf8(legame[2]);
        esegue(connessione,
               QStringLiteral("CREATE TRIGGER %1Legato AFTER INSERT ON %1 BEGIN DELETE FROM Orfani "
                              "WHERE Tabella = '%3' AND Codice = NEW.%2 AND Altro = ''; END")
                   .arg(tabella, colonna, segno));
        for (const char *quando : {"DELETE", "UPDATE"}) {
            esegue(connessione,
                   QStringLiteral("CREATE TRIGGER %1Sciolto%4 AFTER %4 ON %1 WHEN NOT EXISTS "
                                  "(SELECT 1 FROM %1 WHERE %2 = OLD.%2) BEGIN "
                                  "INSERT OR IGNORE INTO Orfani VALUES ('%3', OLD.%2, ''); END")
                       .arg(tabella, colonna, segno, QString::fromUtf8(quando)));
        }
    }
}

} // namespace

void creaSorveglianza(ado::Connection &connessione)
{
    esegue(connessione, QStringLiteral("CREATE TABLE Scomparsi (Tabella TEXT NOT NULL, Codice TEXT "
                                       "NOT NULL COLLATE NOCASE, PRIMARY KEY (Tabella, Codice)) "
                                       "WITHOUT ROWID"));
    esegue(connessione,
           QStringLiteral("CREATE TABLE Orfani (Tabella TEXT NOT NULL, Codice TEXT NOT "
                          "NULL COLLATE NOCASE, Altro TEXT NOT NULL COLLATE NOCASE, "
                          "PRIMARY KEY (Tabella, Codice, Altro)) WITHOUT ROWID"));
    sorvegliaProprietari(connessione);
    sorvegliaAppartenenze(connessione);
    sorvegliaSolitari(connessione);
}

void annotaTutto(ado::Connection &connessione)
{
    for (const Appartenenza &una : appartenenze) {
        const QString tabella = QString::fromUtf8(una.tabella);
        esegue(connessione, QStringLiteral("INSERT OR IGNORE INTO Orfani SELECT '%1', %2 FROM %1 "
                                           "WHERE %3")
                                .arg(tabella, identita(tabella, tabella),
                                     scomparso(tabella + u'.' + QString::fromUtf8(una.colonna),
                                               una.proprietari)));
    }
    esegue(connessione,
           QStringLiteral("INSERT OR IGNORE INTO Orfani SELECT 'Vuote', Codice, '' FROM Famiglie "
                          "WHERE NOT EXISTS (SELECT 1 FROM FamiglieConiugi WHERE "
                          "CodiceFamiglia = Famiglie.Codice) AND NOT EXISTS (SELECT 1 FROM "
                          "FamiglieGenitori WHERE CodiceFamiglia = Famiglie.Codice)"));
    esegue(connessione,
           QStringLiteral("INSERT OR IGNORE INTO Orfani SELECT 'Soli', Codice, '' FROM Operatori "
                          "WHERE NOT EXISTS (SELECT 1 FROM OperatoriContesti WHERE "
                          "CodiceOperatore = Operatori.Codice)"));
}

} // namespace modTarvola
