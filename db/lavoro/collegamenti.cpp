#include "db/lavoro/collegamenti.h"

namespace modTarvola
{

namespace
{

QString conEtichetta(const char *testo, const QString &lingua)
{
    return QString::fromUtf8(testo).replace(QStringLiteral("{etichetta}"),
                                            QStringLiteral("Traduzioni.") + lingua);
}

struct Istruzione {
    Legami modo;
    const char *testo;
};

// Ogni istruzione rende etichetta, codice collegato e genere.
constexpr Istruzione istruzioni[] = {
    {Legami::TestiEFile, "SELECT {etichetta}, Binari.Codice, Binari.Tipo FROM Binari "
                         "INNER JOIN Traduzioni ON Binari.Tipo = Traduzioni.Codice "
                         "WHERE Binari.IdProprietario = ? ORDER BY Binari.rowid"},
    {Legami::Operatori,
     "SELECT {etichetta}, OperatoriContesti.CodiceOperatore, Traduzioni.Codice "
     "FROM OperatoriContesti "
     "INNER JOIN Operatori ON OperatoriContesti.CodiceOperatore = Operatori.Codice "
     "INNER JOIN Traduzioni ON Operatori.Tipo = Traduzioni.Codice "
     "WHERE OperatoriContesti.CodiceContesto = ? ORDER BY Operatori.rowid"},
    {Legami::Indirizzi,
     "SELECT {etichetta}, Luoghi.Codice, Traduzioni.Codice FROM Luoghi, Traduzioni "
     "WHERE Luoghi.IdProprietario = ? AND Traduzioni.Codice = 43 ORDER BY Luoghi.rowid"},
    {Legami::Recapiti, "SELECT {etichetta}, Comunicazioni.Codice, Traduzioni.Codice "
                       "FROM Comunicazioni, Traduzioni "
                       "WHERE Comunicazioni.IdProprietario = ? AND Traduzioni.Codice = 44 "
                       "ORDER BY Comunicazioni.rowid"},
    {Legami::IndividuiDellaVoce,
     "SELECT {etichetta}, Individui.Codice, Individui.Ruolo FROM Individui "
     "INNER JOIN Traduzioni ON Individui.Ruolo = Traduzioni.Codice "
     "WHERE Individui.Voce = ? ORDER BY Individui.rowid"},
    {Legami::FamiglieDellaVoce, "SELECT {etichetta}, Famiglie.Codice, Famiglie.Ruolo FROM Famiglie "
                                "INNER JOIN Traduzioni ON Famiglie.Ruolo = Traduzioni.Codice "
                                "WHERE Famiglie.Voce = ? ORDER BY Famiglie.rowid"},
    {Legami::FamiglieConiuge,
     "SELECT 'Famiglia Coniuge', FamiglieConiugi.CodiceFamiglia, 8 FROM Individui "
     "INNER JOIN FamiglieConiugi ON Individui.Codice = FamiglieConiugi.CodiceIndividuo "
     "WHERE Individui.Codice = ?"},
    {Legami::FamiglieGenitori,
     "SELECT 'Famiglia Genitori', FamiglieGenitori.CodiceFamiglia, 35 FROM Individui "
     "INNER JOIN FamiglieGenitori ON Individui.Codice = FamiglieGenitori.CodiceIndividuo "
     "WHERE Individui.Codice = ?"},
    {Legami::Eventi, "SELECT {etichetta}, Eventi.Codice, Eventi.Tipo FROM Eventi "
                     "INNER JOIN Traduzioni ON Eventi.Tipo = Traduzioni.Codice "
                     "WHERE Eventi.IdProprietario = ? ORDER BY Eventi.rowid"},
    {Legami::MembriDellaFamiglia,
     "SELECT {etichetta}, FamiglieConiugi.CodiceIndividuo, Individui.Ruolo "
     "FROM FamiglieConiugi "
     "INNER JOIN Individui ON Individui.Codice = FamiglieConiugi.CodiceIndividuo "
     "INNER JOIN Traduzioni ON Individui.Ruolo = Traduzioni.Codice "
     "WHERE FamiglieConiugi.CodiceFamiglia = ? ORDER BY Individui.rowid"},
};

const char *istruzione(Legami modo)
{
    for (const Istruzione &una : istruzioni) {
        if (una.modo == modo)
            return una.testo;
    }
    return "";
}

} // namespace

ado::Comando dettagli(const QString &tabella, const QString &codice)
{
    return {QStringLiteral("SELECT * FROM %1 WHERE Codice = ?").arg(tabella), {codice}, tabella};
}

ado::Comando testoLungo(const QString &codice)
{
    return dettagli(QStringLiteral("Binari"), codice);
}

ado::Comando generiInseribili(int categoria, const QString &lingua)
{
    return {conEtichetta("SELECT Codice, Tipo, {etichetta} FROM Traduzioni "
                         "WHERE (Tipo / ?) % 2 = 1 ORDER BY {etichetta}",
                         lingua),
            {categoria},
            {}};
}

ado::Comando tipiDiRegistro(const QString &lingua)
{
    return {conEtichetta("SELECT Codice, Tipo, {etichetta} FROM Traduzioni WHERE Tipo = 0", lingua),
            {},
            {}};
}

ado::Comando collegamenti(Legami modo, const QString &codice, const QString &lingua)
{
    return {conEtichetta(istruzione(modo), lingua), {codice}, {}};
}

ado::Comando ruolo(const QString &individuo, const QString &lingua)
{
    return {conEtichetta("SELECT {etichetta}, Individui.Ruolo FROM Individui "
                         "INNER JOIN Traduzioni ON Individui.Ruolo = Traduzioni.Codice "
                         "WHERE Individui.Codice = ?",
                         lingua),
            {individuo},
            {}};
}

} // namespace modTarvola
