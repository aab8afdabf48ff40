#include "app/MDITras.h"
#include "app/ultimi.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/atto/registro_atti.h"
#include "platform/finestre/messaggi.h"

#include <QFileInfo>

// Il lavoro che riprende da dov'era: gli ultimi file, e il registro in cui si è scritto per ultimo.

using namespace modTarvola;

void MDITras::mostraArchivi()
{
    ProprietaTabella proprieta;
    proprieta.TipoTabella = QStringLiteral("Archivi");
    proprieta.Percorso = contesto().PercorsoCorrente;
    proprieta.ConOperatore = contesto().OperatoreCorrente;
    apre(proprieta);
}

bool MDITras::siTrova(const QString &percorso)
{
    if (QFileInfo::exists(percorso))
        return true;
    if (messaggi::chiede(
            this,
            tr("Il file\n%1\nnon si trova: è stato spostato o eliminato, o il disco in "
               "cui sta non è collegato.\nToglierlo dagli ultimi file?")
                .arg(percorso),
            messaggi::Domanda::PropostoNo))
        ultimi::toglie(percorso);
    m_menu.offreContinua();
    return false;
}

void MDITras::apreUltimo(const QString &percorso)
{
    messaggi::protetto(this, [&] {
        if (siTrova(percorso))
            apreArchivio(percorso);
    });
}

// L'atto che segue l'ultimo scritto, con sotto l'elenco degli atti del suo registro.
void MDITras::continua()
{
    const ultimi::Posto posto = ultimi::posto();
    if (posto.percorso.isEmpty() || m_schede.mostraNuova(posto.percorso, posto.registro) ||
        !siTrova(posto.percorso) || !m_archivi.entra(posto.percorso, posto.operatore))
        return;
    const auto registro = registroDi(connessione(), posto.registro);
    if (!registro) {
        messaggi::avvisa(this, tr("Il registro in cui si è scritto per ultimo non c'è più"));
        return mostraArchivi();
    }
    if (!QFileInfo(posto.percorso).isWritable()) {
        messaggi::avvisa(this,
                         tr("Il file è di sola lettura: un atto nuovo non si potrebbe salvare"));
        return mostraArchivi();
    }
    contesto().ArchivioCorrente = registro->archivio;
    contesto().RegistroCorrente = registro->codice;
    contesto().TipoRegistroCorrente = registro->tipo;
    contesto().VoceCorrente.clear();
    ProprietaTabella elenco;
    elenco.TipoTabella = QStringLiteral("Voci");
    elenco.Percorso = contesto().PercorsoCorrente;
    elenco.ArchivioLocale = registro->archivio;
    elenco.RegistroLocale = registro->codice;
    elenco.VoceLocaleTabella = registro->codice;
    elenco.ConOperatore = contesto().OperatoreCorrente;
    apre(elenco);
    // Chi riprende ciò che aveva interrotto continua da lì.
    if (m_riprese.offre(posto.percorso))
        return;
    ProprietaScheda nuova;
    nuova.Percorso = elenco.Percorso;
    nuova.ConOperatore = elenco.ConOperatore;
    nuova.RegistroLocale = registro->codice;
    m_schede.apre(nuova);
}

// Il registro in cui si è appena scritto. Di ciò che si elimina non resta da dove continuare.
void MDITras::ricordaPosto(const Annuncio &annuncio)
{
    const int aperto = postoDi(annuncio.archivio);
    if (aperto < 0)
        return;
    ado::Connection &sua = *archivi().Connessioni.at(static_cast<size_t>(aperto));
    messaggi::protetto(this, [&] {
        if (sua.State() == ado::adStateClosed)
            return;
        // Un lavoro lungo sta in genere tutto in un registro: non se ne guardano tutti i record.
        constexpr qsizetype guardati = 8;
        const auto &tutti = annuncio.cambiamenti;
        for (qsizetype i = 0; i < std::min(guardati, tutti.size()); ++i) {
            const auto registro = registroDi(sua, tutti.at(i).codice);
            if (!registro)
                continue;
            ultimi::ricorda({annuncio.archivio, registro->codice, contesto().OperatoreCorrente});
            return m_menu.offreContinua();
        }
    });
}
