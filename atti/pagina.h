#pragma once

#include "atti/riga_pagina.h"
#include "atti/testo_pagina.h"
#include "db/atto/scheda_atto.h"
#include "platform/finestre/discordia.h"

#include <QScrollArea>

class Completamento;
class QVBoxLayout;

// La pagina su cui un atto si legge e si scrive: le righe di una scheda, una sotto l'altra. Mostra
// un atto, ne raccoglie ciò che è cambiato, conduce la tastiera da una casella all'altra.
class Pagina : public QScrollArea
{
    Q_OBJECT

public:
    // I ruoli sono quelli che si offrono a un'altra persona, con la loro etichetta.
    Pagina(const modTarvola::scheda::Scheda &scheda, std::vector<std::pair<int, QString>> ruoli,
           QWidget *sopra);

    // Riempie tutte le caselle; ciò che era scritto si perde.
    void mostra(const modTarvola::scheda::SchedaAtto &atto);
    // Come mostra, ma la tastiera resta dov'è.
    void aggiorna(const modTarvola::scheda::SchedaAtto &atto);
    // Vuota le caselle della persona, che nell'archivio non c'è ancora.
    void vuota(const QString &nome, int quale);
    // Porta nell'atto ciò che è stato scritto, e le proposte che nessuno ha cambiato.
    void raccoglie(modTarvola::scheda::SchedaAtto &atto) const;
    // L'atto è cambiato sotto la pagina: le caselle in cui nessuno ha scritto prendono ciò che c'è
    // `ora`, le altre restano.
    void concilia(const modTarvola::scheda::SchedaAtto &era,
                  const modTarvola::scheda::SchedaAtto &ora);
    // Ciò in cui la pagina e l'atto dato non vanno d'accordo.
    QList<discordia::Casella> differenze(const modTarvola::scheda::SchedaAtto &ora) const;
    // Da qui in poi tutto ciò che si vede è scritto, e nessuna persona è nell'archivio.
    void tuttoDaScrivere();
    // Vero se c'è qualcosa di scritto (le proposte no).
    bool toccata() const;
    // Il messaggio della prima casella che non si legge, e quale; vuoto se vanno tutte bene.
    QString rifiuto(Campo *&quale) const;
    // Segna la casella, la mostra e vi porta la tastiera.
    void segna(Campo *campo, const QString &motivo);

    void scorreA(QWidget *parte);
    // Le caselle che si vedono, nell'ordine in cui si leggono.
    std::vector<Campo *> campi() const;
    // La casella all'indirizzo dato, fatta nascere se occorre; nulla se la pagina non l'ha.
    Campo *campo(const modTarvola::scheda::Indirizzo &dove);
    // Come l'altra; all'elenco si aggiungono le righe che mancano.
    Campo *campoNato(const modTarvola::scheda::Indirizzo &dove);
    // La casella, o il testo, con la tastiera; nulli se è altrove.
    Campo *campoCorrente() const;
    TestoPagina *testo(const QString &nome) const;
    const std::vector<RigaPagina *> &righe() const { return m_righe; }
    // Una riga in più nell'elenco del posto dato, pronta a ricevere una persona.
    RigaPagina *aggiungeRiga(const QString &nome);
    // Cambia come si usano le caselle: quali si vedono, quali il tabulatore salta.
    using UsoDi = std::function<modTarvola::scheda::Uso(const modTarvola::scheda::Indirizzo &,
                                                        modTarvola::scheda::Uso)>;
    void usa(const UsoDi &scelta);
    // Fa vedere una casella nascosta, finché la pagina non mostra altro.
    void scopre(Campo *campo);
    void setSolaLettura(bool sola);
    // La data (ISO) da cui si conta il giorno dell'atto, quella dell'atto prima.
    void conta(const QString &riferimento) { m_riferimento = riferimento; }
    // Quante persone ha di solito ogni elenco: quante ne ha l'atto dato, che viene prima.
    void attende(const modTarvola::scheda::SchedaAtto &prima);
    // Propone come continuare ciò che si scrive: `cerca` rende le proposte per una casella.
    Completamento *completa(std::function<QStringList(const Campo &)> cerca);
    // Cerca di nuovo le proposte per la casella con la tastiera.
    void rivedeProposte();
    // Porta la tastiera nella prima casella da scrivere.
    void comincia();
    // La porta alla casella, o al testo, che segue o precede; vero se ce n'è uno.
    bool avanza(bool avanti, bool anchePassate);

signals:
    void cambiata(Campo *campo);
    // La tastiera è arrivata in una casella.
    void entrata(Campo *campo);

protected:
    bool eventFilter(QObject *oggetto, QEvent *evento) override;

private:
    RigaPagina *nuovaRiga(const modTarvola::scheda::Riga &riga, qsizetype dove);
    void adattaElenco(const modTarvola::scheda::Posto &suo, int quante);
    void riempie(RigaPagina *riga, const modTarvola::scheda::SchedaAtto &atto);
    void rinomina(const QString &nome);
    void dopoCambio(Campo *campo);
    void intesta();
    void usaIn(RigaPagina *riga) const;
    void usaIn(TestoPagina *testo) const;
    void accoglie(RigaPagina *riga, Campo *campo);
    QString giornoPer(const RigaPagina *riga, const Campo *campo) const;
    void raccoglie(const RigaPagina *riga, modTarvola::scheda::SchedaAtto &atto) const;
    QList<QWidget *> percorso(bool anchePassate) const;
    bool tasto(QWidget *parte, class QKeyEvent *evento);
    const modTarvola::scheda::Posto &posto(const QString &nome) const;
    bool eElenco(const QString &nome) const;
    bool diTroppo(const RigaPagina *riga) const;

    const modTarvola::scheda::Scheda &m_scheda;
    std::vector<std::pair<int, QString>> m_ruoli;
    std::vector<RigaPagina *> m_righe;
    std::vector<TestoPagina *> m_testi;
    QVBoxLayout *m_colonna;
    UsoDi m_uso;
    Completamento *m_completamento = nullptr;
    QString m_riferimento;
    QMap<QString, int> m_attese; // per posto; vuota se non c'è un atto prima
    bool m_riempie = false;
    bool m_solaLettura = false;
};
