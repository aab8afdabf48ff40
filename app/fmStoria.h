#pragma once

#include "db/lavoro/ripresa.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

// Annulla i passi dell'archivio corrente fino a quello dato, o li ripete se è annullato; se un
// record lo impedisce dice quale. Vero se è riuscito. Lancia ado::Errore per ogni altro guasto.
bool riprende(QWidget *sopra, const modTarvola::storia::Passo &passo);

// La storia dell'archivio corrente: i passi compiuti e annullati, dal più recente.
class fmStoria : public QDialog
{
    Q_OBJECT

public:
    explicit fmStoria(QWidget *sopra);

    // La mostra fino alla chiusura; lancia ado::Errore se la storia non si legge.
    void mostra();

private:
    void carica();
    void scelto();
    void svolge();
    void svuota();

    QList<modTarvola::storia::Passo> m_passi;
    QTreeWidget *m_elenco;
    QLabel *m_quanto;
    QPushButton *m_riprende;
    QPushButton *m_svuota;
};
