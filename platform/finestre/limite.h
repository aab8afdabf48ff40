#pragma once

#include <QObject>

class QLabel;
class QLineEdit;

// Quanti caratteri una riga in cui si scrive accetta, senza che nulla sparisca di nascosto.
//
// Un testo più lungo, messo lì dal programma, resta intero: chi scrive lo può solo accorciare. Di
// ciò che non entra dice una nota, finché non si fa posto; chi non vede la sente appena compare e
// tornando alla riga.
class Limite : public QObject
{
    Q_OBJECT

public:
    // Una lunghezza 0 vuol dire senza limite. Muore con la riga.
    Limite(QLineEdit *riga, int lunghezza);

    // Mette nella riga un testo, lungo quanto vuole.
    void mostra(const QString &testo);
    // La nota, nascosta finché non c'è nulla da dire: va messa accanto alla riga. Si chiede una
    // volta sola.
    QLabel *nota(QWidget *sopra);

private:
    void misura(const QString &testo);
    void dice(const QString &testo);

    QLineEdit *m_riga;
    int m_lunghezza;
    QLabel *m_nota = nullptr;
};

// Una riga di avviso: testo semplice, a capo quando serve, nascosta finché è vuota.
QLabel *nuovaNota(QWidget *sopra);
// La mostra con quel testo, e lo fa sentire a chi non vede; la nasconde se è vuoto.
void annota(QLabel *nota, const QString &testo);
