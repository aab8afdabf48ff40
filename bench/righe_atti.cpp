#include "bench/righe_atti.h"

#include "bench/serie.h"
#include "platform/motore/recordset.h"

#include <QHash>

namespace
{

// Come si dice una persona, e come una famiglia, nelle righe di altri.
const QString chi = QStringLiteral(
    "SELECT i.Ruolo||' '||coalesce(i.Nome, '')||' '||coalesce(i.Cognome, '') AS Detto");
const QString coppia =
    QStringLiteral("(SELECT group_concat(Detto, ' + ') FROM (") + chi +
    QStringLiteral(" FROM FamiglieConiugi c JOIN Individui i ON i.Codice = c.CodiceIndividuo WHERE "
                   "c.CodiceFamiglia = f.Codice ORDER BY 1))");
const QString figli =
    QStringLiteral("(SELECT group_concat(Detto, ' + ') FROM (") + chi +
    QStringLiteral(" FROM FamiglieGenitori c JOIN Individui i ON i.Codice = c.CodiceIndividuo "
                   "WHERE c.CodiceFamiglia = f.Codice ORDER BY 1))");

// La prima colonna è l'atto, le altre la riga; `quanti` quante sono. Un testo vuoto dove ci si
// aspetta Null si vede.
void raccoglie(ado::Connection &connessione, const char *specie, int quanti,
               const QString &istruzione, QHash<QString, QStringList> &per)
{
    ado::Recordset righe;
    righe.Open({istruzione, {}, {}}, connessione, ado::adLockReadOnly);
    for (; !righe.Eof(); righe.MoveNext()) {
        QStringList valori;
        for (int i = 1; i <= quanti; ++i) {
            const QVariant valore = righe.Campo(i);
            valori.append(!valore.isNull() && valore.toString().isEmpty() ? QStringLiteral("''")
                                                                          : valore.toString());
        }
        per[righe.Campo(0).toString()].append(serie::riga(QString::fromUtf8(specie), valori));
    }
}

} // namespace

QList<QStringList> righeDegliAtti(ado::Connection &connessione)
{
    QHash<QString, QStringList> per;
    raccoglie(connessione, "voce", 4,
              QStringLiteral("SELECT Codice, Volume, PaginaIniziale, CodiceVoce, Data FROM Voci"),
              per);
    raccoglie(connessione, "persona", 10,
              QStringLiteral("SELECT coalesce(Voce, ''), Ruolo, Nome, Cognome, Sesso, "
                             "Precisazione, Detto, Soprannome, \"Età\", Legittimo, Vivente "
                             "FROM Individui"),
              per);
    raccoglie(connessione, "famiglia", 3,
              QStringLiteral("SELECT coalesce(f.Voce, ''), f.Ruolo, %1, %2 FROM Famiglie f")
                  .arg(coppia, figli),
              per);
    raccoglie(connessione, "evento", 6,
              QStringLiteral("SELECT coalesce(i.Voce, f.Voce, ''), coalesce(i.Ruolo||' '||"
                             "coalesce(i.Nome, '')||' '||coalesce(i.Cognome, ''), f.Ruolo||' '||%1"
                             "), e.Tipo, e.Data, e.Luogo, e.Causa, e.Valore FROM Eventi e LEFT "
                             "JOIN Individui i ON i.Codice = e.IdProprietario LEFT JOIN Famiglie f "
                             "ON f.Codice = e.IdProprietario")
                  .arg(coppia),
              per);
    raccoglie(connessione, "testo", 2,
              QStringLiteral("SELECT coalesce(IdProprietario, ''), Tipo, Campolungo FROM Binari"),
              per);
    QList<QStringList> atti;
    ado::Recordset voci;
    voci.Open({QStringLiteral("SELECT Codice FROM Voci ORDER BY rowid"), {}, {}}, connessione,
              ado::adLockReadOnly);
    for (; !voci.Eof(); voci.MoveNext()) {
        atti.append(per.take(voci.Campo(0).toString()));
        atti.last().sort();
    }
    for (const QStringList &altre : std::as_const(per))
        atti.append(altre);
    return atti;
}
