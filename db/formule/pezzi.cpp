#include "db/formule/pezzi.h"

#include "platform/lingua/parole.h"
#include "platform/lingua/piegatura.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace modTarvola::formule
{

namespace
{

bool diParola(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c.isSurrogate();
}

// La radice con cui una parola si confronta attraverso le lingue: senza accenti, con le lettere che
// il latino e l'italiano scambiano ridotte a una, senza desinenza.
QString radice(const QString &parola)
{
    QString r = italiano::piegato(parola);
    static const std::array<std::pair<const char *, const char *>, 14> scambi{{{"gi", "i"},
                                                                               {"ph", "f"},
                                                                               {"th", "t"},
                                                                               {"ch", "c"},
                                                                               {"ae", "e"},
                                                                               {"oe", "e"},
                                                                               {"qu", "c"},
                                                                               {"j", "i"},
                                                                               {"y", "i"},
                                                                               {"k", "c"},
                                                                               {"zi", "ti"},
                                                                               {"z", "ti"},
                                                                               {"w", "v"},
                                                                               {"h", ""}}};
    for (const auto &[da, a] : scambi)
        r.replace(QLatin1String(da), QLatin1String(a));
    QString senzaDoppie;
    for (const QChar c : std::as_const(r)) {
        if (senzaDoppie.isEmpty() || senzaDoppie.back() != c)
            senzaDoppie += c;
    }
    static const std::array desinenze{"orum", "arum", "ibus", "ius", "iae", "us", "um",
                                      "is",   "es",   "am",   "em",  "os",  "as", "ii",
                                      "io",   "ia",   "a",    "e",   "i",   "o",  "u"};
    constexpr qsizetype radiceMinima = 3;
    for (const char *una : desinenze) {
        const QLatin1String desinenza(una);
        if (senzaDoppie.size() - desinenza.size() >= radiceMinima &&
            senzaDoppie.endsWith(desinenza))
            return senzaDoppie.chopped(desinenza.size());
    }
    return senzaDoppie;
}

// Quante lettere cambiano fra le due (Levenshtein).
int passi(const QString &una, const QString &altra)
{
    std::vector<int> riga(static_cast<size_t>(altra.size()) + 1);
    for (size_t j = 0; j < riga.size(); ++j)
        riga[j] = static_cast<int>(j);
    for (qsizetype i = 1; i <= una.size(); ++i) {
        int diagonale = riga[0];
        riga[0] = static_cast<int>(i);
        for (qsizetype j = 1; j <= altra.size(); ++j) {
            const auto qui = static_cast<size_t>(j);
            const int sopra = riga[qui];
            riga[qui] = std::min({sopra + 1, riga[qui - 1] + 1,
                                  diagonale + (una.at(i - 1) == altra.at(j - 1) ? 0 : 1)});
            diagonale = sopra;
        }
    }
    return riga.back();
}

} // namespace

std::vector<Pezzo> pezzi(QStringView testo)
{
    std::vector<Pezzo> tutti;
    for (qsizetype i = 0; i < testo.size();) {
        if (testo.at(i).isSpace()) {
            ++i;
            continue;
        }
        const qsizetype inizio = i;
        const bool parola = diParola(testo.at(i));
        while (parola && i < testo.size() && diParola(testo.at(i)))
            ++i;
        // L'elisione resta con ciò che elide.
        const bool elide = parola && i + 1 < testo.size() && parole::eApostrofo(testo.at(i)) &&
                           testo.at(i + 1).isLetter();
        if (!parola || elide)
            ++i;
        tutti.push_back({inizio, i - inizio, parola});
    }
    return tutti;
}

QString vestita(const QString &testo, Veste veste)
{
    QString scritto = testo;
    bool iniziale = true;
    switch (veste) {
    case Veste::Uguale:
        return testo;
    case Veste::Minuscola:
        return testo.toLower();
    case Veste::Maiuscola:
        return testo.toUpper();
    case Veste::Iniziale:
        scritto[0] = scritto.at(0).toUpper();
        return scritto;
    case Veste::Iniziali:
        for (QChar &c : scritto) {
            if (iniziale)
                c = c.toUpper();
            iniziale = !c.isLetterOrNumber();
        }
        return scritto;
    }
    return scritto;
}

Veste vesteDi(const QString &testo, const QString &scritto)
{
    for (const Veste una : {Veste::Uguale, Veste::Minuscola, Veste::Iniziale, Veste::Iniziali}) {
        if (vestita(testo, una) == scritto)
            return una;
    }
    return Veste::Maiuscola;
}

bool somiglia(const QString &una, const QString &altra)
{
    if (una == altra)
        return true;
    const QString prima = radice(una);
    const QString seconda = radice(altra);
    constexpr qsizetype minima = 3;
    if (prima.size() < minima || seconda.size() < minima || prima.front() != seconda.front())
        return false;
    constexpr double poche = 0.34;
    return passi(prima, seconda) <=
           poche * static_cast<double>(std::max(prima.size(), seconda.size()));
}

bool inizia(const QString &parola, const QString &meta)
{
    const QString intera = radice(parola);
    // Senza la desinenza che una parola tronca non ha ancora.
    const QString tronca = radice(meta + QStringLiteral("bbb")).remove(u'b');
    const QString inizio = QString(intera).remove(u'b').left(tronca.size());
    return !inizio.isEmpty() && !tronca.isEmpty() && inizio.front() == tronca.front() &&
           passi(inizio, tronca) * 3 <= tronca.size() + 1;
}

float distanza(const QString &una, const QString &altra)
{
    if (una == altra)
        return 0;
    const QString a = una.toLower();
    const QString b = altra.toLower();
    if (a == b)
        return 0.1F;
    const bool parole = a.front().isLetter() && b.front().isLetter();
    const bool cifre = a.front().isDigit() && b.front().isDigit();
    const bool segni = !a.front().isLetterOrNumber() && !b.front().isLetterOrNumber();
    if (cifre || segni)
        return 0.4F;
    if (!parole)
        return 1;
    const int cambiate = passi(a, b);
    const auto lunga = static_cast<int>(std::max(a.size(), b.size()));
    if (lunga >= 4 && cambiate <= 1 + lunga / 8)
        return 0.2F;
    if (lunga >= 5 && cambiate * 3 <= lunga)
        return 0.4F;
    return una.front().isUpper() && altra.front().isUpper() ? 0.6F : 0.9F;
}

} // namespace modTarvola::formule
