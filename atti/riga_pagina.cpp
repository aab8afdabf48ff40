#include "atti/riga_pagina.h"

#include "editors/casella_genere.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>
#include <array>
#include <iterator>

using namespace modTarvola;

namespace
{

// In quale delle quattro colonne comincia un campo, e quanta parte ne vuole.
struct Collocazione {
    const char *campo;
    int colonna;
    int peso;
};

constexpr Collocazione collocazioni[] = {
    {"Volume", 0, 3},    {"PaginaIniziale", 0, 3}, {"CodiceVoce", 1, 3},
    {"Nome", 0, 6},      {"Cognome", 1, 6},        {"Luogo", 1, 6},
    {"Ora", 0, 2},       {"Sesso", 2, 2},          {"Legittimo", 2, 2},
    {"Età", 2, 3},       {"Causa", 2, 4},          {"Precisazione", 2, 6},
    {"Indirizzo", 2, 4}, {"Detto", 3, 4},          {"Soprannome", 3, 4},
    {"Vivente", 3, 2},   {"Valore", 3, 4},
};

const QString campoRuolo = QStringLiteral("Ruolo");

// La didascalia più larga con cui ogni colonna può cominciare.
constexpr const char *piuLarga[] = {"Volume ", "Cognome ", "Precisazione ", "Precisazione "};

constexpr int pesi[] = {30, 24, 22, 24};
constexpr size_t caselleInCella = 2;
constexpr int celleIntere = 6;
constexpr int larghezzaEtichetta = 20; // in lettere

Collocazione collocazione(const scheda::Riga &riga, const QString &campo)
{
    if (campo == QStringLiteral("Data"))
        return {"Data", riga.evento == 0 ? 2 : 0, 4};
    for (const Collocazione &una : collocazioni) {
        if (campo == QString::fromUtf8(una.campo))
            return una;
    }
    return {"", 3, 4};
}

} // namespace

RigaPagina::RigaPagina(const scheda::Riga &riga, const QString &tabella, bool rientrata,
                       QWidget *sopra)
    : QWidget(sopra),
      m_riga(riga),
      m_tabella(tabella),
      m_griglia(new QGridLayout(this)),
      m_capo(new QLabel(this))
{
    m_capo->setTextFormat(Qt::PlainText);
    const int lettera = fontMetrics().averageCharWidth();
    m_griglia->setContentsMargins({});
    m_griglia->setHorizontalSpacing(lettera * 2);
    m_griglia->setColumnMinimumWidth(0, lettera * larghezzaEtichetta);
    m_capo->setIndent(rientrata ? lettera * 2 : 0);
    m_griglia->addWidget(m_capo, 0, 0);
    for (int i = 0; i < static_cast<int>(std::size(m_celle)); ++i) {
        auto *cella = new QWidget(this);
        cella->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        m_celle[i] = new QHBoxLayout(cella);
        m_celle[i]->setContentsMargins({});
        m_griglia->addWidget(cella, 0, i + 1);
        m_griglia->setColumnStretch(i + 1, pesi[i]);
    }
    for (const scheda::Casella &casella : riga.caselle) {
        if (casella.uso != scheda::Uso::Nascosta)
            crea(casella);
    }
    dispone();
}

void RigaPagina::chiama(const QString &etichetta, int quale)
{
    m_chi = etichetta;
    m_quale = quale;
    m_capo->setText(etichetta);
    for (Campo *campo : m_campi) {
        campo->chiama(etichetta);
        campo->dove.quale = quale;
    }
}

Campo *RigaPagina::nasce(const scheda::Casella &casella)
{
    Campo *campo = crea(casella);
    dispone();
    emit nata(campo);
    return campo;
}

Campo *RigaPagina::crea(const scheda::Casella &casella)
{
    auto *campo =
        new Campo({m_riga.posto, m_quale, m_riga.evento, casella.campo}, m_tabella, m_chi, this);
    campo->uso = casella.uso;
    m_campi.push_back(campo);
    const auto posto = [this](const Campo *uno) {
        const auto suo =
            std::find_if(m_riga.caselle.begin(), m_riga.caselle.end(),
                         [uno](const auto &altra) { return altra.campo == uno->dove.campo; });
        return suo - m_riga.caselle.begin();
    };
    std::sort(m_campi.begin(), m_campi.end(),
              [&](const Campo *uno, const Campo *altro) { return posto(uno) < posto(altro); });
    connect(campo, &Campo::cambiato, this, [this, campo] { emit cambiata(campo); });
    return campo;
}

// Al più due caselle per cella; chi non vi sta passa alla seguente, l'ultima le prende tutte.
void RigaPagina::dispone()
{
    std::array<size_t, std::size(pesi)> quante{};
    for (QHBoxLayout *cella : m_celle) {
        while (QLayoutItem *pezzo = cella->takeAt(0))
            delete pezzo;
    }
    for (Campo *campo : m_campi) {
        if (campo->dove.campo == campoRuolo) {
            campo->didascalia()->hide();
            m_capo->hide();
            campo->fuoco()->setFixedWidth(fontMetrics().averageCharWidth() * larghezzaEtichetta);
            m_griglia->addWidget(campo->fuoco(), 0, 0);
            continue;
        }
        const Collocazione dove = collocazione(m_riga, campo->dove.campo);
        auto colonna = static_cast<size_t>(dove.colonna);
        // Chi vuole una cella per sé non divide quella di un altro.
        const size_t posti = dove.peso >= celleIntere ? 1 : caselleInCella;
        while (colonna + 1 < std::size(m_celle) && quante[colonna] >= posti)
            ++colonna;
        // La prima didascalia è larga uguale in tutte le righe, e le caselle cominciano allineate.
        if (quante[colonna]++ == 0)
            campo->didascalia()->setMinimumWidth(
                fontMetrics().horizontalAdvance(tr(piuLarga[colonna])));
        m_celle[colonna]->addWidget(campo->didascalia());
        m_celle[colonna]->addWidget(campo->fuoco(), dove.peso);
    }
}

void RigaPagina::offreRuoli(const std::vector<std::pair<int, QString>> &ruoli)
{
    auto *casella = qobject_cast<CasellaGenere *>(campo(campoRuolo)->casella());
    for (const auto &[codice, etichetta] : ruoli)
        casella->offre({}, etichetta,
                       codice); // l'etichetta intera, senza l'icona che la taglierebbe
}

Campo *RigaPagina::campo(const QString &nome)
{
    for (Campo *uno : m_campi) {
        if (uno->dove.campo == nome)
            return uno;
    }
    for (const scheda::Casella &casella : m_riga.caselle) {
        if (casella.campo == nome)
            return nasce(casella);
    }
    return nullptr;
}

void RigaPagina::rivede()
{
    for (Campo *campo : m_campi) {
        const bool siVede = campo->uso != scheda::Uso::Nascosta || !campo->vuoto();
        campo->fuoco()->setVisible(siVede);
        campo->didascalia()->setVisible(siVede && campo->dove.campo != campoRuolo);
    }
}

bool RigaPagina::vuota() const
{
    return std::all_of(m_campi.begin(), m_campi.end(), [](const Campo *campo) {
        return campo->dove.campo == campoRuolo || campo->vuoto() || campo->proposto();
    });
}
