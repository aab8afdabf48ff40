#include "atti/completamento.h"
#include "atti/pagina.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>

#include <algorithm>

// Come la tastiera percorre la pagina: il tabulatore va alla prossima casella da scrivere, le
// frecce a quella accanto qualunque sia.

using namespace modTarvola;
using scheda::Come;
using scheda::Uso;

namespace
{

// Le persone che un atto può non avere: lasciata vuota la prima casella, si passa oltre.
bool puoMancare(Come come)
{
    return come == Come::Genitore || come == Come::Coniuge || come == Come::Elenco ||
           come == Come::Altre;
}

} // namespace

void Pagina::attende(const scheda::SchedaAtto &prima)
{
    m_attese.clear();
    if (prima.atto().codice.isEmpty())
        return;
    for (const scheda::Posto &suo : m_scheda.posti) {
        if (eElenco(suo.nome))
            m_attese.insert(suo.nome, suo.come == Come::Altre ? 0 : prima.quante(suo.nome));
    }
}

// La riga vuota in fondo a un elenco che ha già tante persone quante nell'atto prima: vi si va con
// le frecce, o col comando che ne aggiunge una.
bool Pagina::diTroppo(const RigaPagina *riga) const
{
    const auto attese = m_attese.constFind(riga->riga().posto);
    return attese != m_attese.constEnd() && riga->chiave == 0 && riga->vuota() &&
           !riga->campi().empty() && riga->campi().front()->dove.quale >= *attese;
}

// Le caselle e i testi dove la tastiera si ferma, nell'ordine della pagina.
QList<QWidget *> Pagina::percorso(bool anchePassate) const
{
    const QWidget *qui = focusWidget();
    QList<QWidget *> soste;
    for (const RigaPagina *riga : m_righe) {
        const Come come = posto(riga->riga().posto).come;
        const bool assente =
            puoMancare(come) && riga->chiave == 0 && riga->riga().evento == 0 && riga->vuota();
        const bool oltre = diTroppo(riga);
        bool prima = true;
        for (const Campo *campo : riga->campi()) {
            if (!campo->fuoco()->isVisibleTo(this))
                continue;
            // Senza il codice un atto non si salva: finché manca non si salta.
            const bool serve = campo->dove.campo == QStringLiteral("CodiceVoce") && campo->vuoto();
            const bool saltata =
                !campo->dalTesto() && (oltre || (campo->uso == Uso::Saltata && !serve) ||
                                       campo->proposto() || (assente && !prima));
            if (campo->uso != Uso::Saltata)
                prima = false;
            if (anchePassate || !saltata || campo->fuoco() == qui)
                soste.append(campo->fuoco());
        }
    }
    for (const TestoPagina *testo : m_testi) {
        if (testo->isHidden())
            continue;
        if (anchePassate || testo->uso == Uso::Mostrata || testo->testo() == qui)
            soste.append(testo->testo());
    }
    return soste;
}

bool Pagina::avanza(bool avanti, bool anchePassate)
{
    const QList<QWidget *> soste = percorso(anchePassate);
    const auto qui = soste.indexOf(focusWidget());
    const auto altra = qui < 0 ? 0 : qui + (avanti ? 1 : -1);
    if (altra < 0 || altra >= soste.size())
        return false;
    QWidget *arrivo = soste.at(altra);
    arrivo->setFocus(avanti ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    scorreA(arrivo);
    return true;
}

void Pagina::comincia()
{
    const QList<QWidget *> soste = percorso(false);
    if (soste.isEmpty())
        return;
    soste.first()->setFocus(Qt::TabFocusReason);
    // Anche se la tastiera era già lì: ciò che si scrive sostituisce ciò che c'è.
    if (auto *riga = qobject_cast<QLineEdit *>(soste.first()))
        riga->selectAll();
    verticalScrollBar()->setValue(0);
    scorreA(soste.first());
}

bool Pagina::tasto(QWidget *parte, QKeyEvent *evento)
{
    bool avanti = false;
    if (m_completamento != nullptr && m_completamento->tasto(evento, avanti)) {
        if (avanti)
            avanza(true, false);
        return true;
    }
    const bool inTesto = qobject_cast<QPlainTextEdit *>(parte) != nullptr;
    const auto modi = evento->modifiers() & ~Qt::KeypadModifier;
    switch (evento->key()) {
    case Qt::Key_Tab:
        return modi == Qt::NoModifier && avanza(true, false);
    case Qt::Key_Backtab:
        return avanza(false, true);
    case Qt::Key_Down:
    case Qt::Key_Up:
        return !inTesto && modi == Qt::NoModifier && !parte->inherits("QComboBox") &&
               avanza(evento->key() == Qt::Key_Down, true);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (inTesto || modi != Qt::NoModifier)
            return false;
        if (Campo *letto = campoCorrente(); letto != nullptr && letto->dalTesto())
            letto->conferma();
        return avanza(true, false);
    default:
        return false;
    }
}

bool Pagina::eventFilter(QObject *oggetto, QEvent *evento)
{
    auto *parte = qobject_cast<QWidget *>(oggetto);
    if (evento->type() == QEvent::KeyPress && parte != nullptr &&
        tasto(parte, static_cast<QKeyEvent *>(evento)))
        return true;
    if (evento->type() == QEvent::FocusIn)
        emit entrata(campoCorrente());
    if (evento->type() == QEvent::FocusOut && m_completamento != nullptr)
        m_completamento->nasconde();
    return QScrollArea::eventFilter(oggetto, evento);
}
