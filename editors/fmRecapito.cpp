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
            {0, QStringLiteral("Telefono"), {Formato::Testo, QStringLiteral("Telefono")}},
            {1, QStringLiteral("Cellulare"), {Formato::Testo, QStringLiteral("Cellulare")}},
            {2, QStringLiteral("Fax"), {Formato::Testo, QStringLiteral("Fax")}},
            {3, QStringLiteral("E-mail"), {Formato::Testo, QStringLiteral("E-mail")}},
            {4, QStringLiteral("PaginaWeb"), {Formato::Testo, QStringLiteral("Pagina Web")}},
            {5, QStringLiteral("Altro1"), {Formato::Testo, QStringLiteral("Altro")}},
            {6, QStringLiteral("Altro2"), {Formato::Testo, QStringLiteral("Altro")}},
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
