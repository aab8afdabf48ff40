#include "contesto/bozza.h"

#include <QJsonArray>

#include <algorithm>

namespace bozze
{

namespace
{

const QString chiaveQuando = QStringLiteral("quando");
const QString chiaveFinestre = QStringLiteral("finestre");
const QString chiaveNome = QStringLiteral("nome");
const QString chiaveTitolo = QStringLiteral("titolo");
const QString chiaveCome = QStringLiteral("come");
const QString chiaveRecord = QStringLiteral("record");
const QString chiaveVia = QStringLiteral("via");
const QString chiaveCaselle = QStringLiteral("caselle");
const QString chiaveEtichetta = QStringLiteral("etichetta");
const QString chiaveTesto = QStringLiteral("testo");
const QString chiavePrima = QStringLiteral("prima");

QJsonObject inJson(const Finestra &finestra)
{
    QJsonArray caselle;
    for (const Scritta &una : finestra.caselle)
        caselle.append(QJsonObject{{chiaveNome, una.nome},
                                   {chiaveEtichetta, una.etichetta},
                                   {chiaveTesto, una.testo},
                                   {chiavePrima, una.prima}});
    return {{chiaveNome, finestra.nome}, {chiaveTitolo, finestra.titolo},
            {chiaveCome, finestra.come}, {chiaveRecord, finestra.record},
            {chiaveVia, finestra.via},   {chiaveCaselle, caselle}};
}

Finestra finestraDa(const QJsonObject &oggetto)
{
    Finestra finestra{oggetto.value(chiaveNome).toString(), oggetto.value(chiaveTitolo).toString(),
                      oggetto.value(chiaveCome).toObject(), oggetto.value(chiaveRecord).toString(),
                      oggetto.value(chiaveVia).toString(),  {}};
    const QJsonArray caselle = oggetto.value(chiaveCaselle).toArray();
    for (const auto &una : caselle) {
        const QJsonObject sua = una.toObject();
        finestra.caselle.append(
            {sua.value(chiaveNome).toString(), sua.value(chiaveEtichetta).toString(),
             sua.value(chiaveTesto).toString(), sua.value(chiavePrima).toString()});
    }
    return finestra;
}

} // namespace

bool Bozza::scritta() const
{
    return std::any_of(finestre.begin(), finestre.end(),
                       [](const Finestra &una) { return !una.caselle.isEmpty(); });
}

QString Bozza::dove() const
{
    QStringList nomi;
    for (const Finestra &una : finestre)
        nomi.append(una.titolo);
    return nomi.join(QStringLiteral(" › "));
}

QString Bozza::che() const
{
    constexpr qsizetype lungo = 60;
    QStringList testi;
    for (const Finestra &una : finestre) {
        for (const Scritta &casella : una.caselle) {
            const QString testo = casella.testo.left(2 * lungo).simplified();
            if (!testo.isEmpty())
                testi.append(testo);
        }
    }
    const QString tutto = testi.join(QStringLiteral(", "));
    return tutto.size() <= lungo ? tutto : tutto.left(lungo - 1) + u'…';
}

QJsonObject inJson(const Bozza &bozza)
{
    QJsonArray finestre;
    for (const Finestra &una : bozza.finestre)
        finestre.append(inJson(una));
    return {{chiaveQuando, bozza.quando.toString(Qt::ISODate)}, {chiaveFinestre, finestre}};
}

std::optional<Bozza> daJson(const QJsonObject &oggetto)
{
    Bozza bozza{QDateTime::fromString(oggetto.value(chiaveQuando).toString(), Qt::ISODate), {}};
    const QJsonArray finestre = oggetto.value(chiaveFinestre).toArray();
    for (const auto &una : finestre)
        bozza.finestre.append(finestraDa(una.toObject()));
    if (!bozza.quando.isValid() || !bozza.scritta())
        return {};
    return bozza;
}

} // namespace bozze
