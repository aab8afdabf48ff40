#include "platform/riparazione/salvate.h"

#include <sqlite3.h>

namespace salvataggio
{

using namespace pagine;

namespace
{

void lega(sqlite3_stmt *istruzione, int posto, const QByteArray &testo)
{
    sqlite3_bind_text64(istruzione, posto, testo.constData(),
                        static_cast<sqlite3_uint64>(testo.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void lega(sqlite3_stmt *istruzione, int posto, const Valore &valore)
{
    switch (valore.tipo) {
    case Valore::Nullo:
        sqlite3_bind_null(istruzione, posto);
        break;
    case Valore::Intero:
        sqlite3_bind_int64(istruzione, posto, valore.intero);
        break;
    case Valore::Reale:
        sqlite3_bind_double(istruzione, posto, valore.reale);
        break;
    case Valore::Testo:
        lega(istruzione, posto, valore.byte);
        break;
    case Valore::Byte:
        sqlite3_bind_blob64(istruzione, posto, valore.byte.constData(),
                            static_cast<sqlite3_uint64>(valore.byte.size()), SQLITE_TRANSIENT);
        break;
    case Valore::Lungo:
        sqlite3_bind_zeroblob64(istruzione, posto, static_cast<sqlite3_uint64>(valore.intero));
        break;
    }
}

} // namespace

void Finisce::operator()(sqlite3_stmt *istruzione) const
{
    sqlite3_finalize(istruzione);
}

Salvate::Salvate(ado::Connection &nuovo) : m_nuovo(nuovo)
{
    for (const char *istruzione :
         {"DROP TABLE IF EXISTS temp.attese",
          "CREATE TEMP TABLE attese (tabella TEXT, riga INTEGER, codice TEXT COLLATE NOCASE, "
          "indice TEXT, PRIMARY KEY (tabella, riga, codice, indice)) WITHOUT ROWID",
          "CREATE INDEX temp.atteseCodice ON attese (tabella, codice)"})
        m_nuovo.Execute({QString::fromUtf8(istruzione), {}, {}});
    m_aspetta = prepara(QStringLiteral("INSERT OR IGNORE INTO temp.attese VALUES (?, ?, ?, ?)"));
    m_aspettata =
        prepara(QStringLiteral("SELECT 1 FROM temp.attese WHERE tabella = ? AND codice = ?"));
    m_codiceDi = prepara(
        QStringLiteral("SELECT codice FROM temp.attese WHERE tabella = ? AND riga = ? "
                       "GROUP BY codice HAVING count(*) >= ? ORDER BY count(*) DESC LIMIT 1"));
    const auto tutte = nomi(QStringLiteral("SELECT name FROM sqlite_schema WHERE type = 'table' "
                                           "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'"));
    for (const QString &nome : tutte)
        m_tabelle.push_back(descrive(nome));
}

void Salvate::fallisci() const
{
    const int esito = sqlite3_errcode(m_nuovo.base());
    throw ado::Errore(esito == SQLITE_FULL ? ado::Causa::DiscoPieno : ado::Causa::Altro,
                      QString::fromUtf8(sqlite3_errmsg(m_nuovo.base())));
}

Istruzione Salvate::prepara(const QString &testo) const
{
    sqlite3_stmt *istruzione = nullptr;
    if (sqlite3_prepare_v2(m_nuovo.base(), testo.toUtf8().constData(), -1, &istruzione, nullptr) !=
        SQLITE_OK)
        fallisci();
    return Istruzione(istruzione);
}

QStringList Salvate::nomi(const QString &istruzione, const QString &valore) const
{
    QStringList letti;
    const QVariantList valori = valore.isNull() ? QVariantList() : QVariantList{valore};
    m_nuovo.leggi({istruzione, valori, {}}, [&letti](const ado::Riga &riga) {
        letti.append(riga.testo(0));
        return true;
    });
    return letti;
}

Tabella Salvate::descrive(const QString &nome) const
{
    Tabella tabella;
    tabella.nome = nome;
    tabella.colonne = nomi(QStringLiteral("SELECT name FROM pragma_table_info(?)"), nome);
    tabella.conRowid =
        m_nuovo.valore({QStringLiteral("SELECT wr FROM pragma_table_list(?)"), {nome}, {}})
            .toInt() == 0;
    const QVariant intera = m_nuovo.valore(
        {QStringLiteral("SELECT cid FROM pragma_table_info(?) WHERE pk = 1 AND type = 'INTEGER'"),
         {nome},
         {}});
    if (intera.isValid())
        tabella.chiaveIntera = intera.toInt();
    descriveIndici(tabella);
    QStringList colonne;
    QStringList posti;
    for (const QString &colonna : std::as_const(tabella.colonne)) {
        colonne.append(u'"' + colonna + u'"');
        posti.append(QStringLiteral("?"));
    }
    // Le righe che il file nuovo ha già cedono a quelle di prima.
    const QString verbo = tabella.chiaveIntera >= 0 ? QStringLiteral("INSERT OR REPLACE INTO")
                                                    : QStringLiteral("INSERT OR IGNORE INTO");
    const QString inizio =
        QStringLiteral("%1 \"%2\" (").arg(verbo, nome) + colonne.join(QStringLiteral(", "));
    const QString fine = QStringLiteral(") VALUES (") + posti.join(QStringLiteral(", "));
    if (tabella.conRowid)
        tabella.conChiave =
            prepara(inizio + QStringLiteral(", rowid") + fine + QStringLiteral(", ?)"));
    tabella.senzaChiave = prepara(inizio + fine + u')');
    return tabella;
}

void Salvate::descriveIndici(Tabella &tabella) const
{
    constexpr int espressione = -2;
    const auto indici = nomi(QStringLiteral("SELECT name FROM pragma_index_list(?)"), tabella.nome);
    for (const QString &indice : indici) {
        QList<int> &ordine = tabella.ordine[indice];
        m_nuovo.leggi({QStringLiteral("SELECT cid FROM pragma_index_xinfo(?)"), {indice}, {}},
                      [&ordine](const ado::Riga &riga) {
                          ordine.append(static_cast<int>(riga.intero(0)));
                          return true;
                      });
        // L'indice della chiave di una tabella senza chiave interna è la tabella stessa.
        const QVariant suo = m_nuovo.valore(
            {QStringLiteral("SELECT 1 FROM sqlite_schema WHERE type = 'index' AND name = ?"),
             {indice},
             {}});
        if (!suo.isValid())
            continue;
        tabella.indici.append(indice);
        if (tabella.conRowid && (ordine.value(0) == 0 || ordine.value(0) == espressione))
            tabella.testimoni.append(indice);
    }
}

bool Salvate::esegue(sqlite3_stmt *istruzione) const
{
    const int esito = sqlite3_step(istruzione);
    const bool entrata = esito == SQLITE_DONE && sqlite3_changes(m_nuovo.base()) > 0;
    sqlite3_reset(istruzione);
    const int genere = esito & 0xff;
    if (genere != SQLITE_DONE && genere != SQLITE_CONSTRAINT && genere != SQLITE_MISMATCH)
        fallisci();
    return entrata;
}

bool Salvate::inserisce(Tabella &tabella, qint64 chiave, const QList<Valore> &riga, Carico &carico)
{
    for (sqlite3_stmt *istruzione : {tabella.conChiave.get(), tabella.senzaChiave.get()}) {
        if (istruzione == nullptr)
            continue;
        for (qsizetype i = 0; i < riga.size(); ++i)
            lega(istruzione, static_cast<int>(i + 1), riga.at(i));
        if (istruzione == tabella.conChiave.get())
            sqlite3_bind_int64(istruzione, static_cast<int>(riga.size() + 1), chiave);
        if (!esegue(istruzione))
            continue;
        ++tabella.salvate;
        if (riga.constLast().tipo == Valore::Lungo)
            riempieLungo(tabella, riga.constLast().intero, carico);
        return true;
    }
    return false;
}

void Salvate::riempieLungo(const Tabella &tabella, qint64 lunghezza, Carico &carico) const
{
    sqlite3_blob *campo = nullptr;
    const qint64 riga = sqlite3_last_insert_rowid(m_nuovo.base());
    int esito =
        sqlite3_blob_open(m_nuovo.base(), "main", tabella.nome.toUtf8().constData(),
                          tabella.colonne.constLast().toUtf8().constData(), riga, 1, &campo);
    QByteArray pezzo(qsizetype{1} << 20, Qt::Uninitialized);
    for (qint64 fatti = 0; esito == SQLITE_OK && fatti < lunghezza;) {
        const qint64 ora = qMin<qint64>(pezzo.size(), lunghezza - fatti);
        if (!carico.leggi(pezzo.data(), ora)) {
            sqlite3_blob_close(campo);
            throw ado::Errore(ado::Causa::Illeggibile,
                              QStringLiteral("il disco non rende più ciò che ha appena letto"));
        }
        esito = sqlite3_blob_write(campo, pezzo.constData(), static_cast<int>(ora),
                                   static_cast<int>(fatti));
        fatti += ora;
    }
    sqlite3_blob_close(campo);
    if (esito != SQLITE_OK)
        fallisci();
}

void Salvate::aspetta(const Tabella &tabella, const QString &indice, qint64 chiave,
                      const QByteArray &codice)
{
    lega(m_aspetta.get(), 1, tabella.nome.toUtf8());
    sqlite3_bind_int64(m_aspetta.get(), 2, chiave);
    lega(m_aspetta.get(), 3, codice);
    lega(m_aspetta.get(), 4, indice.toUtf8());
    esegue(m_aspetta.get());
}

bool Salvate::aspettata(const Tabella &tabella, const QByteArray &codice)
{
    lega(m_aspettata.get(), 1, tabella.nome.toUtf8());
    lega(m_aspettata.get(), 2, codice);
    const bool trovata = sqlite3_step(m_aspettata.get()) == SQLITE_ROW;
    sqlite3_reset(m_aspettata.get());
    return trovata;
}

QByteArray Salvate::codiceDi(const Tabella &tabella, qint64 chiave, qsizetype testimoni)
{
    QByteArray codice;
    lega(m_codiceDi.get(), 1, tabella.nome.toUtf8());
    sqlite3_bind_int64(m_codiceDi.get(), 2, chiave);
    sqlite3_bind_int64(m_codiceDi.get(), 3, testimoni);
    if (sqlite3_step(m_codiceDi.get()) == SQLITE_ROW) {
        const void *testo = sqlite3_column_text(m_codiceDi.get(), 0);
        codice = QByteArray(static_cast<const char *>(testo));
    }
    sqlite3_reset(m_codiceDi.get());
    return codice;
}

qint64 Salvate::perdute(const Tabella &tabella, qsizetype testimoni)
{
    return m_nuovo
        .valore({QStringLiteral("SELECT count(DISTINCT riga) FROM (SELECT riga FROM temp.attese "
                                "WHERE tabella = ?1 AND riga NOT IN (SELECT rowid FROM \"%1\") "
                                "AND codice NOT IN (SELECT Codice FROM \"%1\") "
                                "GROUP BY riga, codice HAVING count(*) >= ?2)")
                     .arg(tabella.nome),
                 {tabella.nome, testimoni},
                 {}})
        .toLongLong();
}

} // namespace salvataggio
