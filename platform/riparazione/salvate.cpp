#include "platform/riparazione/salvate.h"

#include "platform/motore/flusso.h"

namespace salvataggio
{

using namespace pagine;

namespace
{

// Come il motore lo riceve: i testi byte per byte, anche se rovinati.
QVariant perIlMotore(const Valore &valore)
{
    switch (valore.tipo) {
    case Valore::Intero:
        return valore.intero;
    case Valore::Reale:
        return valore.reale;
    case Valore::Testo:
        return QVariant::fromValue(ado::Utf8{valore.byte});
    case Valore::Byte:
        return valore.byte.isNull() ? QByteArray("") : valore.byte;
    case Valore::Lungo:
        return QVariant::fromValue(ado::ByteDaScrivere{valore.intero});
    case Valore::Nullo:
        break;
    }
    return {};
}

} // namespace

Salvate::Salvate(ado::Connection &nuovo) : m_nuovo(nuovo)
{
    for (const char *istruzione :
         {"DROP TABLE IF EXISTS temp.attese",
          "CREATE TEMP TABLE attese (tabella TEXT, riga INTEGER, codice TEXT COLLATE NOCASE, "
          "indice TEXT, PRIMARY KEY (tabella, riga, codice, indice)) WITHOUT ROWID",
          "CREATE INDEX temp.atteseCodice ON attese (tabella, codice)"})
        m_nuovo.Execute({QString::fromUtf8(istruzione), {}, {}});
    const auto tutte = nomi(QStringLiteral("SELECT name FROM sqlite_schema WHERE type = 'table' "
                                           "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'"));
    for (const QString &nome : tutte)
        m_tabelle.push_back(descrive(nome));
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
        tabella.conChiave = inizio + QStringLiteral(", rowid") + fine + QStringLiteral(", ?)");
    tabella.senzaChiave = inizio + fine + u')';
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

bool Salvate::entra(const QString &istruzione, const QVariantList &valori) const
{
    try {
        return m_nuovo.Execute({istruzione, valori, {}}) > 0;
    } catch (const ado::Errore &errore) {
        if (errore.causa() != ado::Causa::NonEntra)
            throw;
        return false;
    }
}

bool Salvate::inserisce(Tabella &tabella, qint64 chiave, const QList<Valore> &riga, Carico &carico)
{
    QVariantList valori;
    for (const Valore &valore : riga)
        valori.append(perIlMotore(valore));
    const bool entrata = (!tabella.conChiave.isEmpty() &&
                          entra(tabella.conChiave, QVariantList(valori) << chiave)) ||
                         entra(tabella.senzaChiave, valori);
    if (!entrata)
        return false;
    ++tabella.salvate;
    if (riga.constLast().tipo == Valore::Lungo)
        riempieLungo(tabella, riga.constLast().intero, carico);
    return true;
}

bool Salvate::contiene(const Tabella &tabella, const QList<Valore> &coppia)
{
    return m_nuovo
        .valore({QStringLiteral("SELECT 1 FROM \"%1\" WHERE \"%2\" = ? AND \"%3\" = ?")
                     .arg(tabella.nome, tabella.colonne.value(0), tabella.colonne.value(1)),
                 {perIlMotore(coppia.value(0)), perIlMotore(coppia.value(1))},
                 {}})
        .isValid();
}

void Salvate::riempieLungo(const Tabella &tabella, qint64 lunghezza, Carico &carico) const
{
    const qint64 riga =
        m_nuovo.valore({QStringLiteral("SELECT last_insert_rowid()"), {}, {}}).toLongLong();
    ado::Stream campo(m_nuovo, tabella.nome, tabella.colonne.constLast(), riga,
                      ado::Stream::Scrittura);
    QByteArray pezzo(qsizetype{1} << 20, Qt::Uninitialized);
    for (qint64 fatti = 0; fatti < lunghezza; fatti += pezzo.size()) {
        pezzo.resize(qMin<qint64>(pezzo.size(), lunghezza - fatti));
        if (!carico.leggi(pezzo.data(), pezzo.size()))
            throw ado::Errore(ado::Causa::Illeggibile,
                              QStringLiteral("il disco non rende più ciò che ha appena letto"));
        campo.Write(pezzo);
    }
}

void Salvate::aspetta(const Tabella &tabella, const QString &indice, qint64 chiave,
                      const QByteArray &codice)
{
    entra(QStringLiteral("INSERT OR IGNORE INTO temp.attese VALUES (?, ?, ?, ?)"),
          {tabella.nome, chiave, QVariant::fromValue(ado::Utf8{codice}), indice});
}

bool Salvate::aspettata(const Tabella &tabella, const QByteArray &codice)
{
    return m_nuovo
        .valore({QStringLiteral("SELECT 1 FROM temp.attese WHERE tabella = ? AND codice = ?"),
                 {tabella.nome, QVariant::fromValue(ado::Utf8{codice})},
                 {}})
        .isValid();
}

bool Salvate::aspettata(const Tabella &tabella, const QByteArray &codice, qint64 chiave)
{
    return m_nuovo
        .valore({QStringLiteral("SELECT 1 FROM temp.attese WHERE tabella = ? AND riga = ? "
                                "AND codice = ?"),
                 {tabella.nome, chiave, QVariant::fromValue(ado::Utf8{codice})},
                 {}})
        .isValid();
}

QByteArray Salvate::codiceDi(const Tabella &tabella, qint64 chiave, qsizetype testimoni)
{
    return m_nuovo
        .valore({QStringLiteral("SELECT codice FROM temp.attese WHERE tabella = ? AND riga = ? "
                                "GROUP BY codice HAVING count(*) >= ? "
                                "ORDER BY count(*) DESC LIMIT 1"),
                 {tabella.nome, chiave, testimoni},
                 {}})
        .toString()
        .toUtf8();
}

std::optional<qint64> Salvate::chiaveDi(const Tabella &tabella, const QByteArray &codice,
                                        qsizetype testimoni)
{
    const QVariant chiave = m_nuovo.valore(
        {QStringLiteral("SELECT riga FROM temp.attese WHERE tabella = ? AND codice = ? "
                        "GROUP BY riga HAVING count(*) >= ? ORDER BY count(*) DESC LIMIT 1"),
         {tabella.nome, QVariant::fromValue(ado::Utf8{codice}), testimoni},
         {}});
    return chiave.isValid() ? std::optional(chiave.toLongLong()) : std::nullopt;
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
