#pragma once

#include "contesto/bozza.h"

// Il file in cui stanno le bozze di un archivio: uno per archivio, nella cartella dello stato
// dell'utente (XDG Base Directory, XDG_STATE_HOME), che solo lui può leggere. Mai nell'archivio.
namespace bozze
{

struct Cassetto {
    QString archivio;    // il percorso
    QList<Bozza> aperte; // di finestre che sono, o erano quando il programma è finito, aperte
    QList<Bozza> ultime; // di quelle chiuse senza registrare, le più recenti prima

    bool vuoto() const { return aperte.isEmpty() && ultime.isEmpty(); }
    // Fra le ultime non ne restano più di quante si tengono, né di più vecchie di quanto si tiene.
    void sfoltisce(const QDateTime &ora);
    bool operator==(const Cassetto &) const = default;
};

// Quante bozze chiuse si tengono, e per quanti giorni.
constexpr int quanteUltime = 50;
constexpr int giorniUltime = 90;

// Da qui in poi le bozze stanno nella cartella data; con un percorso vuoto, come prima della prima
// chiamata, non se ne tengono.
void usaCartella(const QString &percorso);
const QString &cartella();
// Quella dell'utente: "tarvola/bozze" nella cartella del suo stato. Senza barra finale.
QString cartellaDellUtente();

// Il cassetto di un archivio; vuoto se non ne ha. Un file che non si capisce è messo da parte con
// un altro nome, e `guasto` ne riceve il percorso.
Cassetto legge(const QString &archivio, QString *guasto = nullptr);
// Scrive il cassetto nella cartella data al posto di quello che c'era, in un passo solo: chi è
// interrotto lascia l'uno o l'altro. Uno vuoto toglie il file. Si può chiamare da ogni filo. Falso
// se non ci riesce.
bool scrive(const QString &cartella, const Cassetto &cassetto);

} // namespace bozze
