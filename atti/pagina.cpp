#include "atti/pagina.h"

#include "atti/caselle_pagina.h"
#include "atti/completamento.h"
#include "db/schema/generi.h"

#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

using namespace modTarvola;
using scheda::Come;
using scheda::Uso;

namespace
{

const QString campoData = QStringLiteral("Data");
const QString campoTesto = QStringLiteral("Campolungo");
constexpr int righeDelTesto = 3;
constexpr int righeDellaNota = 2;

} // namespace

Pagina::Pagina(const scheda::Scheda &scheda, std::vector<std::pair<int, QString>> ruoli,
               QWidget *sopra)
    : QScrollArea(sopra), m_scheda(scheda), m_ruoli(std::move(ruoli))
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    auto *foglio = new QWidget(this);
    m_colonna = new QVBoxLayout(foglio);
    const int lettera = fontMetrics().averageCharWidth();
    m_colonna->setContentsMargins(lettera * 2, lettera, lettera * 2, lettera);
    m_colonna->setSpacing(lettera / 2);
    for (const scheda::Riga &riga : m_scheda.righe) {
        const scheda::Posto &suo = posto(riga.posto);
        if (suo.come != Come::Testo) {
            nuovaRiga(riga, static_cast<qsizetype>(m_righe.size()));
            continue;
        }
        const bool nota = suo.ruolo == Nota;
        auto *testo =
            new TestoPagina(suo.nome, suo.etichetta, nota ? righeDellaNota : righeDelTesto, foglio);
        testo->uso = testo->inizio = riga.caselle.first().uso;
        testo->testo()->installEventFilter(this);
        connect(testo, &TestoPagina::cambiato, this, [this] { emit cambiata(nullptr); });
        if (m_testi.empty())
            m_colonna->addSpacing(lettera / 2);
        m_colonna->addWidget(testo, nota ? 0 : 1);
        m_testi.push_back(testo);
    }
    setWidget(foglio);
}

const scheda::Posto &Pagina::posto(const QString &nome) const
{
    return *m_scheda.posto(nome);
}

bool Pagina::eElenco(const QString &nome) const
{
    return posto(nome).come == Come::Elenco || posto(nome).come == Come::Altre;
}

RigaPagina *Pagina::nuovaRiga(const scheda::Riga &riga, qsizetype dove)
{
    const scheda::Posto &suo = posto(riga.posto);
    auto *nuova = new RigaPagina(riga, pagina::tabellaDi(suo, riga.evento), riga.evento != 0,
                                 m_colonna->parentWidget());
    connect(nuova, &RigaPagina::cambiata, this, &Pagina::dopoCambio);
    connect(nuova, &RigaPagina::natoCampo, this,
            [this, nuova](Campo *campo) { accoglie(nuova, campo); });
    if (suo.come == Come::Altre)
        nuova->offreRuoli(m_ruoli);
    nuova->chiama(pagina::etichettaDi(suo, riga.evento), 0);
    for (Campo *campo : nuova->campi())
        accoglie(nuova, campo);
    usaIn(nuova);
    connect(nuova, &RigaPagina::ridisposta, this, &Pagina::intesta);
    m_righe.insert(m_righe.begin() + dove, nuova);
    m_colonna->insertWidget(static_cast<int>(dove), nuova);
    nuova->show();
    intesta();
    return nuova;
}

// Ogni riga ha le didascalie che quelle di sopra non dicono già.
void Pagina::intesta()
{
    if (m_riempie)
        return;
    QMap<int, QString> dette;
    for (RigaPagina *riga : m_righe)
        riga->intesta(dette);
}

// Una casella appena nata: da dove conta i giorni, come si usa, chi ne guarda i tasti.
void Pagina::accoglie(RigaPagina *riga, Campo *campo)
{
    if (auto *giorno = qobject_cast<CasellaGiorno *>(campo->casella()))
        giorno->conta([this, riga, campo] { return giornoPer(riga, campo); });
    if (auto *ora = qobject_cast<CasellaOraBreve *>(campo->casella()))
        ora->segue([riga] { return riga->campo(campoData)->valore().toString(); });
    if (m_solaLettura)
        campo->casella()->setSolaLettura(true);
    campo->fuoco()->removeEventFilter(this);
    campo->fuoco()->installEventFilter(this);
}

// Il giorno dell'atto si conta da quello dell'atto prima, gli altri dal giorno dell'atto.
QString Pagina::giornoPer(const RigaPagina *riga, const Campo *campo) const
{
    if (posto(riga->riga().posto).come == Come::Voce)
        return m_riferimento;
    for (RigaPagina *altra : m_righe) {
        if (posto(altra->riga().posto).come != Come::Voce)
            continue;
        const Campo *suo = altra->campo(campoData);
        if (suo != campo && suo->valore().isValid())
            return suo->valore().toString();
    }
    return m_riferimento;
}

// Un elenco ha una riga per persona e, in fondo, una vuota per chi manca ancora.
void Pagina::adattaElenco(const scheda::Posto &suo, int quante)
{
    std::vector<RigaPagina *> sue;
    for (RigaPagina *riga : m_righe) {
        if (riga->riga().posto == suo.nome)
            sue.push_back(riga);
    }
    const auto ultima = std::find(m_righe.begin(), m_righe.end(), sue.back()) - m_righe.begin();
    const scheda::Riga modello = sue.front()->riga();
    for (auto mancano = quante + 1 - static_cast<int>(sue.size()); mancano > 0; --mancano)
        nuovaRiga(modello, ultima + 1);
    for (auto avanzano = static_cast<int>(sue.size()) - quante - 1; avanzano > 0; --avanzano) {
        m_righe.erase(std::find(m_righe.begin(), m_righe.end(), sue.back()));
        delete sue.back();
        sue.pop_back();
    }
    rinomina(suo.nome);
}

