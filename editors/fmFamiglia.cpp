#include "editors/fmFamiglia.h"

#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/lavoro/codici.h"
#include "db/lavoro/famiglie.h"
#include "editors/fmIndividuo.h"
#include "platform/finestre/messaggi.h"

#include <algorithm>
#include <utility>

using namespace modTarvola;

namespace
{

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmFamiglia"),
        QStringLiteral("Famiglia"),
        QStringLiteral("Famiglie"),
        &ProprietaFinestra::FamigliaLocale,
        {},
        {Legami::TestiEFile, Legami::MembriDellaFamiglia, Legami::Eventi, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

// L'individuo dalla cui finestra si è aperta quella data; nullo se si è aperta da altro.
const fmIndividuo *individuoSotto(const FinestraEditor *finestra)
{
    const auto &pila = FinestreAperte();
    const auto posto = std::find(pila.begin(), pila.end(), finestra);
    if (posto == pila.begin() || posto == pila.end())
        return nullptr;
    return qobject_cast<const fmIndividuo *>(*(posto - 1));
}

} // namespace

fmFamiglia::fmFamiglia(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

bool fmFamiglia::TipoInseribile(int genere) const
{
    if (eGenitore(genere))
        return proprieta.TipoFamigliaLocale == FamigliaGenitori;
    if (!eConiuge(genere))
        return true;
    if (proprieta.TipoFamigliaLocale != FamigliaConiuge)
        return false;
    const fmIndividuo *coniuge = individuoSotto(this);
    return coniuge == nullptr ||
           genere == (coniuge->sessoScelto() == QStringLiteral("M") ? Moglie : Marito);
}

void fmFamiglia::caricato()
{
    if (!codice().isEmpty())
        proprieta.VoceLocale = adoDettagli.Testo(QStringLiteral("Voce"));
}

// Con l'ultimo membro la famiglia sparisce dall'archivio: la finestra torna quella di una famiglia
// ancora da registrare.
void fmFamiglia::dopoCollegamenti()
{
    if (!esiste(connessione(), codice()))
        tornaNuova();
}

void fmFamiglia::tornaNuova()
{
    codice().clear();
    if (proprieta.TipoFamigliaLocale == 0 && !adoDettagli.Bof())
        proprieta.TipoFamigliaLocale = adoDettagli.Campo(QStringLiteral("Ruolo")).toInt();
    adoDettagli.Open(dettagli(QStringLiteral("Famiglie"), {}), connessione(), proprieta.TipoLock);
    adoDettagli.AddNew();
}

QString fmFamiglia::rifiutoNuovo(int genere) const
{
    std::vector<int> inseriti;
    for (const Elemento &collegamento : pannello->collegamenti())
        inseriti.push_back(collegamento.Tag);
    return ConiugeGiaInserito(inseriti, genere)
               ? QStringLiteral("Questo tipo di coniuge è già stato inserito")
               : QString();
}

void fmFamiglia::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("Voce"), proprieta.VoceLocale);
    if (proprieta.TipoFamigliaLocale != 0)
        adoDettagli.Assegna(QStringLiteral("Ruolo"), proprieta.TipoFamigliaLocale);
}

// La famiglia si registra una volta sola: nello stesso lavoro vi entra chi l'ha aperta.
Scritto fmFamiglia::registra(Lavoro &lavoro)
{
    Scritto scritto = fmEditor::registra(lavoro);
    const QString &individuo = proprieta.IndividuoLocale;
    if (scritto.rifiuto.isEmpty() && !individuo.isEmpty() && esiste(connessione(), individuo))
        lavoro.iscrive(proprieta.TipoFamigliaLocale == FamigliaConiuge ? Posto::Coniuge
                                                                       : Posto::Figlio,
                       individuo, scritto.codice);
    return scritto;
}

