#pragma once

#include "db/atto/abbreviazioni.h"

#include <QDialog>

class QTableWidget;

// La finestra in cui si scrivono le abbreviazioni di un archivio.
class fmAbbreviazioni : public QDialog
{
    Q_OBJECT

public:
    fmAbbreviazioni(const QList<modTarvola::Abbreviazione> &presenti, QWidget *sopra);

    // Quelle scritte, senza le righe vuote.
    QList<modTarvola::Abbreviazione> scritte() const;

    void accept() override;

private:
    void aggiunge(const modTarvola::Abbreviazione &una);
    void nuova();
    void elimina();

    QTableWidget *m_tavola;
};

// Le fa cambiare e le registra nell'archivio; vero se sono cambiate. Lancia ado::Errore.
bool cambiaAbbreviazioni(ado::Connection &connessione, QWidget *sopra);
