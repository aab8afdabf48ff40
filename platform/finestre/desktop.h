#pragma once

#include <QString>

// I programmi del desktop.
namespace desktop
{

// Apre il file col programma che il desktop gli associa, senza aspettarlo. Dove non c'è alcun
// programma adatto non accade nulla.
void apre(const QString &percorso);
// Apre una pagina della rete o un messaggio da scrivere ("https:", "mailto:") col programma che il
// desktop gli associa. Falso dove non c'è alcun programma adatto.
bool apreCollegamento(const QString &collegamento);

} // namespace desktop
