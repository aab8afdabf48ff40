#include "editors/fmEvento.h"

#include "contesto/contesto.h"

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
            {0, QStringLiteral("Valore"), QStringLiteral("Valore")},
            {1, QStringLiteral("Causa"), QStringLiteral("Causa")},
            {2, QStringLiteral("Luogo"), QStringLiteral("Luogo")},
            {3, QStringLiteral("Indirizzo"), QStringLiteral("Indirizzo")},
            {4, QStringLiteral("Data"), QStringLiteral("Data"), Formato::Data},
            {5, QStringLiteral("Ora"), QStringLiteral("Ora"), Formato::Ora},
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
