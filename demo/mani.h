#pragma once

#include "demo/occhi.h"

// Le mani del trascrittore: tasti e clic sulla finestra che sta davanti.
class Mani : public Occhi
{
public:
    using Occhi::Occhi;

    // Un clic, al centro o nel punto dato; lancia Guasto se l'oggetto è spento o coperto.
    Passo clicca(QString nome);
    Passo clicca(QWidget *oggetto);
    Passo clicca(QWidget *oggetto, QPoint punto);
    // Un comando di un menu della finestra principale.
    Passo scegliMenu(QString titolo, QString comando);
    // Un bottone della barra del visualizzatore attivo.
    Passo cliccaBarra(QString comando);
    // Con un clic e le frecce, alla riga del visualizzatore attivo che mostra il testo dato.
    Passo vaiAllaRiga(QString testo);
    // Porta davanti il visualizzatore di una tabella, dal menu delle finestre.
    Passo mostraElenco(QString tabella);
    // Chiude il visualizzatore attivo dal bottone della sua cornice.
    Passo chiudiElenco();

    Attesa premi(Qt::Key tasto, Qt::KeyboardModifiers modi = Qt::NoModifier) const;
    // Batte un testo dove sta il fuoco.
    Attesa batti(const QString &testo) const;
    // Batte un testo in una casella, al posto di quello che c'è; un testo vuoto non batte nulla.
    Passo scrivi(QString casella, QString testo);
    // Con la tastiera: arriva al combo, lo apre, scende fino alla voce, la prende.
    Passo scegli(QString combo, QString voce);

    // Clicca il bottone che chiude la finestra davanti e aspetta che non ci sia più.
    Passo chiudi(QString bottone);
    // Aspetta il messaggio col testo dato (o che comincia così) e lo chiude col bottone dato.
    Passo rispondi(QString testo, QString bottone, QString fotografia = {});
    Passo rispondiAInizio(QString inizio, QString bottone, QString fotografia = {},
                          bool tutto = false);
    // Chiude la finestra principale dalla sua cornice.
    Attesa chiudiPrincipale() const;

private:
    void verificaRaggiungibile(QWidget *oggetto, QPoint punto) const;
};
