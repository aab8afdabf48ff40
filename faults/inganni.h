#pragma once

#include <QString>

// Un disco che non obbedisce. Le chiamate al sistema che scrivono, aprono, portano sul disco,
// rinominano o tolgono file sotto una cartella passano di qui, chiunque le faccia: il motore, il
// toolkit o il programma.
namespace inganni
{

struct Piano {
    QString cartella;
    int quale = -1;          // il numero della chiamata che fallisce, da 0; negativo: nessuna
    int errore = 0;          // con quale errore
    bool dalliInPoi = false; // anche tutte quelle dopo
    bool muore = false;      // non fallisce: lì il programma è ucciso
    bool soloScritture = false;
    bool solaLettura = false; // ogni chiamata che cambia qualcosa fallisce, come su un CD
    int senzaModi = 0;        // l'errore di un disco che non conosce i modi di renameat2
    bool senzaLegami = false; // né i collegamenti
    QString altroDisco;       // la cartella che sta su un altro disco
    unsigned attesa = 0;      // microsecondi dopo ogni cambio di nome
    int falsa = -1; // la scrittura di pagine di un albero che il disco sbaglia in silenzio, da 0
};

void arma(const Piano &nuovo);
// Quante chiamate sono passate, e quante sono state fatte fallire, da quando è armato.
int passate();
int fallite();
// Vero se a fallire è stata la chiamata che toglie un file.
bool fallitoIlTogliere();
// Quante scritture di pagine di un albero sono passate, se il piano ne sbaglia una.
int scrittureDiAlbero();
// I file che, mancando la corrente, sarebbero andati perduti: hanno preso un nome, o perso il loro
// giornale, mentre ciò che vi era scritto non era ancora tutto sul disco. Vuoto se nessuno.
QString perdutiSenzaCorrente();
void disarma();

} // namespace inganni
