#pragma once

#include <QObject>
#include <QString>

#include <functional>

// I programmi del desktop.
namespace desktop
{

// Apre il file col programma che il desktop gli associa, senza aspettarlo. Dove non c'è alcun
// programma adatto non accade nulla.
void apre(const QString &percorso);
// Apre una pagina della rete o un messaggio da scrivere ("https:", "mailto:") col programma che il
// desktop gli associa, senza aspettarlo. Falso se non c'è chi lo possa aprire. Chi c'è può
// rifiutare più tardi: allora, se `chi` esiste ancora, si chiama `rifiutato`.
bool apreCollegamento(const QString &collegamento, QObject *chi,
                      const std::function<void()> &rifiutato);

} // namespace desktop
