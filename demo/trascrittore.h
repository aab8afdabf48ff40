#pragma once

#include "demo/scena.h"
#include "demo/verifica.h"

// Chi trascrive si presenta: registra i suoi dati, entra con la password, descrive un archivio con
// una nota corretta, una scansione e una persona da cercare. In un file suo.
class Trascrittore : public Scena
{
public:
    // La scansione è un file che c'è già, accanto al file creato, quando la scena comincia.
    Trascrittore(Mani &mani, const QString &cartella, QString scansione);

    // Crea trascrittore.tvd nella cartella; lancia Guasto.
    Passo recita();
    // Le righe che devono starci alla fine.
    verifica::Tabelle attese() const;

private:
    Passo sbagliaAccesso();
    Passo registraTrascrittore();
    Passo scriveRecapiti();
    Passo entra();
    Passo creaArchivio();
    Passo scriveNota();
    Passo correggeNota();
    Passo allegaScansione();

    QString m_scansione;
};
