#include "db/storia/registrazione.h"

#include "db/schema/passi.h"
#include "db/schema/schema.h"
#include "db/schema/tabelle.h"
#include "db/storia/contenuti.h"
#include "db/storia/storia.h"

#include <QDataStream>
#include <QDateTime>
#include <QIODevice>

#include <algorithm>

namespace modTarvola::storia
{

namespace
{

// Le tavole che il motore e le regole tengono da sé, e la storia stessa. Di quella delle password
// non cambia nulla lavorando.
bool entra(QByteArrayView tabella)
{
    static const char *const fuori[] = {"Scomparsi", "Orfani", "Protezione", "Storia",
                                        "StoriaContenuti"};
    return !tabella.startsWith("sqlite_") &&
           std::none_of(std::begin(fuori), std::end(fuori),
                        [tabella](const char *nome) { return tabella == nome; });
}

void dimentica(ado::Connection &connessione, const QString &quali)
{
    connessione.Execute(
        {QStringLiteral("DELETE FROM StoriaContenuti WHERE Passo IN (SELECT Numero FROM Storia "
                        "WHERE %1)")
             .arg(quali),
         {},
         {}});
    connessione.Execute({QStringLiteral("DELETE FROM Storia WHERE ") + quali, {}, {}});
}

qint64 grandezza(ado::Connection &connessione)
{
    const auto pragma = [&connessione](const char *quale) {
        return connessione.valore({QString::fromUtf8(quale), {}, {}}).toLongLong();
    };
    return pragma("PRAGMA page_count") * pragma("PRAGMA page_size");
}

// Come comincia un passo scritto.
const QByteArray compresso = QByteArrayLiteral("z");
const QByteArray intero = QByteArrayLiteral("i");

// Dimentica i passi più vecchi di quanti ne stanno nei limiti.
void sfoltisce(ado::Connection &connessione)
{
    const Limiti &fino = limiti();
    const qint64 scritture = qMax(fino.minimo, grandezza(connessione) / fino.parteDelFile);
    qint64 tolte = 0;
    qint64 altre = 0;
    int quanti = 0;
    qint64 primoFuori = -1;
    connessione.leggi(
        {QStringLiteral("SELECT Numero, Tolte, Peso FROM Storia ORDER BY Numero DESC"), {}, {}},
        [&](const ado::Riga &riga) {
            (riga.intero(1) != 0 ? tolte : altre) += riga.intero(2);
            ++quanti;
            if (quanti > fino.passi || altre > scritture || tolte > fino.tolte + fino.contenuti)
                primoFuori = riga.intero(0);
            return primoFuori < 0;
        });
    if (primoFuori >= 0)
        dimentica(connessione, QStringLiteral("Numero <= %1").arg(primoFuori));
}

} // namespace

TroppoGrande::TroppoGrande()
    : Errore(ado::Causa::Altro, QStringLiteral("è troppo grande per poterla poi annullare"))
{
}

QByteArray Scrittura::byte() const
{
    QByteArray tutti;
    QDataStream flusso(&tutti, QIODevice::WriteOnly);
    flusso << pezzi << chiavi.byte();
    // Di un'eliminazione grande conta il tempo, di un atto lo spazio: la prima lascia nel file più
    // posto di quanto ne prenda.
    constexpr qsizetype grande = qsizetype{4} << 20;
    return tutti.size() > grande ? intero + tutti : compresso + qCompress(tutti, 9);
}

Scrittura Scrittura::da(const QByteArray &byte)
{
    const QByteArray tutti = byte.startsWith(compresso) ? qUncompress(byte.sliced(1))
                                                        : byte.sliced(qMin(1, byte.size()));
    Scrittura letta;
    QByteArray chiavi;
    QDataStream flusso(tutti);
    flusso >> letta.pezzi >> chiavi;
    if (tutti.isEmpty() || flusso.status() != QDataStream::Ok)
        throw ado::Errore(ado::Causa::Danneggiato,
                          QStringLiteral("i cambiamenti registrati non si leggono"));
    letta.chiavi = Chiavi::da(chiavi);
    return letta;
}

Registrazione::Registrazione(ado::Connection &connessione) : m_connessione(connessione)
{
    comincia();
}

void Registrazione::comincia()
{
    m_sessione.reset();
    m_sessione = std::make_unique<ado::Sessione>(m_connessione, entra);
}

// Il numero che il passo avrà; chi lo chiede crea anche le tavole.
qint64 Registrazione::numero()
{
    if (m_numero > 0)
        return m_numero;
    if (!presente(m_connessione)) {
        for (const char *istruzione : {passi::creaStoria, passi::creaContenuti})
            m_connessione.Execute({QString::fromUtf8(istruzione), {}, {}});
        segnaVersione(m_connessione);
    }
    m_numero = m_connessione
                   .valore({QStringLiteral("SELECT coalesce(max(Numero), 0) + 1 FROM "
                                           "Storia"),
                            {},
                            {}})
                   .toLongLong();
    return m_numero;
}

void Registrazione::primaDiTogliere(const QString &tabella, const QString &dove,
                                    const QVariantList &valori)
{
    const catalogo::Tabella &sua = catalogo::tabella(tabella);
    if (m_sessione == nullptr || sua.forma != catalogo::Forma::Record)
        return;
    m_chiavi.annota(m_connessione, tabella, dove, valori);
    if (sua.lunga() == nullptr)
        return;
    QStringList file;
    m_connessione.leggi({QStringLiteral("SELECT Codice FROM %1 WHERE (%2) AND typeof(%3) = 'blob'")
                             .arg(tabella, dove, sua.lunga()->nome),
                         valori,
                         {}},
                        [&file](const ado::Riga &riga) {
                            file.append(riga.testo(0));
                            return true;
                        });
    for (const QString &codice : std::as_const(file)) {
        ++m_file;
        m_contenuti += accantona(m_connessione, numero(), codice);
        if (m_contenuti > limiti().contenuti)
            throw TroppoGrande();
    }
}

void Registrazione::rinuncia()
{
    m_sessione.reset();
    m_persa = true;
}

void Registrazione::chiudePezzo()
{
    if (m_sessione == nullptr)
        return;
    QByteArray pezzo;
    m_sessione->cambiamenti([&pezzo](QByteArrayView byte) { pezzo.append(byte); });
    if (!pezzo.isEmpty())
        m_pezzi.append(pezzo);
    comincia();
}

bool Registrazione::troppo() const
{
    return m_sessione != nullptr && m_sessione->memoria() > limiti().memoria;
}

void Registrazione::conferma(const QString &nome)
{
    m_persa = m_persa || troppo();
    if (!m_persa)
        chiudePezzo();
    m_sessione.reset();
    if (m_pezzi.isEmpty() && !m_persa)
        return;
    numero();
    // Da qui la strada è un'altra.
    dimentica(m_connessione, QStringLiteral("Verso = 1"));
    if (!m_persa)
        scrive(nome);
    if (m_persa)
        m_connessione.Execute(
            {QStringLiteral("DELETE FROM StoriaContenuti WHERE Passo = ?"), {numero()}, {}});
}

void Registrazione::scrive(const QString &nome)
{
    const bool tolte = m_contenuti > 0 || !m_chiavi.vuote();
    const QByteArray byte = Scrittura{m_pezzi, m_chiavi}.byte();
    m_persa = byte.size() > limiti().tolte;
    if (m_persa)
        return;
    m_connessione.Execute({QStringLiteral("INSERT INTO Storia VALUES (?, ?, ?, 0, ?, ?, ?)"),
                           {numero(), QDateTime::currentDateTime().toString(Qt::ISODate),
                            nome.isEmpty() ? QStringLiteral("Modifica") : nome, tolte,
                            byte.size() + m_contenuti, byte},
                           {}});
    // Ogni tanto basta: fra una volta e l'altra la storia cresce di poco.
    constexpr qint64 ognuno = 16;
    if (tolte || numero() % ognuno == 0)
        sfoltisce(m_connessione);
}

} // namespace modTarvola::storia
