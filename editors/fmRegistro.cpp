#include "editors/fmRegistro.h"

#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "editors/casella_genere.h"
#include "editors/icone_generi.h"

using namespace modTarvola;

namespace
{

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmRegistro"),
        QStringLiteral("Registro"),
        QStringLiteral("Registri"),
        &ProprietaFinestra::RegistroLocale,
        {
            {0, QStringLiteral("Titolo")},
            {1, QStringLiteral("Abbreviazione")},
            {2, QStringLiteral("Tipo")},
            {3, QStringLiteral("EventiCitati")},
            {4, QStringLiteral("DataIniziale")},
            {5, QStringLiteral("DataFinale")},
            {6, QStringLiteral("Supporto")},
            {7, QStringLiteral("Classe")},
            {8, QStringLiteral("SottoClasse")},
        },
        {Legami::TestiEFile, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmRegistro::fmRegistro(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

CasellaGenere *fmRegistro::tipo() const
{
    return qobject_cast<CasellaGenere *>(Text1[u"Tipo"]);
}

void fmRegistro::caricato()
{
    ado::Recordset adoTipi;
    adoTipi.Open(tipiDiRegistro(contesto().ColonnaLingua), connessione(), proprieta.TipoLock);
    for (; !adoTipi.Eof(); adoTipi.MoveNext()) {
        const int codiceTipo = adoTipi.Campo(0).toInt();
        tipo()->offre(iconaDelGenere(codiceTipo), adoTipi.Campo(2).toString(), codiceTipo);
    }
    tipo()->mostra(adoDettagli.Campo(QStringLiteral("Tipo")));
    tipo()->setSolaLettura(solaLettura() || !codice().isEmpty());
}

void fmRegistro::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("Archivio"), proprieta.ArchivioLocale);
}

void fmRegistro::salvato()
{
    contesto().RegistroCorrente = proprieta.RegistroLocale;
    tipo()->setSolaLettura(true);
}
