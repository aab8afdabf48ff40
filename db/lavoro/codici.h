#pragma once

#include "platform/motore/ado.h"

// Codici dei record, legame con l'operatore e significato dei generi.
namespace modTarvola
{

// Il codice di una riga nuova della tabella: la sua lettera e il numero più alto più uno. Va preso
// dentro la transazione che scrive la riga.
QString NuovoCodice(ado::Connection &connessione, const QString &tabella);
// Il nome sotto cui sta il numero dal quale, anche senza record, i codici della tabella proseguono.
QString numeroRiservato(const QString &tabella);
// Fa sì che il record sia legato all'operatore; senza operatore ("") non fa nulla.
void CollegaOperatore(ado::Connection &connessione, const QString &operatore,
                      const QString &record);
// Il tipo del registro della voce; 0 se la voce o il registro non ci sono.
int TipoRegistroDiVoce(ado::Connection &connessione, const QString &voce);
// Il tipo di un registro; 0 se non c'è.
int TipoRegistro(ado::Connection &connessione, const QString &registro);
// Il genere di un record che ne ha uno (Tipo, o Ruolo di individui e famiglie); 0 se non c'è.
int GenereDi(ado::Connection &connessione, const QString &codice);
// L'etichetta di un genere nella colonna data di Traduzioni; vuota se non c'è.
QString EtichettaTraduzione(ado::Connection &connessione, const QString &colonna, int genere);
// Vero se il codice è di un record che c'è.
bool esiste(ado::Connection &connessione, const QString &codice);

} // namespace modTarvola
