#pragma once

#include "platform/lingua/dizionario.h"

#include <QString>

// L'elaboratore di testi, comandato da fuori: "Word.Application" per ciò che serve al controllo.
namespace elaboratore
{

// Registra la classe dell'estensione ".doc", che porta al programma di questo elaboratore, quando
// il dizionario italiano è installato; quando non lo è la toglie. Un'estensione già di altri resta
// loro.
void registra();

class Applicazione
{
public:
    struct Opzioni {
        bool IgnoreUppercase = true;
    };

    bool Visible = true;
    Opzioni Options;

    // Apre un documento nuovo e vuoto.
    void Documents_Add();
    // Scrive il testo dov'è il punto d'inserzione.
    void Selection_TypeText(const QString &testo);
    // Controlla il documento chiedendo a chi guarda che fare di ogni parola sbagliata; torna quando
    // ha finito. Fallisce con std::runtime_error se il dizionario non si può leggere.
    void ActiveDocument_CheckGrammar();
    void Selection_WholeStory();
    // Il testo scelto, con le righe divise come erano state scritte.
    QString Selection_Text() const;
    // Chiude il documento senza registrarlo.
    void ActiveDocument_Close();
    void Quit();

private:
    QString m_testo;
    qsizetype m_scelti = 0;
};

} // namespace elaboratore
