#include "db/schema/protezione.h"

#include <QCryptographicHash>
#include <QRegularExpression>

namespace modTarvola
{

const QString passwordArchivi = QStringLiteral("Brunivastelo");
const QString istruzioneDiProtezione =
    QStringLiteral("CREATE TABLE Protezione (Nome TEXT PRIMARY KEY, Valore TEXT) WITHOUT ROWID");

namespace
{

// "Trva": così il comando file e gli altri programmi riconoscono un archivio.
constexpr qint64 contrassegno = 0x54727661;

QString impronta(const QString &password)
{
    const QByteArray dati = QByteArrayLiteral("tarvola:") + password.toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(dati, QCryptographicHash::Sha256).toHex());
}

// Come lo schema crea la tavola; non valido se il file non la ha.
QVariant protezioneDi(ado::Connection &connessione)
{
    return connessione.valore(
        {QStringLiteral("SELECT sql FROM sqlite_schema WHERE name = 'Protezione'"), {}, {}});
}

// Un file senza la tavola non ha mai avuto una password.
QVariant improntaDelFile(ado::Connection &connessione)
{
    const QVariant fatta = protezioneDi(connessione);
    if (!fatta.isValid())
        return {};
    // Una vista con quel nome farebbe al motore ciò che vuole.
    if (fatta.toString().simplified() != istruzioneDiProtezione)
        throw ado::estraneo(QStringLiteral("la tabella o vista «Protezione», così com'è fatta,"));
    return connessione.valore(
        {QStringLiteral("SELECT Valore FROM Protezione WHERE Nome = 'password'"), {}, {}});
}

} // namespace

void proteggi(ado::Connection &connessione, const QString &password)
{
    connessione.Execute({QStringLiteral("PRAGMA application_id = %1").arg(contrassegno), {}, {}});
    if (!protezioneDi(connessione).isValid())
        connessione.Execute({istruzioneDiProtezione, {}, {}});
    connessione.Execute({QStringLiteral("DELETE FROM Protezione"), {}, {}});
    if (!password.isEmpty()) {
        connessione.Execute({QStringLiteral("INSERT INTO Protezione VALUES ('password', ?)"),
                             {impronta(password)},
                             {}});
    }
}

void verificaProtezione(ado::Connection &connessione, const QString &password)
{
    if (connessione.valore({QStringLiteral("PRAGMA application_id"), {}, {}}).toLongLong() !=
        contrassegno)
        throw ado::Errore(ado::Causa::NonArchivio,
                          QStringLiteral("non è un file di archivi di Tarvola"));
    // Lo schema non è ancora stato guardato.
    const ado::Freno freno(connessione);
    const QVariant sua = improntaDelFile(connessione);
    if (!sua.isValid())
        return;
    switch (confrontaPassword(sua.toString(), password)) {
    case Password::Giusta:
        return;
    case Password::Altra:
        throw ado::Errore(ado::Causa::PasswordErrata,
                          QStringLiteral("la password del file è un'altra"));
    case Password::Rovinata:
        throw ado::Errore(ado::Causa::Danneggiato,
                          QStringLiteral("il file è danneggiato (la password che vi è scritta); "
                                         "«Compatta e ripristina» lo ripara"));
    }
}

Password confrontaPassword(const QString &scritta, const QString &password)
{
    const QString giusta = impronta(password);
    if (scritta == giusta)
        return Password::Giusta;
    // Due impronte diverse hanno in comune una cifra ogni sedici.
    static const QRegularExpression forma(QStringLiteral("\\A[0-9a-f]{64}\\z"));
    if (!forma.match(scritta).hasMatch())
        return Password::Rovinata;
    qsizetype uguali = 0;
    for (qsizetype i = 0; i < giusta.size(); ++i)
        uguali += scritta.at(i) == giusta.at(i) ? 1 : 0;
    return uguali > giusta.size() / 2 ? Password::Rovinata : Password::Altra;
}

} // namespace modTarvola
