#pragma once

#include <QDialog>
#include <QString>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

// L'accesso: chi trascrive dice chi è, e OperatoreCorrente prende il suo codice. Vuoto alla nascita
// della finestra, resta vuoto se si rinuncia, anche con Esc o dalla cornice.
class fmLogin : public QDialog
{
    Q_OBJECT

public:
    // `nome` è di chi si aspetta: resta da scrivere la password.
    explicit fmLogin(QWidget *sopra, const QString &nome = {});

    void reject() override;

private:
    enum Modo { Entrare = 0, Modificare = 2 };

    void disponi(QLabel *Label1);
    QPushButton *bottone(const QString &nome, const QString &didascalia,
                         const std::function<void()> &comando);
    // Vero se nome e password sono di un operatore: è quello che entra, o quello da modificare.
    bool verifica(Modo modo);
    void apreOperatore(int tipoOperatore, const QString &operatore);

    QLineEdit *txtUserName;
    QLineEdit *txtPassword;
    QPushButton *cmdNuova;
    QPushButton *cmdModifica;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    QString m_trovato;
};
