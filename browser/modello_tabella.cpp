#include "browser/modello_tabella.h"

#include "platform/lingua/italiano.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace
{

constexpr qsizetype righeTenute = 500;
constexpr qsizetype lettereMostrate = 2000;
constexpr int chiaviSubito = 200;
// Quante chiavi per volta, e fra quanti millisecondi stare per leggerle.
constexpr int pezzoMinimo = 1000;
constexpr int pezzoMassimo = 100000;
constexpr qint64 pezzoBreve = 6;
constexpr qint64 pezzoLungo = 15;
// Dopo quanti millisecondi si riprova su un archivio occupato da altri.
constexpr int attesaOccupato = 300;

bool colonnaDiOre(const QString &nome)
{
    static const QStringList nomi{QStringLiteral("Ora"), QStringLiteral("Creazione"),
                                  QStringLiteral("Modifica")};
    return nomi.contains(nome);
}

} // namespace

ModelloTabella::ModelloTabella(modTarvola::Elenco elenco, QObject *padre)
    : QAbstractTableModel(padre), m_elenco(std::move(elenco)), m_righe(righeTenute)
{
}

int ModelloTabella::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(m_chiavi.size());
}

int ModelloTabella::columnCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(m_elenco.colonne().size());
}

QVariant ModelloTabella::data(const QModelIndex &indice, int ruolo) const
{
    if (!indice.isValid())
        return {};
    if (ruolo == Qt::DisplayRole || ruolo == Qt::ToolTipRole) {
        const QVariant valore = valori(indice.row()).value(indice.column());
        const QVariant mostrato = m_elenco.diDate(indice.column())
                                      ? italiano::mostraDataBreve(valore.toString())
                                      : valore;
        // Un testo smisurato, che può venire da un archivio altrui, fermerebbe chi lo dispone.
        if (mostrato.toString().size() > lettereMostrate)
            return QString(mostrato.toString().left(lettereMostrate) + u'…');
        return mostrato;
    }
    return {};
}

QVariant ModelloTabella::headerData(int sezione, Qt::Orientation verso, int ruolo) const
{
    if (ruolo != Qt::DisplayRole)
        return {};
    return verso == Qt::Horizontal ? QVariant(m_elenco.colonne().value(sezione))
                                   : QVariant(sezione + 1);
}

// Le date si riempiono a poco a poco: una colonna ancora vuota ha già il posto per loro.
QString ModelloTabella::esempio(int colonna) const
{
    const QString &nome = m_elenco.colonne().at(colonna);
    if (colonnaDiOre(nome))
        return QStringLiteral("00/00/0000 00:00:00");
    return m_elenco.diDate(colonna) ? QStringLiteral("00/00/0000") : QString();
}

void ModelloTabella::sostituisce(const std::function<std::vector<qint64>()> &legge)
{
    beginResetModel();
    // Un pezzo ancora in attesa nel ciclo degli eventi è di un elenco che non c'è più.
    ++m_lettura;
    m_incompleto = false;
    m_daContinuare = false;
    m_righe.clear();
    m_chiavi.clear();
    // Se non riesce la griglia resta con un elenco vuoto, e l'errore va a chi ha dato il comando.
    try {
        m_chiavi = legge();
    } catch (...) {
        endResetModel();
        throw;
    }
    endResetModel();
}

void ModelloTabella::apre()
{
    sostituisce([this] { return m_elenco.chiaviDopo(-1, chiaviSubito); });
    m_pezzo = pezzoMinimo;
    m_daContinuare = m_elenco.aPezzi() && m_chiavi.size() == chiaviSubito;
}

void ModelloTabella::continua()
{
    if (std::exchange(m_daContinuare, false))
        leggeAncora(m_lettura);
}

void ModelloTabella::leggeAncora(int lettura, int attesa)
{
    QTimer::singleShot(attesa, this, [this, lettura] {
        if (lettura != m_lettura)
            return;
        try {
            if (leggePezzo())
                leggeAncora(lettura);
        } catch (const ado::Errore &errore) {
            // Chi tiene occupato l'archivio lo lascerà; altrimenti le righe lette restano, e il
            // prossimo comando rilegge e dice perché.
            if (errore.causa() == ado::Causa::Occupato)
                leggeAncora(lettura, attesaOccupato);
            else
                m_incompleto = true;
        }
    });
}

