#pragma once

#include "db/atto/scheda_atto.h"
#include "editors/casella.h"

class QLabel;

// Una casella della pagina con la sua didascalia: sa dove sta nell'atto, e se ciò che mostra è
// stato scritto o soltanto proposto. Una proposta si distingue da ciò che è scritto, la prima
// lettera la conferma o la cambia, e chi non vede la sente dire.
class Campo : public QObject
{
    Q_OBJECT

public:
    // `tabella` è quella della colonna; `chi` il posto come si dice ("Padrino/Madrina 2").
    Campo(modTarvola::scheda::Indirizzo dato, const QString &tabella, const QString &chi,
          QWidget *sopra);

    modTarvola::scheda::Indirizzo dove;
    modTarvola::scheda::Uso uso = modTarvola::scheda::Uso::Mostrata;
    bool scoperta = false; // si vede comunque, finché non mostra altro

    Casella *casella() const { return m_casella; }
    QLabel *didascalia() const { return m_didascalia; }
    QWidget *fuoco() const { return m_casella->parte(); }
    // Come la casella si chiama per chi la sente: "Padre: Cognome".
    const QString &nome() const { return m_nome; }
    void chiama(const QString &chi);

    // Mostra un valore dell'atto; nessuno l'ha toccato.
    void mostra(const QVariant &valore);
    // Mette un valore che si registrerà se nessuno lo cambia. Non tocca ciò che è stato scritto.
    // Ciò che è letto nel testo dell'atto prevale su ogni altra proposta, e aspetta una conferma.
    void propone(const QVariant &valore, bool lettoNelTesto = false);
    // Toglie la proposta, se c'è e se non è letta nel testo.
    void ritira();
    void ritiraLettura();
    // Ciò che è proposto è come scritto.
    void conferma();
    // Mette un valore come se lo avesse scritto chi trascrive.
    void scrive(const QVariant &valore);

    // Ciò che nel record c'era quando la casella fu mostrata.
    const QVariant &nelRecord() const { return m_nelRecord; }
    bool proposto() const { return m_stato == Proposto; }
    bool dalTesto() const { return proposto() && m_lettoNelTesto; }
    bool scritto() const { return m_stato == Scritto; }
    bool vuoto() const { return m_casella->vuota(); }
    QVariant valore() const { return m_casella->valore(); }
    QString testo() const;
    // Segna la casella col motivo per cui non va, o toglie il segno.
    void segna(const QString &motivo);

signals:
    // Chi trascrive ha cambiato la casella.
    void cambiato();

private:
    enum Stato { Mostrato, Proposto, Scritto };
    void passa(Stato stato);

    Casella *m_casella;
    QLabel *m_didascalia;
    QString m_nome;
    QString m_motivo;
    QVariant m_nelRecord;
    Stato m_stato = Mostrato;
    bool m_velata = false; // si vede che viene dal testo
    bool m_lettoNelTesto = false;
};
