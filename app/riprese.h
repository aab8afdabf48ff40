#pragma once

#include "contesto/bozza.h"
#include "contesto/finestre.h"

#include <QWidget>

#include <functional>

// Riaprire le finestre di una bozza, con ciò che vi era scritto.
class Riprese
{
public:
    // Che pagina riaprire per una bozza di un atto.
    using ApreScheda = std::function<void(const bozze::Finestra &)>;
    Riprese(QWidget *finestra, ApreScheda apreScheda);

    // Di un archivio appena aperto: se un programma finito male ha lasciato bozze le offre. Vero se
    // se n'è ripresa una.
    bool offre(const QString &archivio);
    // Le bozze dell'archivio corrente: di finestre chiuse senza registrare, o non ancora riprese.
    void mostraUltime();

private:
    bool scegliere(const QString &archivio, const QString &titolo, const QString &testo,
                   qsizetype scelte);
    void riprende(const QString &archivio, const bozze::Bozza &bozza);
    void riapre(const bozze::Finestra &prima);

    QWidget *m_finestra;
    ApreScheda m_apreScheda;
};
