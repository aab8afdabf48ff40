#pragma once

#include "platform/motore/ado.h"

// I contenuti dei file, che non passano per la memoria: quando un passo toglie la riga stanno a
// pezzi accanto a lui, e con lui tornano.
namespace modTarvola::storia
{

// Mette da parte il contenuto del file per il passo dato; la riga resta senza. Ne rende i byte. Non
// fa nulla se non è un contenuto di byte. Lancia ado::Errore.
qint64 accantona(ado::Connection &connessione, qint64 passo, const QString &codice);
// Rende al file il contenuto che il passo teneva; niente se non ne teneva. Lancia ado::Errore.
void restituisce(ado::Connection &connessione, qint64 passo, const QString &codice);

} // namespace modTarvola::storia
