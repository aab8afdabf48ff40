#pragma once

#include <QFrame>
#include <QPointer>

#include <functional>

class Campo;
class QKeyEvent;
class QListWidget;

// Le proposte sotto la casella in cui si scrive. Non toccano mai ciò che è scritto: si prendono con
// Invio, che va anche alla casella seguente, o con la freccia a destra in fondo al testo, che resta
// nella casella; Esc le nasconde. Chi non vede le sente nella descrizione della casella.
class Completamento : public QFrame
{
    Q_OBJECT

public:
    // `cerca` rende le proposte per ciò che è scritto in una casella.
    Completamento(std::function<QStringList(const Campo &)> cerca, QWidget *sopra);

    // Chi scrive ha cambiato la casella: le proposte si cercano di nuovo.
    void segue(Campo *campo);
    void nasconde();
    // La proposta scelta; vuota se non se ne vede nessuna.
    QString scelta() const;
    // Guarda un tasto battuto nella casella prima di lei; vero se lo ha preso. `avanti` dice se,
    // presa una proposta, la tastiera va oltre.
    bool tasto(QKeyEvent *evento, bool &avanti);

signals:
    // Una proposta è stata tolta per sempre dall'elenco di quella casella.
    void nonPiu(Campo *campo, const QString &testo);

private:
    void colloca();
    void racconta();
    void prende();
    bool prendeERimane();
    void scorre(int passo);

    std::function<QStringList(const Campo &)> m_cerca;
    QPointer<Campo> m_campo;
    QListWidget *m_elenco;
};
