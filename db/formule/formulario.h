#pragma once

#include "db/atto/scheda_atto.h"
#include "platform/motore/ado.h"

#include <QMap>
#include <QString>

#include <functional>
#include <memory>

// Ciò che i testi degli atti ripetono: la formula di chi li scrisse, con le caselle al posto dei
// valori. Da essa un testo cominciato continua, e da un testo tornano le caselle.
namespace modTarvola::formule
{

// Le caselle piene di un atto: il valore com'è conservato (date ISO, ore come stanno, il resto
// testo).
using Caselle = QMap<scheda::Indirizzo, QString>;

// Tutte le caselle piene dell'atto, tranne il testo riportato.
Caselle caselleDi(const scheda::SchedaAtto &atto);

// Come un testo prosegue dal cursore; testo vuoto: niente di abbastanza sicuro. Le lunghezze,
// dall'inizio di `testo`: la prossima parola; il tratto fino alla prossima casella o pausa.
struct Seguito {
    QString testo;
    qsizetype parola = 0;
    qsizetype tratto = 0;
};

// Un valore letto in un testo, e dove sta; lunghezza 0 se nel testo non sta scritto e lo dice solo
// il resto (il cognome del figlio, quello del padre).
struct Lettura {
    QString valore;
    qsizetype inizio = 0;
    qsizetype lunghezza = 0;
};

// Non si adopera da due thread insieme: chi chiede lascia dietro di sé conti che servono alla
// domanda dopo.
class Formulario
{
public:
    Formulario();
    ~Formulario();
    Formulario(Formulario &&) noexcept;
    Formulario &operator=(Formulario &&) noexcept;

    // Un atto di questo registro, o (nelRegistro falso) di un altro dello stesso tipo: dal più
    // lontano al più vicino. Con `prova` si guarda anche quante parole si sarebbero indovinate, e
    // ci si fida di conseguenza; costa qualche millisecondo, e per i più lontani non serve.
    void impara(const Caselle &caselle, const QString &testo, bool nelRegistro = true,
                bool prova = true);
    // Come prosegue il testo dopo `prima`, in un atto con quelle caselle.
    Seguito seguito(const Caselle &caselle, const QString &prima) const;
    // Le caselle che il testo dice e che `note` non ha.
    QMap<scheda::Indirizzo, Lettura> caselle(const QString &testo, const Caselle &note) const;

private:
    struct Dentro;
    std::unique_ptr<Dentro> m_dentro;
};

// Il formulario di un registro visto da un suo atto (vuoto: uno nuovo), che resta fuori: i suoi
// atti più vicini e, se non bastano, quelli degli altri registri del suo tipo. Legge una quantità
// limitata di atti qualunque sia l'archivio; `prosegue` è chiesta fra un atto e l'altro, e se rende
// falso si smette. Va bene in un altro thread, con una connessione sua. Lancia ado::Errore.
Formulario legge(ado::Connection &connessione, const QString &registro,
                 const std::function<bool()> &prosegue, const QString &atto = {});

} // namespace modTarvola::formule
