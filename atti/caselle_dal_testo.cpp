#include "atti/caselle_dal_testo.h"

#include "atti/formule_scheda.h"
#include "atti/pagina.h"

#include <QTextEdit>

#include <algorithm>

using namespace modTarvola;

namespace
{

constexpr float velo = 0.35F; // quanto del colore della scelta segna il posto nel testo

const QString postoDellAtto = QStringLiteral("voce");
const QString campoRuolo = QStringLiteral("Ruolo");

} // namespace

CaselleDalTesto::CaselleDalTesto(Pagina *pagina, FormuleScheda *formule)
    : QObject(pagina), m_pagina(pagina), m_formule(formule)
{
    connect(pagina, &Pagina::entrata, this, [this](const Campo *campo) {
        mostraDove(campo);
        // Chi ha scritto il testo per primo se le trova proposte appena lo lascia.
        if (campo != nullptr && soloTesto())
            propone();
    });
}

std::vector<Campo *> CaselleDalTesto::proposte() const
{
    std::vector<Campo *> tutte;
    for (const RigaPagina *riga : m_pagina->righe()) {
        std::copy_if(riga->campi().begin(), riga->campi().end(), std::back_inserter(tutte),
                     [](const Campo *campo) { return campo->dalTesto(); });
    }
    return tutte;
}

// Vero se nella pagina è scritto il testo e di nessuno ancora una casella, e quel testo non è stato
// guardato già.
bool CaselleDalTesto::soloTesto() const
{
    const TestoPagina *testo = m_formule->testo();
    if (testo == nullptr || !testo->scritto() || testo->valore() == m_letto)
        return false;
    return std::none_of(
        m_pagina->righe().begin(), m_pagina->righe().end(), [](const RigaPagina *riga) {
            return riga->riga().posto != postoDellAtto &&
                   std::any_of(riga->campi().begin(), riga->campi().end(), [](const Campo *campo) {
                       return campo->dove.campo != campoRuolo && !campo->vuoto() &&
                              !campo->proposto();
                   });
        });
}

int CaselleDalTesto::propone()
{
    TestoPagina *testo = m_formule->testo();
    if (testo == nullptr)
        return 0;
    m_letto = testo->valore();
    int quante = 0;
    const auto lette = m_formule->leggeCaselle(m_letto);
    for (const auto &[dove, lettura] : lette.toStdMap()) {
        Campo *campo = m_pagina->campoNato(dove);
        if (campo == nullptr)
            continue;
        campo->propone(lettura.valore, true);
        if (!campo->dalTesto())
            continue;
        ++quante;
        QTextCursor posto(testo->testo()->document());
        posto.setPosition(static_cast<int>(lettura.inizio));
        posto.setPosition(static_cast<int>(lettura.inizio + lettura.lunghezza),
                          QTextCursor::KeepAnchor);
        m_posti.insert(dove, posto);
    }
    for (RigaPagina *riga : m_pagina->righe())
        riga->rivede();
    for (Campo *campo : proposte())
        emit letta(campo);
    m_formule->cambiate();
    mostraDove(m_pagina->campoCorrente());
    return quante;
}

int CaselleDalTesto::inAttesa() const
{
    return static_cast<int>(proposte().size());
}

void CaselleDalTesto::conferma()
{
    for (Campo *campo : proposte())
        campo->conferma();
}

void CaselleDalTesto::ritira()
{
    for (Campo *campo : proposte())
        campo->ritiraLettura();
}

void CaselleDalTesto::mostraDove(const Campo *campo)
{
    TestoPagina *testo = m_formule->testo();
    if (testo == nullptr)
        return;
    QList<QTextEdit::ExtraSelection> segni;
    if (campo != nullptr && campo->dalTesto() && m_posti.value(campo->dove).hasSelection()) {
        QTextEdit::ExtraSelection segno;
        segno.cursor = m_posti.value(campo->dove);
        QColor colore = testo->palette().color(QPalette::Highlight);
        colore.setAlphaF(velo);
        segno.format.setBackground(colore);
        segni.append(segno);
    }
    testo->testo()->setExtraSelections(segni);
}
