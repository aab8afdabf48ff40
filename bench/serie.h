#pragma once

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QStringList>

#include <optional>

// Una serie di atti come li conosce chi li trascrive: che cosa va in ogni casella della pagina, e
// quali righe l'archivio deve avere alla fine. Non passa da nulla di ciò che la pagina adopera.
namespace serie
{

struct Atto {
    QMap<QString, QString> caselle; // dal nome che la casella dice ("Padre: Cognome"); date in ISO
    QString data;                   // ISO; vuota se manca
    QString testo;
    QStringList righe; // ordinate, senza codici
};

struct Serie {
    int tipo = 0; // del registro
    QList<Atto> atti;
};

// Ciò che sta al posto di un valore Null in una riga.
inline const QString nullo = QStringLiteral("-");

// Legge una serie dal suo file. Niente, e il motivo, se non si legge o se un atto dice qualcosa che
// nessuna casella accoglie.
std::optional<Serie> legge(const QString &percorso, QString &motivo);

// La riga di un record: i valori divisi da barre, Null quelli vuoti.
QString riga(const QString &specie, const QStringList &valori);

} // namespace serie
