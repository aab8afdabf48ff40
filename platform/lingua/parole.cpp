#include "platform/lingua/parole.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

namespace parole
{

namespace
{

bool diParola(char32_t carattere)
{
    return QChar::isLetterOrNumber(carattere) || QChar::isMark(carattere);
}

// Il carattere che comincia lì, coppie di surrogati comprese.
char32_t carattere(QStringView testo, qsizetype posto)
{
    const QChar primo = testo.at(posto);
    if (primo.isHighSurrogate() && posto + 1 < testo.size() && testo.at(posto + 1).isLowSurrogate())
        return QChar::surrogateToUcs4(primo, testo.at(posto + 1));
    return primo.unicode();
}

qsizetype finePezzo(QStringView testo, qsizetype posto)
{
    while (posto < testo.size() && diParola(carattere(testo, posto)))
        posto += QChar::requiresSurrogates(carattere(testo, posto)) ? 2 : 1;
    return posto;
}

bool eNumeroRomano(QStringView parola)
{
    static const QRegularExpression forma(
        QStringLiteral("^M{0,4}(CM|CD|D?C{0,4})(XC|XL|L?X{0,4})(IX|IV|V?I{0,4})$"));
    return forma.match(parola.toString()).hasMatch();
}

bool daControllare(QStringView parola)
{
    qsizetype lettere = 0;
    for (const QChar c : parola) {
        if (c.isNumber())
            return false;
        lettere += c.isLetter() || c.isSurrogate() ? 1 : 0;
    }
    return lettere > 1 && !eNumeroRomano(parola);
}

} // namespace

bool eApostrofo(QChar carattere)
{
    return carattere == u'\'' || carattere == u'\u2019';
}

std::optional<Parola> prossima(QStringView testo, qsizetype da)
{
    for (qsizetype posto = da; posto < testo.size();) {
        qsizetype fine = finePezzo(testo, posto);
        if (fine == posto) {
            ++posto;
            continue;
        }
        while (fine + 1 < testo.size() && eApostrofo(testo.at(fine)) &&
               finePezzo(testo, fine + 1) > fine + 1)
            fine = finePezzo(testo, fine + 1);
        const bool virgolette =
            posto > 0 && (eApostrofo(testo.at(posto - 1)) || testo.at(posto - 1) == u'\u2018');
        if (fine < testo.size() && eApostrofo(testo.at(fine)) && !virgolette)
            ++fine;
        if (daControllare(testo.sliced(posto, fine - posto)))
            return Parola{posto, fine - posto};
        posto = fine;
    }
    return {};
}

std::vector<Parola> pezzi(QStringView testo, const Parola &parola)
{
    std::vector<Parola> trovati;
    const qsizetype fine = parola.inizio + parola.lunghezza;
    qsizetype inizio = parola.inizio;
    for (qsizetype posto = inizio; posto < fine; ++posto) {
        if (eApostrofo(testo.at(posto)) && posto + 1 < fine) {
            trovati.push_back({inizio, posto + 1 - inizio});
            inizio = posto + 1;
        }
    }
    trovati.push_back({inizio, fine - inizio});
    return trovati;
}

Parola frase(const QString &testo, const Parola &parola)
{
    QTextBoundaryFinder confini(QTextBoundaryFinder::Sentence, testo);
    confini.setPosition(parola.inizio);
    qsizetype inizio = parola.inizio;
    if (!confini.isAtBoundary())
        inizio = qMax(qsizetype{0}, confini.toPreviousBoundary());
    confini.setPosition(parola.inizio);
    qsizetype fine = confini.toNextBoundary();
    if (fine < 0)
        fine = testo.size();
    fine = qMax(fine, parola.inizio + parola.lunghezza);
    while (fine > parola.inizio + parola.lunghezza && testo.at(fine - 1).isSpace())
        --fine;
    return {inizio, fine - inizio};
}

} // namespace parole
