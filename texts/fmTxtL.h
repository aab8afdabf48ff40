#pragma once

#include <QDialog>
#include <QJsonObject>

namespace bozze
{
class Sorgente;
struct Finestra;
} // namespace bozze

class Limite;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;
class TestoProposto;

// La finestra dei testi lunghi. Non tocca l'archivio: legge e scrive TestoCampoLungo e
// NomeCampoLungo, e segna in TestoModificato e NomeModificato che cosa è cambiato.
class fmTxtL : public QDialog
{
    Q_OBJECT

public:
    explicit fmTxtL(QWidget *sopra);

    // 1: si può solo guardare. Ogni altro valore: si può modificare.
    int TipoLock = 3;

    // Di quale testo si tratta, perché una bozza lo ritrovi, e com'è nel file; `come` vuoto: una
    // finestra senza bozza.
    struct Origine {
        QJsonObject come;
        QString testo;
        QString nome;
    };
    Origine origine;

    // Riempie le caselle e fa della didascalia l'inizio di quelle che diranno se c'è da salvare;
    // `proprietario` è il codice del record cui il testo appartiene, se c'è.
    void Form_Load(const QString &proprietario);

    // La casella del testo, che può proporre come continua.
    TestoProposto *testo() const { return Text1; }

    void done(int esito) override;

protected:
    void keyPressEvent(QKeyEvent *evento) override;

private:
    void abbozza();
    bozze::Finestra bozza() const;
    bool daSalvare() const;
    QWidget *fondo();
    void creaBottoni(QWidget *Frame1);
    void salva();
    void controlla();
    void segna();
    void diceSeVuoto();
    void cambiaDimensione(int punti);
    void ricordaCarattere();

    QLineEdit *Text2;
    Limite *m_limiteDelTitolo;
    TestoProposto *Text1;
    QLabel *Label1[2] = {};
    QPushButton *Command1 = nullptr;
    QPushButton *Command2 = nullptr;
    QPushButton *Command4 = nullptr;
    QScrollBar *HScroll1 = nullptr;
    QLabel *m_vuoto = nullptr;
    QString m_didascalia;
    // "&Salva" ha tenuto un testo, che sarà registrato chiudendo.
    bool m_tenuto = false;
    bozze::Sorgente *m_sorgente = nullptr;
};
