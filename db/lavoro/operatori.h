#pragma once

#include "platform/motore/ado.h"

// Gli operatori di un archivio, cercati per nome e password.
namespace modTarvola
{

// Il codice del primo operatore, diverso da `tranne`, che ha quel nome e quella password; vuoto se
// non ce n'è. Maiuscole e minuscole sono pari, anche accentate; apostrofi e spazi agli estremi
// contano.
QString OperatoreCon(ado::Connection &connessione, const QString &nome, const QString &password,
                     const QString &tranne = {});

// Il nome con cui l'operatore entra; vuoto se non c'è più.
QString NomeOperatore(ado::Connection &connessione, const QString &operatore);

// Quanti record sono legati all'operatore.
int CollegamentiDi(ado::Connection &connessione, const QString &operatore);
// Toglie il legame del record con l'operatore; il record e l'operatore restano.
void ScollegaOperatore(ado::Connection &connessione, const QString &operatore,
                       const QString &record);
// Perché una password, scritta due volte, non si può prendere; vuoto se si può.
QString rifiutoPassword(const QString &scritta, const QString &conferma);

} // namespace modTarvola
