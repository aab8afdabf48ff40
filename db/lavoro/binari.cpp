#include "db/lavoro/binari.h"

#include "platform/motore/sessione.h"

namespace modTarvola
{

namespace
{

const QString tabella = QStringLiteral("Binari");
const QString campo = QStringLiteral("Campolungo");
// Spazio per gli altri campi della riga: codici e nome sono corti.
constexpr qint64 altriCampi = 64 * 1024;

} // namespace

qint64 fileMassimo(ado::Connection &connessione)
{
    return ado::lunghezzaMassima(connessione) - altriCampi;
}

std::unique_ptr<ado::Stream> aggiungeFile(Lavoro &lavoro, const NuovoFile &file)
{
    const Scritto scritto = lavoro.scrive({tabella,
                                           {},
                                           {{QStringLiteral("Tipo"), file.genere},
                                            {QStringLiteral("IdProprietario"), file.proprietario},
                                            {QStringLiteral("Nome"), file.nome}}});
    ado::Connection &connessione = lavoro.connessione();
    lavoro.aspettaContenuto();
    const ado::Sospensione sospensione(connessione);
    connessione.Execute({QStringLiteral("UPDATE Binari SET Campolungo = zeroblob(?) "
                                        "WHERE Codice = ?"),
                         {file.lunghezza, scritto.codice},
                         {}});
    const qint64 chiave =
        connessione
            .valore(
                {QStringLiteral("SELECT rowid FROM Binari WHERE Codice = ?"), {scritto.codice}, {}})
            .toLongLong();
    return std::make_unique<ado::Stream>(connessione, tabella, campo, chiave,
                                         ado::Stream::Scrittura);
}

std::optional<QString> nomeDiFile(ado::Connection &connessione, const QString &codice)
{
    std::optional<QString> nome;
    connessione.leggi({QStringLiteral("SELECT Nome FROM Binari WHERE Codice = ?"), {codice}, {}},
                      [&nome](const ado::Riga &riga) {
                          nome = riga.testo(0);
                          return false;
                      });
    return nome;
}

std::unique_ptr<ado::Stream> contenutoDiFile(ado::Connection &connessione, const QString &codice)
{
    const QVariant chiave = connessione.valore(
        {QStringLiteral("SELECT rowid FROM Binari WHERE Codice = ? AND Campolungo IS NOT NULL"),
         {codice},
         {}});
    if (!chiave.isValid())
        return {};
    return std::make_unique<ado::Stream>(connessione, tabella, campo, chiave.toLongLong(),
                                         ado::Stream::Lettura);
}

} // namespace modTarvola
