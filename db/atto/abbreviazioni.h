#pragma once

#include "platform/motore/ado.h"

#include <QList>

// Le abbreviazioni di chi trascrive: poche lettere che nel testo diventano una frase. Sono
// dell'archivio, in una tabella nostra che nasce con la prima.
namespace modTarvola
{

struct Abbreviazione {
    QString breve; // una parola sola, che le maiuscole non distinguono
    QString testo;
    bool operator==(const Abbreviazione &) const = default;
};

// In ordine alfabetico. Lancia ado::Errore.
QList<Abbreviazione> abbreviazioni(ado::Connection &connessione);
// Mette queste al posto di quelle che c'erano. Lancia ado::Errore: allora nulla è cambiato.
void scriveAbbreviazioni(ado::Connection &connessione, const QList<Abbreviazione> &tutte);
// Perché non vanno; vuoto se vanno. `quale` è il posto della prima che non va.
QString rifiutoDi(const QList<Abbreviazione> &tutte, qsizetype &quale);
// Ciò che la parola abbrevia, con la prima lettera maiuscola se la parola l'ha; vuoto se nulla.
QString distesa(const QList<Abbreviazione> &tutte, const QString &parola);

} // namespace modTarvola
