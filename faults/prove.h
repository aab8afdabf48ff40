#pragma once

#include <QRandomGenerator>
#include <QString>

#include <functional>
#include <sys/types.h>

// Le prove del programma dei guasti. Ciascuna rende quante cose sono andate perdute e dice sulla
// riga d'uscita i suoi conti.
namespace prove
{

struct Giro {
    QString cartella;
    int giri = 0;
    QRandomGenerator caso;
};

int uccisioni(Giro &giro);
int chiamate(Giro &giro);
int discoPieno(Giro &giro);
int giornali(Giro &giro);
int dueProgrammi(Giro &giro);
int danneggiati(Giro &giro);

// Dice che cosa si è perduto, e dove.
void perduto(const QString &che);
// I soli stati con cui un processo della prova può finire senza perdite: gli strumenti che cercano
// gli errori ne hanno altri, e così i segnali.
enum Finale { Fatto = 40, Rifiutato = 41, Perduto = 42 };

// Compie il lavoro in un altro processo, che deve finire entro i secondi dati. Rende ciò che il
// lavoro rende, oppure Perduto, e lo dice, se il processo è caduto, non ha finito o non ha reso uno
// dei finali.
Finale aParte(int secondi, const std::function<Finale()> &lavoro);
// Aspetta la fine di un processo, che dev'essere questa: lo stato con cui esce, o il segnale che lo
// uccide. Se è un'altra lo dice e rende 1.
int finisceCosi(pid_t processo, int stato, int segnale);
// Ogni archivio sotto la cartella si apre ed è integro; se no lo dice, e rende quanti no.
int verificaIntegri(const QString &cartella);

} // namespace prove
