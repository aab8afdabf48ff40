#pragma once

#include "contesto/bozza.h"
#include "contesto/cassetto.h"

#include <QObject>

#include <functional>

// Le bozze di ciò che si scrive: ogni finestra in cui si scrive ne è una sorgente, il custode ne
// raccoglie lo stato poco dopo che è cambiato e lo scrive da un filo suo, così che nessun tasto
// aspetti il disco.
namespace bozze
{

// Quanto dopo il primo tasto si raccoglie, in millesimi di secondo.
constexpr int dopoIlTasto = 700;

// Una finestra in cui si scrive. Vive quanto lei.
class Sorgente : public QObject
{
    Q_OBJECT

public:
    // Come sono disposte: una pagina sta da sé, le altre sono aperte ciascuna da quella prima.
    enum class Posto { Sola, InPila };
    // `stato` rende com'è la finestra: senza caselle, se non vi è scritto nulla.
    Sorgente(QObject *finestra, QString archivio, Posto posto, std::function<Finestra()> stato);
    ~Sorgente() override;

    // Si è scritto qualcosa.
    void cambiata();
    // Ciò che era scritto sta nell'archivio: la bozza non serve più.
    void registrata();
    // La finestra si chiude senza registrare: ciò che vi era scritto va fra le ultime bozze.
    void abbandonata();

    const QString &archivio() const { return m_archivio; }
    Posto posto() const { return m_posto; }
    Finestra stato() const { return m_stato(); }

private:
    QString m_archivio;
    Posto m_posto;
    std::function<Finestra()> m_stato;
};

// Legge il cassetto di un archivio appena aperto: le bozze di un programma finito male diventano le
// prime fra le ultime. Rende quante sono.
qsizetype ritrova(const QString &archivio);
// Le bozze chiuse di un archivio, le più recenti prima.
QList<Bozza> ultime(const QString &archivio);
// Ne toglie una, ripresa o scartata.
void toglie(const QString &archivio, const Bozza &bozza);
// Raccoglie e scrive subito, e aspetta che sia scritto.
void scriveSubito();

// Riprendere una bozza: le finestre da riaprire, e ciascuna, quando si apre, prende la sua. Chi
// prende una finestra riapre da sé, con la stessa via, quella che segue. Quando l'ultima ha preso
// la sua si chiama `riuscita`.
void riprende(const QList<Finestra> &finestre, std::function<void()> riuscita);
// La prima che aspetta, se è della finestra chiamata così, sullo stesso record; se è di un'altra
// non si riprende più nulla.
std::optional<Finestra> prende(const QString &nome, const QString &record);
// Il record della prima che aspetta; vuoto se è uno nuovo, o se non aspetta nessuna.
QString recordAtteso();
// Di nessuna si aspetta più la finestra.
void smette();

} // namespace bozze
