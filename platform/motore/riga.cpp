#include "platform/motore/ado.h"

#include <sqlite3.h>

namespace ado
{

int Riga::colonne() const
{
    return sqlite3_column_count(m_istruzione);
}

QString Riga::nome(int colonna) const
{
    return QString::fromUtf8(sqlite3_column_name(m_istruzione, colonna));
}

bool Riga::nullo(int colonna) const
{
    return sqlite3_column_type(m_istruzione, colonna) == SQLITE_NULL;
}

bool Riga::numero(int colonna) const
{
    const int specie = sqlite3_column_type(m_istruzione, colonna);
    return specie == SQLITE_INTEGER || specie == SQLITE_FLOAT;
}

qint64 Riga::intero(int colonna) const
{
    return sqlite3_column_int64(m_istruzione, colonna);
}

QByteArrayView Riga::byte(int colonna) const
{
    // Prima il testo, che può convertire il valore: la lunghezza è di ciò che ne viene.
    const void *inizio = sqlite3_column_text(m_istruzione, colonna);
    return {static_cast<const char *>(inizio), sqlite3_column_bytes(m_istruzione, colonna)};
}

QString Riga::testo(int colonna) const
{
    return QString::fromUtf8(byte(colonna));
}

QVariant Riga::valore(int colonna) const
{
    switch (sqlite3_column_type(m_istruzione, colonna)) {
    case SQLITE_INTEGER:
        return QVariant::fromValue<qlonglong>(sqlite3_column_int64(m_istruzione, colonna));
    case SQLITE_FLOAT:
        return sqlite3_column_double(m_istruzione, colonna);
    case SQLITE_TEXT:
        return testo(colonna);
    case SQLITE_BLOB: {
        const void *inizio = sqlite3_column_blob(m_istruzione, colonna);
        const int lunghezza = sqlite3_column_bytes(m_istruzione, colonna);
        // Di un contenuto vuoto il motore non dà l'indirizzo, ma vuoto non è Null.
        return lunghezza == 0 ? QByteArray("")
                              : QByteArray(static_cast<const char *>(inizio), lunghezza);
    }
    default:
        return {};
    }
}

} // namespace ado
