#pragma once

#include <QList>
#include <QString>
#include <QWidget>

// Ciò che è scritto nella pagina di fronte a ciò che nel file è cambiato intanto.
namespace discordia
{

// Una casella che non va d'accordo: come si chiama, che cosa c'è nella pagina e che cosa nel file.
struct Casella {
    QString nome;
    QString nellaPagina;
    QString nelFile;
};

enum Scelta { Tiene, Prende, Annulla };

// Mostra le due versioni, una accanto all'altra, e fa scegliere. Chiudere è "Annulla": la pagina
// resta com'è e nulla è scritto. Senza `esiste` l'atto nel file non c'è più: tenere è scriverlo da
// capo, prendere è lasciarlo perdere.
Scelta chiede(QWidget *sopra, const QList<Casella> &caselle, bool esiste);

} // namespace discordia
