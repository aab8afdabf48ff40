#pragma once

#include "db/lavoro/lavoro.h"
#include "platform/motore/flusso.h"

#include <memory>
#include <optional>

// I file che stanno nella tabella Binari, senza passare interi per la memoria.
namespace modTarvola
{

struct NuovoFile {
    int genere = 0;
    QString proprietario;
    QString nome;
    qint64 lunghezza = 0; // byte
};

// Quanti byte può avere un file che si aggiunge all'archivio.
qint64 fileMassimo(ado::Connection &connessione);

// Aggiunge la riga, col suo codice, e rende il flusso in cui scriverne tutti i byte. Il lavoro va
// confermato quando il flusso è pieno e chiuso. Lancia ado::Errore.
std::unique_ptr<ado::Stream> aggiungeFile(Lavoro &lavoro, const NuovoFile &file);

// Il nome registrato del file; niente se il file non c'è.
std::optional<QString> nomeDiFile(ado::Connection &connessione, const QString &codice);
// Il suo contenuto; nullo se non ne ha. Lancia ado::Errore se l'archivio non si può leggere.
std::unique_ptr<ado::Stream> contenutoDiFile(ado::Connection &connessione, const QString &codice);

} // namespace modTarvola
