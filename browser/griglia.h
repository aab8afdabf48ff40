#pragma once

#include <QTableView>

class ModelloTabella;

// La griglia di un elenco: una riga corrente, che resta sul suo record quando l'elenco si ordina o
// si rilegge, e colonne larghe quanto le prime righe.
class Griglia : public QTableView
{
    Q_OBJECT

public:
    // `nome` è quello che un lettore di schermo dice, e quello con cui si ricordano le colonne.
    Griglia(const QString &nome, QWidget *sopra);

    // Mostra il modello, già aperto, e va alla prima riga.
    void mostra(ModelloTabella *modello);
    // -1 se non c'è.
    int rigaCorrente() const { return currentIndex().row(); }
    void vaAllaRiga(int riga);
    // Rilegge le chiavi. Resta corrente lo stesso record, o quello del codice dato se c'è; se non
    // c'è più, il suo posto. Lancia ado::Errore.
    void rilegge(const QString &codiceDaScegliere);
    // Rilegge le righe che si vedono; le chiavi restano.
    void rinfresca();
    // Ordina per una colonna, se si può; un guasto diventa un messaggio.
    void ordina(int colonna);

signals:
    // Il menu della riga, chiesto dalla tastiera.
    void menuChiesto();
    void rigaCambiata(int riga);

protected:
    void paintEvent(QPaintEvent *evento) override;
    // La riga corrente è sempre scelta, anche dopo Ctrl e un clic: i comandi agiscono su quella
    // che si vede.
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &indice,
                                                         const QEvent *evento) const override;

private:
    // Larghe quanto vogliono ora, o mai meno di come sono.
    enum class Larghezza { Giusta, Cresce };
    void adattaColonne(Larghezza come);
    int larghezza(int colonna) const;

    ModelloTabella *m_modello = nullptr;
};
