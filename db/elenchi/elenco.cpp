#include "db/elenchi/elenco.h"

#include "db/elenchi/ambiti.h"
#include "platform/lingua/italiano.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace modTarvola
{

namespace
{

constexpr qsizetype colonneNonOrdinabili = 10;

const QString colonnaContenuto = QStringLiteral("Campolungo");
// I contenuti non si leggono per intero: i testi si ordinano per il loro principio, che è ciò che
// se ne vede, e i file restano insieme come senza valore.
const QString principioDelContenuto =
    QStringLiteral("CASE WHEN Tipo IN (12, 13) THEN substr(Campolungo, 1, 60) END");

// Null prima di tutto, poi i numeri, poi i testi.
bool precede(const QVariant &uno, const QVariant &altro)
{
    const auto specie = [](const QVariant &valore) {
        return !valore.isValid() ? 0 : valore.typeId() == QMetaType::QString ? 2 : 1;
    };
    if (specie(uno) != specie(altro))
        return specie(uno) < specie(altro);
    switch (specie(uno)) {
    case 0:
        return false;
    case 1:
        return uno.toDouble() < altro.toDouble();
    default:
        return italiano::confronta(uno.toString(), altro.toString()) < 0;
    }
}

// Il posto in ordine di ciascun valore; pari per i testi che differiscono solo per le maiuscole.
std::vector<quint32> ranghi(const std::vector<QVariant> &valori)
{
    std::vector<quint32> ordine(valori.size());
    std::iota(ordine.begin(), ordine.end(), 0U);
    std::sort(ordine.begin(), ordine.end(), [&valori](quint32 uno, quint32 altro) {
        return precede(valori[uno], valori[altro]);
    });
    std::vector<quint32> rango(valori.size());
    for (size_t i = 1; i < ordine.size(); ++i) {
        const bool dopo = precede(valori[ordine[i - 1]], valori[ordine[i]]);
        rango[ordine[i]] = rango[ordine[i - 1]] + (dopo ? 1 : 0);
    }
    return rango;
}

// Mette ogni chiave al posto del suo valore; a pari valore resta l'ordine di prima.
std::vector<qint64> distribuite(const std::vector<qint64> &chiavi,
                                const std::vector<quint32> &valoreDi,
                                const std::vector<quint32> &rango)
{
    std::vector<size_t> inizio(rango.size() + 1);
    for (const quint32 valore : valoreDi)
        ++inizio[rango[valore] + 1];
    std::partial_sum(inizio.begin(), inizio.end(), inizio.begin());
    std::vector<qint64> ordinate(chiavi.size());
    for (size_t i = 0; i < chiavi.size(); ++i)
        ordinate[inizio[rango[valoreDi[i]]]++] = chiavi[i];
    return ordinate;
}

} // namespace

Elenco::Elenco(Richiesta richiesta, ado::Connection &connessione)
    : m_richiesta(std::move(richiesta)), m_connessione(&connessione)
{
    const QString &tabella = m_richiesta.TipoTabella;
    m_aPezzi = condizioneAmbito(tabella, m_richiesta.Ambito, false).isEmpty();
    m_condizione = condizioneAmbito(tabella, m_richiesta.Ambito, m_richiesta.dettagli);
    if (m_condizione.isEmpty())
        m_condizione = QStringLiteral("1");
    m_condizioneDeiPezzi = condizioneSalendo(tabella, m_richiesta.Ambito, m_richiesta.dettagli);
    if (m_condizioneDeiPezzi.isEmpty() || !unArchivioSolo())
        m_condizioneDeiPezzi = m_condizione;
    else
        m_aPezzi = true;
    m_lettura =
        letturaRiga(tabella, m_richiesta.Ambito, m_richiesta.dettagli, m_richiesta.ColonnaLingua);
    m_colonne = connessione.colonne({m_lettura, {}, {}});
    for (const QString &colonna : std::as_const(m_colonne))
        m_date.append(eColonnaDiDate(tabella, colonna));
}

bool Elenco::ordinabile(int colonna) const
{
    return colonna >= 0 && colonna < m_colonne.size() && m_colonne.size() < colonneNonOrdinabili;
}

QVariantList Elenco::codici() const
{
    return {m_richiesta.ArchivioLocale, m_richiesta.RegistroLocale, m_richiesta.VoceLocale};
}

// Vero se tutti i registri del file sono dell'archivio chiesto, com'è di solito.
bool Elenco::unArchivioSolo() const
{
    return m_connessione
        ->valore({QStringLiteral("SELECT EXISTS (SELECT 1 FROM Archivi WHERE Codice = ?1) AND "
                                 "NOT EXISTS (SELECT 1 FROM Registri WHERE Archivio <> ?1)"),
                  {m_richiesta.ArchivioLocale},
                  {}})
        .toBool();
}

std::vector<qint64> Elenco::chiaviDopo(qint64 chiave, int quante) const
{
    std::vector<qint64> chiavi;
    const bool unPezzo = m_aPezzi && quante < tutte;
    m_connessione->leggi(
        {QStringLiteral("SELECT rowid FROM %1 WHERE rowid > ?4 AND %2 "
                        "ORDER BY rowid LIMIT ?5")
             .arg(m_richiesta.TipoTabella, unPezzo ? m_condizioneDeiPezzi : m_condizione),
         codici() + QVariantList{chiave, unPezzo ? quante : -1},
         {}},
        [&chiavi](const ado::Riga &riga) {
            chiavi.push_back(riga.intero(0));
            return true;
        });
    return chiavi;
}

// Si confrontano i soli valori distinti: in una colonna di nomi sono pochi rispetto alle righe.
std::vector<qint64> Elenco::chiaviOrdinate(int colonna) const
{
    std::vector<qint64> chiavi;
    std::vector<quint32> valoreDi;
    // Null è il primo dei valori, così nessun testo può confondersi con lui.
    std::vector<QVariant> distinti{QVariant()};
    QHash<QByteArray, quint32> posti;
    const QString &nome = m_colonne.at(colonna);
    const QString letta =
        nome == colonnaContenuto ? principioDelContenuto : QStringLiteral("\"%1\"").arg(nome);
    m_connessione->leggi(
        {QStringLiteral("SELECT rowid, %3 FROM %1 WHERE %2 ORDER BY rowid")
             .arg(m_richiesta.TipoTabella, m_condizione, letta),
         codici(),
         {}},
        [&](const ado::Riga &riga) {
            chiavi.push_back(riga.intero(0));
            if (riga.nullo(1)) {
                valoreDi.push_back(0);
                return true;
            }
            const QVariant valore = riga.numero(1) ? riga.valore(1) : QVariant();
            const QByteArrayView byte = riga.byte(1);
            const auto posto = posti.constFind(QByteArray::fromRawData(byte.data(), byte.size()));
            if (posto != posti.constEnd()) {
                valoreDi.push_back(*posto);
                return true;
            }
            valoreDi.push_back(static_cast<quint32>(distinti.size()));
            posti.insert(byte.toByteArray(), valoreDi.back());
            distinti.push_back(valore.isValid() ? valore : QString::fromUtf8(byte));
            return true;
        });
    return distribuite(chiavi, valoreDi, ranghi(distinti));
}

qint64 Elenco::chiaveDi(const QString &codice) const
{
    const QVariant chiave = m_connessione->valore(
        {QStringLiteral("SELECT rowid FROM %1 WHERE Codice = ?").arg(m_richiesta.TipoTabella),
         {codice},
         {}});
    return chiave.isValid() ? chiave.toLongLong() : -1;
}

QVariantList Elenco::riga(qint64 chiave) const
{
    QVariantList valori;
    m_connessione->leggi({m_lettura, {chiave}, {}}, [&valori](const ado::Riga &riga) {
        for (int i = 0; i < riga.colonne(); ++i)
            valori.append(riga.valore(i));
        return false;
    });
    // Di un testo lungo si mostra la prima riga.
    const qsizetype contenuto = m_colonne.indexOf(colonnaContenuto);
    if (contenuto >= 0 && contenuto < valori.size() && valori.at(contenuto).isValid())
        valori[contenuto] = valori.at(contenuto).toString().section(u'\n', 0, 0).trimmed();
    return valori;
}

} // namespace modTarvola
