#pragma once

#include "contesto/bozza.h"

#include <QDialog>

#include <functional>

class QLayout;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

// Le bozze di un archivio: che cosa, dove, quando; quelle scelte si riprendono o si scartano.
class fmBozze : public QDialog
{
    Q_OBJECT

public:
    // Le prime `scelte` sono già scelte.
    fmBozze(QWidget *sopra, const QString &titolo, const QString &testo, QList<bozze::Bozza> bozze,
            qsizetype scelte);

    // Toglie una bozza per sempre.
    std::function<void(const bozze::Bozza &)> scarta;
    // Quelle scelte; da chiedere quando la finestra è stata accettata.
    QList<bozze::Bozza> scelte() const;

private:
    void creaElenco();
    QLayout *bottoni();
    void riempie(qsizetype scelte);
    void mostra();
    void scartaScelte();

    QList<bozze::Bozza> m_bozze;
    QTreeWidget *m_elenco;
    QPlainTextEdit *m_dettagli;
    QPushButton *m_riprende;
    QPushButton *m_scarta;
};
