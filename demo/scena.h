#pragma once

#include "demo/mani.h"

// Chi trascrive gli atti.
struct Credenziali {
    QString nome;
    QString cognome;
    QString password;
};
const Credenziali &trascrittoreDegliAtti();

// Ciò che tutte le scene fanno: creano un file loro e passano da una finestra all'altra.
class Scena
{
public:
    // Il percorso del file creato.
    const QString &percorso() const { return m_percorso; }

protected:
    // Le mani devono vivere più a lungo della scena; il percorso finisce in .tvd.
    Scena(Mani &mani, QString percorso);

    // Dal menu File fino alla finestra di accesso.
    Passo creaFile();
    // Chi trascrive si registra ed entra, dalla finestra di accesso all'elenco degli archivi.
    Passo siPresenta();
    // Dai collegamenti della finestra davanti a quella di un record nuovo.
    Passo nuovoCollegamento(QString genere, QString finestra);
    // Registra la finestra davanti, che si chiude, e torna a quella di prima.
    Passo registra(QString tornaA);

    Mani &m_mani;

private:
    Passo sostituisce();

    QString m_percorso;
};
