#pragma once

#include "db/lavoro/annunci.h"
#include "db/lavoro/eliminazione.h"
#include "db/lavoro/regole.h"
#include "db/storia/registrazione.h"

#include <memory>

// Le scritture dell'archivio. Tutto ciò che il programma cambia in un archivio passa di qui.
namespace modTarvola
{

// Che cosa ha risposto l'archivio a un record: il suo codice, o perché non lo ha preso.
struct Scritto {
    QString codice;
    QString rifiuto;
};

// In quale metà di una famiglia sta un individuo.
enum class Posto { Coniuge, Figlio };

// Un lavoro è tutto ciò che si fa insieme, o niente:
//
//   Lavoro lavoro(connessione, QStringLiteral("Salvato Pietro Rossi"), operatore);
//   const Scritto scritto = lavoro.scrive({tabella, codice, valori});
//   if (!scritto.rifiuto.isEmpty()) …          nulla è scritto
//   lavoro.conferma();                         qui, e una volta sola, si annuncia
//
// Lasciato senza conferma annulla ciò che è suo. Un lavoro cominciato mentre un altro è aperto
// sulla stessa connessione ne è una parte: se fallisce l'altro continua, se riesce vale quando
// l'altro è confermato, e annuncia lui. Confermato, il più esterno è un passo della storia
// dell'archivio (db/storia), che si può annullare. Un lavoro sta sulla pila di chi lo fa: il più
// interno finisce per primo. Ogni funzione lancia ado::Errore; un lavoro in cui una ha lanciato non
// si può più confermare.
class Lavoro
{
public:
    explicit Lavoro(ado::Connection &connessione, QString nome = {}, QString operatore = {});
    ~Lavoro();
    Lavoro(const Lavoro &) = delete;
    Lavoro &operator=(const Lavoro &) = delete;

    ado::Connection &connessione() const { return m_connessione; }
    // Dice che cosa si è fatto, quando lo si sa solo dopo; quello del lavoro più esterno prevale.
    void chiama(const QString &nome) { m_nome = nome; }

    // Il lavoro non sarà un passo che si può annullare; va detto prima di cambiare qualcosa.
    void senzaStoria();
    // Prima di scrivere a pezzi un contenuto nella riga appena aggiunta.
    void aspettaContenuto();

    // Scrive un record: gli dà il codice se è nuovo, ne segna la modifica e lo lega all'operatore.
    // Di un record che c'è scrive le sole colonne cambiate. Un testo vuoto o di soli spazi è Null.
    // Lancia se il record, o il suo proprietario, non c'è più.
    Scritto scrive(const Record &dato);
    // Lega l'operatore, o il contatto, al record di cui fa parte; lancia se il record non c'è più.
    void collega(const QString &operatore, const QString &record);
    void scollega(const QString &operatore, const QString &record);
    // Mette l'individuo nella famiglia, dove sta una volta sola.
    void iscrive(Posto posto, const QString &individuo, const QString &famiglia);
    // Elimina il record con ciò che resta senza proprietario (db/lavoro/eliminazione). L'operatore
    // del lavoro resta. Se `avanza` ferma l'eliminazione il lavoro intero è annullato. Lancia
    // storia::TroppoGrande se non la si potrebbe annullare. Un lavoro senza nome prende il suo.
    void elimina(const QString &codice, const Avanzata &avanza = {});

    void conferma();

private:
    class Tentativo;
    void verificaProprietario(const QString &proprietario);
    void aggiunge(const Record &record, const QString &codice);
    bool aggiorna(const Record &record, const QVariantMap &presenti);
    QVariantMap presenti(const Record &record) const;
    void annota(const QString &tabella, const QString &codice, Cambiamento::Specie specie);
    void annuncia();
    storia::Registrazione *registrazione() const;

    ado::Connection &m_connessione;
    QString m_nome;
    QString m_operatore;
    Lavoro *m_prima;   // il lavoro cominciato prima di questo nello stesso filo
    Lavoro *m_esterno; // quello di cui questo è una parte
    ado::Transazione m_transazione;
    // Del più esterno; gli altri registrano nella sua.
    std::unique_ptr<storia::Registrazione> m_registrazione;
    qsizetype m_pezzi = 0;
    bool m_confermato = false;
    bool m_guasto = false;
    QList<Cambiamento> m_cambiamenti;
};

} // namespace modTarvola
