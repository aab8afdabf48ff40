#pragma once

#include "db/storia/chiavi.h"
#include "platform/motore/sessione.h"

#include <memory>

// Ciò che un lavoro cambia, tenuto da parte per annullarlo.
namespace modTarvola::storia
{

// Il passo occuperebbe più di quanto la storia possa tenere. Chi la riceve può rifare il lavoro
// senza registrarlo, dopo averlo chiesto.
class TroppoGrande : public ado::Errore
{
public:
    TroppoGrande();
};

// Registra i cambiamenti della transazione in corso e, alla fine, ne fa un passo della storia. Vive
// dentro la transazione; lasciata senza conferma non resta nulla. Ogni funzione lancia ado::Errore.
class Registrazione
{
public:
    explicit Registrazione(ado::Connection &connessione);

    // Prima che spariscano le righe della tabella per cui la condizione vale: ne annota il posto, e
    // dei file mette da parte il contenuto. Lancia TroppoGrande.
    void primaDiTogliere(const QString &tabella, const QString &dove, const QVariantList &valori);
    // Prima che nella riga appena scritta entri un contenuto: i cambiamenti fin qui sono un pezzo,
    // in cui non c'è ancora.
    void chiudePezzo();
    // Quanti pezzi sono chiusi; se ciò che li ha chiusi è poi annullato da solo il passo non si può
    // più registrare, e si dice a `annullatoFino`.
    qsizetype pezzi() const { return m_pezzi.size(); }
    void annullatoFino(qsizetype pezzi) { m_persa = m_persa || m_pezzi.size() > pezzi; }
    // Quanti contenuti di file ha messo da parte.
    int file() const { return m_file; }
    // Non registra più nulla; va detto prima che qualcosa cambi.
    void rinuncia();
    // Vero se ha già preso più memoria di quanta un passo possa.
    bool troppo() const;
    // Scrive il passo, se qualcosa è cambiato; un passo troppo grande non si scrive, ma cancella
    // gli annullati.
    void conferma(const QString &nome);

private:
    qint64 numero();
    void comincia();
    void scrive(const QString &nome);

    ado::Connection &m_connessione;
    std::unique_ptr<ado::Sessione> m_sessione;
    QList<QByteArray> m_pezzi;
    Chiavi m_chiavi;
    qint64 m_numero = 0;
    qint64 m_contenuti = 0; // byte
    int m_file = 0;
    bool m_tolte = false;
    bool m_persa = false;
};

// Un passo come sta scritto: i suoi pezzi nell'ordine in cui sono avvenuti, e le chiavi.
struct Scrittura {
    QList<QByteArray> pezzi;
    Chiavi chiavi;

    QByteArray byte() const;
    static Scrittura da(const QByteArray &byte);
};

} // namespace modTarvola::storia
