#pragma once

#include "platform/motore/ado.h"

#include <QVariantMap>

// Che cosa un record deve avere per stare nell'archivio.
namespace modTarvola
{

// Un record da scrivere: la tabella, il codice (vuoto se è nuovo) e i valori per colonna. Di un
// record che c'è già si dicono le sole colonne da scrivere.
struct Record {
    QString tabella;
    QString codice;
    QVariantMap valori;
};

// La colonna col codice del proprietario; vuota per le tabelle i cui record stanno da sé.
QString colonnaDelProprietario(const QString &tabella);
// Le colonne su cui la tabella ha una regola.
QStringList colonneConRegole(const QString &tabella);
// Perché il record non si può scrivere, vuoto se si può. I valori devono comprendere le colonne con
// regole.
QString rifiuto(ado::Connection &connessione, const Record &record);

} // namespace modTarvola
