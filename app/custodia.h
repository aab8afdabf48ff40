#pragma once

#include "app/archivi_file.h"
#include "platform/finestre/avanzamento.h"

#include <optional>

// I comandi del menu File che mettono al sicuro un archivio.
class Custodia
{
public:
    Custodia(QWidget *finestra, ArchiviFile &archivi);

    void compatta();
    void backUp();
    void recupera();

private:
    // Compie il lavoro mostrando a che punto è. Se non riesce lo dice con "… non riuscito" e il
    // motivo, e dove il file è di un altro programma lascia riprovare. Vero se è riuscito.
    bool compie(const QString &titolo, const QString &comando,
                const std::function<void(const avanzamento::Passo &)> &lavoro);
    // Dice se un file c'è, e allora chiede se sovrascriverlo; niente se non si vuole.
    std::optional<bool> consenteDiSovrascrivere(const QString &percorso, const QString &altrimenti);
    bool libera(const QString &percorso);

    QWidget *m_finestra;
    ArchiviFile &m_archivi;
};
