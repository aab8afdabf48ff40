#include "db/lavoro/regole.h"

#include "db/lavoro/operatori.h"
#include "db/schema/generi.h"
#include "db/schema/tabelle.h"

#include <QHash>

#include <algorithm>

namespace modTarvola
{

namespace
{

// Che cosa si dice di un record in cui nessuna colonna essenziale dice qualcosa.
QString senzaEssenziali(const QString &tabella)
{
    static const QHash<QString, QString> rifiuti{
        {QStringLiteral("Archivi"), QStringLiteral("Impossibile salvare un archivio senza nome")},
        {QStringLiteral("Registri"),
         QStringLiteral("Impossibile salvare un registro senza tipo e titolo")},
        {QStringLiteral("Voci"),
         QStringLiteral("Impossibile salvare una voce senza almeno un dettaglio")},
        {QStringLiteral("Individui"),
         QStringLiteral("Impossibile salvare un individuo senza un dettaglio del nome")},
        {QStringLiteral("Comunicazioni"), QStringLiteral("Inserire almeno una voce")},
        {QStringLiteral("Operatori"),
         QStringLiteral("Impossibile salvare i dati senza inserire il nome")},
    };
    return rifiuti.value(tabella);
}

QStringList essenzialiDi(const QString &tabella)
{
    QStringList colonne;
    for (const catalogo::Colonna &colonna : catalogo::tabella(tabella).colonne) {
        if (colonna.essenziale)
            colonne.append(colonna.nome.toString());
    }
    return colonne;
}

bool vuoto(const Record &record, const QString &colonna)
{
    return record.valori.value(colonna).toString().trimmed().isEmpty();
}

// Due trascrittori con lo stesso nome e la stessa password non si distinguerebbero più.
bool giaInUso(ado::Connection &connessione, const Record &record)
{
    return record.valori.value(QStringLiteral("Tipo")).toInt() != Contatto &&
           !OperatoreCon(connessione, record.valori.value(QStringLiteral("Nome")).toString(),
                         record.valori.value(QStringLiteral("Password")).toString(), record.codice)
                .isEmpty();
}

} // namespace

QString colonnaDelProprietario(const QString &tabella)
{
    for (const catalogo::Colonna &colonna : catalogo::tabella(tabella).colonne) {
        if (colonna.legame == catalogo::Legame::Contenuto ||
            colonna.legame == catalogo::Legame::Sostenuto)
            return colonna.nome.toString();
    }
    return {};
}

QStringList colonneConRegole(const QString &tabella)
{
    QStringList colonne = essenzialiDi(tabella);
    if (tabella == QStringLiteral("Operatori"))
        colonne += {QStringLiteral("Tipo"), QStringLiteral("Password")};
    return colonne;
}

QString rifiuto(ado::Connection &connessione, const Record &record)
{
    const QStringList colonne = essenzialiDi(record.tabella);
    if (colonne.isEmpty())
        return {};
    if (std::all_of(colonne.begin(), colonne.end(),
                    [&](const QString &colonna) { return vuoto(record, colonna); }))
        return senzaEssenziali(record.tabella);
    // Un registro già creato tiene il suo tipo, anche se non è detto.
    if (record.tabella == QStringLiteral("Registri") && record.codice.isEmpty() &&
        vuoto(record, QStringLiteral("Tipo")))
        return senzaEssenziali(record.tabella);
    if (record.tabella == QStringLiteral("Operatori") && giaInUso(connessione, record))
        return QStringLiteral("La password è già in uso");
    return {};
}

} // namespace modTarvola
