#include "db/storia/storia.h"

#include "db/schema/passi.h"
#include "db/schema/schema.h"

namespace modTarvola::storia
{

namespace
{

qint64 numero(ado::Connection &connessione, const QString &istruzione)
{
    return connessione.valore({istruzione, {}, {}}).toLongLong();
}

QList<Passo> passi(ado::Connection &connessione, const QString &quali)
{
    QList<Passo> trovati;
    if (!presente(connessione))
        return trovati;
    connessione.leggi(
        {QStringLiteral("SELECT Numero, Quando, Nome, Verso FROM Storia ") + quali, {}, {}},
        [&trovati](const ado::Riga &riga) {
            trovati.append({riga.intero(0), QDateTime::fromString(riga.testo(1), Qt::ISODate),
                            riga.testo(2), riga.intero(3) != 0});
            return true;
        });
    return trovati;
}

std::optional<Passo> uno(const QList<Passo> &trovati)
{
    return trovati.isEmpty() ? std::nullopt : std::make_optional(trovati.constFirst());
}

} // namespace

Limiti &limiti()
{
    static Limiti soli;
    return soli;
}

bool presente(ado::Connection &connessione)
{
    return connessione
        .valore({QStringLiteral("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND "
                                "name = 'StoriaContenuti'"),
                 {},
                 {}})
        .isValid();
}

QList<Passo> elenco(ado::Connection &connessione)
{
    return passi(connessione, QStringLiteral("ORDER BY Numero DESC"));
}

std::optional<Passo> daAnnullare(ado::Connection &connessione)
{
    return uno(passi(connessione, QStringLiteral("WHERE Verso = 0 ORDER BY Numero DESC LIMIT 1")));
}

std::optional<Passo> daRipetere(ado::Connection &connessione)
{
    // Gli annullati sono gli ultimi: si guardano dal fondo, e di solito non ce ne sono.
    const auto annullati = passi(
        connessione, QStringLiteral("WHERE Numero > coalesce((SELECT Numero FROM Storia WHERE "
                                    "Verso = 0 ORDER BY Numero DESC LIMIT 1), -1) "
                                    "ORDER BY Numero LIMIT 1"));
    return uno(annullati);
}

qint64 peso(ado::Connection &connessione)
{
    return presente(connessione)
               ? numero(connessione, QStringLiteral("SELECT coalesce(sum(Peso), 0) FROM Storia"))
               : 0;
}

QStringList tavole()
{
    QStringList nomi;
    for (const char *tavola : passi::tavole)
        nomi.append(QString::fromUtf8(tavola));
    return nomi;
}

void svuota(ado::Connection &connessione)
{
    if (!presente(connessione))
        return;
    ado::Transazione transazione(connessione);
    for (const QString &tavola : tavole())
        connessione.Execute({QStringLiteral("DELETE FROM ") + tavola, {}, {}});
    transazione.conferma();
}

void toglieDallaCopia(ado::Connection &copia, const provvisorio::Passo &passo)
{
    if (!presente(copia))
        return;
    const ado::Sorveglianza sorveglianza(copia, [&passo] { return passo(1, 1); });
    {
        ado::Transazione transazione(copia);
        for (const QString &tavola : tavole())
            copia.Execute({QStringLiteral("DROP TABLE ") + tavola, {}, {}});
        segnaVersione(copia);
        transazione.conferma();
    }
    // Di solito la storia è una piccola parte del file, in fondo: riscriverlo costa più che
    // tenerla.
    constexpr qint64 poco = 20;
    if (numero(copia, QStringLiteral("PRAGMA freelist_count")) * poco >
        numero(copia, QStringLiteral("PRAGMA page_count")))
        copia.Execute({QStringLiteral("VACUUM"), {}, {}});
}

} // namespace modTarvola::storia
