#pragma once

#include "platform/motore/ado.h"

// Lo schema dell'archivio e la sua versione.
namespace modTarvola
{

// La versione delle quattordici tabelle, e quella di un file che ne ha altre accanto: chi conosce
// solo la prima sa che è più nuovo.
constexpr int versioneSchema = 1;
constexpr int versioneConAccanto = 2;

// Le dieci tabelle i cui record hanno un codice, nell'ordine in cui stanno sotto.
const QStringList &tabelleConCodice();
// Tutte le tabelle dell'archivio.
const QStringList &tabelle();
// La tabella cui appartiene un codice ("V12" è di Voci); vuota se la lettera non è di nessuna.
QString tabellaDiCodice(const QString &codice);

// Le tabelle che un archivio può avere accanto alle sue, con ciò che è solo di questo programma.
const QStringList &tabelleAccanto();
// Vero se il file ha la tabella.
bool haTabella(ado::Connection &connessione, const QString &tabella);
// Crea una tabella di quelle accanto, se manca. Lancia ado::Errore.
void creaAccanto(ado::Connection &connessione, const QString &tabella);
// Segna nel file la versione che gli spetta, secondo le tabelle che ha accanto. Da chiamare dopo
// averne create o tolte.
void segnaVersione(ado::Connection &connessione);

// Tutte le istruzioni che possono stare nello schema di un archivio, di questa versione e delle
// precedenti.
QStringList istruzioniNote();
// Crea tabelle, indici, password e tavola dei generi in un file vuoto.
void creaSchema(ado::Connection &connessione);
// Porta alla versione corrente un file di una versione precedente. Fallisce con Errore se è di una
// più nuova, se il suo schema ha qualcosa di estraneo o se non ha le tabelle.
void verificaSchema(ado::Connection &connessione);
// Fallisce con Errore se il file non ha le tabelle.
void verificaTabelle(ado::Connection &connessione);

} // namespace modTarvola
