#pragma once

#include "contesto/comandi.h"

#include <QDialog>
#include <QLineEdit>

class QLabel;
class QPushButton;
class QTreeWidget;

// Una casella in cui un tasto non scrive: si mostra. Tab, Invio, Esc e Alt con una lettera fanno
// ciò che fanno ovunque, così che dalla casella si esca.
class CasellaTasto : public QLineEdit
{
    Q_OBJECT

public:
    explicit CasellaTasto(QWidget *sopra);

    QKeySequence premuto() const { return m_premuto; }
    void mostra(const QKeySequence &tasto);

signals:
    void cambiato();

protected:
    bool event(QEvent *evento) override;
    void keyPressEvent(QKeyEvent *evento) override;

private:
    QKeySequence m_premuto;
};

// "Tasti": i comandi nostri con il loro tasto, che qui si cambia. Vale tutto insieme, con OK.
class fmTasti : public QDialog
{
    Q_OBJECT

public:
    explicit fmTasti(QWidget *sopra);

private:
    void elenca();
    void disponi();
    QPushButton *bottone(const QString &nome, const QString &didascalia,
                         void (fmTasti::*comando)());
    QString scelto() const;
    void mostraScelto();
    void racconta();
    void da(const QKeySequence &tasto);
    void assegna();
    void toglie();
    void rimette();
    void rimetteTutti();
    void conferma();

    comandi::Tasti m_tasti;
    QTreeWidget *m_elenco;
    CasellaTasto *m_casella;
    QLabel *m_nota;
    QPushButton *m_assegna = nullptr;
    QPushButton *m_toglie = nullptr;
    QPushButton *m_rimette = nullptr;
    QPushButton *m_rimetteTutti = nullptr;
};