// Aggiunge un pezzo di chiavi, grande quanto se ne legge senza che la finestra se ne accorga.
bool ModelloTabella::leggePezzo()
{
    QElapsedTimer orologio;
    orologio.start();
    const std::vector<qint64> altre = m_elenco.chiaviDopo(m_chiavi.back(), m_pezzo);
    if (altre.empty())
        return false;
    const int prima = rowCount();
    beginInsertRows({}, prima, prima + static_cast<int>(altre.size()) - 1);
    m_chiavi.insert(m_chiavi.end(), altre.begin(), altre.end());
    endInsertRows();
    // Un pezzo non pieno è l'ultimo: si risparmia la lettura che non renderebbe nulla.
    const bool forseAltre = static_cast<int>(altre.size()) == m_pezzo;
    const qint64 durata = orologio.elapsed();
    if (durata < pezzoBreve)
        m_pezzo = qMin(m_pezzo * 2, pezzoMassimo);
    else if (durata > pezzoLungo)
        m_pezzo = qMax(m_pezzo / 2, pezzoMinimo);
    return forseAltre;
}

void ModelloTabella::aggiungeNuove()
{
    const std::vector<qint64> nuove =
        m_elenco.chiaviDopo(m_chiavi.empty() ? -1 : m_chiavi.back(), modTarvola::Elenco::tutte);
    if (nuove.empty())
        return;
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(nuove.size()) - 1);
    m_chiavi.insert(m_chiavi.end(), nuove.begin(), nuove.end());
    endInsertRows();
}

void ModelloTabella::rilegge()
{
    sostituisce([this] {
        return m_colonnaOrdine < 0 ? m_elenco.chiaviDopo(-1, modTarvola::Elenco::tutte)
                                   : m_elenco.chiaviOrdinate(m_colonnaOrdine);
    });
}

bool ModelloTabella::ordina(int colonna)
{
    if (!m_elenco.ordinabile(colonna))
        return false;
    const int prima = std::exchange(m_colonnaOrdine, colonna);
    try {
        rilegge();
    } catch (...) {
        m_colonnaOrdine = prima;
        throw;
    }
    return true;
}

// La griglia chiede i valori mentre si disegna, dove nessun errore si può dire: una riga che non si
// legge si mostra vuota, ma si riprova ogni volta; il comando che la vuole dirà che non si legge.
QVariantList ModelloTabella::valori(int riga) const
{
    const qint64 chiave = m_chiavi.at(static_cast<size_t>(riga));
    if (const QVariantList *presente = m_righe.object(chiave))
        return *presente;
    QVariantList letti;
    try {
        letti = m_elenco.riga(chiave);
    } catch (const ado::Errore &) {
        return {};
    }
    if (!letti.isEmpty())
        m_righe.insert(chiave, new QVariantList(letti));
    return letti;
}

QVariant ModelloTabella::campo(int riga, const QString &nome) const
{
    return valori(riga).value(m_elenco.colonne().indexOf(nome));
}

// La chiave di una riga eliminata può toccare a un record nuovo: conta anche il codice.
bool ModelloTabella::conferma(int riga)
{
    const auto posto = m_elenco.colonne().indexOf(QStringLiteral("Codice"));
    const QString visto = valori(riga).value(posto).toString();
    const QVariantList ora = m_elenco.riga(chiave(riga));
    m_righe.remove(chiave(riga));
    emit dataChanged(index(riga, 0), index(riga, columnCount() - 1));
    return !ora.isEmpty() && ora.value(posto).toString() == visto;
}

void ModelloTabella::rinfresca()
{
    m_righe.clear();
    if (!m_chiavi.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int ModelloTabella::rigaDi(const QString &codice) const
{
    return rigaDiChiave(m_elenco.chiaveDi(codice));
}

int ModelloTabella::rigaDiChiave(qint64 chiave) const
{
    const auto posto = std::find(m_chiavi.begin(), m_chiavi.end(), chiave);
    return posto == m_chiavi.end() ? -1 : static_cast<int>(posto - m_chiavi.begin());
}
