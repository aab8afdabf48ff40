#include "platform/motore/jro.h"

#include <QFileInfo>

namespace jro
{

namespace
{

qint64 numero(ado::Connection &connessione, const QString &istruzione)
{
    return connessione.valore({istruzione, {}, {}}).toLongLong();
}

QStringList tabelleDi(ado::Connection &connessione)
{
    QStringList nomi;
    connessione.leggi({QStringLiteral("SELECT name FROM sqlite_schema WHERE type = 'table' "
                                      "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name"),
                       {},
                       {}},
                      [&nomi](const ado::Riga &riga) {
                          nomi.append(riga.testo(0));
                          return true;
                      });
    return nomi;
}

QString nominata(QString tabella)
{
    return u'"' + tabella.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

} // namespace

Fermo::Fermo(const std::function<void(ado::Connection &connessione)> &apre)
{
    apre(m_connessione);
    try {
        m_connessione.Execute({QStringLiteral("BEGIN IMMEDIATE"), {}, {}});
    } catch (const ado::Errore &errore) {
        if (errore.causa() != ado::Causa::SolaLettura)
            throw;
        // Chi può solo leggere impedisce comunque che un altro porti a termine un cambiamento.
        m_connessione.Execute({QStringLiteral("BEGIN"), {}, {}});
        numero(m_connessione, QStringLiteral("SELECT count(*) FROM sqlite_schema"));
    }
}

void CompactDatabase(ado::Connection &origine, const QString &nuovo,
                     const provvisorio::Passo &passo)
{
    const qint64 pagine = numero(origine, QStringLiteral("PRAGMA page_count")) -
                          numero(origine, QStringLiteral("PRAGMA freelist_count"));
    const qint64 attesi =
        qMax<qint64>(1, pagine * numero(origine, QStringLiteral("PRAGMA page_size")));
    {
        const ado::Sorveglianza sorveglianza(origine, [&nuovo, &passo, attesi] {
            return passo(qMin(QFileInfo(nuovo).size(), attesi), attesi);
        });
        // Il motore accetta un file vuoto; uno fatto da lui lo leggerebbero tutti.
        provvisorio::crea(nuovo);
        try {
            origine.Execute({QStringLiteral("VACUUM INTO ?"), {nuovo}, {}});
        } catch (const ado::Errore &errore) {
            // Il motore dice pieno il disco anche quando una pagina ne nomina una che non esiste, e
            // ripetuto un codice che un bit ha reso uguale a un altro.
            if (errore.causa() == ado::Causa::DiscoPieno ||
                errore.causa() == ado::Causa::NonEntra || errore.causa() == ado::Causa::Altro)
                verificaIntegrita(origine, passo);
            throw;
        }
    }
    provvisorio::avanza(passo, attesi, attesi);
    provvisorio::sincronizza(nuovo);
}

void verificaIntegrita(ado::Connection &archivio, const provvisorio::Passo &passo)
{
    const ado::Sorveglianza sorveglianza(archivio, [&passo] { return passo(1, 1); });
    const QString esito =
        archivio.valore({QStringLiteral("PRAGMA integrity_check(1)"), {}, {}}).toString();
    if (esito != QStringLiteral("ok"))
        throw ado::Errore(ado::Causa::Danneggiato,
                          QStringLiteral("il file è danneggiato (%1)").arg(esito));
}

void confronta(ado::Connection &origine, ado::Connection &copia, const provvisorio::Passo &passo,
               const QStringList &senza)
{
    const ado::Sorveglianza sorveglianza(origine, [&passo] { return passo(1, 1); });
    QStringList tabelle = tabelleDi(origine);
    for (const QString &tabella : senza)
        tabelle.removeAll(tabella);
    if (tabelle != tabelleDi(copia))
        throw ado::Errore(ado::Causa::Danneggiato, QStringLiteral("le tabelle della copia non "
                                                                  "sono quelle dell'archivio"));
    for (const QString &tabella : tabelle) {
        const QString quante = QStringLiteral("SELECT count(*) FROM %1").arg(nominata(tabella));
        const QString nellaTabella = quante + QStringLiteral(" NOT INDEXED");
        const qint64 sue = numero(origine, nellaTabella);
        // Il primo conto va per l'indice più corto, il secondo per la tabella.
        if (numero(origine, quante) != sue || numero(copia, nellaTabella) != sue)
            throw ado::Errore(
                ado::Causa::Danneggiato,
                QStringLiteral("il file è danneggiato (righe della tabella %1)").arg(tabella));
        provvisorio::avanza(passo, 1, 1);
    }
}

} // namespace jro
