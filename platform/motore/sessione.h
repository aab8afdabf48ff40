#pragma once

#include "platform/motore/ado.h"

struct sqlite3_changeset_iter;
struct sqlite3_session;

namespace ado
{

// Che cosa è cambiato in una connessione, riga per riga, come il motore lo registra mentre accade.
// Ciò che ne esce è un insieme di cambiamenti: byte che si possono tenere, percorrere e riapplicare
// nell'uno o nell'altro verso.
//
// Il motore segue solo le tabelle con una chiave, e di una riga cambiata tiene in memoria ogni
// valore, anche di un campo che non c'entra: i contenuti di tanti byte vanno tolti prima.
class Sessione
{
public:
    // Riceve i byte di un insieme di cambiamenti, un pezzo dopo l'altro.
    using Uscita = std::function<void(QByteArrayView pezzo)>;

    // Registra da ora i cambiamenti delle tabelle per cui `entra` rende vero. Una connessione ha
    // una sessione sola. Lancia Errore.
    Sessione(Connection &connessione, bool (*entra)(QByteArrayView tabella));
    ~Sessione();
    Sessione(const Sessione &) = delete;
    Sessione &operator=(const Sessione &) = delete;

    // La memoria che i cambiamenti occupano, in byte.
    qint64 memoria() const;
    // Dà i cambiamenti fra l'inizio e ora; nulla se non ce ne sono. Va chiesto nella transazione in
    // cui sono avvenuti. Lancia Errore.
    void cambiamenti(const Uscita &uscita) const;

private:
    friend class Sospensione;
    Connection &m_connessione;
    bool (*m_entra)(QByteArrayView tabella);
    sqlite3_session *m_sessione = nullptr;
};

// Finché vive, la sessione della connessione, se ne ha una, non registra.
class Sospensione
{
public:
    explicit Sospensione(Connection &connessione);
    ~Sospensione();
    Sospensione(const Sospensione &) = delete;
    Sospensione &operator=(const Sospensione &) = delete;

private:
    sqlite3_session *m_sessione;
};

// Un cambiamento di un insieme, visto nel verso in cui lo si percorre; vale solo dentro la funzione
// che lo riceve.
class Mutamento
{
public:
    enum Specie { Nuovo, Cambiato, Tolto };

    explicit Mutamento(sqlite3_changeset_iter *quale);
    const QString &tabella() const { return m_tabella; }
    Specie specie() const { return m_specie; }
    int colonne() const { return m_colonne; }
    // I valori della chiave, nell'ordine delle colonne.
    QStringList chiave() const;
    // Vero se la colonna è Null nella riga nuova, o in quella tolta.
    bool nullo(int colonna) const;

private:
    sqlite3_changeset_iter *m_quale;
    QString m_tabella;
    Specie m_specie = Cambiato;
    int m_colonne = 0;
};

// Un insieme di cambiamenti da riprendere.
class Insieme
{
public:
    enum Verso { Avanti, Indietro };

    Insieme(QByteArray byte, Verso verso) : m_byte(std::move(byte)), m_verso(verso) {}

    // Li percorre tutti. Lancia Errore se i byte sono rovinati.
    void percorre(const std::function<void(const Mutamento &)> &perOgnuno) const;
    // Li compie tutti, o nessuno: se una riga non è più come il cambiamento l'aveva lasciata, o non
    // può entrare, dà quel cambiamento a `impedito`, smette e rende falso. Lancia Errore.
    bool compie(Connection &connessione,
                const std::function<void(const Mutamento &)> &impedito) const;

private:
    QByteArray m_byte;
    Verso m_verso;
};

} // namespace ado
