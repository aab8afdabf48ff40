#include "db/elenco.h"

#include "platform/italiano.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace modTarvola
{

namespace
{

constexpr qsizetype colonneNonOrdinabili = 10;

// Ogni ambito è una condizione sulla tabella; A, R e V sono i codici dell'archivio, del registro e
// della voce, legati come ?1, ?2 e ?3.
struct Ambito {
    const char *tabella;
    int ambito;
    const char *condizione;
};

constexpr Ambito ambiti[] = {
    {"Archivi", 0, ""},
    {"Registri", 0, "WHERE Registri.Archivio = ?1"},
    {"Registri", 7, ""},
    {"Voci", 0, "WHERE Voci.Registro = ?2"},
    {"Voci", 4,
     "INNER JOIN Registri ON Registri.Codice = Voci.Registro "
     "INNER JOIN Archivi ON Archivi.Codice = Registri.Archivio "
     "WHERE Archivi.Codice = ?1 AND Voci.Registro = ?2"},
    {"Voci", 6,
     "INNER JOIN Registri ON Registri.Codice = Voci.Registro "
     "INNER JOIN Archivi ON Archivi.Codice = Registri.Archivio WHERE Archivi.Codice = ?1"},
    {"Voci", 7, ""},
};

const char *condizioneDi(const Richiesta &richiesta)
{
    for (const Ambito &ambito : ambiti) {
        if (richiesta.TipoTabella == QLatin1String(ambito.tabella) &&
            richiesta.Ambito == ambito.ambito)
            return ambito.condizione;
    }
    throw ado::Errore(ado::Causa::Altro, QStringLiteral("l'ambito %1 non esiste per la tabella %2")
                                             .arg(richiesta.Ambito)
                                             .arg(richiesta.TipoTabella));
}

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

// Il posto in ordine di ciascun valore.
std::vector<size_t> ranghi(const std::vector<QVariant> &valori)
{
    std::vector<size_t> ordine(valori.size());
    std::iota(ordine.begin(), ordine.end(), size_t{0});
    std::sort(ordine.begin(), ordine.end(),
              [&valori](size_t uno, size_t altro) { return precede(valori[uno], valori[altro]); });
    std::vector<size_t> rango(valori.size());
    for (size_t i = 0; i < ordine.size(); ++i)
        rango[ordine[i]] = i;
    return rango;
}

} // namespace

Elenco::Elenco(Richiesta richiesta, ado::Connection &connessione)
    : m_richiesta(std::move(richiesta)), m_connessione(&connessione)
{
    condizioneDi(m_richiesta);
    m_lettura = QStringLiteral("SELECT * FROM %1 WHERE rowid = ?").arg(m_richiesta.TipoTabella);
    m_colonne = connessione.colonne({m_lettura, {}, {}});
}

bool Elenco::ordinabile(int colonna) const
{
    return colonna >= 0 && colonna < m_colonne.size() && m_colonne.size() < colonneNonOrdinabili;
}

ado::Comando Elenco::comandoChiavi(const QString &altraColonna) const
{
    const QString &tabella = m_richiesta.TipoTabella;
    const QString seguito = altraColonna.isEmpty()
                                ? QString()
                                : QStringLiteral(", %1.\"%2\"").arg(tabella, altraColonna);
    return {QStringLiteral("SELECT %1.rowid%2 FROM %1 %3 ORDER BY %1.rowid")
                .arg(tabella, seguito, QString::fromUtf8(condizioneDi(m_richiesta))),
            {m_richiesta.ArchivioLocale, m_richiesta.RegistroLocale, m_richiesta.VoceLocale},
            {}};
}

std::vector<qint64> Elenco::chiavi(int colonnaOrdine) const
{
    if (colonnaOrdine >= 0)
        return ordinate(m_colonne.at(colonnaOrdine));
    std::vector<qint64> trovate;
    m_connessione->leggi(comandoChiavi({}), [&trovate](const ado::Riga &riga) {
        trovate.push_back(riga.intero(0));
        return true;
    });
    return trovate;
}

// Si confrontano i soli valori distinti: in una colonna di nomi sono pochi rispetto alle righe.
std::vector<qint64> Elenco::ordinate(const QString &colonna) const
{
    std::vector<qint64> trovate;
    std::vector<qsizetype> valoreDi;
    std::vector<QVariant> distinti;
    QHash<QString, qsizetype> posti;
    m_connessione->leggi(comandoChiavi(colonna), [&](const ado::Riga &riga) {
        // Null e testo vuoto sono valori diversi: il segno davanti li distingue.
        const QString segno = riga.nullo(1) ? QString() : u'=' + riga.testo(1);
        const auto posto = posti.constFind(segno);
        valoreDi.push_back(posto == posti.constEnd() ? posti.size() : *posto);
        if (posto == posti.constEnd()) {
            posti.insert(segno, posti.size());
            distinti.push_back(riga.valore(1));
        }
        trovate.push_back(riga.intero(0));
        return true;
    });
    const std::vector<size_t> rango = ranghi(distinti);
    std::vector<size_t> ordine(trovate.size());
    std::iota(ordine.begin(), ordine.end(), size_t{0});
    std::stable_sort(ordine.begin(), ordine.end(), [&](size_t uno, size_t altro) {
        return rango[static_cast<size_t>(valoreDi[uno])] <
               rango[static_cast<size_t>(valoreDi[altro])];
    });
    std::vector<qint64> ordinati;
    ordinati.reserve(trovate.size());
    for (const size_t i : ordine)
        ordinati.push_back(trovate[i]);
    return ordinati;
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
    return valori;
}

} // namespace modTarvola
