#include "db/atto/proposte_tolte.h"

#include "db/lavoro/lavoro.h"
#include "db/schema/schema.h"

namespace modTarvola
{

namespace
{

const QString tabella = QStringLiteral("ProposteTolte");

} // namespace

QList<PropostaTolta> proposteTolte(ado::Connection &connessione)
{
    QList<PropostaTolta> tutte;
    if (!haTabella(connessione, tabella))
        return tutte;
    connessione.leggi(
        {QStringLiteral("SELECT Dove, Testo FROM ProposteTolte ORDER BY Dove, Testo"), {}, {}},
        [&tutte](const ado::Riga &riga) {
            tutte.append({riga.testo(0), riga.testo(1)});
            return true;
        });
    return tutte;
}

void toglieProposta(ado::Connection &connessione, const PropostaTolta &una)
{
    Lavoro lavoro(connessione, una.testo.isEmpty()
                                   ? QStringLiteral("Proposte spente in una casella")
                                   : QStringLiteral("Non proporre più %1").arg(una.testo));
    creaAccanto(connessione, tabella);
    connessione.Execute(
        {QStringLiteral("INSERT OR IGNORE INTO ProposteTolte (Dove, Testo) VALUES (?, ?)"),
         {una.dove, una.testo},
         {}});
    lavoro.conferma();
}

void rimetteProposta(ado::Connection &connessione, const PropostaTolta &una)
{
    if (!haTabella(connessione, tabella))
        return;
    Lavoro lavoro(connessione, una.testo.isEmpty()
                                   ? QStringLiteral("Proposte riaccese in una casella")
                                   : QStringLiteral("Proporre ancora %1").arg(una.testo));
    connessione.Execute({QStringLiteral("DELETE FROM ProposteTolte WHERE Dove = ? AND Testo = ?"),
                         {una.dove, una.testo},
                         {}});
    lavoro.conferma();
}

} // namespace modTarvola
