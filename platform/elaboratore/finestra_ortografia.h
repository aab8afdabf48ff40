#pragma once

#include "platform/lingua/correttore.h"

#include <QDialog>

class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

// La finestra del controllo: una parola per volta, nella sua frase, con ciò che se ne può fare.
class FinestraOrtografia : public QDialog
{
    Q_OBJECT

public:
    FinestraOrtografia(Correttore &correttore, dizionario::Dizionario &dizionario);

private:
    QWidget *parola();
    QWidget *comandi();
    QPushButton *comando(const QString &didascalia, const QString &nome,
                         const std::function<void()> &azione);
    void mostra();
    void mostraFrase();
    void prossima();
    void cambia(bool tutte);
    void aggiungi();

    Correttore &m_correttore;
    dizionario::Dizionario &m_dizionario;
    QPlainTextEdit *m_frase;
    QLineEdit *m_nuova;
    QListWidget *m_suggerimenti;
    QPushButton *m_cambia = nullptr;
    QPushButton *m_cambiaTutte = nullptr;
};
