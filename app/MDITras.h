#pragma once

#include "app/archivi_file.h"
#include "app/custodia.h"
#include "app/menu.h"
#include "app/riprese.h"
#include "app/schede.h"
#include "browser/fmTabella.h"
#include "db/lavoro/annunci.h"

#include <QMainWindow>
#include <QPointer>

class Area;
class QMdiSubWindow;

// La finestra principale: i visualizzatori e i menu di quello attivo.
class MDITras : public QMainWindow
{
    Q_OBJECT

public:
    MDITras();
    ~MDITras() override;

    // I comandi dei menu File e Aiuto.
    void SubFileItem_Click(VoceFile voce);
    void SubAiutoItem_Click(VoceAiuto voce);

    // Come "Apri" dopo la scelta del file; se manca lo dice.
    void apreArchivio(const QString &percorso);
    // Apre un visualizzatore; lancia ado::Errore se il suo elenco non si può leggere.
    fmTabella *apre(const ProprietaTabella &proprieta);
    // I visualizzatori aperti.
    QList<fmTabella *> visualizzatori() const;

protected:
    void closeEvent(QCloseEvent *evento) override;

private:
    void mostraMenu(const QList<QMenu *> &propri);
    void attivata(QMdiSubWindow *finestra);
    bool chiudeFinestre(const ado::Connection *connessione);
    void apreRecord(const fmScheda &pagina, const QString &codice);
    void nuovo();
    void mostraArchivi();
    void apreUltimo(const QString &percorso);
    bool siTrova(const QString &percorso);
    void continua();
    void ricordaPosto(const modTarvola::Annuncio &annuncio);
    void backUp();
    void riapreElenchi();
    void SubFinestreItem_Click(VoceFinestre voce);
    void affianca(Qt::Orientation verso);
    QStringList nomiDelleFinestre() const;
    void mostra();

    Area *m_area;
    Schede m_schede;
    MenuComuni m_menu;
    QPointer<QMdiSubWindow> m_attiva;
    // Gli elenchi che l'ultimo comando su un file aperto ha chiuso con lui.
    struct ElencoChiuso {
        StatoTabella stato;
        QRect posto;
        Qt::WindowStates comera;
    };
    std::vector<ElencoChiuso> m_chiusi;
    // Vero finché il comando in corso non ne ha ancora chiusi: quelli di prima si dimenticano solo
    // quando ce ne sono di nuovi.
    bool m_chiusiDiPrima = false;
    ArchiviFile m_archivi;
    Custodia m_custodia;
    Riprese m_riprese;
};
