#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

// La bozza di ciò che si stava scrivendo e che nell'archivio non c'è ancora: che finestre erano
// aperte, come si riaprono, che cosa vi era scritto.
namespace bozze
{

// Una casella in cui qualcuno ha scritto.
struct Scritta {
    QString nome;      // che la finestra riconosce
    QString etichetta; // con cui la si mostra
    QString testo;
    QString prima; // che cosa vi stava prima di scrivere
    bool operator==(const Scritta &) const = default;
};

struct Finestra {
    QString nome;     // fmVoce
    QString titolo;   // la sua didascalia
    QJsonObject come; // ciò che le serve per riaprirsi
    QString record;   // il codice del record che mostra; vuoto se non è ancora registrato
    QString via;      // il suo comando che ha aperto la finestra che segue
    QList<Scritta> caselle;
    bool operator==(const Finestra &) const = default;
};

struct Bozza {
    QDateTime quando;
    QList<Finestra> finestre; // ciascuna aperta da quella che precede

    // Vero se in una delle finestre è scritto qualcosa.
    bool scritta() const;
    // "Voce › Battezzato/a", e l'inizio di ciò che vi è scritto.
    QString dove() const;
    QString che() const;
    bool operator==(const Bozza &) const = default;
};

// La forma in cui una bozza sta nel file; niente se l'oggetto non è una bozza.
QJsonObject inJson(const Bozza &bozza);
std::optional<Bozza> daJson(const QJsonObject &oggetto);

} // namespace bozze
