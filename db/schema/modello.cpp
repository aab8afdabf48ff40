#include "db/schema/modello.h"

#include "db/schema/schema.h"

namespace modTarvola
{

namespace
{

struct Riga {
    int codice;
    int tipo;
    const char *etichetta;
};

// Tipo è la somma delle categorie in cui il genere si offre; 0 è un tipo di registro. Il
// trascrittore sta in una categoria che nessun elenco chiede: la sua etichetta si mostra soltanto.
constexpr Riga righe[] = {
    {1, 4, "Battezzato/a"},
    {2, 8, "Sposo"},
    {3, 8, "Sposa"},
    {4, 16, "Defunto/a"},
    {5, 28, "Testimone"},
    {6, 512, "Marito"},
    {7, 512, "Moglie"},
    {8, 264, "Famiglia Coniuge"},
    {9, 0, "Battesimi"},
    {10, 0, "Matrimoni"},
    {11, 0, "Morti"},
    {12, 7967, "Nota"},
    {13, 7967, "Testo riportato"},
    {14, 7967, "File allegato"},
    {18, 512, "Matrimonio"},
    {19, 512, "Pubblicazioni di matrimonio"},
    {20, 256, "Nascita"},
    {21, 256, "Battesimo"},
    {22, 256, "Cresima"},
    {23, 256, "Prima comunione"},
    {24, 256, "Ordinazione"},
    {25, 256, "Professione religiosa"},
    {26, 256, "Morte"},
    {27, 256, "Sepoltura"},
    {28, 256, "Cremazione"},
    {29, 256, "Adozione"},
    {30, 256, "Emigrazione"},
    {31, 256, "Immigrazione"},
    {32, 256, "Testamento"},
    {33, 256, "Mestiere"},
    {34, 4, "Padrino/Madrina"},
    {35, 276, "Famiglia Genitori"},
    {36, 512, "Padre"},
    {37, 512, "Madre"},
    {38, 256, "Residenza"},
    {39, 768, "Altro evento"},
    {40, 28, "Altra persona"},
    {41, 7967, "Contatto"},
    {42, 32, "Trascrittore"},
    {43, 2049, "Indirizzo"},
    {44, 2049, "Recapito"},
    {46, 256, "Censimento"},
    {47, 256, "Titolo"},
};

} // namespace

void riempiTraduzioni(ado::Connection &connessione)
{
    for (const Riga &riga : righe) {
        connessione.Execute({QStringLiteral("INSERT INTO Traduzioni VALUES (?, ?, ?)"),
                             {riga.codice, riga.tipo, QString::fromUtf8(riga.etichetta)},
                             {}});
    }
}

void creaModello(const QString &percorso)
{
    ado::Connection connessione;
    connessione.Create(percorso);
    creaSchema(connessione);
}

} // namespace modTarvola
