#pragma once

#include "platform/motore/ado.h"

// Che cosa un file può tenere nel proprio schema. Un archivio può venire da chiunque, e una vista,
// una regola o una colonna calcolata altrui il motore le esegue appena si legge o si salva: si
// aprono soltanto i file il cui schema è quello che il programma scrive.
namespace modTarvola
{

// Confronta ogni istruzione dello schema con le `note`, quelle che questa versione e le precedenti
// scrivono: gli spazi, le virgolette dei nomi e le maiuscole non contano, un indice o una regola
// nostri che mancano nemmeno. Passano anche gli indici di sole colonne e le statistiche del motore,
// che non fanno danno. Lancia ado::Errore, con la causa Estraneo e il nome di ciò che non va.
void verificaSchemaEstraneo(ado::Connection &connessione, const QStringList &note);

} // namespace modTarvola
