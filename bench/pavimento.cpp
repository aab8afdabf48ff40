#include "bench/pavimento.h"

#include <QCollator>
#include <QFile>

#include <algorithm>
#include <numeric>
#include <sqlite3.h>
#include <string>
#include <unordered_map>

namespace
{

// Una connessione tenuta aperta: misurarne l'apertura non direbbe nulla delle righe.
sqlite3 *base(const QString &percorso)
{
    static sqlite3 *sola = [&] {
        sqlite3 *aperta = nullptr;
        sqlite3_open_v2(QFile::encodeName(percorso).constData(), &aperta, SQLITE_OPEN_READONLY,
                        nullptr);
        return aperta;
    }();
    return sola;
}

} // namespace

void righePerChiave(const QString &percorso, const std::vector<qint64> &chiavi)
{
    sqlite3_stmt *lettura = nullptr;
    sqlite3_prepare_v2(base(percorso), "SELECT * FROM Individui WHERE rowid = ?", -1, &lettura,
                       nullptr);
    const int colonne = sqlite3_column_count(lettura);
    for (const qint64 chiave : chiavi) {
        sqlite3_bind_int64(lettura, 1, chiave);
        while (sqlite3_step(lettura) == SQLITE_ROW) {
            for (int i = 0; i < colonne; ++i)
                sqlite3_column_text(lettura, i);
        }
        sqlite3_reset(lettura);
    }
    sqlite3_finalize(lettura);
}

void ordinaIlMeno(const QString &percorso)
{
    sqlite3_stmt *lettura = nullptr;
    sqlite3_prepare_v2(base(percorso), "SELECT rowid, Cognome FROM Individui ORDER BY rowid", -1,
                       &lettura, nullptr);
    std::vector<qint64> chiavi;
    std::vector<quint32> valori;
    std::unordered_map<std::string, quint32> posti;
    std::vector<QString> distinti;
    while (sqlite3_step(lettura) == SQLITE_ROW) {
        chiavi.push_back(sqlite3_column_int64(lettura, 0));
        const auto *testo = reinterpret_cast<const char *>(sqlite3_column_text(lettura, 1));
        const auto [posto, nuovo] = posti.try_emplace(testo, static_cast<quint32>(distinti.size()));
        if (nuovo)
            distinti.push_back(QString::fromUtf8(testo));
        valori.push_back(posto->second);
    }
    sqlite3_finalize(lettura);
    QCollator collatore(QLocale(QLocale::Italian, QLocale::Italy));
    std::vector<QCollatorSortKey> segni;
    segni.reserve(distinti.size());
    for (const QString &distinto : distinti)
        segni.push_back(collatore.sortKey(distinto));
    std::vector<quint32> ordine(distinti.size());
    std::iota(ordine.begin(), ordine.end(), 0U);
    std::sort(ordine.begin(), ordine.end(),
              [&](quint32 uno, quint32 altro) { return segni[uno] < segni[altro]; });
    std::vector<size_t> rango(distinti.size());
    for (size_t i = 0; i < ordine.size(); ++i)
        rango[ordine[i]] = i;
    std::vector<size_t> inizio(distinti.size() + 1);
    for (const quint32 valore : valori)
        ++inizio[rango[valore] + 1];
    std::partial_sum(inizio.begin(), inizio.end(), inizio.begin());
    std::vector<qint64> ordinate(chiavi.size());
    for (size_t i = 0; i < chiavi.size(); ++i)
        ordinate[inizio[rango[valori[i]]]++] = chiavi[i];
}
