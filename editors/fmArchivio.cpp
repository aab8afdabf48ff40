#include "editors/fmArchivio.h"

#include "contesto/contesto.h"

using namespace modTarvola;

namespace
{

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmArchivio"),
        QStringLiteral("Archivio"),
        QStringLiteral("Archivi"),
        &ProprietaFinestra::ArchivioLocale,
        {
            {0, QStringLiteral("Nome")},
            {1, QStringLiteral("Abbreviazione")},
            {2, QStringLiteral("Gruppo")},
        },
        {Legami::TestiEFile, Legami::Operatori, Legami::Indirizzi, Legami::Recapiti},
        {Nota, TestoRiportato, FileAllegato, Contatto, Indirizzo, Recapito},
    };
}

} // namespace

fmArchivio::fmArchivio(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

void fmArchivio::salvato()
{
    contesto().ArchivioCorrente = proprieta.ArchivioLocale;
}
