#include "db/custodia.h"

#include "db/connessioni.h"
#include "db/conversione.h"
#include "db/salvati.h"
#include "db/schema.h"
#include "db/versioni.h"
#include "platform/jro.h"
#include "platform/presa.h"
#include "platform/shell.h"

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
    return causa == ado::Causa::Danneggiato || causa == ado::Causa::NonArchivio;
}

// Il giornale di una scrittura interrotta si disfa aprendo il file. Quello che resta non è del file
// che ne prende il posto.
void togliGiornale(const QString &percorso)
{
    if (QFileInfo::exists(percorso) && QFileInfo::exists(giornale(percorso))) {
        try {
            ado::Connection connessione;
            connessione.Open(stringaDiConnessione(percorso));
        } catch (const ado::Errore &errore) {
            if (errore.causa() == ado::Causa::Occupato)
                throw;
        }
    }
    if (QFileInfo::exists(giornale(percorso)) && !QFile::remove(giornale(percorso)))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("%1 non si può togliere").arg(giornale(percorso)));
}

// Un programma interrotto può aver lasciato il vecchio file fra lo scambio e il Cestino.
void raccoglie(const QString &percorso, const QString &cestino)
{
    const auto rimasti = provvisorio::scambiInterrotti(percorso);
    if (!rimasti.isEmpty())
        QDir().mkpath(cestino);
    for (const QString &rimasto : rimasti)
        shell::OperazioneFile(QStringLiteral("Muovi"), rimasto,
                              cestino + u'/' + shell::NomeFileDaPercorso(percorso), true);
}

QString scambiaColCestino(provvisorio::File &nuovo, const QString &percorso, const QString &cestino)
{
    const bool cestinoNuovo = !QFileInfo::exists(cestino);
    QDir().mkpath(cestino);
    const QString vecchio = nuovo.scambia();
    const QString arrivo = cestino + u'/' + shell::NomeFileDaPercorso(percorso);
    const shell::Esito esito =
        shell::OperazioneFile(QStringLiteral("Muovi"), vecchio, arrivo, true);
    if (esito.stato != 0) {
        nuovo.ripristina();
        if (cestinoNuovo)
            QDir().rmdir(cestino);
        throw TrasferimentoFallito(ado::Causa::Altro, esito.motivo);
    }
    return esito.nuovoNome.isEmpty() ? arrivo : esito.nuovoNome;
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
        esito.mancanti = salvaArchivio(suo, nuovo.percorso(), tratto(passo, 0, 90));
        verificaRecuperato(nuovo.percorso(), tratto(passo, 90, 90));
    }
    raccoglie(suo, cestino);
    esito.nelCestino = scambiaColCestino(nuovo, suo, cestino);
    seguitaIlGiornale(suo, esito.nelCestino);
    return esito;
}

void copiaArchivio(const QString &percorso, const QString &copia, const provvisorio::Passo &passo)
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
    nuovo.prendeIlPosto();
}

void recuperaArchivio(const QString &scelto, const QString &destinazione,
                      const provvisorio::Passo &passo)
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
    if (!precedente)
        verificaRecuperato(nuovo.percorso(), tratto(passo, 80, 80));
    togliGiornale(arrivo);
    nuovo.prendeIlPosto();
}

bool usatoDaAltri(const QString &percorso)
{
    try {
        Presa(percorso).daSolo();
        return false;
    } catch (const ado::Errore &) {
        return true;
    }
}

void seguitaIlGiornale(const QString &percorso, const QString &avvenuto)
{
    if (QFileInfo::exists(giornale(percorso)))
        shell::OperazioneFile(QStringLiteral("Muovi"), giornale(percorso), giornale(avvenuto),
                              true);
}

} // namespace modTarvola
