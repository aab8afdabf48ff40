#pragma once

#include "platform/motore/ado.h"

// Le letture degli editori: il record, i generi che vi si possono collegare, i collegamenti.
namespace modTarvola
{

// I modi in cui un record è collegato ad altri.
enum class Legami {
    TestiEFile,
    Operatori,
    Indirizzi,
    Recapiti,
    IndividuiDellaVoce,
    FamiglieDellaVoce,
    FamiglieConiuge,
    FamiglieGenitori,
    Eventi,
    MembriDellaFamiglia
};

// Il record di una tabella, modificabile; nessuna riga se il codice è vuoto o non c'è.
ado::Comando dettagli(const QString &tabella, const QString &codice);
// Il testo lungo di un codice col suo contenuto, modificabile.
ado::Comando testoLungo(const QString &codice);
// Le etichette si leggono nella colonna data di Traduzioni.
// I generi di una categoria in ordine di etichetta: Codice, Tipo, etichetta.
ado::Comando generiInseribili(int categoria, const QString &lingua);
// I tipi di registro, nella stessa forma.
ado::Comando tipiDiRegistro(const QString &lingua);
// I collegamenti di un modo del record dato: etichetta, codice collegato, genere.
ado::Comando collegamenti(Legami modo, const QString &codice, const QString &lingua);
// L'etichetta e il codice del ruolo di un individuo.
ado::Comando ruolo(const QString &individuo, const QString &lingua);

} // namespace modTarvola
