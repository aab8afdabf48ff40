#pragma once

#include "db/atto/atto.h"
#include "db/atto/scheda.h"

#include <compare>

// Un atto visto attraverso la sua scheda.
namespace modTarvola::scheda
{

// Una casella di un atto: il posto, quale persona di un elenco (da 0), l'evento, il campo. Il campo
// "Ruolo" è il ruolo della persona, "Campolungo" il testo.
struct Indirizzo {
    QString posto;
    int quale = 0;
    int evento = 0;
    QString campo;
    std::strong_ordering operator<=>(const Indirizzo &) const = default;
};

// Assegnare un valore crea la persona, l'evento o il testo che mancano; le famiglie nascono con
// `pronto`. Chi era già nell'atto si trova comunque sia stato scritto: la sposa come persona della
// voce o come moglie nella famiglia dello sposo, e viceversa.
class SchedaAtto
{
public:
    SchedaAtto(const Scheda &scheda, Atto atto);

    const Scheda &scheda() const { return *m_scheda; }
    const Atto &atto() const { return m_atto; }

    // Quante persone ha un posto: 0 o 1, o quante ne conta un elenco.
    int quante(const QString &posto) const;
    // La chiave della persona; 0 se non c'è.
    int persona(const QString &posto, int quale = 0) const;
    // Il valore della casella; non valido se Null.
    QVariant valore(const Indirizzo &dove) const;
    void assegna(const Indirizzo &dove, const QVariant &valore);
    // Fa nascere una persona in fondo a un elenco; rende la sua chiave.
    int aggiunge(const QString &posto);
    // Come l'altra, per una persona che si conosce per chiave e non per posto.
    void assegna(int chiave, const QString &campo, const QVariant &valore);
    // Toglie una persona che non è ancora nell'archivio.
    void toglie(int chiave);

    // Gli eventi, le famiglie e i testi che nessuna casella mostra.
    QList<EventoDiAtto> eventiDiTroppo() const;

    struct Pronto {
        Atto atto;
        QString motivo; // perché non si può scrivere; vuoto se si può
        Indirizzo dove; // la casella che lo guarirebbe
    };
    // L'atto come va scritto: senza i record nuovi rimasti vuoti, con le famiglie e i ruoli che i
    // posti chiedono.
    Pronto pronto() const;

private:
    friend class Compositore;

    const QList<EventoDiAtto> *eventi(const QString &posto, int quale) const;
    const EventoDiAtto *evento(const Indirizzo &dove) const;
    EventoDiAtto &eventoDi(const Indirizzo &dove);
    TestoDiAtto &testoDi(const Posto &posto);
    int nasce(const Posto &posto);
    int trova(const Posto &posto) const;
    int primaCon(int ruolo) const;
    int coniugeDi(int chiave, int ruolo) const;
    int genitoreDi(int chiave, const Posto &posto) const;
    QList<int> elenco(const Posto &posto) const;
    const FamigliaDiAtto *famigliaDi(int chiave) const;

    const Scheda *m_scheda;
    Atto m_atto;
    QMap<QString, int> m_nate;                     // chi è nato in un posto che non è un elenco
    QMap<QString, QList<EventoDiAtto>> m_diCoppia; // gli eventi di una coppia ancora senza famiglia
};

} // namespace modTarvola::scheda
