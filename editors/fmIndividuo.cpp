#include "editors/fmIndividuo.h"

#include "contesto/contesto.h"
#include "db/connessioni.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace modTarvola;

namespace
{

// Tre scelte a tre vie: la cornice, il campo, e le lettere dei bottoni dopo il "?", che è Null.
struct Scelta {
    const char *cornice;
    const char *campo;
    const char *lettere[2];
};

constexpr Scelta sceltePossibili[] = {
    {"Sesso", "Sesso", {"M", "F"}},
    {"Legittimo", "Legittimo", {"S", "N"}},
    {"Vivente", "Vivente", {"S", "N"}},
};

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmIndividuo"),
        QStringLiteral("Individuo"),
        QStringLiteral("Individui"),
        &ProprietaFinestra::IndividuoLocale,
        {
            {0, QStringLiteral("Precisazione"), QStringLiteral("Precisazione")},
            {1, QStringLiteral("Nome"), QStringLiteral("Nome")},
            {2, QStringLiteral("Soprannome"), QStringLiteral("Soprannome")},
            {3, QStringLiteral("Cognome"), QStringLiteral("Cognome")},
            {4, QStringLiteral("Detto"), QStringLiteral("Detto")},
            {5, QStringLiteral("Età"), QStringLiteral("Età")},
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
    colonna->addWidget(scelte());
    // Il pannello dei collegamenti è nato prima: si tabula come si legge.
    QWidget *prima = Text1[5];
    for (QWidget *opzione : Option1) {
        setTabOrder(prima, opzione);
        prima = opzione;
    }
}

QWidget *fmIndividuo::scelte()
{
    auto *contenitore = new QWidget(this);
    auto *riga = new QHBoxLayout(contenitore);
    riga->setContentsMargins({});
    for (int i = 0; i < 3; ++i) {
        const Scelta &scelta = sceltePossibili[i];
        Frame3[i] = new QGroupBox(QString::fromUtf8(scelta.cornice), contenitore);
        Frame3[i]->setObjectName(QStringLiteral("Frame3_%1").arg(i));
        auto *bottoni = new QHBoxLayout(Frame3[i]);
        for (int j = 0; j < 3; ++j) {
            const char *lettera = j == 0 ? "?" : scelta.lettere[j - 1];
            QRadioButton *&bottone = Option1[i * 3 + j];
            bottone = new QRadioButton(QString::fromUtf8(lettera), Frame3[i]);
            bottone->setObjectName(QStringLiteral("Option1_%1").arg(i * 3 + j));
            bottoni->addWidget(bottone);
        }
        Option1[i * 3]->setChecked(true);
        riga->addWidget(Frame3[i]);
    }
    return contenitore;
}

void fmIndividuo::caricato()
{
    if (!codice().isEmpty())
        proprieta.VoceLocale = adoDettagli.Testo(QStringLiteral("Voce"));
    for (int i = 0; i < 3; ++i) {
        const Scelta &scelta = sceltePossibili[i];
        const QString valore = adoDettagli.Testo(QString::fromUtf8(scelta.campo));
        for (int j = 1; j < 3; ++j) {
            if (valore == QString::fromUtf8(scelta.lettere[j - 1]))
                Option1[i * 3 + j]->setChecked(true);
        }
        Frame3[i]->setEnabled(!solaLettura());
    }
    // Un sesso registrato non si cambia più.
    if (!sessoScelto().isEmpty())
        Frame3[0]->setEnabled(false);
}

void fmIndividuo::imponeSesso(const QString &sesso)
{
    Option1[sesso == QStringLiteral("M") ? 1 : 2]->setChecked(true);
    Frame3[0]->setEnabled(false);
}

QString fmIndividuo::sessoScelto() const
{
    if (Option1[1]->isChecked())
        return QStringLiteral("M");
    return Option1[2]->isChecked() ? QStringLiteral("F") : QString();
}

// Un individuo registrato ha il ruolo del suo record; se non si trova resta quello di chi ha
// aperto.
void fmIndividuo::dopoCollegamenti()
{
    ado::Recordset adoRuolo;
    adoRuolo.Open(ruolo(codice()), connessione(), proprieta.TipoLock);
    if (!adoRuolo.Bof())
        Label2 = {adoRuolo.Campo(0).toString(), adoRuolo.Campo(1).toInt()};
    mostraEtichetta();
}

QString fmIndividuo::rifiutoNuovo(int genere) const
{
    return genere == FamigliaConiuge && Option1[0]->isChecked()
               ? QStringLiteral(
                     "Per creare una famiglia come coniuge è necessario definire il sesso")
               : QString();
}

QString fmIndividuo::controlla() const
{
    return Text1.vuote({0, 1, 2, 3, 4, 5})
               ? QStringLiteral("Impossibile salvare un individuo senza un dettaglio del nome")
               : QString();
}

void fmIndividuo::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("Voce"), proprieta.VoceLocale);
    if (Label2.Tag != 0)
        adoDettagli.Assegna(QStringLiteral("Ruolo"), Label2.Tag);
}

void fmIndividuo::completa()
{
    for (int i = 0; i < 3; ++i) {
        const Scelta &scelta = sceltePossibili[i];
        QVariant valore;
        for (int j = 1; j < 3; ++j) {
            if (Option1[i * 3 + j]->isChecked())
                valore = QString::fromUtf8(scelta.lettere[j - 1]);
        }
        adoDettagli.Assegna(QString::fromUtf8(scelta.campo), valore);
    }
}

void fmIndividuo::salvato()
{
    m_salvato = proprieta.IndividuoLocale;
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
