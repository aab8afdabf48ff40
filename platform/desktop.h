#pragma once

#include <QString>

// I programmi del desktop.
namespace desktop
{

// Apre il file col programma che il desktop gli associa, senza aspettarlo. Dove non c'è alcun
// programma adatto non accade nulla.
void apre(const QString &percorso);

} // namespace desktop
