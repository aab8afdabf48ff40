#pragma once

#include <QMenu>

// Il menu "Modifica": annullare e ripetere i passi dell'archivio su cui si lavora, e la loro
// storia.
class MenuModifica : public QMenu
{
    Q_OBJECT

public:
    explicit MenuModifica(QWidget *finestra);

private:
    void aggiorna();
    void svolge(bool annulla);

    QWidget *m_finestra;
    QAction *m_annulla;
    QAction *m_ripeti;
    QAction *m_storia;
};
