#pragma once

#include <QDialog>

class QGroupBox;
class QRadioButton;

// La finestra dell'ambito: che cosa mostrerà un nuovo visualizzatore. La risposta è in
// AmbitoScelto; chiusa senza "OK" è 0.
class fmVisualizza : public QDialog
{
    Q_OBJECT

public:
    enum Parte { Archivio, Registro, Voce, Dettagli };
    static constexpr int tuttiGliArchivi = 1;
    static constexpr int tuttiIRegistri = 3;
    static constexpr int tutteLeVoci = 5;
    static constexpr int conDettagli = 7;

    explicit fmVisualizza(QWidget *sopra);

    // Toglie una parte; le sue scelte contano lo stesso.
    void nasconde(Parte parte);
    // Lascia vedere una parte che qui non cambia nulla, e dice perché non si può scegliere.
    void spegne(Parte parte, const QString &perche);
    // Fa una scelta come se l'avesse fatta l'utente.
    void preimposta(int opzione);

private:
    void Option1_Click();
    void Command1_Click();

    QGroupBox *Frame1[4] = {};
    QRadioButton *Option1[8] = {};
};
