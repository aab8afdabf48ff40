#pragma once

#include "platform/motore/ado.h"

#include <QMap>

#include <optional>

// L'atto come un valore solo: la voce con le persone, le famiglie, gli eventi e i testi che essa
// contiene. Si legge, si confronta e si scrive intero; non sa nulla di finestre.
namespace modTarvola
{

// I valori di un record per nome di colonna; un campo che manca è Null. Codici, legami e date di
// servizio (Codice, Voce, Ruolo, Creazione, Modifica…) non stanno qui.
using Campi = QMap<QString, QVariant>;

struct EventoDiAtto {
    QString codice; // vuoto: ancora da scrivere
    int tipo = 0;
    Campi campi;
    bool operator==(const EventoDiAtto &) const = default;
};

struct PersonaDiAtto {
    int chiave = 0; // il nome della persona dentro l'atto, non dell'archivio
    QString codice;
    int ruolo = 0;
    bool diAltraVoce = false; // sta in una famiglia dell'atto, ma è di un'altra voce o di nessuna
    Campi campi;
    QList<EventoDiAtto> eventi;
    bool operator==(const PersonaDiAtto &) const = default;
};

struct FamigliaDiAtto {
    QString codice;
    int ruolo = 0;
    bool diAltraVoce = false;
    QList<int> coppia; // chiavi di persone
    QList<int> figli;
    QList<EventoDiAtto> eventi;
    bool operator==(const FamigliaDiAtto &) const = default;
};

// Una nota o un testo riportato della voce stessa.
struct TestoDiAtto {
    QString codice;
    int tipo = 0;
    QString titolo;
    QString testo;
    bool operator==(const TestoDiAtto &) const = default;
};

struct Atto {
    QString codice;
    QString registro;
    int tipo = 0; // del registro: 9, 10, 11
    Campi campi;
    QList<PersonaDiAtto> persone;
    QList<FamigliaDiAtto> famiglie;
    QList<TestoDiAtto> testi;
    QStringList daEliminare; // i codici di chi è stato tolto: la scrittura li elimina
    bool operator==(const Atto &) const = default;

    // Nulla se nell'atto non c'è.
    PersonaDiAtto *persona(int chiave);
    const PersonaDiAtto *persona(int chiave) const;
    // Aggiunge una persona senza campi; rende la sua chiave.
    int aggiunge(int ruolo);
};

// L'atto del codice dato; niente se la voce non c'è. Lancia ado::Errore se non si legge.
std::optional<Atto> leggeAtto(ado::Connection &connessione, const QString &codice);

// Un atto ancora da scrivere nel registro dato, che ne decide il tipo.
Atto nuovoAtto(ado::Connection &connessione, const QString &registro);

// Come finisce una scrittura. Niente è scritto se non `Scritto`.
struct EsitoAtto {
    enum Che {
        Scritto,
        Rifiutato, // `motivo` dice perché, `persona` a chi si riferisce (0: alla voce)
        Cambiato, // nel file l'atto non è più `prima`; `nelFile` è com'è ora, niente se non c'è più
    };
    Che che = Scritto;
    QString motivo;
    int persona = 0;
    std::optional<Atto> nelFile;
};

// Porta nel file ciò che `dopo` ha di diverso da `prima`, com'era quando fu letto, in una
// transazione sola: i record nuovi ricevono il codice, quelli cambiati la data della modifica, e
// gli uni e gli altri il legame con l'operatore. Ciò che è uguale non è toccato. Chi
// manca in `dopo` resta, salvo ciò che `daEliminare` nomina. `dopo` riceve i codici; ciò che vi
// sta di nuovo ma di vuoto è di chi chiama (scheda::SchedaAtto::pronto lo toglie). Lancia
// ado::Errore se l'archivio non accetta: allora nulla è scritto.
EsitoAtto scriveAtto(ado::Connection &connessione, const QString &operatore, const Atto &prima,
                     Atto &dopo);

// Il testo di un valore; vuoto per Null.
inline QString testoDi(const Campi &campi, const QString &campo)
{
    return campi.value(campo).toString();
}

// Vero se nessun campo ha un valore diverso da spazi.
bool vuoti(const Campi &campi);

} // namespace modTarvola
