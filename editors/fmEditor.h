#pragma once

#include "contesto/finestre.h"
#include "db/lavoro/collegamenti.h"
#include "db/lavoro/lavoro.h"
#include "db/schema/generi.h"
#include "editors/caselle.h"
#include "editors/pannello.h"
#include "platform/motore/recordset.h"

namespace bozze
{
class Sorgente;
struct Finestra;
} // namespace bozze

class QGroupBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

// Che cosa un editore dice di sé alla cornice comune.
struct DescrizioneEditor {
    QString nome;
    QString didascalia;
    QString tabella;
    // La proprietà che porta il codice del record; vuota vuol dire un record nuovo.
    QString modTarvola::ProprietaFinestra::*codice;
    std::vector<DescrizioneCasella> caselle;
    std::vector<modTarvola::Legami> legami;
    // I generi comuni che "Nuovo" crea; "Apri" conosce gli stessi e il trascrittore.
    std::vector<int> generi;
};

// La cornice di tutti gli editori: i dettagli del record, i suoi collegamenti, i comandi.
class fmEditor : public modTarvola::FinestraEditor
{
    Q_OBJECT

public:
    fmEditor(DescrizioneEditor descrizione, QWidget *sopra);

    void Form_Load() override;

    // Ciò che chi apre l'editore vuole registrato insieme al record, quando lo si salva.
    std::function<void(modTarvola::Lavoro &, const QString &codice)> insieme;

protected:
    // Ciò che un editore aggiunge o cambia. I rifiuti sono il messaggio da mostrare, vuoto se va
    // tutto bene.
    virtual void completaFinestra(QVBoxLayout *colonna);
    virtual int categoria() const = 0;
    virtual bool siOffre(int /*genere*/) const { return true; }
    virtual void caricato() {}
    virtual void dopoCollegamenti() {}
    virtual QString rifiutoNuovo(int /*genere*/) const { return {}; }
    virtual QString controlla() const { return {}; }
    virtual void completaNuovo() {}
    virtual void completa() {}
    // Scrive il record di adoDettagli e ciò che va registrato con lui.
    virtual modTarvola::Scritto registra(modTarvola::Lavoro &lavoro);
    virtual void salvato() {}
    virtual bool restaAperta() const { return false; }
    // Falso se il bottone in fondo chiude soltanto; allora dice "Chiudi".
    virtual bool salvaChiudendo() const { return true; }
    // Vero se il genere è dell'editore e la finestra è stata aperta.
    virtual bool nuovoProprio(const Elemento & /*genere*/) { return false; }
    virtual bool apriProprio(const Elemento & /*collegamento*/) { return false; }

    void keyPressEvent(QKeyEvent *evento) override;

    bool solaLettura() const { return proprieta.TipoLock == ado::adLockReadOnly; }
    QString &codice() { return proprieta.*m_descrizione.codice; }
    const QString &codice() const { return proprieta.*m_descrizione.codice; }
    // Apre un editore figlio con le proprietà comuni; `imposta` dà le altre, `caricato` gira prima
    // che si mostri. Rende la finestra chiusa, nulla se non si è potuta aprire.
    std::unique_ptr<FinestraEditor>
    apreFiglio(const QString &nome, const QString &didascalia,
               const std::function<void(FinestraEditor &)> &imposta,
               const std::function<void(FinestraEditor &)> &caricato = {});
    // Registra il record in un lavoro solo. Falso se un rifiuto, di cui si è mostrato il messaggio,
    // l'ha impedito; un guasto lancia ado::Errore e non cambia nulla.
    bool SalvaDettagli();
    void CaricaCollegamenti();

    // La riga "Ruolo" o "Tipo" con l'etichetta data da chi apre.
    void aggiungeEtichetta(QVBoxLayout *colonna, const QString &didascalia);
    void mostraEtichetta();

    Caselle Text1;
    PannelloCollegamenti *pannello;
    ado::Recordset adoDettagli;

private:
    void costruisce();
    void rinfresca(const modTarvola::Annuncio &annuncio);
    void Command1_Click();
    void nuovo();
    void elimina();
    void apri();
    bool nuovoComune(const Elemento &genere);
    bool apriComune(const Elemento &collegamento);
    void apreRecapito(int genere, const QString &suo, const QString &didascalia);
    void abbozza();
    bozze::Finestra bozza() const;
    void riprendeBozza(const bozze::Finestra &mia);
    QString scrive();
    QString nomeDelRecord() const;
    void controllaCasella(Casella &casella);
    bool casellaRifiutata();
    bool casellaInSospeso();
    void rifiuta(Casella &casella, const QString &messaggio);

    DescrizioneEditor m_descrizione;
    QLabel *m_etichetta = nullptr;
    QPushButton *Command1 = nullptr;
    bool m_nelMessaggio = false;
    bozze::Sorgente *m_sorgente = nullptr; // di una finestra in cui si scrive
    QString m_via;                         // il comando che ha aperto la finestra che è sopra
};
