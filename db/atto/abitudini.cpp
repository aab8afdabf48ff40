#include "db/atto/abitudini.h"

#include <QDate>

#include <algorithm>

namespace modTarvola
{

namespace
{

constexpr int ultimi = 20;
constexpr int abbastanza = 6;
// In dieci volte, nove.
constexpr int quasiTutte = 9;
constexpr int suTante = 10;
// Il battezzato, gli sposi, il defunto.
constexpr int primoPrincipale = 1;
constexpr int ultimoPrincipale = 4;

QDate giornoDi(const Campi &campi)
{
    return QDate::fromString(testoDi(campi, QStringLiteral("Data")).left(10), Qt::ISODate);
}

} // namespace

void Abitudini::impara(const Atto &atto)
{
    QMap<int, QDate> giorni{{dataDellAtto, giornoDi(atto.campi)}};
    const auto eventi = [&giorni](const QList<EventoDiAtto> &tutti) {
        for (const EventoDiAtto &uno : tutti) {
            if (!giorni.contains(uno.tipo))
                giorni.insert(uno.tipo, giornoDi(uno.campi));
        }
    };
    for (const PersonaDiAtto &una : atto.persone) {
        if (una.ruolo >= primoPrincipale && una.ruolo <= ultimoPrincipale)
            eventi(una.eventi);
    }
    for (const FamigliaDiAtto &una : atto.famiglie)
        eventi(una.eventi);
    for (const auto &[da, primo] : giorni.toStdMap()) {
        for (const auto &[a, secondo] : giorni.toStdMap()) {
            if (da == a || !primo.isValid() || !secondo.isValid())
                continue;
            QList<int> &sue = m_distanze[{da, a}];
            sue.append(static_cast<int>(primo.daysTo(secondo)));
            if (sue.size() > ultimi)
                sue.removeFirst();
        }
    }
}

std::optional<int> Abitudini::distanza(int da, int a) const
{
    const QList<int> sue = m_distanze.value({da, a});
    if (sue.size() < abbastanza)
        return {};
    for (const int una : sue) {
        if (sue.count(una) * suTante >= sue.size() * quasiTutte)
            return una;
    }
    return {};
}

} // namespace modTarvola
