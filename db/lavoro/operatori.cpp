#include "db/lavoro/operatori.h"

#include "platform/lingua/italiano.h"

namespace modTarvola
{

// Il confronto si fa qui: quello del motore conosce solo le maiuscole ASCII. I contatti, che non
// hanno password, restano fuori già nella lettura.
QString OperatoreCon(ado::Connection &connessione, const QString &nome, const QString &password,
                     const QString &tranne)
{
    QString trovato;
    connessione.leggi({QStringLiteral("SELECT Codice, Nome, Password FROM Operatori "
                                      "WHERE Password IS NOT NULL ORDER BY rowid"),
                       {},
                       {}},
                      [&](const ado::Riga &riga) {
                          const QString codice = riga.testo(0);
                          if (codice.compare(tranne, Qt::CaseInsensitive) != 0 &&
                              italiano::uguali(riga.testo(1), nome) &&
                              italiano::uguali(riga.testo(2), password))
                              trovato = codice;
                          return trovato.isEmpty();
                      });
    return trovato;
}

QString NomeOperatore(ado::Connection &connessione, const QString &operatore)
{
    return connessione
        .valore({QStringLiteral("SELECT Nome FROM Operatori WHERE Codice = ?"), {operatore}, {}})
        .toString();
}

int CollegamentiDi(ado::Connection &connessione, const QString &operatore)
{
    return connessione
        .valore({QStringLiteral("SELECT count(*) FROM OperatoriContesti WHERE CodiceOperatore = ?"),
                 {operatore},
                 {}})
        .toInt();
}

void ScollegaOperatore(ado::Connection &connessione, const QString &operatore,
                       const QString &record)
{
    connessione.Execute({QStringLiteral("DELETE FROM OperatoriContesti "
                                        "WHERE CodiceOperatore = ? AND CodiceContesto = ?"),
                         {operatore, record},
                         {}});
}

QString rifiutoPassword(const QString &scritta, const QString &conferma)
{
    constexpr int lunghezzaMinima = 4;
    if (scritta.trimmed().isEmpty())
        return QStringLiteral("Impossibile salvare i dati senza password");
    if (conferma.trimmed().isEmpty())
        return QStringLiteral("Impossibile salvare i dati senza confermare la password");
    if (scritta != conferma)
        return QStringLiteral("La password non è uguale alla conferma");
    if (scritta.size() < lunghezzaMinima)
        return QStringLiteral("La password deve avere una lunghezza minima di 4 caratteri");
    if (scritta.contains(u' '))
        return QStringLiteral("Non è permesso inserire spazi nella password");
    return {};
}

} // namespace modTarvola
