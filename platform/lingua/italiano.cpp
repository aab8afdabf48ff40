#include "platform/lingua/italiano.h"

#include <QCollator>
#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace italiano
{

namespace
{

constexpr int annoMinimo = 100;

struct Istante {
    QDate giorno;
    std::optional<QTime> ora;
};

const QLocale &lingua()
{
    static const QLocale italia(QLocale::Italian, QLocale::Italy);
    return italia;
}

// Il modello deve coprire tutto il testo; "$" lascerebbe passare un a capo finale.
QRegularExpression intero(const QString &modello)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(modello));
}

// Uno spazio solo fra le parole e nessuno attorno alla punteggiatura.
QString riduci(QStringView testo)
{
    static const QRegularExpression punteggiatura(u" ?([-/.,:]) ?"_s);
    return testo.toString()
        .normalized(QString::NormalizationForm_C)
        .simplified()
        .replace(punteggiatura, u"\\1"_s);
}

std::optional<QDate> componiGiorno(const QString &anno, int mese, const QString &giorno)
{
    const QDate data(anno.toInt(), mese, giorno.toInt());
    if (!data.isValid() || data.year() < annoMinimo)
        return std::nullopt;
    return data;
}

std::optional<QTime> componiOra(const QString &ore, const QString &minuti, const QString &secondi)
{
    const QTime ora(ore.toInt(), minuti.toInt(), secondi.toInt());
    return ora.isValid() ? std::optional(ora) : std::nullopt;
}

std::optional<Istante> leggiIso(QStringView testo)
{
    static const QRegularExpression forma =
        intero(u"(\\d{4})-(\\d\\d)-(\\d\\d)(?: (\\d\\d):(\\d\\d):(\\d\\d))?"_s);
    const auto parti = forma.match(testo.toString());
    if (!parti.hasMatch())
        return std::nullopt;
    const auto giorno =
        componiGiorno(parti.captured(1), parti.captured(2).toInt(), parti.captured(3));
    if (!giorno)
        return std::nullopt;
    if (!parti.hasCaptured(4))
        return Istante{*giorno, std::nullopt};
    const auto ora = componiOra(parti.captured(4), parti.captured(5), parti.captured(6));
    return ora ? std::optional(Istante{*giorno, ora}) : std::nullopt;
}

// Da 1 a 12, 0 se il nome non è di un mese. Tre lettere distinguono tutti i mesi italiani.
int meseDalNome(const QString &nome)
{
    for (int mese = 1; mese <= 12; ++mese) {
        if (uguali(nome, lingua().monthName(mese, QLocale::ShortFormat)))
            return mese;
        if (nome.size() >= 3 && lingua().monthName(mese).startsWith(nome, Qt::CaseInsensitive))
            return mese;
    }
    return 0;
}

bool diGiornoDellaSettimana(const QString &nome)
{
    for (int giorno = 1; giorno <= 7; ++giorno) {
        if (uguali(nome, lingua().dayName(giorno)) ||
            uguali(nome, lingua().dayName(giorno, QLocale::ShortFormat)))
            return true;
    }
    return false;
}

std::optional<QDate> giornoDaRidotto(QString testo)
{
    static const QRegularExpression conSettimana = intero(u"(\\p{L}+)(?:\\.?,|\\.| )(.+)"_s);
    if (const auto parti = conSettimana.match(testo); parti.hasMatch()) {
        if (!diGiornoDellaSettimana(parti.captured(1)))
            return std::nullopt;
        testo = parti.captured(2);
    }

    // I due separatori devono essere uguali: "3-4 1750" non dice con certezza il 3 aprile.
    static const QRegularExpression inCifre =
        intero(u"(\\d{1,2})([-/. ])(\\d{1,2})\\2(\\d{3,4})"_s);
    if (const auto parti = inCifre.match(testo); parti.hasMatch())
        return componiGiorno(parti.captured(4), parti.captured(3).toInt(), parti.captured(1));

    static const QRegularExpression conNome =
        intero(u"(\\d{1,2})[°º]?[-/. ](\\p{L}+)(?:\\.?[-/ ]|\\.)(\\d{3,4})"_s);
    if (const auto parti = conNome.match(testo); parti.hasMatch())
        return componiGiorno(parti.captured(3), meseDalNome(parti.captured(2)), parti.captured(1));

    const auto iso = leggiIso(testo);
    return iso && !iso->ora ? std::optional(iso->giorno) : std::nullopt;
}

// Con il punto i minuti vogliono due cifre: "10.5" può essere le dieci e cinque o le dieci e mezza.
std::optional<QTime> oraDaRidotto(const QString &testo)
{
    static const QRegularExpression forma = intero(
        u"(?|(\\d{1,2})(?::(\\d{1,2})(?::(\\d{1,2}))?)?|(\\d{1,2})\\.(\\d\\d)(?:\\.(\\d\\d))?)"_s);
    const auto parti = forma.match(testo);
    if (!parti.hasMatch())
        return std::nullopt;
    return componiOra(parti.captured(1), parti.captured(2), parti.captured(3));
}

