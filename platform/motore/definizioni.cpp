#include "platform/motore/definizioni.h"

#include <memory>
#include <sqlite3.h>

namespace ado
{

namespace
{

constexpr int byteAlMassimo = 1 << 20;
constexpr int calcolataALeggerla = 2; // fra quelle che il motore dice nascoste

struct Chiude {
    void operator()(sqlite3 *base) const { sqlite3_close(base); }
    void operator()(sqlite3_stmt *istruzione) const { sqlite3_finalize(istruzione); }
};
using Istruzione = std::unique_ptr<sqlite3_stmt, Chiude>;

Istruzione prepara(sqlite3 *base, const char *testo)
{
    sqlite3_stmt *istruzione = nullptr;
    sqlite3_prepare_v2(base, testo, -1, &istruzione, nullptr);
    return Istruzione(istruzione);
}

// Creare una tabella non legge nulla: chi chiede di leggere, o di richiamare un modulo, non crea
// soltanto.
int consente(void * /*senza*/, int azione, const char * /*uno*/, const char * /*due*/,
             const char * /*base*/, const char * /*da*/)
{
    return azione == SQLITE_SELECT || azione == SQLITE_CREATE_VTABLE || azione == SQLITE_ATTACH ||
                   azione == SQLITE_PRAGMA
               ? SQLITE_DENY
               : SQLITE_OK;
}

} // namespace

QStringList colonneScritte(const QByteArray &istruzione)
{
    sqlite3 *aperta = nullptr;
    const int esito = sqlite3_open(":memory:", &aperta);
    const std::unique_ptr<sqlite3, Chiude> base(aperta);
    if (esito != SQLITE_OK)
        return {};
    sqlite3_limit(aperta, SQLITE_LIMIT_SQL_LENGTH, byteAlMassimo);
    sqlite3_set_authorizer(aperta, consente, nullptr);
    const Istruzione crea = prepara(aperta, istruzione.constData());
    if (crea == nullptr || sqlite3_step(crea.get()) != SQLITE_DONE)
        return {};
    sqlite3_set_authorizer(aperta, nullptr, nullptr);
    const Istruzione legge = prepara(
        aperta, "SELECT x.name, x.hidden FROM sqlite_schema s JOIN pragma_table_xinfo(s.name) x "
                "WHERE s.type = 'table' ORDER BY x.cid");
    QStringList nomi;
    while (legge != nullptr && sqlite3_step(legge.get()) == SQLITE_ROW) {
        if (sqlite3_column_int(legge.get(), 1) != calcolataALeggerla)
            nomi.append(
                QString::fromUtf8(static_cast<const char *>(sqlite3_column_blob(legge.get(), 0)),
                                  sqlite3_column_bytes(legge.get(), 0)));
    }
    return nomi;
}

} // namespace ado
