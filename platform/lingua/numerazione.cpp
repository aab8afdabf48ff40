#include "platform/lingua/numerazione.h"

#include <QRegularExpression>

namespace italiano
{

namespace
{

struct Cifra {
    int valore;
    const char *segno;
};

constexpr Cifra cifre[] = {{1000, "M"}, {900, "CM"}, {500, "D"}, {400, "CD"}, {100, "C"},
                           {90, "XC"},  {50, "L"},   {40, "XL"}, {10, "X"},   {9, "IX"},
                           {5, "V"},    {4, "IV"},   {1, "I"}};

} // namespace

QString romano(int numero)
{
    if (numero < 1 || numero > 3999)
        return {};
    QString scritto;
    for (const Cifra &cifra : cifre) {
        for (; numero >= cifra.valore; numero -= cifra.valore)
            scritto += QLatin1String(cifra.segno);
    }
    return scritto;
}

int daRomano(QStringView testo)
{
    const QString cercato = testo.toString().toUpper();
    QStringView resto(cercato);
    int numero = 0;
    for (const Cifra &cifra : cifre) {
        for (const QLatin1String segno(cifra.segno); resto.startsWith(segno);
             resto = resto.sliced(segno.size()))
            numero += cifra.valore;
    }
    // Solo la forma regolare: riscritto deve tornare uguale.
    return resto.isEmpty() && romano(numero) == cercato ? numero : 0;
}

QString numeroSeguente(const QString &numero)
{
    static const QRegularExpression aggiunta(QStringLiteral("\\s*\\b(bis|ter|quater)\\b\\.?"),
                                             QRegularExpression::CaseInsensitiveOption);
    QString nuovo = numero.trimmed();
    nuovo.remove(aggiunta);
    static const QRegularExpression cifreArabe(QStringLiteral("\\d{1,9}"));
    if (const auto trovato = cifreArabe.match(nuovo); trovato.hasMatch()) {
        const QString scritto = QString::number(trovato.captured().toLongLong() + 1)
                                    .rightJustified(trovato.captured().size(), u'0');
        return nuovo.replace(trovato.capturedStart(), trovato.capturedLength(), scritto);
    }
    static const QRegularExpression parola(QStringLiteral("\\b[IVXLCDMivxlcdm]+\\b"));
    for (auto trovati = parola.globalMatch(nuovo); trovati.hasNext();) {
        const auto trovato = trovati.next();
        const QString vecchio = trovato.captured();
        const QString scritto = romano(daRomano(vecchio) + (daRomano(vecchio) == 0 ? -1 : 1));
        if (scritto.isEmpty())
            continue;
        return nuovo.replace(trovato.capturedStart(), trovato.capturedLength(),
                             vecchio.front().isLower() ? scritto.toLower() : scritto);
    }
    return {};
}

} // namespace italiano
