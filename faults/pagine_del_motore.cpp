// Un'estensione per il programma sqlite3: la tabella virtuale sqlite_dbpage, di cui il suo comando
// ".recover" ha bisogno e con cui Debian non lo compila. Rende le pagine come il motore le legge.

#include <initializer_list>
#include <new>
#include <sqlite3ext.h>

SQLITE_EXTENSION_INIT1

namespace
{

enum { numero, byte, schema };
enum { unaSola = 1, conSchema = 2 };

struct Tavola : sqlite3_vtab {
    Tavola() : sqlite3_vtab{} {}
    sqlite3 *base = nullptr;
};

struct Cursore : sqlite3_vtab_cursor {
    Cursore() : sqlite3_vtab_cursor{} {}
    sqlite3_file *file = nullptr;
    sqlite3_int64 misura = 0; // di una pagina
    sqlite3_int64 ora = 1;
    sqlite3_int64 ultima = 0;
};

int connette(sqlite3 *base, void * /*dati*/, int /*quanti*/, const char *const * /*argomenti*/,
             sqlite3_vtab **tavola, char ** /*errore*/)
{
    const int esito = sqlite3_declare_vtab(
        base, "CREATE TABLE x (pgno INTEGER PRIMARY KEY, data BLOB, schema HIDDEN)");
    if (esito != SQLITE_OK)
        return esito;
    auto *nuova = new (std::nothrow) Tavola;
    if (nuova == nullptr)
        return SQLITE_NOMEM;
    nuova->base = base;
    *tavola = nuova;
    return SQLITE_OK;
}

int sconnette(sqlite3_vtab *tavola)
{
    delete static_cast<Tavola *>(tavola);
    return SQLITE_OK;
}

int sceglie(sqlite3_vtab * /*tavola*/, sqlite3_index_info *info)
{
    int posto = 0;
    info->estimatedCost = 1e6;
    for (const int colonna : {int{schema}, int{numero}}) {
        for (int i = 0; i < info->nConstraint; ++i) {
            const auto &vincolo = info->aConstraint[i];
            const bool sua =
                vincolo.iColumn == colonna || (colonna == numero && vincolo.iColumn < 0);
            if (!sua || vincolo.usable == 0 || vincolo.op != SQLITE_INDEX_CONSTRAINT_EQ)
                continue;
            info->aConstraintUsage[i].argvIndex = ++posto;
            info->aConstraintUsage[i].omit = 1;
            info->idxNum |= colonna == schema ? conSchema : unaSola;
            if (colonna == numero)
                info->estimatedCost = 1;
            break;
        }
    }
    return SQLITE_OK;
}

int apre(sqlite3_vtab * /*tavola*/, sqlite3_vtab_cursor **cursore)
{
    *cursore = new (std::nothrow) Cursore;
    return *cursore == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int chiude(sqlite3_vtab_cursor *cursore)
{
    delete static_cast<Cursore *>(cursore);
    return SQLITE_OK;
}

sqlite3_int64 misuraDellePagine(sqlite3 *base)
{
    sqlite3_int64 misura = 0;
    sqlite3_stmt *istruzione = nullptr;
    if (sqlite3_prepare_v2(base, "PRAGMA page_size", -1, &istruzione, nullptr) == SQLITE_OK &&
        sqlite3_step(istruzione) == SQLITE_ROW)
        misura = sqlite3_column_int64(istruzione, 0);
    sqlite3_finalize(istruzione);
    return misura;
}

int filtra(sqlite3_vtab_cursor *cursore, int modo, const char * /*nome*/, int /*quanti*/,
           sqlite3_value **valori)
{
    auto *suo = static_cast<Cursore *>(cursore);
    sqlite3 *base = static_cast<Tavola *>(cursore->pVtab)->base;
    const char *quale = "main";
    if ((modo & conSchema) != 0) {
        const void *testo = sqlite3_value_text(*valori++);
        if (testo != nullptr)
            quale = static_cast<const char *>(testo);
    }
    suo->misura = misuraDellePagine(base);
    sqlite3_int64 lungo = 0;
    if (suo->misura <= 0 ||
        sqlite3_file_control(base, quale, SQLITE_FCNTL_FILE_POINTER, &suo->file) != SQLITE_OK ||
        suo->file == nullptr || suo->file->pMethods == nullptr ||
        suo->file->pMethods->xFileSize(suo->file, &lungo) != SQLITE_OK)
        return SQLITE_ERROR;
    suo->ora = 1;
    suo->ultima = (lungo + suo->misura - 1) / suo->misura;
    if ((modo & unaSola) != 0) {
        suo->ora = sqlite3_value_int64(*valori);
        suo->ultima = suo->ora < 1 || suo->ora > suo->ultima ? suo->ora - 1 : suo->ora;
    }
    return SQLITE_OK;
}

int prossima(sqlite3_vtab_cursor *cursore)
{
    ++static_cast<Cursore *>(cursore)->ora;
    return SQLITE_OK;
}

int finita(sqlite3_vtab_cursor *cursore)
{
    const auto *suo = static_cast<Cursore *>(cursore);
    return suo->ora > suo->ultima ? 1 : 0;
}

int colonna(sqlite3_vtab_cursor *cursore, sqlite3_context *contesto, int quale)
{
    const auto *suo = static_cast<Cursore *>(cursore);
    if (quale == numero)
        sqlite3_result_int64(contesto, suo->ora);
    if (quale != byte)
        return SQLITE_OK;
    auto *pagina = static_cast<char *>(sqlite3_malloc64(static_cast<sqlite3_uint64>(suo->misura)));
    if (pagina == nullptr)
        return SQLITE_NOMEM;
    // Un'ultima pagina tronca il motore la rende con zeri in fondo.
    const int esito = suo->file->pMethods->xRead(suo->file, pagina, static_cast<int>(suo->misura),
                                                 (suo->ora - 1) * suo->misura);
    if (esito != SQLITE_OK && esito != SQLITE_IOERR_SHORT_READ) {
        sqlite3_free(pagina);
        return esito;
    }
    sqlite3_result_blob64(contesto, pagina, static_cast<sqlite3_uint64>(suo->misura), sqlite3_free);
    return SQLITE_OK;
}

int chiave(sqlite3_vtab_cursor *cursore, sqlite3_int64 *sua)
{
    *sua = static_cast<Cursore *>(cursore)->ora;
    return SQLITE_OK;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int
sqlite3_extension_init(sqlite3 *base, char ** /*errore*/, const sqlite3_api_routines *funzioni)
{
    SQLITE_EXTENSION_INIT2(funzioni);
    static sqlite3_module modulo = {};
    modulo.xConnect = connette;
    modulo.xBestIndex = sceglie;
    modulo.xDisconnect = sconnette;
    modulo.xOpen = apre;
    modulo.xClose = chiude;
    modulo.xFilter = filtra;
    modulo.xNext = prossima;
    modulo.xEof = finita;
    modulo.xColumn = colonna;
    modulo.xRowid = chiave;
    return sqlite3_create_module(base, "sqlite_dbpage", &modulo, nullptr);
}
