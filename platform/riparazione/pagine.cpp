#include "platform/riparazione/pagine.h"

#include "platform/errore.h"
#include "platform/motore/presa.h"

#include <QtEndian>

#include <cstring>

namespace pagine
{

namespace
{

constexpr int testata = 100;
constexpr qint64 lungoDa = 256 * 1024;
constexpr qint64 rigaMassima = 1'000'000'000;

quint32 quattro(const QByteArray &byte, qsizetype posto)
{
    return qFromBigEndian<quint32>(byte.constData() + posto);
}

quint32 due(const QByteArray &byte, qsizetype posto)
{
    return qFromBigEndian<quint16>(byte.constData() + posto);
}

// Da uno a nove byte, sette bit ciascuno e otto l'ultimo; rende quanti ne ha letti, 0 se finiscono.
int variabile(const QByteArray &byte, qsizetype posto, qint64 &valore)
{
    quint64 letto = 0;
    for (int i = 0; i < 9; ++i) {
        if (posto + i >= byte.size())
            return 0;
        const auto uno = static_cast<quint8>(byte.at(posto + i));
        if (i == 8) {
            valore = static_cast<qint64>((letto << 8) | uno);
            return 9;
        }
        letto = (letto << 7) | (uno & 0x7fU);
        if ((uno & 0x80U) == 0) {
            valore = static_cast<qint64>(letto);
            return i + 1;
        }
    }
    return 0;
}

qint64 interoDi(const QByteArray &byte)
{
    qint64 valore = byte.isEmpty() || byte.at(0) >= 0 ? 0 : -1;
    for (const char uno : byte)
        valore =
            static_cast<qint64>((static_cast<quint64>(valore) << 8) | static_cast<quint8>(uno));
    return valore;
}

qint64 lunghezzaDi(qint64 serie)
{
    constexpr int brevi[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
    return serie < 10 ? brevi[serie] : (serie - 12) / 2;
}

Valore valoreDi(qint64 serie, const QByteArray &byte)
{
    Valore valore;
    if (serie == 7) {
        valore.tipo = Valore::Reale;
        const auto bit = qFromBigEndian<quint64>(byte.constData());
        std::memcpy(&valore.reale, &bit, sizeof bit);
    } else if (serie >= 12) {
        valore.tipo = serie % 2 == 0 ? Valore::Byte : Valore::Testo;
        valore.byte = byte;
    } else if (serie != 0) {
        valore.tipo = Valore::Intero;
        valore.intero = serie >= 8 ? serie - 8 : interoDi(byte);
    }
    return valore;
}

bool dimensioneValida(quint32 dimensione)
{
    return dimensione >= 512 && dimensione <= 65536 && (dimensione & (dimensione - 1)) == 0;
}

} // namespace

File::File(const QString &percorso, bool badaAllaTestata) : m_file(percorso)
{
    constexpr auto modo = QIODevice::ReadOnly | QIODevice::Unbuffered;
    const int preso = Presa::descrittoreDi(percorso);
    if (!(preso >= 0 ? m_file.open(preso, modo) : m_file.open(modo)) || !m_file.seek(0))
        throw ado::Errore(ado::Causa::Illeggibile, m_file.errorString());
    const QByteArray inizio = m_file.read(testata);
    m_dimensione = paginaPredefinita;
    if (badaAllaTestata && inizio.size() == testata) {
        const quint32 scritta = due(inizio, 16) == 1 ? 65536 : due(inizio, 16);
        if (dimensioneValida(scritta))
            m_dimensione = scritta;
        m_attese = quattro(inizio, 28);
        m_primaLibera = quattro(inizio, 32);
        m_versione = quattro(inizio, 60);
        if (inizio.startsWith("SQLite format 3"))
            m_libere = quattro(inizio, 36);
    }
    // Gli archivi non riservano byte in fondo alle pagine: la testata che lo dice è rovinata.
    m_utili = static_cast<int>(m_dimensione);
    m_quante = static_cast<quint32>((m_file.size() + m_dimensione - 1) / m_dimensione);
}

QByteArray File::leggi(quint32 numero) const
{
    if (numero == 0 || numero > m_quante || !m_file.seek(qint64{numero - 1} * m_dimensione))
        return {};
    QByteArray byte = m_file.read(m_dimensione);
    // L'ultima può essere tronca: ciò che manca è vuoto.
    if (!byte.isEmpty())
        byte.append(static_cast<qsizetype>(m_dimensione) - byte.size(), '\0');
    return byte;
}

quint32 File::seguente(quint32 numero) const
{
    if (numero == 0 || numero > m_quante || !m_file.seek(qint64{numero - 1} * m_dimensione))
        return 0;
    const QByteArray byte = m_file.read(4);
    return byte.size() == 4 ? quattro(byte, 0) : 0;
}

Pagina File::pagina(quint32 numero) const
{
    Pagina letta;
    const QByteArray byte = leggi(numero);
    if (byte.isEmpty())
        return letta;
    const int inizio = numero == 1 ? testata : 0;
    const auto tipo = static_cast<quint8>(byte.at(inizio));
    if (tipo != 2 && tipo != 5 && tipo != 10 && tipo != 13)
        return letta;
    letta.foglia = tipo >= 10;
    const int puntatori = inizio + (letta.foglia ? 8 : 12);
    const auto quante = static_cast<int>(due(byte, inizio + 3));
    if (puntatori + 2 * quante > m_utili)
        return letta;
    letta.genere = tipo == 5 || tipo == 13 ? Genere::Tabella : Genere::Indice;
    if (!letta.foglia)
        letta.ultimoFiglio = quattro(byte, inizio + 8);
    for (int i = 0; i < quante; ++i) {
        const auto posto = static_cast<int>(due(byte, puntatori + 2 * i));
        Cella una;
        if (posto >= puntatori + 2 * quante && cella(byte, posto, letta.genere, letta.foglia, una))
            letta.celle.append(una);
        else
            ++letta.guasti;
    }
    return letta;
}

bool File::cella(const QByteArray &byte, int posto, Genere genere, bool foglia, Cella &letta) const
{
    if (!foglia) {
        if (posto + 4 > m_utili)
            return false;
        letta.figlio = quattro(byte, posto);
        posto += 4;
        if (genere == Genere::Tabella)
            return variabile(byte, posto, letta.chiave) > 0;
    }
    int letti = variabile(byte, posto, letta.lunghezza);
    if (letti == 0 || letta.lunghezza < 1 || letta.lunghezza > rigaMassima)
        return false;
    posto += letti;
    if (genere == Genere::Tabella) {
        letti = variabile(byte, posto, letta.chiave);
        if (letti == 0)
            return false;
        posto += letti;
    }
    const qint64 massimo =
        genere == Genere::Tabella ? m_utili - 35 : (m_utili - 12) * 64 / 255 - 23;
    const qint64 minimo = (m_utili - 12) * 32 / 255 - 23;
    qint64 locali = letta.lunghezza;
    if (locali > massimo) {
        locali = minimo + (letta.lunghezza - minimo) % (m_utili - 4);
        if (locali > massimo)
            locali = minimo;
        if (posto + locali + 4 > m_utili)
            return false;
        letta.seguito = quattro(byte, posto + locali);
    }
    if (posto + locali > m_utili)
        return false;
    letta.locale = byte.mid(posto, locali);
    return true;
}

Carico::Carico(const File &file, const Cella &cella)
    : m_file(file),
      m_pezzo(cella.locale),
      m_restano(cella.lunghezza - cella.locale.size()),
      m_seguito(cella.seguito)
{
}

bool Carico::riempi()
{
    const QByteArray pagina = m_file.leggi(m_seguito);
    if (m_restano <= 0 || pagina.isEmpty())
        return false;
    m_seguito = quattro(pagina, 0);
    m_pezzo = pagina.mid(4, qMin<qint64>(m_file.byteUtili() - 4, m_restano));
    m_restano -= m_pezzo.size();
    m_posto = 0;
    return true;
}

bool Carico::leggi(char *dove, qint64 quanti)
{
    while (quanti > 0) {
        if (m_posto == m_pezzo.size() && !riempi())
            return false;
        const qint64 ora = qMin(quanti, m_pezzo.size() - m_posto);
        std::memcpy(dove, m_pezzo.constData() + m_posto, static_cast<size_t>(ora));
        dove += ora;
        m_posto += ora;
        quanti -= ora;
    }
    return true;
}

// I tipi delle colonne, dall'intestazione; niente se non lo sono.
std::optional<QList<qint64>> Carico::serie(qint64 &intestazione) const
{
    const int letti = variabile(m_pezzo, 0, intestazione);
    // L'intestazione di una riga d'archivio sta sempre nella sua pagina.
    if (letti == 0 || intestazione < letti || intestazione > m_pezzo.size())
        return {};
    QList<qint64> serie;
    for (qint64 posto = letti; posto < intestazione;) {
        qint64 una = 0;
        const int suoi = variabile(m_pezzo, posto, una);
        if (suoi == 0 || una < 0 || una == 10 || una == 11)
            return {};
        serie.append(una);
        posto += suoi;
    }
    return serie;
}

std::optional<QList<Valore>> Carico::colonne(Lettura lettura)
{
    qint64 restano = m_pezzo.size() + m_restano;
    qint64 intestazione = 0;
    const auto tipi = serie(intestazione);
    if (!tipi)
        return {};
    restano -= intestazione;
    m_esatta = true;
    QList<qint64> lunghezze;
    for (const qint64 tipo : *tipi) {
        // Ciò che starebbe oltre la fine non c'è: una lunghezza negativa.
        const qint64 lunghezza = lunghezzaDi(tipo);
        const bool entra = lunghezza <= restano;
        m_esatta = m_esatta && entra;
        lunghezze.append(entra ? lunghezza : -1);
        restano -= entra ? lunghezza : 0;
    }
    m_esatta = m_esatta && restano == 0;
    if (!m_esatta && lettura == Lettura::Esatta)
        return {};
    m_posto = intestazione;
    return valori(*tipi, lunghezze);
}

std::optional<QList<Valore>> Carico::valori(const QList<qint64> &tipi,
                                            const QList<qint64> &lunghezze)
{
    QList<Valore> letti;
    for (qsizetype i = 0; i < tipi.size(); ++i) {
        const qint64 lunghezza = lunghezze.at(i);
        if (lunghezza < 0) {
            letti.append(Valore{});
            continue;
        }
        if (i == tipi.size() - 1 && lunghezza >= lungoDa && tipi.at(i) % 2 == 0) {
            letti.append({Valore::Lungo, lunghezza, 0, {}});
            break;
        }
        QByteArray byte(lunghezza, Qt::Uninitialized);
        if (!leggi(byte.data(), lunghezza))
            return {};
        letti.append(valoreDi(tipi.at(i), byte));
    }
    return letti;
}

std::optional<QList<quint32>> catena(const File &file, const Cella &cella, const QList<Uso> &uso)
{
    QList<quint32> lista;
    const qint64 perPagina = file.byteUtili() - 4;
    qint64 restano = cella.lunghezza - cella.locale.size();
    quint32 numero = cella.seguito;
    while (restano > 0) {
        if (numero < 2 || numero > file.quante() || uso.at(numero) == Uso::Albero ||
            uso.at(numero) == Uso::Seguito || lista.size() > file.quante())
            return {};
        lista.append(numero);
        numero = file.seguente(numero);
        restano -= perPagina;
    }
    if (restano <= 0 && cella.seguito != 0 && numero != 0)
        return {};
    return lista;
}

} // namespace pagine
