#include "db/atto/abbreviazioni.h"

#include "db/lavoro/lavoro.h"
#include "db/schema/schema.h"

#include <QSet>

#include <algorithm>

namespace modTarvola
{

namespace
{

const QString tabella = QStringLiteral("Abbreviazioni");

} // namespace

QList<Abbreviazione> abbreviazioni(ado::Connection &connessione)
{
    QList<Abbreviazione> tutte;
    if (!haTabella(connessione, tabella))
        return tutte;
    connessione.leggi(
        {QStringLiteral("SELECT Breve, Testo FROM Abbreviazioni ORDER BY Breve"), {}, {}},
        [&tutte](const ado::Riga &riga) {
            tutte.append({riga.testo(0), riga.testo(1)});
            return true;
        });
    return tutte;
}

void scriveAbbreviazioni(ado::Connection &connessione, const QList<Abbreviazione> &tutte)
{
    if (tutte == abbreviazioni(connessione))
        return;
    Lavoro lavoro(connessione, QStringLiteral("Abbreviazioni"));
    creaAccanto(connessione, tabella);
    connessione.Execute({QStringLiteral("DELETE FROM Abbreviazioni"), {}, {}});
    for (const Abbreviazione &una : tutte)
        connessione.Execute(
            {QStringLiteral("INSERT INTO Abbreviazioni (Breve, Testo) VALUES (?, ?)"),
             {una.breve, una.testo},
             {}});
    lavoro.conferma();
}

QString rifiutoDi(const QList<Abbreviazione> &tutte, qsizetype &quale)
{
    QSet<QString> viste;
    for (quale = 0; quale < tutte.size(); ++quale) {
        const Abbreviazione &una = tutte.at(quale);
        if (una.breve.isEmpty())
            return QStringLiteral("Manca l'abbreviazione di \"%1\"").arg(una.testo);
        if (std::any_of(una.breve.begin(), una.breve.end(),
                        [](QChar lettera) { return !lettera.isLetterOrNumber(); }))
            return QStringLiteral("In un'abbreviazione stanno solo lettere e cifre: \"%1\"")
                .arg(una.breve);
        if (una.testo.trimmed().isEmpty())
            return QStringLiteral("Manca il testo di \"%1\"").arg(una.breve);
        if (viste.contains(una.breve.toCaseFolded()))
            return QStringLiteral("L'abbreviazione \"%1\" c'è due volte").arg(una.breve);
        viste.insert(una.breve.toCaseFolded());
    }
    return {};
}

QString distesa(const QList<Abbreviazione> &tutte, const QString &parola)
{
    const auto sua = std::find_if(tutte.begin(), tutte.end(), [&](const Abbreviazione &una) {
        return una.breve.compare(parola, Qt::CaseInsensitive) == 0;
    });
    if (sua == tutte.end() || parola.isEmpty())
        return {};
    QString testo = sua->testo;
    if (parola.front().isUpper() && sua->breve.front().isLower())
        testo.front() = testo.front().toUpper();
    return testo;
}

} // namespace modTarvola
