#pragma once

#include "platform/motore/ado.h"

struct sqlite3_blob;

namespace ado
{

// Il contenuto di un campo, letto o scritto a pezzi nell'archivio senza tenerlo in memoria. La
// lunghezza è quella che il campo ha già: scrivere non la cambia.
class Stream
{
public:
    enum Modo { Lettura, Scrittura };

    // Apre il campo della riga con la chiave interna data; fallisce con Errore se la riga non c'è o
    // il campo è Null. Va chiuso prima di cambiare la stessa riga in altro modo.
    Stream(Connection &connessione, const QString &tabella, const QString &campo, qint64 chiave,
           Modo modo);
    ~Stream();
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;

    qint64 Size() const; // byte
    // I byte che seguono quelli già letti, al più `quanti`; vuoto alla fine.
    QByteArray Read(qint64 quanti);
    // Scrive dopo i byte già scritti; fallisce con Errore oltre la lunghezza del campo.
    void Write(const QByteArray &pezzo);

private:
    Connection &m_connessione;
    sqlite3_blob *m_campo = nullptr;
    qint64 m_posto = 0;
};

// Quanti byte può avere al più una riga dell'archivio, con tutti i suoi campi; `alPiu` lo abbassa.
qint64 lunghezzaMassima(Connection &connessione, qint64 alPiu = -1);

} // namespace ado
