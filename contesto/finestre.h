#pragma once

#include <QDialog>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

// Le finestre degli editori: le proprietà che chi apre assegna, la pila, la disposizione.
namespace modTarvola
{

struct ProprietaFinestra {
    QString Percorso;
    QString ConOperatore;
    int TipoLock = 0;
    QString ArchivioLocale;
    QString RegistroLocale;
    QString VoceLocale;
    int VoceLocaleTipo = 0;
    QString IndividuoLocale;
    QString FamigliaLocale;
    int TipoFamigliaLocale = 0;
    QString EventoLocale;
    int EventoLocaleTipo = 0;
    QString OperatoreLocale;
    int TipoOperatore = 0;
    QString LuogoLocale;
    QString RecapitoLocale;
};

// L'etichetta del ruolo o del tipo, con il suo codice, che chi apre dà alla finestra.
struct Etichetta {
    QString Caption;
    int Tag = 0;
};

// Una finestra della pila. Chi la apre le dà le proprietà, poi la mostra con ApriFinestra.
class FinestraEditor : public QDialog
{
    Q_OBJECT

public:
    explicit FinestraEditor(const QString &nome, QWidget *sopra);

    ProprietaFinestra proprieta;
    Etichetta Label2;

    // Ciò che serve a riaprirla com'è, salvo il file e l'operatore, che sono di chi la riapre.
    QJsonObject come() const;
    void riprende(const QJsonObject &come);

    // Costruisce la finestra dalle proprietà; lancia ado::Errore se il record non si può leggere.
    virtual void Form_Load() = 0;

protected:
    bool event(QEvent *evento) override;
    // Il registro non si dispone con le altre.
    virtual bool siDispone() const { return true; }
};

// La pila delle finestre aperte, dalla prima all'ultima.
std::vector<FinestraEditor *> &FinestreAperte();

// Mette la finestra in cima alla pila, la carica e la mostra fino alla chiusura. La didascalia, se
// non vuota, sostituisce quella della finestra. `prima` gira fra il caricamento e la mostra. Rende
// falso, dopo un messaggio, se la finestra non si è potuta caricare.
bool ApriFinestra(FinestraEditor &finestra, const QString &didascalia,
                  const std::function<void()> &prima = {});
// Vero, dopo un messaggio, se l'individuo o la famiglia del codice ha già una finestra nella pila.
bool FinestraGiaAperta(const QString &nome, const QString &codice);
// Scala le finestre della pila, ciascuna sotto la didascalia di quella da cui è nata.
void DisponiFinestre();
// L'altezza di una didascalia in twip: 2 normale, 4 piccola, 0 ogni altro genere.
long AltezzaTitolo(int genere);

// Crea la finestra del nome dato ("fmVoce"); la fabbrica sta nel piano degli editori.
using FabbricaFinestre =
    std::function<std::unique_ptr<FinestraEditor>(const QString &nome, QWidget *sopra)>;
void impostaFabbrica(FabbricaFinestre fabbrica);
std::unique_ptr<FinestraEditor> NuovaFinestra(const QString &nome, QWidget *sopra);

} // namespace modTarvola
