#include "db/custodia.h"

#include "db/connessioni.h"
#include "db/conversione.h"
#include "db/fiducia.h"
#include "db/salvati.h"
#include "db/schema.h"
#include "db/versioni.h"
#include "platform/disco/shell.h"
#include "platform/motore/jro.h"
#include "platform/motore/presa.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>

namespace modTarvola
{

namespace
{

QString giornale(const QString &percorso)
{
    return percorso + QStringLiteral("-journal");
}

// Ciò che il file è davvero: chi sceglie un collegamento vuole il file cui porta.
QString vero(const QString &percorso)
{
    const QString suo = QFileInfo(percorso).canonicalFilePath();
    return suo.isEmpty() ? percorso : suo;
}

void apre(ado::Connection &connessione, const QString &percorso)
{
    connessione.Open(stringaDiConnessione(percorso));
    rifiutaPiuNuovo(connessione, versioneSchema);
    const int versione = versioneDi(connessione);
    if (versione < 1)
        throw ado::Errore(
            ado::Causa::Danneggiato,
            QStringLiteral("il file è danneggiato (versione dello schema %1)").arg(versione));
    verificaSchemaEstraneo(connessione);
    verificaTabelle(connessione);
}

// Un tratto di un lavoro, in centesimi del tutto.
provvisorio::Passo tratto(const provvisorio::Passo &passo, int da, int a)
{
    return [&passo, da, a](qint64 fatto, qint64 totale) {
        const double parte =
            totale > 0 ? static_cast<double>(fatto) / static_cast<double>(totale) : 0;
        return passo(da * 100 + static_cast<qint64>(parte * (a - da) * 100), 10000);
    };
}

void compattaIn(const QString &percorso, const QString &nuovo, const provvisorio::Passo &passo)
{
    ado::Connection origine;
    apre(origine, percorso);
    jro::CompactDatabase(origine, nuovo, tratto(passo, 0, 70));
    ado::Connection copia;
    apre(copia, nuovo);
    jro::verificaIntegrita(copia, tratto(passo, 70, 70));
    jro::confronta(origine, copia, tratto(passo, 90, 90));
}

// Leggere una coda o una cartella non finirebbe.
void richiedeFile(const QString &percorso)
{
    if (!QFileInfo(percorso).isFile())
        throw ado::Errore(ado::Causa::NonArchivio, QStringLiteral("non è un file"));
}

void richiedeConvertito(const QString &percorso)
{
    richiedeFile(percorso);
    if (diFormatoAnteriore(percorso))
        throw ado::Errore(ado::Causa::NonArchivio,
                          QStringLiteral("il file è nel formato anteriore: va prima convertito, "
                                         "aprendolo"));
}

bool riparabile(ado::Causa causa)
{
    return causa == ado::Causa::Danneggiato || causa == ado::Causa::NonArchivio ||
           causa == ado::Causa::Estraneo;
}

// La scrittura interrotta di un altro programma si disfa aprendo il file. Il giornale resta solo a
// un file che non si apre.
void sistemaGiornale(const QString &percorso)
{
    if (!QFileInfo::exists(percorso) || !QFileInfo::exists(giornale(percorso)))
        return;
    try {
        ado::Connection connessione;
        connessione.Open(stringaDiConnessione(percorso));
    } catch (const ado::Errore &errore) {
        if (errore.causa() == ado::Causa::Occupato)
            throw;
    }
}

// Il giornale che resta non è del file che prende il posto di questo.
void togliGiornale(const QString &percorso)
{
    sistemaGiornale(percorso);
    if (QFileInfo::exists(giornale(percorso)) && !QFile::remove(giornale(percorso)))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("%1 non si può togliere").arg(giornale(percorso)));
}

// Sposta senza sovrascrivere; un giornale che non c'è è già spostato.
shell::Esito sposta(const QString &da, const QString &a, const provvisorio::Passo &passo = {})
{
    return QFileInfo::exists(da)
               ? shell::OperazioneFile(shell::Operazione::Muovi, da, a, false, passo)
               : shell::Esito();
}

// Un programma interrotto può aver lasciato il vecchio file fra lo scambio e il Cestino.
void raccoglie(const QString &percorso, const QString &cestino)
{
    const auto rimasti = provvisorio::scambiInterrotti(percorso);
    if (!rimasti.isEmpty())
        QDir().mkpath(cestino);
    for (const QString &rimasto : rimasti)
        shell::OperazioneFile(shell::Operazione::Muovi, rimasto,
                              cestino + u'/' + shell::NomeFileDaPercorso(percorso), true);
}

// Il giornale di un file che non si apre lo precede: in nessun momento deve stare accanto al nuovo.
QString scambiaColCestino(provvisorio::File &nuovo, const QString &percorso, const QString &cestino,
                          const provvisorio::Passo &passo)
{
    const bool cestinoNuovo = !QFileInfo::exists(cestino);
    QDir().mkpath(cestino);
    const QString arrivo = shell::liberoDa(cestino + u'/' + shell::NomeFileDaPercorso(percorso));
    shell::Esito esito = sposta(giornale(percorso), giornale(arrivo));
    if (esito.stato == 0) {
        try {
            esito = sposta(nuovo.scambia(), arrivo, passo);
            if (esito.stato != 0)
                nuovo.ripristina();
        } catch (const ado::Errore &) {
            sposta(giornale(arrivo), giornale(percorso));
            throw;
        }
    }
    if (esito.stato == 0)
        return arrivo;
    sposta(giornale(arrivo), giornale(percorso));
    if (cestinoNuovo)
        QDir().rmdir(cestino);
    if (esito.stato == 2)
        throw ado::Errore(ado::Causa::Interrotto, esito.motivo);
    throw TrasferimentoFallito(ado::Causa::Altro, esito.motivo);
}

void verificaRecuperato(const QString &percorso, const provvisorio::Passo &passo)
{
    ado::Connection copia;
    apre(copia, percorso);
    jro::verificaIntegrita(copia, passo);
}

} // namespace

