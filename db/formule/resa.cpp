#include "db/formule/resa.h"

#include "platform/lingua/numeri.h"

#include <QDate>
#include <QLocale>
#include <QRegularExpression>

#include <array>

namespace modTarvola::formule
{

namespace
{

// I mesi latini al nominativo maschile, con le due grafie della i; settembre e i seguenti anche
// in cifre.
struct MeseLatino {
    const char *radice;
    const char *altra;
    bool terza; // declinato come "September"
};
constexpr std::array<MeseLatino, 12> mesiLatini{{{"januari", "ianuari", false},
                                                 {"februari", "februari", false},
                                                 {"marti", "marti", false},
                                                 {"april", "april", true},
                                                 {"mai", "maj", false},
                                                 {"juni", "iuni", false},
                                                 {"juli", "iuli", false},
                                                 {"august", "august", false},
                                                 {"septembr", "septembr", true},
                                                 {"octobr", "octobr", true},
                                                 {"novembr", "novembr", true},
                                                 {"decembr", "decembr", true}}};
constexpr std::array giorniLatini{"Lunae",   "Martis",  "Mercurii", "Jovis",
                                  "Veneris", "Sabbati", "Dominica"};

class Raccolta
{
public:
    void mette(const QStringList &grafie)
    {
        if (!grafie.isEmpty())
            rese.append({m_forma, grafie});
        ++m_forma;
    }
    void mette(const QString &grafia) { mette(QStringList{grafia}); }

