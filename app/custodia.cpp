#include "app/custodia.h"

#include "db/archivio/connessioni.h"
#include "db/archivio/custodia.h"
#include "platform/disco/shell.h"
#include "platform/finestre/a_parte.h"
#include "platform/finestre/dialoghi.h"
#include "platform/finestre/messaggi.h"

#include <QFileInfo>

using namespace modTarvola;

namespace
{

QString perdite(const Compattato &esito)
{
    QString testo = esito.estraneo
                        ? QStringLiteral("Nel file c'era altro, oltre ai record: al suo posto c'è "
                                         "ora un file pulito, con i record che si leggevano.")
                        : QStringLiteral("Il file era danneggiato: è stato riparato, recuperando "
                                         "tutto ciò che si leggeva ancora.");
    testo += esito.mancanti.isEmpty() ? QStringLiteral("\nNessun record è andato perduto.")
                                      : QStringLiteral("\nRecord perduti:");
    for (const salvataggio::Conto &conto : esito.mancanti) {
        const QString quanti = conto.perdute == 0
                                   ? QStringLiteral("forse alcuni, che non si possono contare")
                               : conto.almeno ? QStringLiteral("almeno %1").arg(conto.perdute)
                                              : QString::number(conto.perdute);
        testo += QStringLiteral("\n%1: %2").arg(conto.tabella, quanti);
    }
    if (esito.senzaProprietario > 0)
        testo +=
            QStringLiteral("\nRecord rimasti senza proprietario o senza membri: %1. Alla "
                           "prossima eliminazione saranno tolti, con ciò che ne dipende: prima di "
                           "eliminare qualsiasi record conviene guardarli.")
                .arg(esito.senzaProprietario);
    return testo;
}

} // namespace

Custodia::Custodia(QWidget *finestra, ArchiviFile &archivi)
    : m_finestra(finestra), m_archivi(archivi)
{
}

bool Custodia::compie(const QString &titolo, const QString &comando,
                      const std::function<void(const avanzamento::Passo &)> &lavoro)
{
    for (;;) {
        try {
            avanzamento::compieAParte(m_finestra, titolo, lavoro);
            return true;
        } catch (const TrasferimentoFallito &) {
            throw;
        } catch (const ado::Errore &errore) {
            if (errore.causa() == ado::Causa::Interrotto) {
                messaggi::avvisa(m_finestra, comando.arg(QStringLiteral("annullat")));
                return false;
            }
            const QString testo =
                comando.arg(QStringLiteral("non riuscit")) + u'\n' + errore.testo();
            if (errore.causa() != ado::Causa::Occupato) {
                messaggi::avvisa(m_finestra, testo);
                return false;
            }
            if (!messaggi::avverte(m_finestra, testo))
                return false;
        } catch (const std::exception &errore) {
            messaggi::avvisa(m_finestra, comando.arg(QStringLiteral("non riuscit")) + u'\n' +
                                             QString::fromLocal8Bit(errore.what()));
            return false;
        }
    }
}

bool Custodia::libera(const QString &percorso)
{
    if (m_archivi.ChiudiSeInUso(percorso) >= -1)
        return true;
    messaggi::avvisa(m_finestra, QStringLiteral("Errore nella chiusura del database"));
    return false;
}

std::optional<bool> Custodia::consenteDiSovrascrivere(const QString &percorso,
                                                      const QString &altrimenti)
{
    const bool presente = QFileInfo::exists(percorso);
    if (!presente ||
        messaggi::chiede(m_finestra, QStringLiteral("un file con questo nome è già presente, si "
                                                    "desidera sovrascriverlo?")))
        return presente;
    messaggi::avvisa(m_finestra, altrimenti);
    return {};
}

void Custodia::compatta()
{
    const QString percorso = m_archivi.sceglie(QStringLiteral("Compatta/ripara un file"));
    if (percorso.isEmpty() || !m_archivi.consenteLoSpostamento(percorso) || !libera(percorso))
        return;
    Compattato esito;
    try {
        if (!compie(QStringLiteral("Compressione/riparazione di\n") + percorso,
                    QStringLiteral("Compressione/riparazione %1a"),
                    [&](const avanzamento::Passo &passo) {
                        esito = compattaArchivio(
                            percorso, shell::cartellaApplicazione() + QStringLiteral("/Cestino"),
                            passo);
                    }))
            return;
    } catch (const TrasferimentoFallito &) {
        messaggi::avvisa(m_finestra, QStringLiteral("Trasferimeto fallito del file") + percorso);
        return;
    }
    messaggi::avvisa(m_finestra, QStringLiteral("Il file\n") + percorso +
                                     QStringLiteral("\nè stato rinominato\n") + esito.nelCestino);
    if (esito.riparato)
        messaggi::avvisa(m_finestra, perdite(esito));
    else if (esito.conPassi)
        messaggi::avvisa(m_finestra,
                         QStringLiteral("Il file compatto non ha la storia dei passi: ciò che è "
                                        "stato fatto finora non si può più annullare, e ciò che "
                                        "era stato eliminato non c'è più. Il file di prima, nel "
                                        "Cestino, li ha ancora."));
    messaggi::avvisa(m_finestra, QStringLiteral("Compressione/riparazione riuscita"));
}

void Custodia::backUp()
{
    const QString percorso = m_archivi.sceglie(QStringLiteral("Back-up"));
    if (percorso.isEmpty() || !libera(percorso))
        return;
    QString copia =
        dialoghi::scegliCartella(m_finestra, QStringLiteral("Selezionare dove salvare l'archivio"),
                                 shell::cartellaApplicazione());
    if (copia.isEmpty())
        return;
    if (!copia.endsWith(u'/'))
        copia += u'/';
    copia += shell::NomeFileDaPercorso(percorso);
    const auto presente = consenteDiSovrascrivere(copia, QStringLiteral("Back-up annullato"));
    if (!presente || !libera(copia))
        return;
    if (compie(QStringLiteral("Back-up di\n") + percorso, QStringLiteral("Back-up %1o"),
               [&](const avanzamento::Passo &passo) {
                   copiaArchivio(percorso, copia, passo, !*presente);
               }))
        messaggi::avvisa(m_finestra, QStringLiteral("Back-up riuscito"));
}

void Custodia::recupera()
{
    const QString scelto = m_archivi.sceglie(QStringLiteral("Recupera"));
    if (scelto.isEmpty())
        return;
    const QString arrivo = shell::cartellaApplicazione() + u'/' + shell::NomeFileDaPercorso(scelto);
    const auto presente = consenteDiSovrascrivere(arrivo, QStringLiteral("Recupero annullato"));
    if (!presente)
        return;
    // Un file copiato su se stesso è già al suo posto: non c'è che da non toccarlo.
    const bool altro = !*presente || !stessoFile(scelto, arrivo);
    if (altro && (!libera(scelto) || !libera(arrivo)))
        return;
    if (!altro || compie(QStringLiteral("Recupero di\n") + scelto, QStringLiteral("Recupero %1o"),
                         [&](const avanzamento::Passo &passo) {
                             recuperaArchivio(scelto, arrivo, passo, !*presente);
                         }))
        messaggi::avvisa(m_finestra, QStringLiteral("Recupero riuscito"));
}
