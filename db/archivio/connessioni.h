#pragma once

#include "platform/motore/ado.h"

#include <memory>
#include <vector>

// Gli archivi aperti. Le finestre lavorano sulla connessione corrente e la danno a chi sta sotto:
// in db/ ogni funzione ha la sua, così che un filo possa lavorare con una connessione propria.
namespace modTarvola
{

struct Archivi {
    std::vector<std::unique_ptr<ado::Connection>> Connessioni;
    int ConnessioneCorrente = 0;
};

Archivi &archivi();
// Riparte da un posto solo, non aperto.
void avviaArchivi();
// La connessione corrente.
ado::Connection &connessione();

// Rende corrente la connessione all'archivio, aprendola se occorre. Se l'apertura fallisce lancia
// Errore e resta corrente la connessione di prima.
void ApriArchivio(const QString &percorso);
// Il posto la cui connessione è dell'archivio dato, aperta o chiusa; -1 se nessuno.
int postoDi(const QString &percorso);
// Vero se i due percorsi sono lo stesso file: le maiuscole non contano, salvo che esistano
// entrambi e siano file diversi.
bool stessoFile(const QString &uno, const QString &altro);
// La stringa con cui un archivio si apre.
QString stringaDiConnessione(const QString &percorso);
// Apre la connessione sul file, che dev'essere un archivio con la nostra password o senza, e lo
// riporta al giornale solito. Lancia ado::Errore, e la connessione resta chiusa.
void apriFile(ado::Connection &connessione, const QString &percorso);

} // namespace modTarvola
