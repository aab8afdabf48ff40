#pragma once

#include "platform/disco/provvisorio.h"
#include "platform/riparazione/salvataggio.h"

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
    bool conPassi = false; // il vecchio ha passi da annullare, che il nuovo non ha
    bool estraneo = false; // non per un danno: altri vi avevano messo qualcosa di loro
    QList<salvataggio::Conto> mancanti;
    qint64 senzaProprietario = 0; // record salvati che la prossima eliminazione toglierebbe
};

// Mette al posto dell'archivio la sua copia compatta, o riparata, e il vecchio file nel Cestino.
Compattato compattaArchivio(const QString &percorso, const QString &cestino,
                            const provvisorio::Passo &passo);

// Mette al posto dell'archivio un file nuovo, che `scrive` scrive intero nel percorso che riceve, e
// il vecchio nel Cestino; rende dove sta ora.
QString sostituisceArchivio(const QString &percorso, const QString &cestino,
                            const provvisorio::Passo &passo,
                            const std::function<void(const QString &nuovo)> &scrive);

// Scrive una copia compatta e verificata dell'archivio; quella che c'era è sostituita, oppure, con
// `soloSeLibera`, nulla è sovrascritto. La copia può essere l'archivio stesso.
void copiaArchivio(const QString &percorso, const QString &copia, const provvisorio::Passo &passo,
                   bool soloSeLibera = false);

// Copia un archivio com'è, lo verifica e lo mette alla destinazione, come sopra. Di un file di un
// formato precedente, che si converte aprendolo, verifica che si possa leggere.
void recuperaArchivio(const QString &scelto, const QString &destinazione,
                      const provvisorio::Passo &passo, bool soloSeLibera = false);

// Crea un archivio dal modello, con i permessi di un documento nuovo; fallisce se il file c'è. Ciò
// che accanto al nome resta di un file che non c'è più rovinerebbe il nuovo: va da parte.
void creaArchivio(const QString &modello, const QString &percorso);

} // namespace modTarvola