QString scrivi(QDate giorno, QTime ora)
{
    return giorno.toString(Qt::ISODate) + u' ' + ora.toString(Qt::ISODate);
}

QString mostraGiorno(QStringView iso, QStringView modello)
{
    const auto valore = leggiIso(iso);
    return valore ? lingua().toString(valore->giorno, modello) : iso.toString();
}

// toCaseFolded() ripiega una lettera in una lettera; toUpper() aggiunge i ripieghi lunghi ("ß" in
// "SS"). In più del ripiego pieno risultano pari solo la "ı" turca senza punto e la "i".
QString ripiega(QStringView testo)
{
    const QString scomposto = testo.toString().normalized(QString::NormalizationForm_D);
    return scomposto.toCaseFolded().toUpper().normalized(QString::NormalizationForm_D);
}

} // namespace

std::optional<QString> leggiData(QStringView testo)
{
    const auto giorno = giornoDaRidotto(riduci(testo));
    return giorno ? std::optional(giorno->toString(Qt::ISODate)) : std::nullopt;
}

std::optional<QString> leggiOra(QStringView testo, QStringView giorno)
{
    const QString ridotto = riduci(testo);
    if (const auto ora = oraDaRidotto(ridotto)) {
        const auto dato = leggiIso(giorno);
        return scrivi(dato ? dato->giorno : QDate(1899, 12, 30), *ora);
    }
    if (const auto data = giornoDaRidotto(ridotto))
        return scrivi(*data, QTime(0, 0));

    const qsizetype taglio = std::max(ridotto.lastIndexOf(u' '), ridotto.lastIndexOf(u','));
    if (taglio < 0)
        return std::nullopt;
    const auto data = giornoDaRidotto(ridotto.left(taglio));
    const auto ora = oraDaRidotto(ridotto.mid(taglio + 1));
    return data && ora ? std::optional(scrivi(*data, *ora)) : std::nullopt;
}

std::optional<qint64> leggiPagina(QStringView testo)
{
    // In cifre e non in virgola mobile, che ai limiti e alla metà esatta sbaglierebbe.
    static const QRegularExpression forma =
        intero(u"([-+]?)(?=,?\\d)([1-9]\\d{0,2}(?:\\.\\d{3})+|\\d*)(?:,(\\d*))?"_s);
    static const QRegularExpression zeriFinali(u"0+$"_s);
    const auto parti = forma.match(testo.trimmed().toString());
    if (!parti.hasMatch())
        return std::nullopt;

    const QString interi = u'0' + parti.captured(2).remove(u'.');
    const QString decimali = parti.captured(3).remove(zeriFinali);
    bool letto = false;
    const qint64 valore = interi.toLongLong(&letto);
    constexpr qint64 massimo = std::numeric_limits<qint32>::max();
    if (!letto || valore > massimo || (valore == massimo && !decimali.isEmpty()))
        return std::nullopt;
    if (parti.captured(1) == u"-" && (valore > 0 || !decimali.isEmpty()))
        return std::nullopt;
    return valore + (!decimali.isEmpty() && decimali.front() >= u'5' ? 1 : 0);
}

QString mostraData(QStringView iso)
{
    return mostraGiorno(iso, u"dd MM yyyy");
}

QString mostraDataEstesa(QStringView iso)
{
    return mostraGiorno(iso, u"d MMM yyyy");
}

QString mostraDataBreve(QStringView iso)
{
    const auto valore = leggiIso(iso);
    const QString giorno = mostraGiorno(iso, u"dd/MM/yyyy");
    return valore && valore->ora ? giorno + lingua().toString(*valore->ora, u" HH:mm:ss") : giorno;
}

QString mostraOra(QStringView iso)
{
    // Giorno e ora si mostrano separati: QDateTime sposterebbe le ore che l'ora legale salta.
    const auto valore = leggiIso(iso);
    if (!valore)
        return iso.toString();
    return lingua().toString(valore->giorno, u"dddd, d MMM yyyy, ") +
           lingua().toString(valore->ora.value_or(QTime(0, 0)), u"h:m:s");
}

bool uguali(QStringView a, QStringView b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0 || ripiega(a) == ripiega(b);
}

int confronta(QStringView a, QStringView b)
{
    static const QCollator ordine = [] {
        QCollator nuovo(lingua());
        nuovo.setCaseSensitivity(Qt::CaseInsensitive);
        nuovo.setNumericMode(false);
        nuovo.setIgnorePunctuation(false);
        return nuovo;
    }();
    return ordine.compare(a, b);
}

QString adesso()
{
    const QDateTime ora = QDateTime::currentDateTime();
    return scrivi(ora.date(), ora.time());
}

} // namespace italiano
