#pragma once

#include "platform/motore/ado.h"

#include <QHash>

// Un archivio di prova e il confronto di ciò che ne resta con ciò che c'era.
namespace campione
{

// Riempie l'archivio corrente: `voci` voci con due persone ciascuna, famiglie, eventi, testi lunghi
// e file allegati di ogni misura.
void riempie(ado::Connection &connessione, int voci);

// Le righe di ogni tabella dei dati, ciascuna con la chiave con cui si ritrova e la sua impronta.
using Righe = QHash<QString, QByteArray>;
QHash<QString, Righe> istantanea(ado::Connection &connessione);

// Le righe dell'istantanea che il motore, chiesto di una riga per volta, ancora rende uguali.
QHash<QString, Righe> leggibili(const QString &percorso, const QHash<QString, Righe> &prima);

// Le righe dell'istantanea le cui pagine, in un file danneggiato, sono ancora quelle del file sano:
// chi salva deve trovarle anche dove il motore non arriva più. Solo quelle che hanno un codice.
QHash<QString, Righe> intatte(const QString &sano, const QString &guasto,
                              const QHash<QString, Righe> &prima);

// Quante righe di `prima` non sono, uguali, in `dopo`.
qint64 mancano(const Righe &prima, const Righe &dopo);

} // namespace campione
