#include "platform/lingua/numeri.h"

#include "platform/lingua/numerazione.h"

#include <array>

namespace numeri
{

namespace
{

using Parole = std::array<const char *, 10>;

QString parola(const char *testo)
{
    return QString::fromUtf8(testo);
}

QString unita(const Parole &parole, int quale)
{
    return parola(parole.at(static_cast<size_t>(quale)));
}

QString unite(const QStringList &parole, const QString &fra = QStringLiteral(" "))
{
    QStringList piene = parole;
    piene.removeAll(QString());
    return piene.join(fra);
}

// ---- Italiano ----

constexpr Parole unitaIt{"",       "uno", "due",   "tre",  "quattro",
                         "cinque", "sei", "sette", "otto", "nove"};
constexpr Parole dieciIt{"dieci",    "undici", "dodici",      "tredici",  "quattordici",
                         "quindici", "sedici", "diciassette", "diciotto", "diciannove"};
// Come si scrivevano prima che la grammatica le fissasse.
constexpr Parole dieciAntichi{"dieci",    "undeci", "dodeci",       "tredeci",   "quattordeci",
                              "quindeci", "sedeci", "dieciassette", "dieciotto", "diecinove"};
constexpr Parole dieciAltri{"dieci",    "undici", "dodici",     "tredici",  "quatordici",
                            "quindici", "sedici", "diecisette", "diecotto", "dicianove"};
constexpr Parole decineIt{"",          "",         "venti",    "trenta",  "quaranta",
                          "cinquanta", "sessanta", "settanta", "ottanta", "novanta"};

enum Grafia { Corrente, Accentata, Antica, Altra, Divisa, Elisa, GrafieIt };

QString sottoCento(int numero, Grafia grafia)
{
    if (numero < 10)
        return unita(unitaIt, numero);
    const int resto = numero % 10;
    if (numero < 20) {
        if (grafia == Divisa && resto >= 7)
            return QStringLiteral("dieci ") + unita(unitaIt, resto);
        return unita(grafia == Antica  ? dieciAntichi
                     : grafia == Altra ? dieciAltri
                                       : dieciIt,
                     resto);
    }
    QString decina = unita(decineIt, numero / 10);
    if (resto == 0)
        return decina;
    const bool vocale = resto == 1 || resto == 8;
    if (grafia == Divisa)
        return decina + u' ' + unita(unitaIt, resto);
    if (grafia == Altra)
        return decina + unita(unitaIt, resto);
    if (vocale)
        decina.chop(1);
    if (vocale && grafia == Elisa)
        decina += u'\'';
    if (resto == 3 && grafia == Accentata)
        return decina + QStringLiteral("tré");
    if (resto == 3 && grafia == Elisa)
        return decina + QStringLiteral("trè");
    return decina + unita(unitaIt, resto);
}

QString centinaia(int numero)
{
    return numero == 0   ? QString()
           : numero == 1 ? QStringLiteral("cento")
                         : unita(unitaIt, numero) + QStringLiteral("cento");
}

QString migliaia(int numero)
{
    return numero == 0   ? QString()
           : numero == 1 ? QStringLiteral("mille")
                         : unita(unitaIt, numero) + QStringLiteral("mila");
}

// ---- Latino ----

constexpr Parole ordinali{"",      "prim", "secund", "terti", "quart",
                          "quint", "sext", "septim", "octav", "non"};
constexpr Parole decineOrdinali{
    "",          "decim",       "vigesim",   "trigesim", "quadragesim", "quinquagesim",
    "sexagesim", "septuagesim", "octogesim", "nonagesim"};
constexpr Parole centinaiaOrdinali{"",
                                   "centesim",
                                   "ducentesim",
                                   "trecentesim",
                                   "quadringentesim",
                                   "quingentesim",
                                   "sexcentesim",
                                   "septingentesim",
                                   "octingentesim",
                                   "nongentesim"};
constexpr Parole cardinali{"",        "unus", "duo",    "tres", "quatuor",
                           "quinque", "sex",  "septem", "octo", "novem"};
constexpr Parole dieciLatini{"decem",     "undecim",  "duodecim",    "tredecim",  "quatuordecim",
                             "quindecim", "sexdecim", "septemdecim", "octodecim", "novemdecim"};
constexpr Parole decineLatine{"",
                              "",
                              "viginti",
                              "triginta",
                              "quadraginta",
                              "quinquaginta",
                              "sexaginta",
                              "septuaginta",
                              "octoginta",
                              "nonaginta"};
constexpr Parole centinaiaLatine{
    "",          "centum",   "ducenti",     "trecenti",   "quadringenti",
    "quingenti", "sexcenti", "septingenti", "octingenti", "nongenti"};

// ---- Francese e tedesco ----

constexpr std::array francesi{"zéro",   "un",    "deux",     "trois",    "quatre",
                              "cinq",   "six",   "sept",     "huit",     "neuf",
                              "dix",    "onze",  "douze",    "treize",   "quatorze",
                              "quinze", "seize", "dix-sept", "dix-huit", "dix-neuf"};
constexpr Parole decineFrancesi{
    "",          "",         "vingt",    "trente",       "quarante",
    "cinquante", "soixante", "soixante", "quatre-vingt", "quatre-vingt"};
constexpr std::array tedeschi{"null",     "eins",     "zwei",     "drei",     "vier",
                              "fünf",     "sechs",    "sieben",   "acht",     "neun",
                              "zehn",     "elf",      "zwölf",    "dreizehn", "vierzehn",
                              "fünfzehn", "sechzehn", "siebzehn", "achtzehn", "neunzehn"};
constexpr Parole decineTedesche{"",        "",        "zwanzig", "dreißig", "vierzig",
                                "fünfzig", "sechzig", "siebzig", "achtzig", "neunzig"};

QString franceseSottoCento(int numero)
{
    if (numero < 20)
        return parola(francesi.at(static_cast<size_t>(numero)));
    const int decina = numero / 10;
    const bool daDieci = decina == 7 || decina == 9;
    const int resto = numero % 10 + (daDieci ? 10 : 0);
    const QString prima = unita(decineFrancesi, decina);
    if (resto == 0)
        return decina == 8 ? prima + u's' : prima;
    const bool et = resto % 10 == 1 && decina < 8;
    return prima + (et ? QStringLiteral(" et ") : QStringLiteral("-")) +
           parola(francesi.at(static_cast<size_t>(resto)));
}

QString tedescoSottoCento(int numero)
{
    if (numero < 20)
        return parola(tedeschi.at(static_cast<size_t>(numero)));
    const int resto = numero % 10;
    const QString prima =
        resto == 0   ? QString()
        : resto == 1 ? QStringLiteral("einund")
                     : parola(tedeschi.at(static_cast<size_t>(resto))) + QStringLiteral("und");
    return prima + unita(decineTedesche, numero / 10);
}

} // namespace

QStringList italiano(int numero)
{
    if (numero < 0 || numero > 9999)
        return {};
    if (numero == 0)
        return QStringList(GrafieIt, QStringLiteral("zero"));
    QStringList grafie;
    for (int g = 0; g < GrafieIt; ++g)
        grafie.append(unite({migliaia(numero / 1000), centinaia(numero / 100 % 10),
                             sottoCento(numero % 100, static_cast<Grafia>(g))},
                            g == Divisa ? QStringLiteral(" ") : QString()));
    return grafie;
}

QStringList italianoFemminile(int numero)
{
    QStringList grafie = italiano(numero);
    if (numero % 10 != 1 || numero % 100 == 11)
        return grafie;
    for (QString &una : grafie)
        una = una.chopped(1) + u'a';
    return grafie;
}

QStringList annoItaliano(int anno)
{
    if (anno < 1000 || anno > 1999)
        return {};
    const QString mille = QStringLiteral("mille");
    const QString cento = centinaia(anno / 100 % 10);
    const QString divisi =
        anno / 100 % 10 > 1 ? unita(unitaIt, anno / 100 % 10) + QStringLiteral(" cento") : cento;
    QStringList grafie;
    for (const Grafia g : {Corrente, Accentata, Divisa, Elisa}) {
        const QString resto = sottoCento(anno % 100, g);
        grafie << unite({mille, cento, resto}) << unite({mille + cento + resto})
               << unite({mille + cento, resto}) << unite({mille, cento + resto})
               << unite({mille, divisi, resto})
               << unite({mille, cento, resto}, QStringLiteral(" e "));
    }
    return grafie;
}

QStringList ordinaleItaliano(int numero, const QString &desinenza)
{
    static constexpr Parole uno{"",      "prim", "second", "terz",  "quart",
                                "quint", "sest", "settim", "ottav", "non"};
    static constexpr Parole decine{"", "decim", "vigesim", "trigesim", "", "", "", "", "", ""};
    if (numero < 1 || numero > 31)
        return {};
    const auto chiusa = [&](const QString &radice) {
        return radice.isEmpty() ? radice : radice + desinenza;
    };
    const QString divisa =
        unite({chiusa(unita(decine, numero / 10)), chiusa(unita(uno, numero % 10))});
    const QString esimo = numero <= 10 ? divisa
                                       : sottoCento(numero, Corrente).chopped(1) +
                                             (numero % 10 == 3 || numero % 10 == 6
                                                  ? sottoCento(numero, Corrente).right(1)
                                                  : QString()) +
                                             QStringLiteral("esim") + desinenza;
    return {divisa, esimo};
}

QStringList latino(int numero)
{
    if (numero < 1 || numero > 1999)
        return {};
    const int sotto = numero % 100;
    const QString mille = numero >= 1000 ? QStringLiteral("mille") : QString();
    const QString cento = unita(centinaiaLatine, numero / 100 % 10);
    const QString ultimi =
        sotto >= 10 && sotto < 20
            ? unita(dieciLatini, sotto - 10)
            : unite({unita(decineLatine, sotto / 10), unita(cardinali, sotto % 10)});
    const QString con = sotto > 20 && sotto % 10 != 0
                            ? unita(decineLatine, sotto / 10) + QStringLiteral(" et ") +
                                  unita(cardinali, sotto % 10)
                            : ultimi;
    return {unite({mille, cento, ultimi}), unite({mille, cento, con}),
            unite({mille, cento, ultimi})
                .replace(QStringLiteral("quatuor"), QStringLiteral("quattuor"))};
}

QStringList ordinaleLatino(int numero, const QString &desinenza)
{
    if (numero < 1 || numero > 1999)
        return {};
    const auto chiusa = [&](const QString &radice) {
        return radice.isEmpty() ? radice : radice + desinenza;
    };
    const int sotto = numero % 100;
    const QString mille = numero >= 1000 ? chiusa(QStringLiteral("millesim")) : QString();
    const QString cento = chiusa(unita(centinaiaOrdinali, numero / 100 % 10));
    const QString decina = chiusa(unita(decineOrdinali, sotto / 10));
    const QString uno = chiusa(unita(ordinali, sotto % 10));
    QString ultimi = unite({decina, uno});
    if (sotto == 11 || sotto == 12)
        ultimi = (sotto == 11 ? QStringLiteral("un") : QStringLiteral("duo")) + decina;
    const QString divisi = unite({decina, uno});
    const QString con = unite({decina, uno}, QStringLiteral(" et "));
    QString vicesimo = ultimi;
    vicesimo.replace(QStringLiteral("vigesim"), QStringLiteral("vicesim"));
    return {unite({mille, cento, ultimi}), unite({mille, cento, divisi}),
            unite({mille, cento, con}), unite({mille, cento, vicesimo}),
            unite({mille, cento, unite({uno, decina}, QStringLiteral(" et "))})};
}

QStringList francese(int numero)
{
    if (numero < 0 || numero > 1999)
        return {};
    if (numero < 100) {
        const QString sotto = franceseSottoCento(numero);
        return {sotto, QString(sotto).replace(u'-', u' ')};
    }
    const int cento = numero / 100 % 10;
    const QString resto = numero % 100 == 0 ? QString() : franceseSottoCento(numero % 100);
    QString centinaio =
        cento == 0   ? QString()
        : cento == 1 ? QStringLiteral("cent")
                     : parola(francesi.at(static_cast<size_t>(cento))) + QStringLiteral(" cent");
    if (cento > 1 && resto.isEmpty())
        centinaio += u's';
    const auto con = [&](const char *mille) {
        return unite({numero >= 1000 ? parola(mille) : QString(), centinaio, resto});
    };
    return {con("mil"), con("mil").replace(u'-', u' '), con("mille"),
            con("mille").replace(u'-', u' ')};
}

QStringList tedesco(int numero)
{
    if (numero < 0 || numero > 1999)
        return {};
    if (numero < 100)
        return QStringList(2, tedescoSottoCento(numero));
    const QString resto = numero % 100 == 0 ? QString() : tedescoSottoCento(numero % 100);
    const auto cifra = [](int quale) { return parola(tedeschi.at(static_cast<size_t>(quale))); };
    const QString hundert = QStringLiteral("hundert");
    if (numero < 1000)
        return QStringList(2, cifra(numero / 100) + hundert + resto);
    const int cento = numero / 100 % 10;
    return {cifra(numero / 100) + hundert + resto,
            QStringLiteral("eintausend") + (cento == 0 ? QString() : cifra(cento) + hundert) +
                resto};
}

QStringList ordinaleTedesco(int numero, const QString &desinenza)
{
    if (numero < 1 || numero > 31)
        return {};
    QString radice = tedescoSottoCento(numero) + (numero < 20 ? u't' : u's');
    if (numero >= 20)
        radice += u't';
    switch (numero) {
    case 1:
        radice = QStringLiteral("erst");
        break;
    case 3:
        radice = QStringLiteral("dritt");
        break;
    case 7:
        radice = QStringLiteral("siebent");
        break;
    case 8:
        radice = QStringLiteral("acht");
        break;
    default:
        break;
    }
    return {radice + desinenza};
}

QStringList romano(int numero)
{
    const QString regolare = italiano::romano(numero);
    if (regolare.isEmpty())
        return {};
    QString lungo = regolare;
    lungo.replace(QStringLiteral("CM"), QStringLiteral("DCCCC"))
        .replace(QStringLiteral("CD"), QStringLiteral("CCCC"))
        .replace(QStringLiteral("XC"), QStringLiteral("LXXXX"))
        .replace(QStringLiteral("XL"), QStringLiteral("XXXX"))
        .replace(QStringLiteral("IX"), QStringLiteral("VIIII"))
        .replace(QStringLiteral("IV"), QStringLiteral("IIII"));
    QString conCoda = regolare.toLower();
    if (conCoda.endsWith(u'i'))
        conCoda = conCoda.chopped(1) + u'j';
    return {regolare, lungo, conCoda};
}

} // namespace numeri
