#include "editors/icone_generi.h"

#include "db/schema/generi.h"

using namespace modTarvola;

namespace
{

const char *nomeDelGenere(int genere)
{
    switch (genere) {
    case RegistroBattesimi:
    case RegistroMatrimoni:
    case RegistroMorti:
        return "registri";
    case Nota:
        return "nota";
    case TestoRiportato:
        return "testo";
    case FileAllegato:
        return "file";
    case Contatto:
        return "contatto";
    case Trascrittore:
        return "operatore";
    case Indirizzo:
        return "indirizzo";
    case Recapito:
        return "recapito";
    default:
        break;
    }
    if (eIndividuo(genere))
        return "individuo";
    return eFamiglia(genere) ? "famiglia" : "evento";
}

QIcon icona(const QString &nome)
{
    return QIcon(QStringLiteral(":/icone/%1.svg").arg(nome));
}

} // namespace

QIcon iconaDelGenere(int genere)
{
    return icona(QString::fromLatin1(nomeDelGenere(genere)));
}

QIcon iconaDellaTabella(const QString &tabella)
{
    if (tabella == QStringLiteral("Operatori"))
        return iconaDelGenere(Trascrittore);
    if (tabella == QStringLiteral("Luoghi"))
        return iconaDelGenere(Indirizzo);
    if (tabella == QStringLiteral("Comunicazioni"))
        return iconaDelGenere(Recapito);
    return icona(tabella.toLower());
}
