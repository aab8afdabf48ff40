#include "editors/fmLuogo.h"

using namespace modTarvola;

namespace
{

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmLuogo"),
        QStringLiteral("Luogo"),
        QStringLiteral("Luoghi"),
        &ProprietaFinestra::LuogoLocale,
        {
            {0, QStringLiteral("Indirizzo1")},
            {1, QStringLiteral("Indirizzo2")},
            {2, QStringLiteral("Indirizzo3")},
            {3, QStringLiteral("Città")},
            {4, QStringLiteral("Stato")},
            {5, QStringLiteral("Nazione")},
            {6, QStringLiteral("CodicePostale")},
        },
        {Legami::TestiEFile, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmLuogo::fmLuogo(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

QString fmLuogo::rifiutoNuovo(int /*genere*/) const
{
    return Text1.vuote({0, 1, 2, 3, 4, 5, 6}) ? QStringLiteral("Inserire almeno una voce")
                                              : QString();
}

void fmLuogo::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("IdProprietario"), proprieta.VoceLocale);
}
