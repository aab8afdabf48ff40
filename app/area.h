#pragma once

#include <QMdiArea>

class QLabel;

// L'area delle finestre: quando non ce n'è nessuna dice come si comincia; i tasti passano dall'una
// all'altra; ciascuna torna nel posto in cui era stata lasciata.
class Area : public QMdiArea
{
    Q_OBJECT

public:
    explicit Area(QWidget *sopra);

    // Dà alla finestra nuova il posto in cui era l'ultima con lo stesso nome, o il suo se non ce
    // n'è: uno scalino sotto la precedente. Il posto è sempre dentro l'area.
    void colloca(QMdiSubWindow *finestra, const QString &nome);
    // Mette le finestre una sotto l'altra, a scalare, quella attiva davanti.
    void cascata();
    // Ricorda il posto di tutte le finestre ancora aperte.
    void ricordaPosti() const;

protected:
    bool viewportEvent(QEvent *evento) override;
    bool eventFilter(QObject *oggetto, QEvent *evento) override;

private:
    void creaTasti();
    void attivaVicina(int passi);
    void disponiInvito();
    QRect scalino(int numero) const;
    QRect dentro(QRect posto) const;
    bool occupato(const QRect &posto) const;

    QLabel *m_invito;
};
