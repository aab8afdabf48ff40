#include "db/schema/schema.h"

#include "db/schema/fiducia.h"
#include "db/schema/modello.h"
#include "db/schema/orfani.h"
#include "db/schema/passi.h"
#include "db/schema/protezione.h"
#include "db/schema/tabelle.h"
#include "db/schema/versioni.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

using catalogo::Colonna;
using catalogo::Forma;
using catalogo::Specie;
using catalogo::Tabella;

// I codici si confrontano senza badare alle maiuscole; sono lettere e cifre ASCII.
QString tipoDi(const Colonna &colonna)
{
    switch (colonna.specie) {
    case Specie::Codice:
        return colonna.obbligatoria ? QStringLiteral(" TEXT NOT NULL COLLATE NOCASE")
                                    : QStringLiteral(" TEXT COLLATE NOCASE");
    case Specie::Numero:
        return colonna.obbligatoria ? QStringLiteral(" INTEGER NOT NULL")
                                    : QStringLiteral(" INTEGER");
    case Specie::Lungo:
        return {};
    default:
        return colonna.predefinito.isEmpty()
                   ? QStringLiteral(" TEXT")
                   : QStringLiteral(" TEXT DEFAULT (%1)").arg(colonna.predefinito);
    }
}

QString creazione(const Tabella &tabella)
{
    QStringList colonne;
    for (const Colonna &colonna : tabella.colonne) {
        const bool chiave = tabella.forma != Forma::Coppie && colonne.isEmpty();
        colonne.append(catalogo::citata(colonna.nome) + tipoDi(colonna) +
                       (chiave ? QStringLiteral(" PRIMARY KEY") : QString()));
    }
    // Le coppie non hanno altro che la chiave: stanno nel suo albero, senza un secondo.
    if (tabella.forma == Forma::Coppie)
        colonne.append(QStringLiteral("PRIMARY KEY (%1, %2)")
                           .arg(tabella.colonne[0].nome, tabella.colonne[1].nome));
    return QStringLiteral("CREATE TABLE %1 (%2)%3")
        .arg(tabella.nome, colonne.join(QStringLiteral(", ")),
             tabella.forma == Forma::Coppie ? QStringLiteral(" WITHOUT ROWID") : QString());
}

// L'indice per cui dal proprietario si scende a ciò che è suo.
QString indiceDi(const Tabella &tabella, const Colonna &colonna)
{
    QString nome = colonna.nome.toString();
    for (const QString &prefisso : {QStringLiteral("Codice"), QStringLiteral("Id")}) {
        if (nome.startsWith(prefisso))
            nome.remove(0, prefisso.size());
    }
    QStringList colonne{colonna.nome.toString()};
    if (!colonna.accanto.isEmpty())
        colonne.append(colonna.accanto.toString());
    return QStringLiteral("CREATE INDEX %1%2 ON %1 (%3)")
        .arg(tabella.nome, nome, colonne.join(QStringLiteral(", ")));
}

// Il numero più alto di una tabella è così una ricerca nell'indice, non una lettura intera.
QString indiceDeiNumeri(const Tabella &tabella)
{
    return QStringLiteral("CREATE INDEX %1Numero ON %1 (CAST(substr(Codice, 2) AS INTEGER))")
        .arg(tabella.nome);
}

QStringList istruzioni()
{
    QStringList testi;
    for (const Tabella &tabella : catalogo::tutte()) {
        testi.append(creazione(tabella));
        for (const Colonna &colonna : tabella.colonne) {
            // Per la prima colonna di una coppia basta la chiave.
            const bool prima = &colonna == tabella.colonne.data();
            if (colonna.specie == Specie::Codice && !prima)
                testi.append(indiceDi(tabella, colonna));
        }
    }
    for (const Tabella &tabella : catalogo::tutte()) {
        // In una tabella con indici di espressioni il motore non scrive un campo a pezzi, e i file
        // si scrivono così: per loro si legge l'indice dei codici.
        if (tabella.forma == Forma::Record && tabella.lunga() == nullptr)
            testi.append(indiceDeiNumeri(tabella));
    }
    return testi + istruzioniDiSorveglianza();
}

QStringList nomiDi(Forma forma)
{
    QStringList nomi;
    for (const Tabella &tabella : catalogo::tutte()) {
        if (tabella.forma == forma)
            nomi.append(tabella.nome.toString());
    }
    return nomi;
}

// La prima versione non viene da nessun'altra; chi ne fa una nuova aggiunge qui il suo passaggio.
constexpr std::span<const Passaggio> passaggi;

