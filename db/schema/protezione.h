#pragma once

#include "platform/motore/ado.h"

// Il contrassegno degli archivi e la loro password: una serratura sulla porta, non una cifratura.
namespace modTarvola
{

extern const QString passwordArchivi;

// L'istruzione che crea la tavola della password.
extern const QString istruzioneDiProtezione;
// Segna il file aperto come archivio protetto dalla password data (vuota: nessuna).
void proteggi(ado::Connection &connessione, const QString &password);

// Fallisce con ado::Errore: con la causa NonArchivio se il file non ha il contrassegno,
// PasswordErrata se ha un'altra password, Danneggiato se la sua non può essere di nessuno. Un file
// senza password si apre.
void verificaProtezione(ado::Connection &connessione, const QString &password);

enum class Password { Giusta, Altra, Rovinata };
// Che cosa dice di una password l'impronta scritta in un archivio. Una cui manca poco per essere
// quella giusta, o che non è un'impronta, l'ha rovinata un guasto.
Password confrontaPassword(const QString &scritta, const QString &password);

} // namespace modTarvola
