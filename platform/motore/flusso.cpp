#include "platform/motore/flusso.h"

#include "platform/motore/sessione.h"

#include <sqlite3.h>

namespace ado
{

Stream::Stream(Connection &connessione, const QString &tabella, const QString &campo, qint64 chiave,
               Modo modo)
    : m_connessione(connessione)
{
    const int esito =
        sqlite3_blob_open(connessione.base(), "main", tabella.toUtf8().constData(),
                          campo.toUtf8().constData(), chiave, modo == Scrittura ? 1 : 0, &m_campo);
    if (esito != SQLITE_OK)
        connessione.fallisci(esito);
}

Stream::~Stream()
{
    sqlite3_blob_close(m_campo);
}

qint64 Stream::Size() const
{
    return sqlite3_blob_bytes(m_campo);
}

QByteArray Stream::Read(qint64 quanti)
{
    QByteArray pezzo(qMin(quanti, Size() - m_posto), Qt::Uninitialized);
    const int esito = sqlite3_blob_read(m_campo, pezzo.data(), static_cast<int>(pezzo.size()),
                                        static_cast<int>(m_posto));
    if (esito != SQLITE_OK)
        m_connessione.fallisci(esito);
    m_posto += pezzo.size();
    return pezzo;
}

void Stream::Write(const QByteArray &pezzo)
{
    if (pezzo.size() > Size() - m_posto)
        throw Errore(Causa::Altro, QStringLiteral("il contenuto è più lungo del suo campo"));
    // Di una riga scritta a pezzi la sessione terrebbe l'intero contenuto.
    const Sospensione sospensione(m_connessione);
    const int esito = sqlite3_blob_write(m_campo, pezzo.constData(), static_cast<int>(pezzo.size()),
                                         static_cast<int>(m_posto));
    if (esito != SQLITE_OK)
        m_connessione.fallisci(esito);
    m_posto += pezzo.size();
}

qint64 lunghezzaMassima(Connection &connessione, qint64 alPiu)
{
    const int prima =
        sqlite3_limit(connessione.base(), SQLITE_LIMIT_LENGTH, static_cast<int>(alPiu));
    return alPiu < 0 ? prima : alPiu;
}

} // namespace ado
