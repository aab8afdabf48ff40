#pragma once

#include "platform/provvisorio.h"
#include "platform/salvataggio.h"

// Compattare, copiare e recuperare un archivio che nessuno di noi tiene aperto. Ciascuna o riesce
// per intero o lancia ado::Errore e lascia tutto come stava: la causa Occupato dice che lo tiene un
// altro programma, Interrotto che il passo ha chiesto di smettere.
namespace modTarvola
{

// Il file nuovo era pronto, ma il vecchio non si è potuto spostare nel Cestino.
class TrasferimentoFallito : public ado::Errore
{
public:
    using ado::Errore::Errore;
};

struct Compattato {
    QString nelCestino;    // dove sta ora il vecchio file
    bool riparato = false; // era danneggiato: il nuovo è fatto di ciò che si leggeva ancora
    QList<salvataggio::Conto> mancanti;
};

// Mette al posto dell'archivio la sua copia compatta, o riparata, e il vecchio file nel Cestino.
Compattato compattaArchivio(const QString &percorso, const QString &cestino,
                            const provvisorio::Passo &passo);

// Scrive una copia compatta e verificata dell'archivio; quella che c'era è sostituita. La copia può
// essere l'archivio stesso.
void copiaArchivio(const QString &percorso, const QString &copia, const provvisorio::Passo &passo);

// Copia un archivio com'è, lo verifica e lo mette alla destinazione. Un file di un formato
// precedente, che si converte aprendolo, passa senza verifica.
void recuperaArchivio(const QString &scelto, const QString &destinazione,
                      const provvisorio::Passo &passo);

// Vero se un altro programma ha aperto il file.
bool usatoDaAltri(const QString &percorso);

// Sposta nel Cestino ciò che un programma interrotto ha lasciato accanto a un file spostato: senza
// il suo giornale il file sarebbe a metà, e il giornale rovinerebbe chi ne prende il nome.
void seguitaIlGiornale(const QString &percorso, const QString &avvenuto);

} // namespace modTarvola
