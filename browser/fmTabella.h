#pragma once

#include "db/elenco.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace modTarvola
{
class FinestraEditor;
}
class ModelloTabella;
class QAction;
class QMenu;
class QTableView;
class QToolBar;

// Le proprietà che chi apre un visualizzatore gli dà prima di mostrarlo.
struct ProprietaTabella {
    QString TipoTabella;
    QString Percorso;
    QString ArchivioLocale;
    QString RegistroLocale;
    QString VoceLocale;
    int Ordinamento = 0;
    QString VoceLocaleTabella;
    QString ConOperatore;
};

// Ciò che il visualizzatore chiede alla finestra principale.
struct ServiziTabella {
    std::function<void(const ProprietaTabella &)> apre;
};

enum ComandoTabella { Seleziona = 1, ApriRiga, NuovaRiga, Aggiorna, EliminaRiga };

// Il visualizzatore: l'elenco dei record di una tabella, entro un ambito, con i suoi comandi.
class fmTabella : public QWidget
{
    Q_OBJECT

public:
    fmTabella(ProprietaTabella dalle, ServiziTabella servizi, QWidget *sopra);

    ProprietaTabella proprieta;

    // Apre l'elenco sulla connessione corrente; lancia ado::Errore se non si può leggere.
    void Form_Load();
    // Ricalcola didascalia, comandi e contesto dalla riga corrente.
    void Form_Activate();
    // I menu suoi, che nella barra stanno fra quelli comuni.
    QList<QMenu *> menu() const { return m_menu; }
    // Vero se l'elenco viene dalla connessione data.
    bool usa(const ado::Connection *connessione) const { return m_connessione == connessione; }

    bool eventFilter(QObject *oggetto, QEvent *evento) override;

protected:
    void contextMenuEvent(QContextMenuEvent *evento) override;

private:
    void creaBarra();
    void creaGriglia();
    void adattaColonne();
    void creaMenu();
    QMenu *menuComandi();
    QMenu *menuTabelle();
    void mostraMenuRiga(std::optional<QPoint> posto = {});
    QMenu *menuOrdine(QMenu *sopra);
    void DataGrid1_HeadClick(int colonna);
    void DataGrid1_RowColChange(int riga);
    void TsubItem_Click(int voce);
    void esegue(ComandoTabella comando);

    bool rigaPronta() const;
    void seleziona();
    void apri();
    void apriVoce(const QString &codice);
    void apriDipendente(const QString &codice);
    void apriEvento(const QString &codice);
    // Mostra un testo lungo, o apre un file allegato, secondo il genere.
    void ApriBinario(const QString &codice, int tipo);
    void nuovo();
    QString nuovoRegistro();
    QString nuovaVoce();
    void aggiorna();

    bool vuota() const;
    int rigaCorrente() const;
    QString codiceCorrente() const;
    int tipoCorrente() const;
    void vaiAllaRiga(int riga);
    void rilegge(const QString &codiceDaScegliere);
    void prendeContesto();
    QString didascalia() const;
    void abilita(ComandoTabella comando, bool si);
    void apreEditor(const QString &nome, const QString &didascalia,
                    const std::function<void(modTarvola::FinestraEditor &)> &imposta);

    ServiziTabella m_servizi;
    ado::Connection *m_connessione = nullptr;
    ModelloTabella *adoTabella = nullptr;
    QTableView *DataGrid1 = nullptr;
    QToolBar *Toolbar1 = nullptr;
    QAction *m_bottoni[6] = {};
    QAction *XsubItem[6] = {};
    QMenu *TItem = nullptr;
    QList<QMenu *> m_menu;
};
