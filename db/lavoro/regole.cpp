#include "db/lavoro/regole.h"

#include "db/lavoro/operatori.h"
#include "db/schema/generi.h"
#include "db/schema/tabelle.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

// Almeno una delle colonne deve dire qualcosa.
struct Regola {
    const char *tabella;
    QStringList colonne;
    QString rifiuto;
};

const std::vector<Regola> &regole()
{
    static const std::vector<Regola> tutte{
        {"Archivi",
         {QStringLiteral("Nome")},
         QStringLiteral("Impossibile salvare un archivio senza nome")},
        {"Registri",
         {QStringLiteral("Titolo")},
         QStringLiteral("Impossibile salvare un registro senza tipo e titolo")},
        {"Voci",
         {QStringLiteral("Volume"), QStringLiteral("PaginaIniziale"), QStringLiteral("CodiceVoce")},
         QStringLiteral("Impossibile salvare una voce senza almeno un dettaglio")},
        {"Individui",
         {QStringLiteral("Precisazione"), QStringLiteral("Nome"), QStringLiteral("Soprannome"),
          QStringLiteral("Cognome"), QStringLiteral("Detto"), QStringLiteral("Età")},
         QStringLiteral("Impossibile salvare un individuo senza un dettaglio del nome")},
        {"Comunicazioni",
         {QStringLiteral("Telefono"), QStringLiteral("Cellulare"), QStringLiteral("Fax"),
          QStringLiteral("E-mail"), QStringLiteral("PaginaWeb"), QStringLiteral("Altro1"),
          QStringLiteral("Altro2")},
         QStringLiteral("Inserire almeno una voce")},
        {"Operatori",
         {QStringLiteral("Nome")},
         QStringLiteral("Impossibile salvare i dati senza inserire il nome")},
    };
    return tutte;
}

const Regola *regolaDi(const QString &tabella)
{
    const auto sua = std::find_if(regole().begin(), regole().end(), [&](const Regola &una) {
        return tabella == QLatin1String(una.tabella);
    });
    return sua == regole().end() ? nullptr : &*sua;
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
    const Regola *regola = regolaDi(tabella);
    QStringList colonne = regola == nullptr ? QStringList() : regola->colonne;
    if (tabella == QStringLiteral("Operatori"))
        colonne += {QStringLiteral("Tipo"), QStringLiteral("Password")};
    return colonne;
}

QString rifiuto(ado::Connection &connessione, const Record &record)
{
    const Regola *regola = regolaDi(record.tabella);
    if (regola == nullptr)
        return {};
    const auto &colonne = regola->colonne;
    if (std::all_of(colonne.begin(), colonne.end(),
                    [&](const QString &colonna) { return vuoto(record, colonna); }))
        return regola->rifiuto;
    // Un registro già creato tiene il suo tipo, anche se non è detto.
    if (record.tabella == QStringLiteral("Registri") && record.codice.isEmpty() &&
        vuoto(record, QStringLiteral("Tipo")))
        return regola->rifiuto;
    if (record.tabella == QStringLiteral("Operatori") && giaInUso(connessione, record))
        return QStringLiteral("La password è già in uso");
    return {};
}

} // namespace modTarvola
