#pragma once

#include "db/schema/tabelle.h"

#include <QObject>
#include <QVariant>

class QLabel;
class QWidget;

using modTarvola::catalogo::Formato;

// Che cosa una casella contiene: basta a costruirla, in un editore o altrove.
struct DescrizioneCampo {
    Formato formato = Formato::Testo;
    QString etichetta;
    int lunghezza = 0;    // i caratteri che accetta; 0 vuol dire senza limite
    QString lettere = {}; // di una Scelta, nell'ordine in cui si offrono
};

// Ciò che il catalogo sa della colonna. Lancia ado::Errore se la tabella o la colonna non c'è.
DescrizioneCampo campoDi(QStringView tabella, QStringView colonna);

// Una casella di qualunque formato. Mostra un valore dell'archivio, rende quello da registrare,
// rifiuta ciò che non sa leggere e dice quando chi la usa la cambia. Riempirla dal programma non è
// cambiarla.
//
// La casella è ciò che sta dietro alla sua parte, che si vede e che chi costruisce la finestra
// mette dove vuole; accanto le mette la sua etichetta e sotto la sua nota, che nascono se le si
// chiede.
class Casella : public QObject
{
    Q_OBJECT

public:
    Casella(DescrizioneCampo descrizione, QWidget *sopra);

    const DescrizioneCampo &descrizione() const { return m_descrizione; }

    // Mostra un valore com'è nell'archivio, non valido se Null, e riparte da quello. Non dice nulla
    // a nessuno.
    void mostra(const QVariant &valore);
    // L'ultimo valore mostrato.
    const QVariant &mostrato() const { return m_mostrato; }
    // Ciò che vi sta, come testo: `rimette` lo rimette tale e quale, anche se è da rifiutare. Vuoto
    // per ciò che non deve uscire dalla finestra.
    virtual QString scritta() const = 0;
    // Ciò che vi stava quando fu mostrata.
    const QString &scrittaPrima() const { return m_scrittaPrima; }
    // Vi mette un testo come se lo avesse scritto chi usa la casella.
    void rimette(const QString &testo);
    // Il valore da registrare: quello mostrato, tale e quale, se nessuno ha toccato la casella; non
    // valido (Null) se è vuota, o se contiene ciò che `rifiuto` rifiuta.
    virtual QVariant valore() const = 0;
    // Il messaggio con cui il contenuto è rifiutato; vuoto se va bene.
    virtual QString rifiuto() const { return {}; }
    // Vero se il rifiuto si dice già a chi lascia la casella, falso se solo a chi salva.
    virtual bool siControllaLasciandola() const { return true; }
    // Vero se non contiene nulla, o solo spazi.
    virtual bool vuota() const = 0;
    // La lascia guardare e non cambiare.
    virtual void setSolaLettura(bool sola) = 0;

    // Ciò che si vede e si usa: una riga, un elenco, un riquadro di bottoni.
    virtual QWidget *parte() const = 0;
    // Porta qui il fuoco, con ciò che c'è pronto a essere sostituito.
    virtual void riprende();
    // Un'etichetta nuova, che porta qui; nulla se la casella si presenta da sé. Chi non vede la
    // sente se sta nello stesso contenitore della parte.
    virtual QLabel *etichetta(QWidget *sopra);
    // La riga in cui la casella dice qualcosa a chi scrive, nascosta finché tace; nulla se non ha
    // mai nulla da dire. Si chiede una volta sola.
    virtual QLabel *nota(QWidget *sopra);
    // Il nome che sente chi non vede, dove l'etichetta non basta ("Padre: Cognome").
    void chiama(const QString &nome) const;
    // Dà i loro nomi alle parti, secondo il posto nella serie: Text1_3, Frame3_0, ImageCombo2.
    virtual void numera(int indice) = 0;

signals:
    // Chi usa la casella l'ha cambiata.
    void cambiata();
    // Il fuoco è passato altrove nella stessa finestra, non a un altro programma né a un menu.
    void lasciata();

protected:
    // Fa vedere mostrato().
    virtual void presenta() = 0;
    // Fa vedere ciò che `scritta` ha reso.
    virtual void mette(const QString &testo) = 0;
    // Si accorge di quando il fuoco lascia la parte.
    void sorveglia();
    // Il fuoco se ne va: ciò che la casella vuol fare prima che lo sappiano gli altri.
    virtual void riordina() {}
    bool eventFilter(QObject *guardato, QEvent *evento) override;

private:
    DescrizioneCampo m_descrizione;
    QVariant m_mostrato;
    QString m_scrittaPrima;
};

// La casella che il formato vuole.
Casella *nuovaCasella(const DescrizioneCampo &descrizione, QWidget *sopra);
