#include "db/archivio/connessioni.h"
#include "faults/campione.h"
#include "faults/lavori.h"
#include "faults/prove.h"

#include <QFile>
#include <QTextStream>

#include <utility>

namespace prove
{

namespace
{

// Il file e il giornale di un programma ucciso mentre scriveva: una transazione che non sta in
// memoria, copiata prima che si disfaccia.
void lasciaUnGiornale(const QString &percorso)
{
    const QString giornale = percorso + QStringLiteral("-journal");
    const auto copia = [](const QString &da, const QString &a) {
        QFile::remove(a);
        if (!QFile::copy(da, a))
            qFatal("la prova non può preparare i suoi file");
    };
    {
        ado::Connection connessione;
        connessione.Open(modTarvola::stringaDiConnessione(percorso));
        for (const char *istruzione :
             {"PRAGMA cache_size = 5", "BEGIN IMMEDIATE", "UPDATE Individui SET Cognome = 'a metà'",
              "UPDATE Binari SET Nome = 'a metà'", "UPDATE Eventi SET Luogo = 'a metà'"})
            connessione.Execute({QString::fromUtf8(istruzione), {}, {}});
        copia(percorso, percorso + QStringLiteral(".tenuto"));
        copia(giornale, giornale + QStringLiteral(".tenuto"));
    }
    copia(percorso + QStringLiteral(".tenuto"), percorso);
    copia(giornale + QStringLiteral(".tenuto"), giornale);
    QFile::remove(percorso + QStringLiteral(".tenuto"));
    QFile::remove(giornale + QStringLiteral(".tenuto"));
}

QHash<QString, campione::Righe> righeDi(const QString &percorso)
{
    modTarvola::ApriArchivio(percorso);
    auto righe = campione::istantanea(modTarvola::connessione());
    lavori::chiude();
    return righe;
}

} // namespace

// Il giornale di ciò che c'era non deve disfare pagine di ciò che ne prende il posto.
int giornali(Giro &giro)
{
    const lavori::Posto posto{giro.cartella + QStringLiteral("/giornali")};
    lavori::prepara(posto, 60);
    lavori::recupera(posto);
    lavori::copia(posto);
    lavori::salva(posto, QStringLiteral("x-0"));
    lavori::chiude();
    const auto attese = righeDi(posto.archivio());
    int perdite = 0;
    const std::pair<QString, void (*)(const lavori::Posto &)> comandi[] = {
        {posto.recupero(), lavori::recupera}, {posto.copia(), lavori::copia}};
    for (const auto &[arrivo, comando] : comandi) {
        try {
            lasciaUnGiornale(arrivo);
            comando(posto);
            if (verificaIntegri(posto.cartella) > 0 || righeDi(arrivo) != attese) {
                perduto(arrivo + QStringLiteral(": il vecchio giornale ha disfatto il nuovo file"));
                ++perdite;
            }
        } catch (const ado::Errore &errore) {
            perduto(arrivo + QStringLiteral(": ") + errore.testo());
            ++perdite;
        }
    }
    QTextStream(stdout) << "commands onto a file with a journal left behind: " << std::size(comandi)
                        << ": lost " << perdite << '\n';
    return perdite;
}

} // namespace prove
