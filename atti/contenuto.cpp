#include "atti/pagina.h"

#include <QLineEdit>

#include <algorithm>

// Ciò che sta nelle caselle: dall'atto alla pagina, e dalla pagina all'atto.

using namespace modTarvola;
using scheda::Come;

namespace
{

const QString campoData = QStringLiteral("Data");
const QString campoOra = QStringLiteral("Ora");
const QString campoTesto = QStringLiteral("Campolungo");
const QString campoRuolo = QStringLiteral("Ruolo");

// L'ora sta nel giorno del suo evento, e lo segue quando il giorno si corregge.
void portaOra(const RigaPagina *riga, const Campo &giorni, scheda::SchedaAtto &atto)
{
    const scheda::Indirizzo dove{giorni.dove.posto, 0, giorni.dove.evento, campoOra};
    const QString ora = atto.valore(dove).toString();
    const QString giorno = giorni.valore().toString().left(10);
    const bool toccati =
        std::any_of(riga->campi().begin(), riga->campi().end(), [](const Campo *uno) {
            return (uno->dove.campo == campoData || uno->dove.campo == campoOra) &&
                   (uno->scritto() || uno->proposto());
        });
    if (toccati && ora.size() > 11 && !giorno.isEmpty())
        atto.assegna(dove, giorno + ora.mid(10));
}

} // namespace

void Pagina::mostra(const scheda::SchedaAtto &atto)
{
    m_riempie = true;
    for (const scheda::Posto &suo : m_scheda.posti) {
        if (eElenco(suo.nome))
            adattaElenco(suo, atto.quante(suo.nome));
    }
    for (RigaPagina *riga : m_righe)
        riempie(riga, atto);
    for (TestoPagina *testo : m_testi)
        testo->mostra(atto.valore({testo->posto(), 0, 0, campoTesto}).toString());
    m_riempie = false;
    intesta();
}

void Pagina::aggiorna(const scheda::SchedaAtto &atto)
{
    const Campo *qui = campoCorrente();
    const scheda::Indirizzo dove = qui == nullptr ? scheda::Indirizzo{} : qui->dove;
    const auto *riga = qobject_cast<QLineEdit *>(focusWidget());
    const int cursore = riga == nullptr ? 0 : riga->cursorPosition();
    // Le righe di un elenco possono sparire: la casella si ritrova per ciò che mostra, e di `qui`
    // da ora si sa soltanto che c'era.
    mostra(atto);
    Campo *stesso = qui == nullptr ? nullptr : campo(dove);
    if (qui != nullptr && (stesso == nullptr || !stesso->fuoco()->isVisibleTo(this)))
        return comincia();
    if (stesso == nullptr)
        return;
    stesso->fuoco()->setFocus();
    if (auto *sua = qobject_cast<QLineEdit *>(stesso->fuoco()))
        sua->setCursorPosition(cursore);
}

void Pagina::vuota(const QString &nome, int quale)
{
    for (RigaPagina *riga : m_righe) {
        for (Campo *campo : riga->campi()) {
            if (campo->dove.posto == nome && campo->dove.quale == quale)
                campo->mostra(campo->dove.campo == campoRuolo ? QVariant(posto(nome).ruolo)
                                                              : QVariant());
        }
    }
    emit cambiata(nullptr);
}

void Pagina::riempie(RigaPagina *riga, const scheda::SchedaAtto &atto)
{
    const QString &nome = riga->riga().posto;
    const int quale = riga->campi().empty() ? 0 : riga->campi().front()->dove.quale;
    riga->chiave = eElenco(nome) ? atto.persona(nome, quale) : 0;
    for (const scheda::Casella &casella : riga->riga().caselle) {
        const QVariant valore = atto.valore({nome, quale, riga->riga().evento, casella.campo});
        if (riga->nata(casella.campo) == nullptr && valore.toString().isEmpty())
            continue;
        Campo *campo = riga->campo(casella.campo);
        const bool ruoloNuovo =
            casella.campo == campoRuolo && !valore.isValid() && !m_ruoli.empty();
        campo->mostra(ruoloNuovo ? QVariant(posto(nome).ruolo) : valore);
    }
    riga->rivede();
}

void Pagina::raccoglie(scheda::SchedaAtto &atto) const
{
    for (const RigaPagina *riga : m_righe)
        raccoglie(riga, atto);
    for (const TestoPagina *testo : m_testi) {
        if (testo->scritto())
            atto.assegna({testo->posto(), 0, 0, campoTesto}, testo->valore());
    }
}

void Pagina::raccoglie(const RigaPagina *riga, scheda::SchedaAtto &atto) const
{
    const QString &nome = riga->riga().posto;
    const bool elenco = eElenco(nome);
    // Di una persona che può mancare un cognome proposto da solo non dice che ci sia.
    const bool puoMancare = posto(nome).come == Come::Genitore || posto(nome).come == Come::Coniuge;
    const bool proposta =
        std::any_of(riga->campi().begin(), riga->campi().end(), [](const Campo *uno) {
            return uno->proposto() && uno->dove.campo == QStringLiteral("Nome");
        });
    if (puoMancare && riga->vuota() && !proposta && atto.persona(nome) == 0)
        return;
    int chiave = riga->chiave;
    const Campo *giorni = nullptr;
    for (const Campo *campo : riga->campi()) {
        if (campo->dove.campo == campoData)
            giorni = campo;
        if (!campo->scritto() && !campo->proposto())
            continue;
        if (!elenco) {
            atto.assegna(campo->dove, campo->valore());
            continue;
        }
        // Una riga nuova rimasta senza nulla di scritto non è di nessuno.
        if (chiave == 0 && riga->vuota())
            return;
        if (chiave == 0)
            chiave = atto.aggiunge(riga->riga().posto);
        if (campo->dove.campo != campoRuolo || campo->valore().isValid())
            atto.assegna(chiave, campo->dove.campo, campo->valore());
    }
    if (!elenco && giorni != nullptr)
        portaOra(riga, *giorni, atto);
}

bool Pagina::toccata() const
{
    const auto scritto = [](const auto *cosa) { return cosa->scritto(); };
    return std::any_of(m_testi.begin(), m_testi.end(), scritto) ||
           std::any_of(m_righe.begin(), m_righe.end(), [&](const RigaPagina *riga) {
               return std::any_of(riga->campi().begin(), riga->campi().end(), scritto);
           });
}

QString Pagina::rifiuto(Campo *&quale) const
{
    for (const RigaPagina *riga : m_righe) {
        for (Campo *campo : riga->campi()) {
            const QString motivo = campo->casella()->rifiuto();
            if (!motivo.isEmpty()) {
                quale = campo;
                return motivo;
            }
        }
    }
    return {};
}
