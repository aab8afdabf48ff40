#include "platform/anteriore/jet_pagine.h"

#include "platform/errore.h"

#include <cmath>
#include <cstring>
#include <numeric>

namespace jet
{

namespace
{

constexpr QByteArrayView firma("Standard Jet DB");
constexpr qsizetype postoFirma = 4;
constexpr qsizetype postoVersione = 0x14;
constexpr char versioneLetta = 1;
constexpr qsizetype inizioMaschera = 0x18;
constexpr qsizetype fineMaschera = 0x98;
constexpr QByteArrayView chiaveMaschera("\xC7\xDA\x39\x6B", 4);
constexpr qsizetype postoChiave = 0x3e;
constexpr qsizetype postoPassword = 0x42;
constexpr qsizetype bytePassword = 40;
constexpr qsizetype postoCreazione = 0x72;

constexpr char paginaDiDati = 1;
constexpr qsizetype postoProprietario = 4;
constexpr qsizetype postoQuanteRighe = 0x0c;
constexpr qsizetype postoRighe = 0x0e;
constexpr quint16 segnoCancellata = 0x8000;
constexpr quint16 segnoAltrove = 0x4000;
constexpr quint16 partePosto = 0x1fff;

// Il cifrario a flusso RC4: la stessa funzione cifra e decifra.
void rc4(QByteArrayView chiave, char *byte, qsizetype quanti)
{
    std::array<quint8, 256> stato{};
    std::iota(stato.begin(), stato.end(), quint8{0});
    quint8 j = 0;
    for (size_t i = 0; i < stato.size(); ++i) {
        const auto lettera = static_cast<quint8>(chiave[static_cast<qsizetype>(i) % chiave.size()]);
        j = static_cast<quint8>(j + stato[i] + lettera);
        std::swap(stato[i], stato[j]);
    }
    quint8 i = 0;
    j = 0;
    for (qsizetype k = 0; k < quanti; ++k) {
        i = static_cast<quint8>(i + 1);
        j = static_cast<quint8>(j + stato[i]);
        std::swap(stato[i], stato[j]);
        byte[k] = static_cast<char>(static_cast<quint8>(byte[k]) ^
                                    stato[static_cast<quint8>(stato[i] + stato[j])]);
    }
}

bool cominciaBene(QByteArrayView inizio)
{
    return inizio.size() > postoVersione && inizio.sliced(postoFirma, firma.size()) == firma &&
           inizio[postoVersione] == versioneLetta;
}

// La password sta mescolata alla parte intera della data di creazione.
QString passwordScritta(const Pagina &pagina)
{
    const QByteArrayView byte(pagina);
    const auto creazione = qFromLittleEndian<double>(byte.data() + postoCreazione);
    quint32 chiave = 0;
    if (std::abs(creazione) < std::numeric_limits<qint32>::max())
        chiave = static_cast<quint32>(static_cast<qint32>(creazione));
    QString password;
    for (qsizetype i = 0; i < bytePassword; i += 2) {
        const auto parte = static_cast<quint16>(i % 4 == 0 ? chiave : chiave >> 16);
        const auto lettera = static_cast<quint16>(numero<quint16>(byte, postoPassword + i) ^ parte);
        if (lettera == 0)
            break;
        password.append(QChar(lettera));
    }
    return password;
}

} // namespace

bool riconosce(const QString &percorso)
{
    QFile file(percorso);
    return file.open(QIODevice::ReadOnly) && cominciaBene(file.read(postoVersione + 1));
}

int quanteRighe(const Pagina &pagina)
{
    const int annunciate = numero<quint16>(pagina, postoQuanteRighe);
    return postoRighe + 2 * annunciate <= byteDiPagina ? annunciate : -1;
}

std::optional<RigaDiPagina> riga(const Pagina &pagina, quint32 quale)
{
    const QByteArrayView byte(pagina);
    const int righe = quanteRighe(pagina);
    if (righe < 0 || quale >= static_cast<quint32>(righe))
        return std::nullopt;
    const qsizetype scritto = postoRighe + 2 * static_cast<qsizetype>(quale);
    const auto segni = numero<quint16>(byte, scritto);
    const qsizetype inizio = segni & partePosto;
    const qsizetype fine =
        quale == 0 ? byteDiPagina : numero<quint16>(byte, scritto - 2) & partePosto;
    if (inizio < postoRighe + 2 * righe || fine > byteDiPagina || inizio > fine)
        return std::nullopt;
    return RigaDiPagina{byte.sliced(inizio, fine - inizio), (segni & segnoCancellata) != 0,
                        (segni & segnoAltrove) != 0};
}

std::optional<quint32> proprietario(const Pagina &pagina)
{
    if (pagina[0] != paginaDiDati || pagina[1] != 1)
        return std::nullopt;
    return numero<quint32>(pagina, postoProprietario);
}

Pagine::Pagine(const QString &percorso, const QString &password) : m_file(percorso)
{
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw ado::Errore(ado::Causa::Illeggibile, m_file.errorString());
    // I posti delle righe hanno tre byte per la pagina: oltre non c'è nulla da leggere.
    constexpr qint64 pagineMassime = qint64{1} << 24;
    m_quante = static_cast<quint32>(qMin(m_file.size() / byteDiPagina, pagineMassime));
    apreIntestazione(password);
}

void Pagine::apreIntestazione(const QString &password)
{
    Pagina prima{};
    if (!legge(0, prima) || !cominciaBene(prima))
        throw ado::Errore(ado::Causa::NonArchivio,
                          QStringLiteral("non è un file di archivi del formato anteriore"));
    rc4(chiaveMaschera, prima.data() + inizioMaschera, fineMaschera - inizioMaschera);
    const QString scritta = passwordScritta(prima);
    if (!scritta.isEmpty() && scritta != password)
        throw ado::Errore(ado::Causa::PasswordErrata,
                          QStringLiteral("la password del file è un'altra"));
    m_chiave = numero<quint32>(prima, postoChiave);
}

bool Pagine::legge(quint32 quale, Pagina &in)
{
    if (quale >= m_quante || !m_file.seek(quale * byteDiPagina) ||
        m_file.read(in.data(), byteDiPagina) != byteDiPagina)
        return false;
    if (m_chiave != 0 && quale != 0) {
        const quint32 chiave = qToLittleEndian(m_chiave ^ quale);
        rc4({reinterpret_cast<const char *>(&chiave), sizeof chiave}, in.data(), byteDiPagina);
    }
    return true;
}

} // namespace jet
