#pragma once

#include "platform/motore/ado.h"

#include <QHash>
#include <QMap>
#include <QStringList>

// Tutto ciò che sta in un archivio, per vedere che cosa è cambiato.
namespace righe
{

// Le righe di una tabella, valore per valore e byte per byte, dalla chiave.
using Tabella = QHash<QString, QStringList>;
// Tutte le tabelle del file, anche quelle che non sono delle quattordici.
using Copia = QHash<QString, Tabella>;

Copia copia(ado::Connection &archivio);

// Una riga che c'è in una copia sola, o che nelle due ha valori diversi in quelle colonne.
struct Diversa {
    QString tabella;
    QStringList prima;
    QStringList dopo;
    QMap<QString, std::pair<QString, QString>> colonne; // per nome: com'era, com'è
};

QList<Diversa> differenze(const Copia &prima, const Copia &dopo);
// Dice le prime, una per riga.
void dice(const QList<Diversa> &diverse);
// I byte di un valore di una riga.
QByteArray byteDi(const QString &valore);

} // namespace righe
