// Il meno che una finestra con cinquanta righe della stessa tabella possa fare: il metro per
// l'apertura di un visualizzatore.
#include "bench/dipinta.h"

#include <QApplication>
#include <QTableWidget>

#include <cstdio>
#include <sqlite3.h>

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    sqlite3 *base = nullptr;
    sqlite3_stmt *lettura = nullptr;
    sqlite3_open_v2(argv[1], &base, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(base, "SELECT * FROM Individui ORDER BY rowid LIMIT 50", -1, &lettura,
                       nullptr);
    QTableWidget tabella(50, sqlite3_column_count(lettura));
    for (int riga = 0; sqlite3_step(lettura) == SQLITE_ROW; ++riga) {
        for (int colonna = 0; colonna < tabella.columnCount(); ++colonna) {
            const auto *testo = sqlite3_column_text(lettura, colonna);
            tabella.setItem(
                riga, colonna,
                new QTableWidgetItem(QString::fromUtf8(reinterpret_cast<const char *>(testo))));
        }
    }
    sqlite3_finalize(lettura);
    tabella.resize(1200, 700);
    tabella.show();
    new Dipinta(tabella.viewport(), [] {
        std::puts("pronta");
        std::fflush(stdout);
        QApplication::quit();
    });
    return QApplication::exec();
}
