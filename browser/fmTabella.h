#pragma once

#include "browser/barre_elenco.h"
#include "browser/proprieta_tabella.h"
#include "db/lavoro/annunci.h"
#include "platform/motore/ado.h"

#include <QWidget>

#include <optional>

class Griglia;
class ModelloTabella;
class QMenu;

// Il visualizzatore: l'elenco dei record di una tabella, entro un ambito, con i suoi comandi. Che
// cosa ogni tabella ha di suo sta in GenereElenco.
class fmTabella : public QWidget
{
    Q_OBJECT

public:
    fmTabella(ProprietaTabella dalle, ServiziTabella servizi, QWidget *sopra);

    ProprietaTabella proprieta;

    // Apre l'elenco sulla connessione corrente; lancia ado::Errore se non si può leggere.
    void Form_Load();
    // Ricalcola didascalia, comandi e contesto dalla riga corrente.
    void Form_Activate();
    // I menu dell'elenco nell'ordine della barra: i suoi comandi, le altre tabelle.
    QList<QMenu *> menu() const { return {m_barre.menu(), TItem}; }
    // Vero se l'elenco viene dalla connessione data.
    bool usa(const ado::Connection *connessione) const { return m_connessione == connessione; }

    const GenereElenco &genere() const { return m_genere; }
    bool vuota() const;
    // Il codice della riga corrente; vuoto se non c'è o non si legge.
    QString codiceCorrente() const;
    // Un campo della riga corrente, com'è nell'archivio; non valido se non c'è.
    QVariant campoCorrente(const QString &nome) const;
    // La riga corrente diventa l'archivio, il registro o la voce su cui si lavora.
    void prendeContesto();
    // Rilegge l'elenco; la riga corrente resta quella, o quella del codice dato se c'è.
    void aggiorna(const QString &codiceDaScegliere = {});
    StatoTabella stato() const;
    // Riprende ordine e riga corrente di un elenco che c'era; lancia ado::Errore.
    void riprende(const StatoTabella &stato);
    // Che cosa l'elenco abbraccia: "registro R1", "tutto, con i dettagli". Vuoto dove non si
    // sceglie.
    QString ambito() const;
    // Mostra ciò che è cambiato nell'archivio mentre l'elenco può non essere quello attivo: su che
    // cosa si lavora resta com'è. Con `chiavi` ci sono record nati o tolti, e si rilegge per
    // intero; altrimenti si rileggono le righe che si vedono.
    void mostraCambiamenti(bool chiavi);
    // Apre un altro visualizzatore.
    void apre(const ProprietaTabella &altro) const { m_servizi.apre(altro); }
    // Compie un comando dell'elenco; ciò che non riesce diventa un messaggio.
    void esegue(const ComandoElenco &comando);

protected:
    void contextMenuEvent(QContextMenuEvent *evento) override;

private:
    void riceve(const modTarvola::Annuncio &annuncio);
    void ritrova(const modTarvola::Annuncio &annuncio);
    void mostraMenuRiga(std::optional<QPoint> posto = {});
    QMenu *menuOrdine(QMenu *sopra);
    bool rigaPronta() const;
    QString didascalia() const;

    const GenereElenco &m_genere;
    ServiziTabella m_servizi;
    ado::Connection *m_connessione = nullptr;
    bool m_dettagli = false;
    ModelloTabella *adoTabella = nullptr;
    BarreElenco m_barre;
    QMenu *TItem;
    Griglia *DataGrid1;
};