bool fmFamiglia::nuovoProprio(const Elemento &genere)
{
    if (eRuoloDiCoppia(genere.Tag))
        nuovoMembro(genere);
    else if (eIndividuo(genere.Tag) && genere.Tag < Marito)
        nuovoIndividuo(genere);
    else if (eEventoDiFamiglia(genere.Tag))
        apreEvento(genere, {}, QStringLiteral("Evento di ") + windowTitle());
    else
        return false;
    return true;
}

void fmFamiglia::nuovoIndividuo(const Elemento &ruolo)
{
    apreFiglio(QStringLiteral("fmIndividuo"), {}, [&](FinestraEditor &finestra) {
        finestra.proprieta.VoceLocale = proprieta.VoceLocale;
        finestra.Label2 = {ruolo.Text, ruolo.Tag};
    });
}

void fmFamiglia::nuovoMembro(const Elemento &ruolo)
{
    const QString sesso =
        ruolo.Tag == Marito || ruolo.Tag == Padre ? QStringLiteral("M") : QStringLiteral("F");
    apreFiglio(
        QStringLiteral("fmIndividuo"), {},
        [&](FinestraEditor &nuova) {
            nuova.proprieta.VoceLocale = proprieta.VoceLocale;
            nuova.Label2 = {ruolo.Text, ruolo.Tag};
        },
        [&](FinestraEditor &nuova) {
            auto *individuo = qobject_cast<fmIndividuo *>(&nuova);
            if (individuo == nullptr)
                return;
            individuo->imponeSesso(sesso);
            individuo->insieme = [this](Lavoro &lavoro, const QString &membro) {
                iscrive(lavoro, membro);
            };
        });
    if (esiste(connessione(), m_rinata)) {
        codice() = std::exchange(m_rinata, {});
        adoDettagli.Open(dettagli(QStringLiteral("Famiglie"), codice()), connessione(),
                         proprieta.TipoLock);
    }
    contesto().IndividuoCorrente = proprieta.IndividuoLocale;
}

// Una famiglia ancora senza membri può essere sparita eliminando altro dalla finestra del membro:
// allora si registra di nuovo, con lui.
void fmFamiglia::iscrive(Lavoro &lavoro, const QString &membro)
{
    const QString &attuale = m_rinata.isEmpty() ? codice() : m_rinata;
    if (esiste(connessione(), attuale)) {
        lavoro.iscrive(Posto::Coniuge, membro, attuale);
        return;
    }
    tornaNuova();
    completaNuovo();
    m_rinata = registra(lavoro).codice;
    lavoro.iscrive(Posto::Coniuge, membro, m_rinata);
}

bool fmFamiglia::apriProprio(const Elemento &collegamento)
{
    if (eIndividuo(collegamento.Tag)) {
        if (FinestraGiaAperta(QStringLiteral("fmIndividuo"), collegamento.Key))
            return false;
        apreMembro(collegamento);
    } else if (eEventoDiFamiglia(collegamento.Tag)) {
        apreEvento(collegamento, collegamento.Key, collegamento.Text);
    } else {
        return false;
    }
    return true;
}

void fmFamiglia::apreMembro(const Elemento &membro)
{
    apreFiglio(QStringLiteral("fmIndividuo"), {}, [&](FinestraEditor &finestra) {
        finestra.proprieta.VoceLocale = proprieta.VoceLocale;
        finestra.proprieta.IndividuoLocale = membro.Key;
        finestra.Label2.Caption = membro.Text;
    });
}

void fmFamiglia::apreEvento(const Elemento &evento, const QString &codiceEvento,
                            const QString &didascalia)
{
    contesto().EventoCorrente = codiceEvento;
    apreFiglio(QStringLiteral("fmEvento"), didascalia, [&](FinestraEditor &finestra) {
        finestra.proprieta.VoceLocale = codice();
        finestra.proprieta.EventoLocale = codiceEvento;
        finestra.proprieta.EventoLocaleTipo = evento.Tag;
        finestra.Label2 = {evento.Text, evento.Tag};
    });
}