Compattato compattaArchivio(const QString &percorso, const QString &cestino,
                            const provvisorio::Passo &passo)
{
    Compattato esito;
    const QString suo = vero(percorso);
    richiedeConvertito(suo);
    Presa presa(suo);
    presa.daSolo();
    provvisorio::File nuovo(suo);
    std::optional<jro::Fermo> fermo;
    try {
        fermo.emplace(stringaDiConnessione(suo));
        compattaIn(suo, nuovo.percorso(), passo);
    } catch (const ado::Errore &errore) {
        if (!riparabile(errore.causa()))
            throw;
        QFile::remove(nuovo.percorso());
        esito.riparato = true;
        esito.estraneo = errore.causa() == ado::Causa::Estraneo;
        const Salvato salvato = salvaArchivio(suo, nuovo.percorso(), tratto(passo, 0, 90));
        esito.mancanti = salvato.mancanti;
        esito.senzaProprietario = salvato.senzaProprietario;
        verificaRecuperato(nuovo.percorso(), tratto(passo, 90, 90));
    }
    raccoglie(suo, cestino);
    esito.nelCestino = scambiaColCestino(nuovo, suo, cestino, tratto(passo, 95, 100));
    return esito;
}

QString sostituisceArchivio(const QString &percorso, const QString &cestino,
                            const provvisorio::Passo &passo,
                            const std::function<void(const QString &nuovo)> &scrive)
{
    const QString suo = vero(percorso);
    Presa presa(suo);
    presa.daSolo();
    provvisorio::File nuovo(suo);
    scrive(nuovo.percorso());
    provvisorio::sincronizza(nuovo.percorso());
    sistemaGiornale(suo);
    raccoglie(suo, cestino);
    return scambiaColCestino(nuovo, suo, cestino, passo);
}

void copiaArchivio(const QString &percorso, const QString &copia, const provvisorio::Passo &passo,
                   bool soloSeLibera)
{
    const QString suo = vero(percorso);
    const QString arrivo = vero(copia);
    richiedeConvertito(suo);
    Presa presa(arrivo);
    presa.daSolo();
    provvisorio::File nuovo(arrivo);
    const jro::Fermo fermo(stringaDiConnessione(suo));
    compattaIn(suo, nuovo.percorso(), passo);
    if (arrivo != suo)
        togliGiornale(arrivo);
    nuovo.prendeIlPosto(suo, soloSeLibera);
}

void recuperaArchivio(const QString &scelto, const QString &destinazione,
                      const provvisorio::Passo &passo, bool soloSeLibera)
{
    const QString suo = vero(scelto);
    const QString arrivo = vero(destinazione);
    richiedeFile(suo);
    Presa presa(arrivo);
    presa.daSolo();
    provvisorio::File nuovo(arrivo);
    const bool precedente = diFormatoAnteriore(suo);
    std::optional<jro::Fermo> fermo;
    if (!precedente)
        fermo.emplace(stringaDiConnessione(suo));
    provvisorio::copia(suo, nuovo.percorso(), tratto(passo, 0, 80));
    if (precedente)
        verificaFormatoAnteriore(nuovo.percorso());
    else
        verificaRecuperato(nuovo.percorso(), tratto(passo, 80, 80));
    togliGiornale(arrivo);
    nuovo.prendeIlPosto(suo, soloSeLibera);
}

void scostaIlGiornale(const QString &percorso)
{
    if (!QFileInfo::exists(giornale(percorso)))
        return;
    const shell::Esito esito =
        shell::OperazioneFile(shell::Operazione::Muovi, giornale(percorso),
                              giornale(percorso + QStringLiteral(" (vecchio)")), true);
    if (esito.stato != 0)
        throw ado::Errore(ado::Causa::Altro, giornale(percorso) + u'\n' + esito.motivo);
}

} // namespace modTarvola
