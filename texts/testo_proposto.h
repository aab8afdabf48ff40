#pragma once

#include "db/formule/formulario.h"

#include <QList>
#include <QPlainTextEdit>

#include <functional>

class QAction;

// Un testo lungo che, dove chi scrive è arrivato in fondo, mostra come potrebbe continuare.
//
// La proposta non è mai nel documento: sta nella disposizione della riga, dove un metodo di
// immissione tiene ciò che non è ancora scritto, e va a capo come il resto; testo, appunti, storia
// di ciò che si annulla e lettori di schermo non la conoscono. Si mostra solo quando la tastiera è
// qui, non c'è nulla di scelto, e dopo il cursore non resta che un punto o spazi.
//
// I tasti che la prendono sono quelli che in fondo a un testo non portano da nessuna parte: la
// freccia a destra prende il tratto, con Ctrl la parola, Fine tutto ciò che si vede.
class TestoProposto : public QPlainTextEdit
{
    Q_OBJECT
    // Ciò che lo schermo mostra dopo il cursore, e quanto ne è segnato come tratto.
    Q_PROPERTY(QString proposta READ proposta)
    Q_PROPERTY(qlonglong tratto READ tratto)

public:
    enum Quanto { Parola, Tratto, Tutto };
    using Seguito = modTarvola::formule::Seguito;
    // Come continua ciò che sta prima del cursore.
    using Continua = std::function<Seguito(const QString &prima)>;

    explicit TestoProposto(QWidget *sopra);

    void continua(Continua fonte);
    // Le abbreviazioni: che cosa diventa una parola, vuoto se non ne è una.
    void abbrevia(std::function<QString(const QString &parola)> distende);
    // Distende la parola prima del cursore, in un passo che si annulla intero; se non è
    // un'abbreviazione lo dice.
    void distende();
    // Chiede di nuovo la proposta: ciò da cui dipende è cambiato.
    void ripropone();
    QString proposta() const { return m_proposta.testo; }
    qlonglong tratto() const { return m_proposta.tratto; }
    // Mette ciò che si vede, o una sua parte, nel testo, in un passo che si annulla intero.
    void prende(Quanto quanto);
    // Finché tace non propone nulla.
    void taccia(bool tace);
    bool tace() const { return m_tace; }
    // La fonte ha finito di leggere; se non ha potuto, `guasto` lo dice nei comandi.
    void fonteLetta(const QString &guasto);
    // I comandi per un menu, con i tasti: il tratto, la parola, tutto, e se si propone; poi quello
    // che distende. Stanno anche nel menu della casella.
    QList<QAction *> comandi() const;

signals:
    // Si è fatta tacere, o ha ripreso a proporre, coi tasti.
    void taciuta(bool tace);

protected:
    bool event(QEvent *evento) override;
    void keyPressEvent(QKeyEvent *evento) override;
    void inputMethodEvent(QInputMethodEvent *evento) override;
    void mousePressEvent(QMouseEvent *evento) override;
    void focusInEvent(QFocusEvent *evento) override;
    void focusOutEvent(QFocusEvent *evento) override;
    void changeEvent(QEvent *evento) override;
    void contextMenuEvent(QContextMenuEvent *evento) override;

private:
    void creaComandi();
    void nuovoComando(const QString &nome, const QKeySequence &tasto,
                      const std::function<void()> &compie);
    QAction *comandoDi(const QKeyEvent *evento) const;
    bool puoProporre() const;
    QString primaDelCursore() const;
    Seguito cerca() const;
    void mostra(const Seguito &proposta);
    void nasconde();
    void racconta();

    Continua m_continua;
    std::function<QString(const QString &)> m_distende;
    Seguito m_proposta;
    QAction *m_tacere = nullptr;
    QAction *m_stende = nullptr;
    QList<QAction *> m_comandi;
    bool m_tace = false;
    bool m_inCorso = false; // un tasto, o noi stessi, stiamo cambiando il testo
};