// Le tabelle che il programma tiene accanto alle quattordici e crea quando servono, con i loro
// indici, lettera per lettera come lo schema le riporta. Qui resta anche ciò che una versione
// precedente scriveva e questa non più.
constexpr const char *accanto[] = {
    "CREATE TABLE ProposteTolte (Dove TEXT NOT NULL, Testo TEXT NOT NULL, PRIMARY KEY (Dove, "
    "Testo)) WITHOUT ROWID",
    "CREATE TABLE Abbreviazioni (Breve TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, Testo TEXT NOT "
    "NULL)",
    "CREATE TABLE CampiPagina (Posto TEXT NOT NULL, Campo TEXT NOT NULL, Evento INTEGER NOT NULL, "
    "Registro TEXT NOT NULL COLLATE NOCASE, Uso INTEGER NOT NULL, PRIMARY KEY (Registro, Posto, "
    "Campo, Evento))",
};

// L'istruzione che la crea; nulla se non è di quelle accanto.
QString creazioneAccanto(const QString &tabella)
{
    for (const char *testo : accanto) {
        const QString istruzione = QString::fromUtf8(testo);
        if (istruzione.section(u' ', 2, 2) == tabella)
            return istruzione;
    }
    return {};
}

} // namespace

bool haTabella(ado::Connection &connessione, const QString &tabella)
{
    return connessione
        .valore({QStringLiteral("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?"),
                 {tabella},
                 {}})
        .isValid();
}

void creaAccanto(ado::Connection &connessione, const QString &tabella)
{
    if (haTabella(connessione, tabella))
        return;
    connessione.Execute({creazioneAccanto(tabella), {}, {}});
    segnaVersione(connessione);
}

void segnaVersione(ado::Connection &connessione)
{
    const auto presente = [&connessione](const QString &tabella) {
        return haTabella(connessione, tabella);
    };
    const QStringList &nostre = tabelleAccanto();
    const bool qualcuna = std::any_of(nostre.begin(), nostre.end(), presente) ||
                          std::any_of(std::begin(passi::tavole), std::end(passi::tavole),
                                      [&presente](const char *tavola) {
                                          return presente(QString::fromUtf8(tavola));
                                      });
    const int sua = qualcuna ? versioneConAccanto : versioneSchema;
    if (versioneDi(connessione) != sua)
        connessione.Execute({QStringLiteral("PRAGMA user_version = %1").arg(sua), {}, {}});
}

const QStringList &tabelleAccanto()
{
    static const QStringList nomi = [] {
        QStringList tutti;
        for (const char *testo : accanto)
            tutti.append(QString::fromUtf8(testo).section(u' ', 2, 2));
        return tutti;
    }();
    return nomi;
}

QStringList istruzioniNote()
{
    QStringList testi =
        istruzioni() + QStringList{istruzioneDiProtezione, QString::fromUtf8(passi::creaStoria),
                                   QString::fromUtf8(passi::creaContenuti)};
    for (const char *testo : accanto)
        testi.append(QString::fromUtf8(testo));
    for (const Passaggio &passaggio : passaggi) {
        for (const char *testo : passaggio.istruzioni)
            testi.append(QString::fromUtf8(testo));
    }
    return testi;
}

const QStringList &tabelleConCodice()
{
    static const QStringList nomi = nomiDi(Forma::Record);
    return nomi;
}

const QStringList &tabelle()
{
    static const QStringList nomi =
        nomiDi(Forma::Record) + nomiDi(Forma::Coppie) + nomiDi(Forma::Generi);
    return nomi;
}

QString tabellaDiCodice(const QString &codice)
{
    const Tabella *sua = catalogo::diCodice(codice);
    return sua == nullptr ? QString() : sua->nome.toString();
}

void creaSchema(ado::Connection &connessione)
{
    ado::Transazione transazione(connessione);
    for (const QString &istruzione : istruzioni())
        connessione.Execute({istruzione, {}, {}});
    proteggi(connessione, passwordArchivi);
    riempiTraduzioni(connessione);
    connessione.Execute({QStringLiteral("PRAGMA user_version = %1").arg(versioneSchema), {}, {}});
    transazione.conferma();
}

void verificaSchema(ado::Connection &connessione)
{
    rifiutaPiuNuovo(connessione, versioneConAccanto);
    verificaSchemaEstraneo(connessione, istruzioniNote());
    if (versioneDi(connessione) < versioneSchema)
        portaAllaVersione(connessione, passaggi, versioneSchema);
    verificaTabelle(connessione);
}

void verificaTabelle(ado::Connection &connessione)
{
    for (const QString &tabella : tabelle()) {
        if (!haTabella(connessione, tabella))
            throw ado::Errore(ado::Causa::NonArchivio,
                              QStringLiteral("nel file manca la tabella %1").arg(tabella));
    }
}

} // namespace modTarvola
