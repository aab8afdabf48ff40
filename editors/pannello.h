#pragma once

#include "db/lavoro/collegamenti.h"
#include "platform/motore/recordset.h"

#include <QWidget>

#include <functional>
#include <optional>

class QComboBox;
class QPushButton;
class QTreeWidget;

// Un elemento dell'elenco dei collegamenti: il codice collegato, l'etichetta, il genere.
struct Elemento {
    QString Key;
    QString Text;
    int Tag = 0;
};

// Il pannello dei collegamenti: i generi che si possono inserire e quelli già inseriti.
class PannelloCollegamenti : public QWidget
{
    Q_OBJECT

public:
    explicit PannelloCollegamenti(QWidget *sopra);

    // Le parole che distinguono il record di un codice da un altro con la stessa etichetta; si
    // chiedono soltanto per il collegamento che si guarda. Può mancare.
    std::function<QString(const QString &codice)> descrive;

    // Offre un genere.
    void offre(const Elemento &genere);
    // Il genere scelto; niente se non se n'è scelto alcuno.
    std::optional<Elemento> genereScelto() const;

    // Sceglie il genere; falso se non si offre.
    bool sceglieGenere(int genere);

    void svuota();
    void aggiunge(const Elemento &collegamento);
    const std::vector<Elemento> &collegamenti() const { return m_collegamenti; }
    // Quello che si vede scelto; niente se non se ne vede alcuno.
    std::optional<Elemento> collegamentoScelto() const;
    // Sceglie il collegamento col codice dato, o il primo se non c'è più: allora è falso.
    bool sceglie(const QString &codice);
    // Sceglie il collegamento che prima non c'era; se non ve n'è alcuno resta la scelta che c'è.
    void sceglieNuovo(const std::vector<Elemento> &prima);
    // "Apri" ed "Elimina" quando c'è qualche collegamento; in sola lettura mai "Nuovo", con i suoi
    // generi, né "Elimina".
    void abilita(bool solaLettura);

signals:
    void nuovo();
    void elimina();
    void apri();
    // L'elenco va riletto.
    void aggiorna();

private:
    QWidget *inserimento();
    QLayout *accantoAlCombo(QWidget *bottone);
    QWidget *inseriti();

    QComboBox *ImageCombo1 = nullptr;
    QTreeWidget *ListView1 = nullptr;
    QPushButton *Command3[3] = {};
    std::vector<Elemento> m_generi;
    std::vector<Elemento> m_collegamenti;
};
