#pragma once

#include "browser/proprieta_tabella.h"
#include "contesto/contesto.h"
#include "contesto/finestre.h"

#include <optional>
#include <vector>

class fmTabella;

// Dove sta un elenco fra quelli che si scendono con "Seleziona"; sotto la voce non c'è ordine.
enum class Livello { Archivio, Registro, Voce, Dipendente };

// Che cosa distingue l'elenco di una tabella da quello di un'altra.
struct GenereElenco {
    // Dà all'editore le proprietà che vuole oltre a quelle comuni, e ne rende la didascalia
    // (vuota: quella dell'editore); niente se non si deve aprire.
    using Prepara = std::optional<QString> (*)(const fmTabella &elenco,
                                               modTarvola::FinestraEditor &editore);

    QString tabella = {};
    // Come si chiama nel menu Tabelle, se non come la tabella.
    QString voceDiMenu = tabella;
    Livello livello = Livello::Dipendente;
    // Vero se le righe si possono mostrare anche con i loro dettagli.
    bool conDettagli = false;
    // La tabella che "Seleziona" apre; vuota se nessuna.
    QString figlia = {};
    // Quanti fra archivio, registro e voce correnti stanno nella didascalia, e quanti ci stanno
    // anche senza un codice quando l'elenco ha righe.
    int nominati = 3;
    int sempreNominati = 1;
    // Dove va il codice della riga corrente: fra le proprietà dell'elenco appena ci si è sopra,
    // fra i valori correnti quando l'elenco si attiva. Nulli per chi non contiene altri elenchi.
    QString ProprietaTabella::*locale = nullptr;
    QString modTarvola::Contesto::*corrente = nullptr;
    // La finestra in cui "Apri" mostra la riga, con la proprietà che ne porta il codice. Senza
    // finestra la riga è un testo o un file, che si apre secondo il suo tipo.
    QString editore = {};
    QString modTarvola::ProprietaFinestra::*codice = nullptr;
    Prepara perAprire = nullptr;
    // Nullo dove non si crea nulla.
    Prepara perCreare = nullptr;

    bool contenitore() const { return livello != Livello::Dipendente; }
};

// I generi nell'ordine del menu Tabelle.
const std::vector<GenereElenco> &generiElenco();
// Il genere che mostra una tabella; lancia ado::Errore se nessuno la mostra.
const GenereElenco &genereElenco(const QString &tabella);
