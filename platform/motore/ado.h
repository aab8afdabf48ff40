#pragma once

#include "platform/errore.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <functional>
#include <memory>

class Presa;
struct sqlite3;
struct sqlite3_stmt;

// Accesso ai dati: connessioni, istruzioni e transazioni sul motore SQLite.
// Le istruzioni hanno segnaposto "?"; nessun valore entra mai nel testo.
namespace ado
{

// Un'istruzione con i suoi valori. Con `tabella` le righe lette si possono modificare
// attraverso la chiave `Codice`.
struct Comando {
    QString testo;
    QVariantList valori;
    QString tabella;
};

// Un testo già in UTF-8, che passa al motore byte per byte, anche se è rovinato.
struct Utf8 {
    QByteArray byte;
};

// Un campo di tanti byte, da riempire poi a pezzi.
struct ByteDaScrivere {
    qint64 quanti;
};

class Sessione;

constexpr int adStateClosed = 0;
constexpr int adStateOpen = 1;
constexpr int adUseClient = 3;

// La riga corrente di una lettura; vale solo dentro la funzione che la riceve.
class Riga
{
public:
    explicit Riga(sqlite3_stmt *istruzione) : m_istruzione(istruzione) {}
    int colonne() const;
    QString nome(int colonna) const;
    bool nullo(int colonna) const;
    bool numero(int colonna) const;
    qint64 intero(int colonna) const;
    QString testo(int colonna) const;
    // I byte UTF-8 del testo, senza copia.
    QByteArrayView byte(int colonna) const;
    QVariant valore(int colonna) const;

private:
    sqlite3_stmt *m_istruzione;
};

class Connection
{
public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    QString Provider;
    int CursorLocation = 2;

    // Apre il file della stringa ("Data Source=…;Jet OLEDB:…"); la password è di chi conosce
    // l'archivio. Non crea mai un file. Fallisce con Errore, la cui causa distingue i file che non
    // si possono aprire.
    void Open(const QString &stringa, const QString &utente = {}, const QString &password = {});
    // Crea un file di dati nuovo e vuoto, che solo chi lo possiede può leggere, e lo apre; fallisce
    // se il file esiste già.
    void Create(const QString &percorso);
    void Close();
    int State() const { return m_base == nullptr ? adStateClosed : adStateOpen; }
    // "Data Source": il percorso dell'ultima apertura riuscita, anche dopo la chiusura.
    QString Properties(QStringView nome) const;

    // Esegue un'istruzione che cambia righe e dice quante ne ha cambiate.
    int Execute(const Comando &comando);
    // Legge le righe in ordine e le passa una per volta; la funzione rende false per smettere.
    void leggi(const Comando &comando, const std::function<bool(const Riga &)> &perRiga);
    // Il primo valore della prima riga, non valido se non c'è alcuna riga.
    QVariant valore(const Comando &comando);
    // I nomi delle colonne che l'istruzione renderebbe.
    QStringList colonne(const Comando &comando);

    bool inTransazione() const;
    // Riporta al giornale solito un file che un altro strumento ha lasciato in altro modo (WAL): le
    // scritture rimaste accanto entrano nel file. Fallisce con la causa Occupato se qualcuno lo usa
    // in quel modo; un file che si può solo leggere resta com'è.
    void riprendeIlGiornale();

private:
    friend class Freno;
    friend class Istruzione;
    friend class Insieme;
    friend class Sessione;
    friend class Sospensione;
    friend class Sorveglianza;
    friend class Stream;
    friend qint64 lunghezzaMassima(Connection &connessione, qint64 alPiu);
    sqlite3 *base() const { return m_base; }
    void apriBase(const QString &percorso, int modi);
    void leggeLoSchema();
    sqlite3_stmt *prepara(const QString &testo);
    void restituisci(const QString &testo, sqlite3_stmt *istruzione);
    [[noreturn]] void fallisci(int esito) const;

    sqlite3 *m_base = nullptr;
    std::unique_ptr<Presa> m_presa;
    QString m_percorso;
    QHash<QString, sqlite3_stmt *> m_pronte;
    bool m_sospesa = false;
    Sessione *m_sessione = nullptr; // quella che ne registra i cambiamenti
};

// Finché vive, la funzione è chiamata ogni tanto mentre il motore lavora; se rende falso
// l'istruzione in corso fallisce con la causa Interrotto. Dentro la funzione la connessione non
// accetta altre istruzioni: chi intanto ridisegna un elenco trova le righe occupate.
class Sorveglianza
{
public:
    Sorveglianza(Connection &connessione, std::function<bool()> procede);
    ~Sorveglianza();
    Sorveglianza(const Sorveglianza &) = delete;
    Sorveglianza &operator=(const Sorveglianza &) = delete;

private:
    int chiede();

    Connection &m_connessione;
    std::function<bool()> m_procede;
};

// Finché vive, il motore fa sulla connessione poco lavoro e con poca memoria: quanto ne chiede lo
// schema di un archivio. Chi ne chiede di più fallisce.
class Freno
{
public:
    explicit Freno(Connection &connessione);
    ~Freno();
    Freno(const Freno &) = delete;
    Freno &operator=(const Freno &) = delete;
    // Vero se l'istruzione appena fallita chiedeva troppo.
    bool scattato() const;

private:
    sqlite3 *m_base;
    int m_lunghezza;
    int m_istruzione;
    int m_domande = 0;
};

// L'errore, con la causa Estraneo, di un file in cui c'è quella cosa ("la vista «X»").
Errore estraneo(const QString &cosa);

// Cambiamenti che stanno insieme: o tutti o nessuno. Chi la lascia senza conferma li annulla. Una
// cominciata dentro un'altra ne è una parte, che si può annullare da sola.
class Transazione
{
public:
    explicit Transazione(Connection &connessione);
    ~Transazione();
    Transazione(const Transazione &) = delete;
    Transazione &operator=(const Transazione &) = delete;
    void conferma();

private:
    void esegue(const char *istruzione);

    Connection &m_connessione;
    bool m_interna;
    bool m_aperta = true;
};

} // namespace ado
