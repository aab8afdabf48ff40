#include "editors/fmEvento.h"

#include "contesto/contesto.h"
#include "editors/casella_ora.h"

using namespace modTarvola;

namespace
{

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmEvento"),
        QStringLiteral("Evento"),
        QStringLiteral("Eventi"),
        &ProprietaFinestra::EventoLocale,
        {
            {0, QStringLiteral("Valore")},
            {1, QStringLiteral("Causa")},
            {2, QStringLiteral("Luogo")},
            {3, QStringLiteral("Indirizzo")},
            {4, QStringLiteral("Data")},
            {5, QStringLiteral("Ora")},
        },
        {Legami::TestiEFile, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmEvento::fmEvento(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

void fmEvento::completaFinestra(QVBoxLayout *colonna)
{
    aggiungeEtichetta(colonna, QStringLiteral("Tipo"));
    fmEditor::completaFinestra(colonna);
    qobject_cast<CasellaOra *>(Text1[u"Ora"])->segue(Text1[u"Data"]);
}

void fmEvento::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("Tipo"), Label2.Tag);
    adoDettagli.Assegna(QStringLiteral("IdProprietario"), proprieta.VoceLocale);
}

void fmEvento::salvato()
{
    contesto().EventoCorrente = proprieta.EventoLocale;
}
