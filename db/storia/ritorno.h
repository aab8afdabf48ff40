#pragma once

#include "platform/motore/sessione.h"

// L'annullamento di un passo e la sua ripetizione.
namespace modTarvola::storia
{

// Un record che il ritorno ha rimesso, tolto o cambiato.
struct Effetto {
    QString tabella;
    QStringList chiave; // il codice, o la coppia
    ado::Mutamento::Specie specie;
};

// Un record, che altri hanno cambiato dopo, impedisce il ritorno; nulla è cambiato.
class Impedimento : public ado::Errore
{
public:
    Impedimento(const QString &tabella, const QStringList &chiave);
};

// Annulla o ripete un passo: ogni riga torna com'era, con i suoi legami, al suo posto e col suo
// contenuto; fino a tutto o a niente. Sta in una transazione propria o di chi la chiama. Lancia
// Impedimento, o ado::Errore.
QList<Effetto> riprende(ado::Connection &connessione, qint64 numero, ado::Insieme::Verso verso);

} // namespace modTarvola::storia
