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
            {0, QStringLiteral("Telefono"), QStringLiteral("Telefono")},
            {1, QStringLiteral("Cellulare"), QStringLiteral("Cellulare")},
            {2, QStringLiteral("Fax"), QStringLiteral("Fax")},
            {3, QStringLiteral("E-mail"), QStringLiteral("E-mail")},
            {4, QStringLiteral("PaginaWeb"), QStringLiteral("Pagina Web")},
            {5, QStringLiteral("Altro1"), QStringLiteral("Altro")},
            {6, QStringLiteral("Altro2"), QStringLiteral("Altro")},
        },
        {Legami::TestiEFile, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmRecapito::fmRecapito(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

QString fmRecapito::controlla() const
{
    return Text1.vuote({0, 1, 2, 3, 4, 5, 6}) ? QStringLiteral("Inserire almeno una voce")
                                              : QString();
}

void fmRecapito::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("IdProprietario"), proprieta.VoceLocale);
}
