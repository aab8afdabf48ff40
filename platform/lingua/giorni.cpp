#include "platform/lingua/giorni.h"

#include "platform/lingua/italiano.h"

#include <QDate>
#include <QRegularExpression>

namespace italiano
{

namespace
{

std::optional<QString> iso(const QDate &giorno)
{
    if (!giorno.isValid() || giorno.year() < 100 || giorno.year() > 9999)
        return {};
    return giorno.toString(Qt::ISODate);
}

// Quanti giorni dal riferimento; niente se il testo non ne dice.
std::optional<int> distanza(const QString &testo)
{
    if (testo.compare(u"ieri", Qt::CaseInsensitive) == 0)
        return -1;
    if (testo.compare(u"oggi", Qt::CaseInsensitive) == 0)
        return 0;
    if (testo.compare(u"domani", Qt::CaseInsensitive) == 0)
        return 1;
    static const QRegularExpression passi(QStringLiteral("^[+-]\\d{1,4}$"));
    if (passi.match(testo).hasMatch())
        return testo.toInt();
    return {};
}

} // namespace

std::optional<QString> leggiGiorno(QStringView testo, QStringView riferimento)
{
    const QDate base = QDate::fromString(riferimento.left(10).toString(), Qt::ISODate);
    const QString scritto = testo.trimmed().toString();
    if (!base.isValid())
        return leggiData(testo);
    if (const auto giorni = distanza(scritto))
        return iso(base.addDays(*giorni));
    static const QRegularExpression breve(QStringLiteral("^(\\d{1,2})(?:[ ./-](\\d{1,2}))?$"));
    const auto trovato = breve.match(scritto);
    if (!trovato.hasMatch())
        return leggiData(testo);
    const int mese = trovato.captured(2).isEmpty() ? base.month() : trovato.captured(2).toInt();
    return iso(QDate(base.year(), mese, trovato.captured(1).toInt()));
}

} // namespace italiano
