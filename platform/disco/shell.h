#pragma once

#include "platform/disco/provvisorio.h"

#include <QString>

// I servizi sui file e la cartella dell'applicazione.
namespace shell
{

// La cartella del programma quando vi si può scrivere, altrimenti quella dei dati dell'utente. Di
// un programma che sta dove è stato costruito è Tarvola nei documenti dell'utente: chi cancella la
// costruzione non cancelli gli archivi. Senza barra finale.
QString cartellaApplicazione();
// Il percorso di un file dato col programma (il modello, la guida): nella cartella
// dell'applicazione, altrimenti dove il programma è installato; vuoto se non c'è.
QString fileDelProgramma(const QString &nome);

struct Esito {
    int stato = 0;     // 0 fatto, 1 non riuscito, 2 interrotto
    QString nuovoNome; // il percorso dato alla destinazione quando il nome chiesto era preso
    QString motivo;    // perché non è riuscito, in parole
};

// Cancella è nel cestino del desktop, e non ha destinazione.
enum class Operazione { Muovi, Copia, Rinomina, Cancella };
// Muove, copia, rinomina o cancella un file. Un nome già preso
// nella destinazione non è mai sovrascritto: con `rinominaSePreso` il file arriva come "nome
// (2).tvd" e così via, altrimenti l'operazione non riesce. Se non riesce il file resta dov'era;
// così se è il passo, chiamato mentre si copia da un disco all'altro, a dire di smettere.
Esito OperazioneFile(Operazione operazione, const QString &origine, const QString &destinazione,
                     bool rinominaSePreso, const provvisorio::Passo &passo = {});
// Il nome dato, o "nome (2).tvd" e così via, che non è di un file né di un archivio di cui resta
// qualcosa accanto.
QString liberoDa(const QString &percorso);
// La parte del percorso che è nome di file.
QString NomeFileDaPercorso(const QString &percorso);

} // namespace shell
