#include "platform/motore/ado.h"

#include <sqlite3.h>

namespace ado
{

namespace
{

constexpr int passiPerDomanda = 1000;
// Lo schema di un archivio ne chiede meno di mille passi.
constexpr int domandeAlMassimo = 20;
constexpr int byteAlMassimo = 1 << 20;

} // namespace

Freno::Freno(Connection &connessione) : m_base(connessione.m_base)
{
    m_lunghezza = sqlite3_limit(m_base, SQLITE_LIMIT_LENGTH, byteAlMassimo);
    m_istruzione = sqlite3_limit(m_base, SQLITE_LIMIT_SQL_LENGTH, byteAlMassimo);
    sqlite3_progress_handler(
        m_base, passiPerDomanda,
        [](void *questo) {
            return ++static_cast<Freno *>(questo)->m_domande > domandeAlMassimo ? 1 : 0;
        },
        this);
}

Freno::~Freno()
{
    sqlite3_progress_handler(m_base, 0, nullptr, nullptr);
    sqlite3_limit(m_base, SQLITE_LIMIT_LENGTH, m_lunghezza);
    sqlite3_limit(m_base, SQLITE_LIMIT_SQL_LENGTH, m_istruzione);
}

bool Freno::scattato() const
{
    return m_domande > domandeAlMassimo || sqlite3_errcode(m_base) == SQLITE_TOOBIG;
}

Errore estraneo(const QString &cosa)
{
    return {Causa::Estraneo,
            QStringLiteral("nel file c'è %1 che Tarvola non ha messo e che potrebbe far danno; "
                           "\"Compatta e ripristina\" ne salva i record in un file pulito")
                .arg(cosa)};
}

} // namespace ado
