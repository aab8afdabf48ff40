#pragma once

#include "browser/comandi_elenco.h"

#include <optional>

class QAction;
class QMenu;
class QPoint;
class QToolBar;

// La barra e il menu di un elenco, fatti dai suoi comandi; in fondo, dopo un separatore, quelli che
// gli aggiungono altri piani. Barra e menu sono figli dell'elenco.
class BarreElenco
{
public:
    BarreElenco(fmTabella *elenco, const std::vector<ComandoElenco> &altri);

    QToolBar *barra() const { return Toolbar1; }
    QMenu *menu() const { return Xitem; }
    // Accende e spegne bottoni e voci secondo l'elenco com'è ora.
    void abilita();

private:
    struct Pulsanti {
        ComandoElenco comando;
        QAction *bottone = nullptr;
        QAction *voce = nullptr;
    };
    void aggiunge(const ComandoElenco &comando);
    QAction *azione(const ComandoElenco &comando);

    fmTabella *m_elenco;
    QToolBar *Toolbar1;
    QMenu *Xitem;
    std::vector<Pulsanti> m_pulsanti;
};
