#include "db/lavoro/codici.h"

#include "db/schema/schema.h"
#include "db/schema/tabelle.h"

#include <limits>

namespace modTarvola
{

QString numeroRiservato(const QString &tabella)
{
    return QStringLiteral("numero ") + tabella;
}

QString NuovoCodice(ado::Connection &connessione, const QString &tabella)
{
    // In un archivio riparato i numeri ripartono sopra quelli che le righe salvate nominano ancora.
    const QVariant massimo = connessione.valore(
        {QStringLiteral("SELECT max(coalesce((SELECT max(CAST(substr(Codice, 2) AS INTEGER)) "
                        "FROM %1), 0), coalesce((SELECT CAST(Valore AS INTEGER) FROM Protezione "
                        "WHERE Nome = ?), 0))")
             .arg(tabella),
         {numeroRiservato(tabella)},
         {}});
    // I codici sono interi lunghi: oltre, gli altri lettori del formato non li capirebbero.
    if (massimo.toLongLong() >= std::numeric_limits<qint32>::max())
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("i codici della tabella %1 sono esauriti").arg(tabella));
    return tabella.front() + QString::number(massimo.toLongLong() + 1);
}

void CollegaOperatore(ado::Connection &connessione, const QString &operatore, const QString &record)
{
    if (operatore.isEmpty())
        return;
    connessione.Execute({QStringLiteral("INSERT OR IGNORE INTO OperatoriContesti "
                                        "(CodiceOperatore, CodiceContesto) VALUES (?, ?)"),
                         {operatore, record},
                         {}});
}

int TipoRegistroDiVoce(ado::Connection &connessione, const QString &voce)
{
    return connessione
        .valore({QStringLiteral("SELECT Registri.Tipo FROM Registri INNER JOIN Voci "
                                "ON Registri.Codice = Voci.Registro WHERE Voci.Codice = ?"),
                 {voce},
                 {}})
        .toInt();
}

int TipoRegistro(ado::Connection &connessione, const QString &registro)
{
    return connessione
        .valore({QStringLiteral("SELECT Tipo FROM Registri WHERE Codice = ?"), {registro}, {}})
        .toInt();
}

int GenereDi(ado::Connection &connessione, const QString &codice)
{
    const catalogo::Tabella *tabella = catalogo::diCodice(codice);
    if (tabella == nullptr)
        return 0;
    const QString colonna =
        tabella->colonna(u"Tipo") != nullptr ? QStringLiteral("Tipo") : QStringLiteral("Ruolo");
    if (tabella->colonna(colonna) == nullptr)
        return 0;
    return connessione
        .valore({QStringLiteral("SELECT %1 FROM %2 WHERE Codice = ?")
                     .arg(colonna, tabella->nome.toString()),
                 {codice},
                 {}})
        .toInt();
}

QString EtichettaTraduzione(ado::Connection &connessione, const QString &colonna, int genere)
{
    return connessione
        .valore({QStringLiteral("SELECT %1 FROM Traduzioni WHERE Codice = ?").arg(colonna),
                 {genere},
                 {}})
        .toString();
}

bool esiste(ado::Connection &connessione, const QString &codice)
{
    const QString tabella = tabellaDiCodice(codice);
    return !tabella.isEmpty() &&
           connessione
               .valore(
                   {QStringLiteral("SELECT 1 FROM %1 WHERE Codice = ?").arg(tabella), {codice}, {}})
               .isValid();
}

} // namespace modTarvola
