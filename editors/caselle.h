#pragma once

#include "platform/motore/recordset.h"

#include <QLineEdit>

#include <memory>
#include <optional>
#include <vector>

class QGridLayout;

// Le caselle di testo di un editor, legate ai campi del record.

enum class Formato { Testo, Data, DataEstesa, Ora, Pagina, Password };

// Una casella: il suo indice in Text1, il campo (vuoto: nessuno), la didascalia, il formato, il
// posto nella griglia (-1: una riga per ciascuna, nell'ordine) e la cornice (vuota: "Dettagli").
struct DescrizioneCasella {
    int indice;
    QString campo;
    QString etichetta;
    Formato formato = Formato::Testo;
    int riga = -1;
    int colonna = 0;
    QString cornice = {};
};

// Fa sì che la casella mostri un asterisco al posto di ogni carattere.
void nascondeCaratteri(QLineEdit *casella);

class Casella : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

signals:
    // Il fuoco è passato altrove nella stessa finestra, non a un altro programma né a un menu.
    void lasciata();

protected:
    void focusOutEvent(QFocusEvent *evento) override;
};

class Caselle
{
public:
    Caselle(std::vector<DescrizioneCasella> descrizioni, QWidget *cornice);

    // Mette nella griglia le caselle della cornice chiamata così, con le loro etichette.
    void disponi(QGridLayout *griglia, QWidget *cornice, const QString &chiamata = {});
    // Mostra i valori del record corrente.
    void mostra(const ado::Recordset &record);
    // Scrive nel record le caselle cambiate; quelle non toccate lasciano il valore com'è, i
    // campi fatti di soli spazi diventano Null. Le caselle devono aver passato `rifiuto`.
    void scrivi(ado::Recordset &record) const;
    // Il messaggio con cui il testo della casella è rifiutato; vuoto se va bene. Una casella con
    // formato che contiene solo spazi è svuotata.
    QString rifiuto(int indice) const;

    Casella *operator[](int indice) const;
    const std::vector<DescrizioneCasella> &descrizioni() const { return m_descrizioni; }
    // Vero se tutte le caselle date contengono solo spazi.
    bool vuote(const std::vector<int> &indici) const;
    void setReadOnly(bool sola);

private:
    std::vector<DescrizioneCasella> m_descrizioni;
    std::vector<Casella *> Text1;
    std::vector<QString> m_mostrati;
};