    QList<Resa> rese;

private:
    int m_forma = FormeSpeciali;
};

// Un numero in ogni modo: cifre, lettere, romano.
void numero(Raccolta &in, int quanto)
{
    in.mette(QString::number(quanto));
    in.mette(numeri::romano(quanto));
    in.mette(numeri::italiano(quanto));
    in.mette(numeri::italianoFemminile(quanto));
    in.mette(numeri::latino(quanto));
    for (const char *desinenza : {"a", "o", "i", "us", "um", "ae"})
        in.mette(numeri::ordinaleLatino(quanto, QString::fromLatin1(desinenza)));
    in.mette(numeri::ordinaleItaliano(quanto, QStringLiteral("o")));
    in.mette(numeri::ordinaleItaliano(quanto, QStringLiteral("a")));
    in.mette(numeri::francese(quanto));
    in.mette(numeri::tedesco(quanto));
    for (const char *desinenza : {"en", "e"})
        in.mette(numeri::ordinaleTedesco(quanto, QString::fromLatin1(desinenza)));
}

void mese(Raccolta &in, int quale)
{
    in.mette(QString::number(quale));
    in.mette(QStringLiteral("%1").arg(quale, 2, 10, QLatin1Char('0')));
    const auto &latino = mesiLatini.at(static_cast<size_t>(quale - 1));
    const QString radice = QString::fromLatin1(latino.radice);
    const QString altra = QString::fromLatin1(latino.altra);
    const auto latini = [&](const char *seconda, const char *terza) {
        const QString d = QString::fromLatin1(latino.terza ? terza : seconda);
        QString i = radice + d;
        if (i.endsWith(QStringLiteral("ii")))
            i = i.chopped(1) + u'j';
        in.mette({radice + d, altra + d, i});
    };
    latini("i", "is");
    latini("o", "i");
    latini("us", "is");
    // 7bre, 8bre… e le loro desinenze latine.
    constexpr int settembre = 9;
    for (const char *coda : {"bre", "bris", "bri", "embre"}) {
        const QString fine = QString::fromLatin1(coda);
        const QString cifra = QString::number(quale - 2) + fine;
        in.mette(quale < settembre ? QStringList{}
                                   : QStringList{cifra, quale == 12 ? u'X' + fine : cifra});
    }
    for (const auto lingua :
         {QLocale::Italian, QLocale::French, QLocale::German, QLocale::Spanish}) {
        const QString nome = QLocale(lingua).monthName(quale);
        in.mette(nome);
        in.mette({nome.left(3), nome.left(4)});
    }
    in.mette(quale == 1 ? QStringLiteral("Jänner") : QString());
    static const std::array antichi{"gennaro",   "febraro", "marzo",    "aprile",
                                    "maggio",    "giugno",  "luglio",   "agosto",
                                    "settembre", "ottobre", "novembre", "decembre"};
    in.mette(QString::fromLatin1(antichi.at(static_cast<size_t>(quale - 1))));
}

void data(Raccolta &in, const QDate &giorno)
{
    numero(in, giorno.day());
    in.mette(QStringLiteral("%1").arg(giorno.day(), 2, 10, QLatin1Char('0')));
    in.mette(giorno.day() == 1 ? QStringList{QStringLiteral("primo")}
                               : numeri::italiano(giorno.day()));
    in.mette(giorno.day() == 1 ? QStringList{QStringLiteral("premier")}
                               : numeri::francese(giorno.day()));
    mese(in, giorno.month());
    numero(in, giorno.year());
    in.mette(numeri::annoItaliano(giorno.year()));
    numero(in, giorno.year() % 100);
    in.mette(QStringLiteral("%1").arg(giorno.year() % 100, 2, 10, QLatin1Char('0')));
    const int feria = giorno.dayOfWeek();
    for (const auto lingua : {QLocale::Italian, QLocale::French, QLocale::German, QLocale::Spanish})
        in.mette(QLocale(lingua).dayName(feria));
    const QString latino = QString::fromLatin1(giorniLatini.at(static_cast<size_t>(feria - 1)));
    in.mette(QStringList{latino, QString(latino).replace(u'J', u'I')});
    in.mette(QString(QLocale(QLocale::Italian).dayName(feria)).replace(u'ì', u'i'));
}

// Le ore: anche contate da capo dopo mezzogiorno.
void ora(Raccolta &in, int ore, int minuti)
{
    numero(in, ore);
    numero(in, ore % 12 == 0 ? 12 : ore % 12);
    numero(in, minuti);
    in.mette(QStringLiteral("%1").arg(minuti, 2, 10, QLatin1Char('0')));
}

void testo(QList<Resa> &in, const QString &valore)
{
    const QString pulito = valore.simplified();
    in.append({FormaUguale, {pulito}});
    const QString prima = pulito.section(u' ', 0, 0);
    if (prima.size() < pulito.size()) {
        in.append({FormaPrima, {prima}});
        in.append({FormaUltima, {pulito.section(u' ', -1)}});
    }
}

} // namespace

bool siScrive(const scheda::Indirizzo &dove)
{
    static const QStringList segni{QStringLiteral("Sesso"), QStringLiteral("Legittimo"),
                                   QStringLiteral("Vivente"), QStringLiteral("Ruolo"),
                                   QStringLiteral("Campolungo")};
    return !segni.contains(dove.campo);
}

qint64 giornoDi(const QString &valore)
{
    constexpr qsizetype lunghezzaIso = 10;
    if (valore.size() < lunghezzaIso || valore.at(4) != u'-')
        return 0;
    const QDate giorno = QDate::fromString(valore.left(lunghezzaIso), Qt::ISODate);
    return giorno.isValid() ? giorno.toJulianDay() : 0;
}

QList<Resa> rese(const scheda::Indirizzo &dove, const QString &valore)
{
    Raccolta raccolta;
    if (dove.campo == QStringLiteral("Data")) {
        if (const qint64 giorno = giornoDi(valore); giorno != 0) {
            data(raccolta, QDate::fromJulianDay(giorno));
            return raccolta.rese;
        }
    }
    if (dove.campo == QStringLiteral("Ora")) {
        static const QRegularExpression orologio(QStringLiteral("(\\d{1,2})[:.](\\d{2})"));
        const auto letta = orologio.match(valore);
        if (letta.hasMatch()) {
            ora(raccolta, letta.captured(1).toInt(), letta.captured(2).toInt());
            return raccolta.rese;
        }
    }
    testo(raccolta.rese, valore);
    static const QRegularExpression cifre(QStringLiteral("\\d{1,4}"));
    const auto trovate = cifre.match(valore);
    if (trovate.hasMatch())
        numero(raccolta, trovate.captured().toInt());
    return raccolta.rese;
}

} // namespace modTarvola::formule
