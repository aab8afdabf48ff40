#pragma once

#include <QByteArrayView>
#include <QString>

// Testi e date come il formato anteriore li scrive.
namespace jet
{

struct Testo {
    QString testo;
    bool intero = true; // falso se qualche byte non era leggibile; al suo posto sta U+FFFD
};

// Una colonna di testo o di nota: UTF-16LE, o dietro i byte FF FE la forma compressa.
Testo testoDi(QByteArrayView byte);
// Un testo scritto in una colonna di byte: UTF-16LE se c'è un byte zero, altrimenti Windows-1252.
Testo testoInByte(QByteArrayView byte);

// Una data scritta come giorni dal 30 dicembre 1899, con la parte del giorno sempre in avanti, in
// forma ISO: "AAAA-MM-GG HH:MM:SS", senza l'ora se vale la mezzanotte e `oraSempre` è falso.
// Vuoto fuori dagli anni da 100 a 9999.
QString isoDi(double giorni, bool oraSempre);

} // namespace jet
