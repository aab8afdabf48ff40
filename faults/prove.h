#pragma once

#include <QRandomGenerator>
#include <QString>

#include <functional>

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
int dueProgrammi(Giro &giro);
int danneggiati(Giro &giro);

// Dice che cosa si è perduto, e dove.
void perduto(const QString &che);
// Compie il lavoro in un altro processo, che deve finire entro i secondi dati. Rende ciò che il
// lavoro rende, oppure un numero negativo se il processo è caduto o non ha finito.
int aParte(int secondi, const std::function<int()> &lavoro);
// Ogni archivio sotto la cartella si apre ed è integro; se no lo dice, e rende quanti no.
int verificaIntegri(const QString &cartella);

} // namespace prove
