#include "db/archivio/custodia.h"

#include "db/archivio/connessioni.h"
#include "db/archivio/conversione.h"
#include "db/archivio/salvati.h"
#include "db/schema/fiducia.h"
#include "db/schema/schema.h"
#include "db/schema/versioni.h"
#include "db/storia/storia.h"
#include "platform/disco/shell.h"
#include "platform/motore/jro.h"
#include "platform/motore/presa.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace modTarvola
{

namespace
{

// Ciò che il file è davvero: chi sceglie un collegamento vuole il file cui porta.
QString vero(const QString &percorso)
{
    const QString suo = QFileInfo(percorso).canonicalFilePath();
    return suo.isEmpty() ? percorso : suo;
}

void apre(ado::Connection &connessione, const QString &percorso)
{
    apriFile(connessione, percorso);
    rifiutaPiuNuovo(connessione, versioneConAccanto);
    const int versione = versioneDi(connessione);
    if (versione < 1)
        throw ado::Errore(
            ado::Causa::Danneggiato,
            QStringLiteral("il file è danneggiato (versione dello schema %1)").arg(versione));
    verificaSchemaEstraneo(connessione, istruzioniNote());
    verificaTabelle(connessione);
}

std::function<void(ado::Connection &)> aperto(const QString &percorso)
{
    return [percorso](ado::Connection &connessione) { apriFile(connessione, percorso); };
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
    storia::toglieDallaCopia(copia, tratto(passo, 70, 70));
    jro::verificaIntegrita(copia, tratto(passo, 70, 70));
    jro::confronta(origine, copia, tratto(passo, 90, 90), storia::tavole());
}

bool haPassi(const QString &percorso)
{
    ado::Connection connessione;
    apre(connessione, percorso);
    return !storia::elenco(connessione).isEmpty();
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

bool haAccanto(const QString &percorso)
{
    const QStringList suoi = provvisorio::accanto(percorso);
    return std::any_of(suoi.cbegin(), suoi.cend(),
                       [](const QString &suo) { return QFileInfo::exists(suo); });
}

// La scrittura interrotta di un altro programma si disfa, o si compie, aprendo il file. Accanto
// resta qualcosa solo a un file che non si apre.
void sistemaGiornale(const QString &percorso)
{
    if (!QFileInfo::exists(percorso) || !haAccanto(percorso))
        return;
    try {
        ado::Connection connessione;
        connessione.Open(stringaDiConnessione(percorso));
        connessione.riprendeIlGiornale();
    } catch (const ado::Errore &errore) {
        if (errore.causa() == ado::Causa::Occupato)
            throw;
    }
}

// Ciò che resta accanto non è del file che prende il posto di questo.
void togliGiornale(const QString &percorso)
{
    sistemaGiornale(percorso);
    const QStringList suoi = provvisorio::accanto(percorso);
    for (const QString &suo : suoi) {
        if (QFileInfo::exists(suo) && !QFile::remove(suo))
            throw ado::Errore(ado::Causa::Altro, QStringLiteral("%1 non si può togliere").arg(suo));
    }
}

// Sposta senza sovrascrivere; ciò che non c'è è già spostato.
shell::Esito sposta(const QString &da, const QString &a, const provvisorio::Passo &passo = {})
{
    return QFileInfo::exists(da)
               ? shell::OperazioneFile(shell::Operazione::Muovi, da, a, false, passo)
               : shell::Esito();
}

// Sposta ciò che sta accanto a un file accanto a un altro: tutto, o niente.
shell::Esito spostaAccanto(const QString &da, const QString &a)
{
    const QStringList suoi = provvisorio::accanto(da);
    const QStringList arrivi = provvisorio::accanto(a);
    for (qsizetype i = 0; i < suoi.size(); ++i) {
        const shell::Esito esito = sposta(suoi.at(i), arrivi.at(i));
        if (esito.stato == 0)
            continue;
        while (i-- > 0)
            sposta(arrivi.at(i), suoi.at(i));
        return esito;
    }
    return {};
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

// Ciò che sta accanto a un file che non si apre lo precede: in nessun momento deve stare accanto al
// nuovo.
QString scambiaColCestino(provvisorio::File &nuovo, const QString &percorso, const QString &cestino,
                          const provvisorio::Passo &passo)
{
    const bool cestinoNuovo = !QFileInfo::exists(cestino);
    QDir().mkpath(cestino);
    const QString arrivo = shell::liberoDa(cestino + u'/' + shell::NomeFileDaPercorso(percorso));
    shell::Esito esito = spostaAccanto(percorso, arrivo);
    if (esito.stato == 0) {
        try {
            esito = sposta(nuovo.scambia(), arrivo, passo);
            if (esito.stato != 0)
                nuovo.ripristina();
        } catch (const ado::Errore &) {
            spostaAccanto(arrivo, percorso);
            throw;
        }
    }
    if (esito.stato == 0)
        return arrivo;
    spostaAccanto(arrivo, percorso);
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
        fermo.emplace(aperto(suo));
        esito.conPassi = haPassi(suo);
        compattaIn(suo, nuovo.percorso(), passo);
    } catch (const ado::Errore &errore) {
        // Chi ha la versione rovinata si ripara; chi è davvero più nuovo no.
        const bool versione = errore.causa() == ado::Causa::VersioneNuova && !diVersioneNuova(suo);
        if (!versione && !riparabile(errore.causa()))
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
    const jro::Fermo fermo(aperto(suo));
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
        fermo.emplace(aperto(suo));
    // Da dove non si può scrivere, ciò che sta accanto non entra nel file: lo legge il motore.
    if (haAccanto(suo) && !precedente)
        compattaIn(suo, nuovo.percorso(), tratto(passo, 0, 80));
    else
        provvisorio::copia(suo, nuovo.percorso(), tratto(passo, 0, 80));
    if (precedente)
        verificaFormatoAnteriore(nuovo.percorso());
    else
        verificaRecuperato(nuovo.percorso(), tratto(passo, 80, 80));
    togliGiornale(arrivo);
    nuovo.prendeIlPosto(suo, soloSeLibera);
}

void creaArchivio(const QString &modello, const QString &percorso)
{
    provvisorio::File nuovo(percorso);
    provvisorio::copia(modello, nuovo.percorso(),
                       [](qint64 /*fatto*/, qint64 /*totale*/) { return true; });
    if (haAccanto(percorso)) {
        const shell::Esito esito =
            spostaAccanto(percorso, shell::liberoDa(percorso + QStringLiteral(" (vecchio)")));
        if (esito.stato != 0)
            throw ado::Errore(ado::Causa::Altro, percorso + u'\n' + esito.motivo);
    }
    nuovo.prendeIlPosto({}, true);
}

} // namespace modTarvola