void Pagina::rinomina(const QString &nome)
{
    int quale = 0;
    for (RigaPagina *riga : m_righe) {
        if (riga->riga().posto == nome) {
            riga->chiama(QStringLiteral("%1 %2").arg(posto(nome).etichetta).arg(quale + 1), quale);
            ++quale;
        }
    }
}

void Pagina::segna(Campo *campo, const QString &motivo)
{
    campo->segna(motivo);
    if (motivo.isEmpty())
        return;
    scopre(campo);
    scorreA(campo->fuoco());
    campo->casella()->riprende();
}

void Pagina::scopre(Campo *campo)
{
    campo->scoperta = true;
    for (RigaPagina *riga : m_righe) {
        const auto &suoi = riga->campi();
        if (std::find(suoi.begin(), suoi.end(), campo) != suoi.end())
            riga->rivede();
    }
}

// Scorre fino alla casella, con la didascalia che le sta sopra.
void Pagina::scorreA(QWidget *parte)
{
    ensureWidgetVisible(parte, fontMetrics().averageCharWidth() * 2, fontMetrics().height() * 2);
}

std::vector<Campo *> Pagina::campi() const
{
    std::vector<Campo *> visibili;
    for (const RigaPagina *riga : m_righe) {
        for (Campo *campo : riga->campi()) {
            if (campo->fuoco()->isVisibleTo(this))
                visibili.push_back(campo);
        }
    }
    return visibili;
}

Campo *Pagina::campo(const scheda::Indirizzo &dove)
{
    for (RigaPagina *riga : m_righe) {
        const bool suo = riga->riga().posto == dove.posto && riga->riga().evento == dove.evento &&
                         (riga->campi().empty() || riga->campi().front()->dove.quale == dove.quale);
        if (suo)
            return riga->campo(dove.campo);
    }
    return nullptr;
}

Campo *Pagina::campoNato(const scheda::Indirizzo &dove)
{
    if (!eElenco(dove.posto))
        return campo(dove);
    const auto sue = std::count_if(m_righe.begin(), m_righe.end(), [&](const RigaPagina *riga) {
        return riga->riga().posto == dove.posto;
    });
    // Una in più, vuota, per chi manca ancora.
    if (dove.quale + 1 >= sue)
        adattaElenco(posto(dove.posto), dove.quale + 1);
    return campo(dove);
}

Campo *Pagina::campoCorrente() const
{
    for (const RigaPagina *riga : m_righe) {
        for (Campo *campo : riga->campi()) {
            if (campo->fuoco()->hasFocus())
                return campo;
        }
    }
    return nullptr;
}

TestoPagina *Pagina::testo(const QString &nome) const
{
    const auto suo = std::find_if(m_testi.begin(), m_testi.end(),
                                  [&](const TestoPagina *uno) { return uno->posto() == nome; });
    return suo == m_testi.end() ? nullptr : *suo;
}

RigaPagina *Pagina::aggiungeRiga(const QString &nome)
{
    int quante = 0;
    RigaPagina *ultima = nullptr;
    for (RigaPagina *riga : m_righe) {
        if (riga->riga().posto == nome) {
            ultima = riga;
            ++quante;
        }
    }
    if (ultima == nullptr || (ultima->chiave == 0 && ultima->vuota()))
        return ultima;
    const auto dove = std::find(m_righe.begin(), m_righe.end(), ultima) - m_righe.begin() + 1;
    RigaPagina *nuova = nuovaRiga(ultima->riga(), dove);
    rinomina(nome);
    if (posto(nome).come == Come::Altre)
        nuova->campo(QStringLiteral("Ruolo"))->mostra(posto(nome).ruolo);
    nuova->rivede();
    return nuova;
}

void Pagina::usa(const UsoDi &scelta)
{
    m_uso = scelta;
    for (RigaPagina *riga : m_righe)
        usaIn(riga);
    for (TestoPagina *testo : m_testi)
        usaIn(testo);
}

void Pagina::usaIn(RigaPagina *riga) const
{
    if (!m_uso)
        return;
    for (const scheda::Casella &casella : riga->riga().caselle) {
        const Uso uso =
            m_uso({riga->riga().posto, 0, riga->riga().evento, casella.campo}, casella.uso);
        if (riga->nata(casella.campo) != nullptr || uso != Uso::Nascosta)
            riga->campo(casella.campo)->uso = uso;
    }
    riga->rivede();
}

void Pagina::usaIn(TestoPagina *testo) const
{
    if (m_uso)
        testo->uso = m_uso({testo->posto(), 0, 0, campoTesto}, testo->inizio);
    testo->rivede();
}

void Pagina::setSolaLettura(bool sola)
{
    m_solaLettura = sola;
    for (RigaPagina *riga : m_righe) {
        for (Campo *campo : riga->campi())
            campo->casella()->setSolaLettura(sola);
    }
    for (TestoPagina *testo : m_testi)
        testo->testo()->setReadOnly(sola);
}

Completamento *Pagina::completa(std::function<QStringList(const Campo &)> cerca)
{
    m_completamento = new Completamento(std::move(cerca), this);
    return m_completamento;
}

void Pagina::rivedeProposte()
{
    Campo *qui = campoCorrente();
    if (m_completamento != nullptr && qui != nullptr)
        m_completamento->segue(qui);
}

void Pagina::dopoCambio(Campo *campo)
{
    if (m_completamento != nullptr && campo->fuoco()->hasFocus())
        m_completamento->segue(campo);
    if (!m_riempie && eElenco(campo->dove.posto))
        aggiungeRiga(campo->dove.posto);
    emit cambiata(campo);
}
