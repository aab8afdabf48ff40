#pragma once

// Le tavole in cui un archivio tiene i passi compiuti, per poterli annullare: le crea il primo che
// si registra. Non sono dati dell'archivio: una copia non le ha.
namespace modTarvola::passi
{

// Un passo per riga. Verso: 0 compiuto, 1 annullato; Tolte: 1 se il passo ha tolto righe; Peso: i
// byte che il passo occupa; Cambiamenti: ciò che serve per annullarlo e ripeterlo.
constexpr const char *creaStoria =
    "CREATE TABLE Storia (Numero INTEGER PRIMARY KEY, Quando TEXT NOT NULL, Nome TEXT NOT NULL, "
    "Verso INTEGER NOT NULL, Tolte INTEGER NOT NULL, Peso INTEGER NOT NULL, Cambiamenti BLOB NOT "
    "NULL)";
// I contenuti dei file che il passo ha tolto, a pezzi nell'ordine di Posto.
constexpr const char *creaContenuti =
    "CREATE TABLE StoriaContenuti (Passo INTEGER NOT NULL, Codice TEXT NOT NULL COLLATE NOCASE, "
    "Posto INTEGER NOT NULL, Byte BLOB NOT NULL, PRIMARY KEY (Passo, Codice, Posto))";

// Le tavole, nell'ordine in cui si creano.
constexpr const char *tavole[] = {"Storia", "StoriaContenuti"};

} // namespace modTarvola::passi
