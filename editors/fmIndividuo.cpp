#include "editors/fmIndividuo.h"

#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

using namespace modTarvola;

namespace
{

// I riquadri a tre vie stanno in fila sotto i dettagli.
const QString fila = QStringLiteral("fila");

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmIndividuo"),
        QStringLiteral("Individuo"),
        QStringLiteral("Individui"),
        &ProprietaFinestra::IndividuoLocale,
        {
            {0, QStringLiteral("Precisazione")},
            {1, QStringLiteral("Nome")},
            {2, QStringLiteral("Soprannome")},
            {3, QStringLiteral("Cognome")},
            {4, QStringLiteral("Detto")},
            {5, QStringLiteral("Età")},
            {0, QStringLiteral("Sesso"), 0, 0, fila},
            {1, QStringLiteral("Legittimo"), 0, 0, fila},
            {2, QStringLiteral("Vivente"), 0, 0, fila},
        },
        {Legami::TestiEFile, Legami::FamiglieConiuge, Legami::FamiglieGenitori, Legami::Eventi,
         Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmIndividuo::fmIndividuo(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

void fmIndividuo::completaFinestra(QVBoxLayout *colonna)
{
    aggiungeEtichetta(colonna, QStringLiteral("Ruolo"));
    fmEditor::completaFinestra(colonna);
    auto *riquadri = new QHBoxLayout;
    Text1.disponi(riquadri, fila);
    colonna->addLayout(riquadri);
}

void fmIndividuo::caricato()
{
    if (!codice().isEmpty())
        proprieta.VoceLocale = adoDettagli.Testo(QStringLiteral("Voce"));
    // Un sesso registrato non si cambia più.
    if (!sessoScelto().isEmpty())
        sesso()->setSolaLettura(true);
}

Casella *fmIndividuo::sesso() const
{
    return Text1[u"Sesso"];
}

void fmIndividuo::imponeSesso(const QString &lettera)
{
    sesso()->mostra(lettera);
    sesso()->setSolaLettura(true);
}

QString fmIndividuo::sessoScelto() const
{
    return sesso()->valore().toString();
}

// Un individuo registrato ha il ruolo del suo record; se non si trova resta quello di chi ha
// aperto.
void fmIndividuo::dopoCollegamenti()
{
    ado::Recordset adoRuolo;
    adoRuolo.Open(ruolo(codice(), contesto().ColonnaLingua), connessione(), proprieta.TipoLock);
    if (!adoRuolo.Bof())
        Label2 = {adoRuolo.Campo(0).toString(), adoRuolo.Campo(1).toInt()};
    mostraEtichetta();
}

QString fmIndividuo::rifiutoNuovo(int genere) const
{
    return genere == FamigliaConiuge && sesso()->vuota()
               ? QStringLiteral(
                     "Per creare una famiglia come coniuge è necessario definire il sesso")
               : QString();
}

void fmIndividuo::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("Voce"), proprieta.VoceLocale);
    if (Label2.Tag != 0)
        adoDettagli.Assegna(QStringLiteral("Ruolo"), Label2.Tag);
}

void fmIndividuo::salvato()
{
    contesto().IndividuoCorrente = proprieta.IndividuoLocale;
    NomeIndividuoLocale = adoDettagli.Testo(QStringLiteral("Nome"));
}

bool fmIndividuo::nuovoProprio(const Elemento &genere)
{
    if (eFamiglia(genere.Tag))
        apreFamiglia(genere, {});
    else if (eEventoDiIndividuo(genere.Tag))
        apreEvento(genere, {});
    else
        return false;
    return true;
}

bool fmIndividuo::apriProprio(const Elemento &collegamento)
{
    if (eFamiglia(collegamento.Tag)) {
        if (FinestraGiaAperta(QStringLiteral("fmFamiglia"), collegamento.Key))
            return false;
        apreFamiglia(collegamento, collegamento.Key);
    } else if (eEventoDiIndividuo(collegamento.Tag)) {
        apreEvento(collegamento, collegamento.Key);
    } else {
        return false;
    }
    return true;
}

void fmIndividuo::apreFamiglia(const Elemento &famiglia, const QString &codiceFamiglia)
{
    apreFiglio(QStringLiteral("fmFamiglia"), famiglia.Text + u' ' + NomeIndividuoLocale,
               [&](FinestraEditor &finestra) {
                   finestra.proprieta.FamigliaLocale = codiceFamiglia;
                   finestra.proprieta.TipoFamigliaLocale = famiglia.Tag;
                   finestra.proprieta.VoceLocale = proprieta.VoceLocale;
                   finestra.proprieta.IndividuoLocale = proprieta.IndividuoLocale;
               });
}

void fmIndividuo::apreEvento(const Elemento &evento, const QString &codiceEvento)
{
    contesto().EventoCorrente = codiceEvento;
    apreFiglio(QStringLiteral("fmEvento"), {}, [&](FinestraEditor &finestra) {
        finestra.proprieta.VoceLocale = proprieta.IndividuoLocale;
        finestra.proprieta.EventoLocale = codiceEvento;
        finestra.proprieta.EventoLocaleTipo = evento.Tag;
        finestra.Label2 = {evento.Text, evento.Tag};
    });
}
