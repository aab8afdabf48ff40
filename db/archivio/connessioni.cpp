#include "db/archivio/connessioni.h"

#include "db/archivio/salvati.h"
#include "db/schema/protezione.h"
#include "db/schema/schema.h"

#include <QFileInfo>

namespace modTarvola
{

namespace
{

const QString origine = QStringLiteral("Data Source");

std::unique_ptr<ado::Connection> nuova()
{
    auto connessione = std::make_unique<ado::Connection>();
    connessione->Provider = QStringLiteral("Microsoft.Jet.OLEDB.4.0");
    return connessione;
}

void apri(ado::Connection &connessione, const QString &percorso)
{
    connessione.CursorLocation = ado::adUseClient;
    apriFile(connessione, percorso);
    try {
        verificaSchema(connessione);
    } catch (const ado::Errore &errore) {
        connessione.Close();
        // Un bit rovinato nella versione basta a far sembrare più nuovo un file dei nostri.
        if (errore.causa() == ado::Causa::VersioneNuova && !diVersioneNuova(percorso))
            throw ado::Errore(ado::Causa::Danneggiato,
                              QStringLiteral("il file è danneggiato (la versione che vi è "
                                             "scritta); «Compatta e ripristina» lo ripara"));
        throw;
    } catch (...) {
        connessione.Close();
        throw;
    }
}

int postoLibero()
{
    auto &posti = archivi().Connessioni;
    int libero = -1;
    for (size_t i = 0; i < posti.size(); ++i) {
        if (posti[i]->Properties(origine).isEmpty())
            libero = static_cast<int>(i);
    }
    if (libero < 0) {
        posti.push_back(nuova());
        libero = static_cast<int>(posti.size()) - 1;
    }
    return libero;
}

} // namespace

Archivi &archivi()
{
    static Archivi soli;
    return soli;
}

void avviaArchivi()
{
    archivi() = Archivi{};
    archivi().Connessioni.push_back(nuova());
}

ado::Connection &connessione()
{
    return *archivi().Connessioni.at(static_cast<size_t>(archivi().ConnessioneCorrente));
}

void ApriArchivio(const QString &percorso)
{
    int posto = postoDi(percorso);
    if (posto < 0)
        posto = postoLibero();
    ado::Connection &scelta = *archivi().Connessioni.at(static_cast<size_t>(posto));
    if (scelta.State() == ado::adStateClosed) {
        const QString suo = scelta.Properties(origine);
        // Il posto ricorda il percorso com'è sul disco; chi lo scrive con altre maiuscole intende
        // quello.
        const bool soloMaiuscole = !suo.isEmpty() && !QFileInfo::exists(percorso);
        apri(scelta, soloMaiuscole ? suo : percorso);
    }
    archivi().ConnessioneCorrente = posto;
}

int postoDi(const QString &percorso)
{
    const auto &posti = archivi().Connessioni;
    for (size_t i = 0; i < posti.size(); ++i) {
        const QString suo = posti[i]->Properties(origine);
        if (!suo.isEmpty() && stessoFile(suo, percorso))
            return static_cast<int>(i);
    }
    return -1;
}

bool stessoFile(const QString &uno, const QString &altro)
{
    if (uno == altro)
        return true;
    const QString vero = QFileInfo(uno).canonicalFilePath();
    const QString veroAltro = QFileInfo(altro).canonicalFilePath();
    if (!vero.isEmpty() && !veroAltro.isEmpty())
        return vero == veroAltro;
    return uno.compare(altro, Qt::CaseInsensitive) == 0;
}

void apriFile(ado::Connection &connessione, const QString &percorso)
{
    connessione.Open(stringaDiConnessione(percorso));
    try {
        // Prima si guarda di chi è: il file d'altri non si tocca.
        verificaProtezione(connessione, passwordArchivi);
        connessione.riprendeIlGiornale();
    } catch (...) {
        connessione.Close();
        throw;
    }
}

QString stringaDiConnessione(const QString &percorso)
{
    return QStringLiteral("PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=") + percorso +
           QStringLiteral(";Jet OLEDB:Database Password=") + passwordArchivi + u';';
}

} // namespace modTarvola
