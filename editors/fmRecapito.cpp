#include "editors/fmRecapito.h"

using namespace modTarvola;

namespace
{

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmRecapito"),
        QStringLiteral("Recapito"),
        QStringLiteral("Comunicazioni"),
        &ProprietaFinestra::RecapitoLocale,
        {
            {0, QStringLiteral("Telefono")},
            {1, QStringLiteral("Cellulare")},
            {2, QStringLiteral("Fax")},
            {3, QStringLiteral("E-mail")},
            {4, QStringLiteral("PaginaWeb")},
            {5, QStringLiteral("Altro1")},
            {6, QStringLiteral("Altro2")},
        },
        {Legami::TestiEFile, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmRecapito::fmRecapito(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

void fmRecapito::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("IdProprietario"), proprieta.VoceLocale);
}
