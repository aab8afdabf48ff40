#pragma once

#include "atti/proposte.h"
#include "db/atto/campi_pagina.h"

#include <QWidget>

#include <functional>
#include <memory>

class Pagina;
class Campo;
class CaselleDalTesto;
class FormuleScheda;
class Repertorio;
class QLabel;
class QMenu;
class QListWidget;
class QToolBar;

namespace modTarvola
{
struct Annuncio;
}
namespace bozze
{
class Sorgente;
struct Finestra;
} // namespace bozze

// Le proprietà che chi apre una pagina le dà prima di mostrarla.
struct ProprietaScheda {
    QString Percorso;
    QString ConOperatore;
    QString RegistroLocale; // di un atto nuovo; di uno che c'è lo dice l'atto
    QString VoceLocale;     // vuota: un atto nuovo
    int TipoLock = 3;
};

// La pagina di un atto: lo mostra, lo fa scrivere dall'alto in basso, lo registra intero.
class fmScheda : public QWidget
{
    Q_OBJECT

public:
    fmScheda(ProprietaScheda dalle, QWidget *sopra);

    ProprietaScheda proprieta;
    // Apre un record nell'editore suo.
    std::function<void(const QString &codice)> apreRecord;

    // Legge l'atto, o ne comincia uno, sulla connessione corrente; lancia ado::Errore se non si
    // legge, o se il registro non ha una pagina.
    void Form_Load();
    // Rimette come correnti il file, il registro e l'atto di questa pagina.
    void Form_Activate();
    // I menu della pagina, nell'ordine della barra.
    QList<QMenu *> menu() const { return {m_menu}; }
    // Vero se la pagina lavora sulla connessione data.
    bool usa(const ado::Connection *connessione) const { return m_connessione == connessione; }
    // Se c'è qualcosa di scritto chiede che cosa farne; falso se la pagina deve restare.
    bool puoChiudersi();
    // Vero se vi è qualcosa di scritto e non registrato.
    bool daRegistrare() const;

    // Registra l'atto. Falso se non si è potuto: la pagina mostra perché.
    bool salva();
    void salvaENuovo();
    void nuovo();
    void vicino(bool segue);
    // Rimette ciò che una bozza dice che vi era scritto; se nel file l'atto intanto è cambiato fa
    // scegliere.
    void riprende(const bozze::Finestra &mia);
    // Porta la tastiera nella prima casella da scrivere.
    void comincia();
    Pagina *pagina() const { return m_pagina; }
    // Ciò da cui vengono le proposte; nullo in sola lettura.
    const std::shared_ptr<Repertorio> &repertorio() const { return m_repertorio; }

signals:
    // Nella pagina si è passati a un altro atto, o l'atto è stato registrato.
    void passata();

protected:
    void closeEvent(QCloseEvent *evento) override;

private:
    struct Voce;
    std::vector<Voce> voci();
    void creaMenu();
    void creaTesta();
    void mostra(const modTarvola::Atto &atto);
    void apre(const QString &voce);
    void proponeNuovo();
    void deriva(Campo *cambiato);
    void derivaCoppia(const modTarvola::scheda::Indirizzo &da);
    void derivaSesso(const Campo &nome);
    void propone(const QList<proposte::Proposta> &nuove);
    bool proponeIn(const Campo &campo) const;
    void spegneProposte();
    void mostraTolte();
    void scegliCampi();
    void usaCampi(const modTarvola::scheda::Scelte &scelte);
    void comeNellAttoPrima(bool tuttaLaPersona);
    void aggiungePersona();
    void togliePersona();
    bool registra();
    bool siLegge();
    void rifiutato(const modTarvola::scheda::SchedaAtto &scritto,
                   const modTarvola::EsitoAtto &esito);
    bool rilegge();
    void riceve(const modTarvola::Annuncio &annuncio);
    bool concorda(const std::optional<modTarvola::Atto> &nelFile);
    void ricomincia();
    void segnaCasella(const modTarvola::scheda::Indirizzo &dove, const QString &motivo);
    void aggiornaTesta();
    void aggiornaAltro();
    void creaAltro();
    void abbozza();
    bozze::Finestra bozza() const;
    QString testoNelFile(const QString &posto) const;
    void creaCompletamento();
    void creaFormule();
    void cambiaLeAbbreviazioni();
    void leggeAbbreviazioni();
    void leggeDalTesto();
    bool confermaLette();
    void esegue(const std::function<void()> &comando);

    ado::Connection *m_connessione = nullptr;
    const modTarvola::scheda::Scheda *m_scheda = nullptr;
    modTarvola::Atto m_prima;                 // l'atto com'è nel file
    modTarvola::Atto m_precedente;            // quello che nel registro viene prima
    std::shared_ptr<Repertorio> m_repertorio; // ciò che l'archivio ha già scritto
    QString m_titoloRegistro;
    modTarvola::scheda::Scelte m_scelte; // quali caselle si vedono, in questo registro
    Pagina *m_pagina = nullptr;
    FormuleScheda *m_formule = nullptr; // nulla dove non si scrive
    CaselleDalTesto *m_dalTesto = nullptr;
    QLabel *m_titolo = nullptr;
    QToolBar *m_barra = nullptr;
    QWidget *m_piede = nullptr;
    QListWidget *m_altro = nullptr;
    QMenu *m_menu = nullptr;
    bozze::Sorgente *m_sorgente = nullptr; // nulla se si può solo guardare
    bool m_ripresa = false;                // ciò che vi è scritto viene da una bozza
    // Che cosa è accaduto all'atto da un'altra parte, mentre nella pagina si scriveva.
    enum class Altrove { Niente, Cambiato, Eliminato };
    Altrove m_altrove = Altrove::Niente;
};
