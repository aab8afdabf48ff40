#pragma once

#include <QList>
#include <QString>
#include <QWidget>

// Ciò che è scritto in una finestra di fronte a ciò che nel file è cambiato intanto.
namespace discordia
{

// Una casella che non va d'accordo: come si chiama, che cosa vi è scritto e che cosa c'è nel file.
struct Casella {
    QString nome;
    QString scritto;
    QString nelFile;
};

// Come la domanda si presenta.
struct Parole {
    QString titolo;
    QString testo;
    QString scritto; // la colonna di ciò che è scritto: "Nella pagina"
    QString tiene;   // i bottoni
    QString prende;
};

enum Scelta { Tiene, Prende, Annulla };

// Mostra le due versioni, una accanto all'altra, e fa scegliere. Chiudere è "Annulla".
Scelta chiede(QWidget *sopra, const Parole &parole, const QList<Casella> &caselle);

} // namespace discordia
