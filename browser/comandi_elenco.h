#pragma once

#include "browser/genere_elenco.h"

#include <QKeySequence>

// Un comando di un elenco: una voce del suo menu, un bottone della barra, un tasto.
struct ComandoElenco {
    using Vale = std::function<bool(const fmTabella &)>;

    QString nome;
    // La risorsa dell'icona (":/icone/apri.svg").
    QString icona;
    QKeySequence tasto = {};
    // Vero se agisce sulla riga corrente: senza una riga, o se il suo record non c'è più, non si
    // compie.
    bool suRiga = true;
    // Gira con l'archivio dell'elenco corrente; ciò che lancia diventa un messaggio.
    std::function<void(fmTabella &)> compie;
    // Se ha senso nell'elenco com'è ora: ne dipendono il bottone e, dove non è detto altro, la
    // voce del menu. Mancando, ha sempre senso.
    Vale abilitato = {};
    // Dove il menu ha una regola sua: la voce che una volta si spegne resta spenta.
    Vale abilitatoNelMenu = {};
    // L'id fra i comandi nostri, che ne dicono nome e tasto; vuoto se li ha da sé.
    QString id = {};
};

// I comandi di ogni elenco: Seleziona, Apri, Nuovo, Aggiorna, Elimina.
const std::vector<ComandoElenco> &comandiElenco();
// Quello che si compie anche con un doppio clic, o con Invio, sulla riga.
const ComandoElenco &comandoApre();
