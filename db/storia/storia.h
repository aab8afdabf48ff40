#pragma once

#include "platform/disco/provvisorio.h"
#include "platform/motore/ado.h"

#include <QDateTime>

#include <optional>

// I passi compiuti su un archivio, dal primo che si ricorda all'ultimo. Stanno nell'archivio stesso
// e nascono e spariscono nella transazione che ne cambia le righe: dopo un'uccisione ci sono tutti
// e due o nessuno dei due.
//
// La storia è una fila: si annulla l'ultimo passo compiuto e si ripete il primo degli annullati; un
// passo nuovo cancella gli annullati, e con ciò nessun codice torna due volte.
namespace modTarvola::storia
{

// Fin dove la storia arriva: oltre, i passi più vecchi si dimenticano.
struct Limiti {
    int passi = 1000;
    // Ciò che i passi occupano può essere un cinquantesimo del file, e comunque il minimo (byte).
    qint64 parteDelFile = 50;
    qint64 minimo = qint64{64} << 10;
    // Quelli che hanno tolto righe occupano meno di ciò che hanno tolto, e contano a parte (byte).
    qint64 tolte = qint64{64} << 20;
    // I contenuti dei file tolti (byte).
    qint64 contenuti = qint64{1} << 30;
    // Un passo solo, mentre si compie, nella memoria (byte).
    qint64 memoria = qint64{192} << 20;
};
// Quelli in vigore; li cambia chi prova.
Limiti &limiti();

struct Passo {
    qint64 numero = 0;
    QDateTime quando; // ora locale
    QString nome;
    bool annullato = false;
};

// Vero se l'archivio ha una storia, anche vuota.
bool presente(ado::Connection &connessione);
// I passi, dal più recente.
QList<Passo> elenco(ado::Connection &connessione);
// L'ultimo compiuto, che si può annullare.
std::optional<Passo> daAnnullare(ado::Connection &connessione);
// Il primo degli annullati, che si può ripetere.
std::optional<Passo> daRipetere(ado::Connection &connessione);
// Quanto la storia occupa (byte).
qint64 peso(ado::Connection &connessione);

// Dimentica tutti i passi e ne cancella i byte dal file.
void svuota(ado::Connection &connessione);
// Le tavole della storia, che un archivio può avere e le sue copie non hanno.
QStringList tavole();
// Toglie la storia da una copia compatta, e rende lo spazio che vi occupava se non è poco. Non fa
// nulla se non l'ha. Lancia ado::Errore, con la causa Interrotto se il passo chiede di smettere.
void toglieDallaCopia(ado::Connection &copia, const provvisorio::Passo &passo);

} // namespace modTarvola::storia
