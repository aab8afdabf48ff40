#include "db/elenchi/descrizioni.h"

#include "db/schema/tabelle.h"
#include "platform/lingua/italiano.h"
#include "platform/motore/ado.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

struct Lettura {
    QStringView tabella;
    const char *istruzione = nullptr;
};

// Di ogni riga si mostrano le colonne che hanno qualcosa; le colonne dette Giorno sono date.
constexpr Lettura letture[] = {
    {u"Individui", "SELECT trim(coalesce(Nome, '') || ' ' || coalesce(Cognome, '')) FROM Individui "
                   "WHERE Codice = ?"},
    {u"Famiglie", "SELECT trim(coalesce(Nome, '') || ' ' || coalesce(Cognome, '')) "
                  "FROM FamiglieConiugi INNER JOIN Individui "
                  "ON Individui.Codice = FamiglieConiugi.CodiceIndividuo "
                  "WHERE FamiglieConiugi.CodiceFamiglia = ? ORDER BY Ruolo, Individui.rowid"},
    {u"Eventi", "SELECT Data AS Giorno, Luogo FROM Eventi WHERE Codice = ?"},
    {u"Binari", "SELECT Nome, CASE WHEN Tipo IN (12, 13) THEN substr(Campolungo, 1, 200) END "
                "FROM Binari WHERE Codice = ?"},
    {u"Operatori", "SELECT trim(coalesce(Nome, '') || ' ' || coalesce(Cognome, '')) "
                   "FROM Operatori WHERE Codice = ?"},
    {u"Luoghi", "SELECT Indirizzo1, Indirizzo2, Indirizzo3, \"Città\" FROM Luoghi "
                "WHERE Codice = ?"},
    {u"Comunicazioni", "SELECT Telefono, Cellulare, Fax, \"E-mail\", PaginaWeb FROM Comunicazioni "
                       "WHERE Codice = ?"},
};

// In una riga sola, e non più lunga di quanto si legge in un'occhiata.
QString accorciato(const QString &testo)
{
    constexpr qsizetype massimo = 80;
    const QString piano = testo.simplified();
    return piano.size() <= massimo ? piano : piano.left(massimo - 1).trimmed() + u'…';
}

QString parole(const ado::Riga &riga)
{
    QStringList piene;
    for (int i = 0; i < riga.colonne(); ++i) {
        const QString testo = riga.nome(i) == QStringLiteral("Giorno")
                                  ? italiano::mostraDataBreve(riga.testo(i))
                                  : accorciato(riga.testo(i));
        if (!testo.isEmpty())
            piene.append(testo);
    }
    return piene.join(QStringLiteral(", "));
}

} // namespace

QString descrizione(ado::Connection &connessione, const QString &codice)
{
    const catalogo::Tabella *tabella = catalogo::diCodice(codice);
    const auto *lettura =
        std::find_if(std::begin(letture), std::end(letture), [tabella](const Lettura &una) {
            return tabella != nullptr && una.tabella == tabella->nome;
        });
    if (lettura == std::end(letture))
        return {};
    QStringList righe;
    connessione.leggi({QString::fromUtf8(lettura->istruzione), {codice}, {}},
                      [&righe](const ado::Riga &riga) {
                          righe.append(parole(riga));
                          return true;
                      });
    righe.removeAll(QString());
    return righe.join(QStringLiteral(" e "));
}

} // namespace modTarvola
