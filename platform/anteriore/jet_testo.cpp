#include "platform/anteriore/jet_testo.h"

#include <QDate>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>

namespace jet
{

namespace
{

// I codici da 0x80 a 0x9f di Windows-1252; i cinque senza carattere restano com'erano.
constexpr std::array<char16_t, 32> mezzo1252{
    0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008d, 0x017d, 0x008f, 0x0090, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178};

// Le metà di coppia rimaste sole non si potrebbero scrivere in UTF-8.
void correggiCoppie(Testo &letto)
{
    if (letto.testo.isValidUtf16())
        return;
    letto.intero = false;
    QString &testo = letto.testo;
    for (qsizetype i = 0; i < testo.size(); ++i) {
        if (testo.at(i).isHighSurrogate() && i + 1 < testo.size() &&
            testo.at(i + 1).isLowSurrogate())
            ++i;
        else if (testo.at(i).isSurrogate())
            testo[i] = QChar(QChar::ReplacementCharacter);
    }
}

Testo utf16(QByteArrayView byte)
{
    if (byte.isEmpty())
        return {};
    Testo letto{QString(byte.size() / 2, Qt::Uninitialized), byte.size() % 2 == 0};
    qFromLittleEndian<char16_t>(byte.data(), letto.testo.size(), letto.testo.data());
    correggiCoppie(letto);
    return letto;
}

// Un byte zero al posto di un carattere passa da uno a due byte per carattere, e viceversa.
Testo compresso(QByteArrayView byte)
{
    Testo letto;
    letto.testo.reserve(byte.size());
    bool stretto = true;
    for (qsizetype i = 0; i < byte.size();) {
        if (byte[i] == 0) {
            stretto = !stretto;
            ++i;
        } else if (stretto) {
            letto.testo.append(QChar(static_cast<uchar>(byte[i])));
            ++i;
        } else if (i + 1 < byte.size()) {
            letto.testo.append(QChar(qFromLittleEndian<quint16>(byte.data() + i)));
            i += 2;
        } else {
            letto.intero = false;
            ++i;
        }
    }
    correggiCoppie(letto);
    return letto;
}

void scriveCifre(QString &in, int valore, int cifre, char16_t dopo)
{
    std::array<char16_t, 4> scritte{};
    for (int i = cifre - 1; i >= 0; --i, valore /= 10)
        scritte.at(static_cast<size_t>(i)) = static_cast<char16_t>(u'0' + valore % 10);
    in.append(QStringView(scritte).first(cifre));
    if (dopo != 0)
        in.append(dopo);
}

} // namespace

Testo testoDi(QByteArrayView byte)
{
    if (byte.startsWith("\xff\xfe"))
        return compresso(byte.sliced(2));
    return utf16(byte);
}

Testo testoInByte(QByteArrayView byte)
{
    if (byte.contains('\0'))
        return utf16(byte);
    Testo letto{QString(byte.size(), Qt::Uninitialized), true};
    std::transform(byte.begin(), byte.end(), letto.testo.begin(), [](char uno) {
        const auto codice = static_cast<uchar>(uno);
        return QChar(codice >= 0x80 && codice < 0xa0 ? mezzo1252.at(codice - 0x80U)
                                                     : char16_t{codice});
    });
    return letto;
}

QString isoDi(double giorni, bool oraSempre)
{
    constexpr int secondiDelGiorno = 86400;
    // Fuori di qui l'anno non è scrivibile; così si esclude anche ciò che non è un numero.
    if (!(std::abs(giorni) < 4e6))
        return {};
    const double interi = std::trunc(giorni);
    auto numeroDelGiorno = static_cast<qint64>(interi);
    auto secondi = static_cast<int>(std::lround(std::abs(giorni - interi) * secondiDelGiorno));
    if (secondi == secondiDelGiorno) {
        secondi = 0;
        ++numeroDelGiorno;
    }
    static const QDate zero(1899, 12, 30);
    const QDate giorno = zero.addDays(numeroDelGiorno);
    int anno = 0;
    int mese = 0;
    int nelMese = 0;
    giorno.getDate(&anno, &mese, &nelMese);
    if (anno < 100 || anno > 9999)
        return {};
    const bool conOra = oraSempre || secondi != 0;
    QString iso;
    iso.reserve(19);
    scriveCifre(iso, anno, 4, u'-');
    scriveCifre(iso, mese, 2, u'-');
    scriveCifre(iso, nelMese, 2, conOra ? u' ' : u'\0');
    if (conOra) {
        scriveCifre(iso, secondi / 3600, 2, u':');
        scriveCifre(iso, secondi / 60 % 60, 2, u':');
        scriveCifre(iso, secondi % 60, 2, u'\0');
    }
    return iso;
}

} // namespace jet
