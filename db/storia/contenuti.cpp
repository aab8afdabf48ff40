#include "db/storia/contenuti.h"

#include "platform/motore/flusso.h"
#include "platform/motore/sessione.h"

#include <optional>

namespace modTarvola::storia
{

namespace
{

const QString tabella = QStringLiteral("Binari");
const QString campo = QStringLiteral("Campolungo");
constexpr qint64 pezzo = qint64{1} << 20;

qint64 chiaveDi(ado::Connection &connessione, const QString &codice)
{
    const QVariant chiave = connessione.valore(
        {QStringLiteral("SELECT rowid FROM Binari WHERE Codice = ? AND typeof(Campolungo) = "
                        "'blob'"),
         {codice},
         {}});
    return chiave.isValid() ? chiave.toLongLong() : -1;
}

} // namespace

qint64 accantona(ado::Connection &connessione, qint64 passo, const QString &codice)
{
    const qint64 chiave = chiaveDi(connessione, codice);
    if (chiave < 0)
        return 0;
    const ado::Sospensione sospensione(connessione);
    qint64 fatti = 0;
    {
        ado::Stream flusso(connessione, tabella, campo, chiave, ado::Stream::Lettura);
        // Anche un file vuoto ha un pezzo: tornerà vuoto, non Null.
        do {
            QByteArray byte = flusso.Read(pezzo);
            if (byte.isNull())
                byte = QByteArray("");
            connessione.Execute({QStringLiteral("INSERT INTO StoriaContenuti VALUES (?, ?, ?, ?)"),
                                 {passo, codice, fatti, byte},
                                 {}});
            fatti += byte.size();
        } while (fatti < flusso.Size());
    }
    connessione.Execute(
        {QStringLiteral("UPDATE Binari SET Campolungo = NULL WHERE rowid = ?"), {chiave}, {}});
    return fatti;
}

void restituisce(ado::Connection &connessione, qint64 passo, const QString &codice)
{
    const QVariant lunghezza = connessione.valore(
        {QStringLiteral("SELECT sum(length(Byte)) FROM StoriaContenuti WHERE Passo = ? AND "
                        "Codice = ?"),
         {passo, codice},
         {}});
    if (!lunghezza.isValid())
        return;
    const ado::Sospensione sospensione(connessione);
    connessione.Execute({QStringLiteral("UPDATE Binari SET Campolungo = zeroblob(?) WHERE "
                                        "Codice = ?"),
                         {lunghezza.toLongLong(), codice},
                         {}});
    {
        ado::Stream flusso(connessione, tabella, campo, chiaveDi(connessione, codice),
                           ado::Stream::Scrittura);
        connessione.leggi({QStringLiteral("SELECT Byte FROM StoriaContenuti WHERE Passo = ? AND "
                                          "Codice = ? ORDER BY Posto"),
                           {passo, codice},
                           {}},
                          [&flusso](const ado::Riga &riga) {
                              const auto byte = riga.byte(0);
                              flusso.Write(QByteArray::fromRawData(byte.data(), byte.size()));
                              return true;
                          });
    }
    connessione.Execute({QStringLiteral("DELETE FROM StoriaContenuti WHERE Passo = ? AND "
                                        "Codice = ?"),
                         {passo, codice},
                         {}});
}

} // namespace modTarvola::storia
