#include "db/atto/registro_atti.h"

namespace modTarvola
{

QString ultimoAtto(ado::Connection &connessione, const QString &registro)
{
    return attoAccanto(connessione, registro, {}, false);
}

QString attoAccanto(ado::Connection &connessione, const QString &registro, const QString &atto,
                    bool segue)
{
    const QString numero = QStringLiteral("CAST(substr(Codice, 2) AS INTEGER)");
    const QString condizione =
        atto.isEmpty() ? QString()
                       : QStringLiteral(" AND %1 %2 CAST(substr(?2, 2) AS INTEGER)")
                             .arg(numero, segue ? QStringLiteral(">") : QStringLiteral("<"));
    if (atto.isEmpty() && segue)
        return {};
    return connessione
        .valore(
            {QStringLiteral("SELECT Codice FROM Voci WHERE Registro = ?1%1 ORDER BY %2 %3 "
                            "LIMIT 1")
                 .arg(condizione, numero, segue ? QStringLiteral("ASC") : QStringLiteral("DESC")),
             atto.isEmpty() ? QVariantList{registro} : QVariantList{registro, atto},
             {}})
        .toString();
}

QStringList ultimiAtti(ado::Connection &connessione, const QString &registro, int quanti)
{
    QStringList codici;
    connessione.leggi({QStringLiteral("SELECT Codice FROM Voci WHERE Registro = ? ORDER BY "
                                      "CAST(substr(Codice, 2) AS INTEGER) DESC LIMIT ?"),
                       {registro, quanti},
                       {}},
                      [&codici](const ado::Riga &riga) {
                          codici.prepend(riga.testo(0));
                          return true;
                      });
    return codici;
}

ado::Comando attiDiTipo(int tipo)
{
    return {QStringLiteral("SELECT Voci.Codice, Registro FROM Voci INNER JOIN Registri ON "
                           "Registri.Codice = Registro WHERE Tipo = ?"),
            {tipo},
            {}};
}

QString titoloDiRegistro(ado::Connection &connessione, const QString &registro)
{
    return connessione
        .valore({QStringLiteral("SELECT Titolo FROM Registri WHERE Codice = ?"), {registro}, {}})
        .toString();
}

QString attoDi(ado::Connection &connessione, const QString &codice)
{
    const auto proprietario = [&](const char *istruzione) {
        return connessione.valore({QString::fromUtf8(istruzione), {codice}, {}}).toString();
    };
    if (codice.isEmpty())
        return {};
    switch (codice.front().toUpper().toLatin1()) {
    case 'V':
        return codice;
    case 'I': {
        const QString sua = proprietario("SELECT Voce FROM Individui WHERE Codice = ?");
        // Chi non è di una voce lo è attraverso una famiglia.
        return !sua.isEmpty()
                   ? sua
                   : proprietario("SELECT Voce FROM Famiglie WHERE Voce IS NOT NULL AND Codice IN "
                                  "(SELECT CodiceFamiglia FROM FamiglieConiugi WHERE "
                                  "CodiceIndividuo = ?1 UNION SELECT CodiceFamiglia FROM "
                                  "FamiglieGenitori WHERE CodiceIndividuo = ?1) LIMIT 1");
    }
    case 'F':
        return proprietario("SELECT Voce FROM Famiglie WHERE Codice = ?");
    case 'E':
        return attoDi(connessione,
                      proprietario("SELECT IdProprietario FROM Eventi WHERE Codice = ?"));
    case 'B':
        return attoDi(connessione,
                      proprietario("SELECT IdProprietario FROM Binari WHERE Codice = ?"));
    default:
        return {};
    }
}

std::optional<RegistroTrovato> registroDi(ado::Connection &connessione, const QString &codice)
{
    std::optional<RegistroTrovato> trovato;
    const bool suo = codice.startsWith(u'R', Qt::CaseInsensitive);
    const QString condizione =
        suo ? QStringLiteral("?") : QStringLiteral("(SELECT Registro FROM Voci WHERE Codice = ?)");
    connessione.leggi(
        {QStringLiteral("SELECT Codice, Archivio, Tipo FROM Registri WHERE Codice = ") + condizione,
         {suo ? codice : attoDi(connessione, codice)},
         {}},
        [&](const ado::Riga &riga) {
            trovato = {riga.testo(0), riga.testo(1), riga.valore(2).toInt()};
            return false;
        });
    return trovato;
}

} // namespace modTarvola
