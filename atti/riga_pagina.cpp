#include "atti/riga_pagina.h"

#include "db/schema/generi.h"
#include "editors/casella_genere.h"

#include <QEvent>
#include <QLabel>

#include <algorithm>

using namespace modTarvola;

namespace
{

const QString campoRuolo = QStringLiteral("Ruolo");
constexpr int lettereDiUnaSigla = 8; // una casella per una lettera sola non è più larga

// L'etichetta dell'evento sotto quella di chi lo vive.
const char *nomeEvento(int evento)
{
    switch (evento) {
    case Nascita:
        return "Nascita";
    case Battesimo:
        return "Battesimo";
    case Morte:
        return "Morte";
    case Sepoltura:
        return "Sepoltura";
    case 18:
        return "Matrimonio";
    case 19:
        return "Pubblicazioni";
    default:
        return "Evento";
    }
}

} // namespace

QString pagina::tabellaDi(const scheda::Posto &posto, int evento)
{
    if (evento != 0)
        return QStringLiteral("Eventi");
    return posto.come == scheda::Come::Voce ? QStringLiteral("Voci") : QStringLiteral("Individui");
}

QString pagina::etichettaDi(const scheda::Posto &posto, int evento)
{
    return evento == 0 ? posto.etichetta : RigaPagina::tr(nomeEvento(evento));
}

QString pagina::etichettaDi(const scheda::Posto &posto, int evento, const QString &campo)
{
    if (campo == campoRuolo)
        return RigaPagina::tr("Ruolo");
    return posto.come == scheda::Come::Testo ? posto.etichetta
                                             : campoDi(tabellaDi(posto, evento), campo).etichetta;
}

RigaPagina::RigaPagina(const scheda::Riga &riga, const QString &tabella, bool rientrata,
                       QWidget *sopra)
    : QWidget(sopra),
      m_riga(riga),
      m_tabella(tabella),
      m_rientrata(rientrata),
      m_capo(new QLabel(this))
{
    m_capo->setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    for (const scheda::Casella &casella : riga.caselle) {
        if (casella.uso != scheda::Uso::Nascosta)
            nasce(casella);
    }
    rivede();
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
    auto *campo =
        new Campo({m_riga.posto, m_quale, m_riga.evento, casella.campo}, m_tabella, m_chi, this);
    campo->uso = casella.uso;
    campo->fuoco()->hide();
    campo->didascalia()->hide();
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
    emit natoCampo(campo);
    return campo;
}

void RigaPagina::offreRuoli(const std::vector<std::pair<int, QString>> &ruoli)
{
    auto *casella = qobject_cast<CasellaGenere *>(campo(campoRuolo)->casella());
    for (const auto &[codice, etichetta] : ruoli)
        casella->offre({}, etichetta,
                       codice); // l'etichetta intera, senza l'icona che la taglierebbe
}

Campo *RigaPagina::nata(const QString &nome) const
{
    const auto sua = std::find_if(m_campi.begin(), m_campi.end(),
                                  [&](const Campo *uno) { return uno->dove.campo == nome; });
    return sua == m_campi.end() ? nullptr : *sua;
}

Campo *RigaPagina::campo(const QString &nome)
{
    if (Campo *gia = nata(nome))
        return gia;
    for (const scheda::Casella &casella : m_riga.caselle) {
        if (casella.campo == nome)
            return nasce(casella);
    }
    return nullptr;
}

void RigaPagina::rivede()
{
    for (Campo *campo : m_campi) {
        const bool siVede =
            campo->uso != scheda::Uso::Nascosta || !campo->vuoto() || campo->scoperta;
        campo->fuoco()->setVisible(siVede);
    }
    // Il ruolo si sceglie dove c'è una casella da scrivere.
    if (Campo *ruolo = nata(campoRuolo)) {
        const bool sola = std::all_of(m_campi.begin(), m_campi.end(), [&](const Campo *uno) {
            return uno == ruolo || uno->fuoco()->isHidden();
        });
        ruolo->fuoco()->setVisible(!sola);
    }
    dispone();
}

// Trova il posto delle caselle che si vedono.
void RigaPagina::dispone()
{
    std::vector<Collocato> ora;
    QStringList nomi;
    m_capo->show();
    for (Campo *campo : m_campi) {
        if (campo->fuoco()->isHidden())
            continue;
        if (campo->dove.campo == campoRuolo) {
            m_capo->hide();
            continue;
        }
        ora.push_back({campo, {}});
        nomi.append(campo->dove.campo);
    }
    const auto posti = colonne::dispone(nomi, m_riga.evento != 0);
    for (size_t i = 0; i < posti.size(); ++i)
        ora[i].posto = posti[i];
    const bool stesse = std::equal(ora.begin(), ora.end(), m_collocati.begin(), m_collocati.end(),
                                   [](const Collocato &una, const Collocato &altra) {
                                       return una.campo == altra.campo && una.posto == altra.posto;
                                   });
    if (stesse)
        return;
    for (const Campo *campo : m_campi)
        campo->didascalia()->hide();
    m_collocati = std::move(ora);
    m_intestate.assign(posti.empty() ? 0 : static_cast<size_t>(posti.back().linea) + 1, true);
    setVisible(!m_collocati.empty()); // una riga di cui non si vede nulla non tiene posto
    updateGeometry();
    colloca();
    emit ridisposta();
}

void RigaPagina::intesta(QMap<int, QString> &dette)
{
    std::vector<bool> intestate(m_intestate.size(), false);
    for (size_t linea = 0; linea < intestate.size(); ++linea) {
        for (const auto &[campo, posto] : m_collocati) {
            if (posto.linea == static_cast<int>(linea) &&
                dette.value(posto.prima) != campo->didascalia()->text())
                intestate[linea] = true;
        }
        for (const auto &[campo, posto] : m_collocati) {
            if (posto.linea != static_cast<int>(linea))
                continue;
            for (int colonna = posto.prima; colonna <= posto.ultima; ++colonna)
                dette.remove(colonna);
            dette.insert(posto.prima, campo->didascalia()->text());
        }
    }
    if (intestate == m_intestate)
        return;
    m_intestate = intestate;
    updateGeometry();
    colloca();
}

int RigaPagina::altaUnaCasella() const
{
    int alta = m_capo->sizeHint().height();
    for (const Campo *campo : m_campi)
        alta = std::max(alta, campo->fuoco()->sizeHint().height());
    return alta;
}

int RigaPagina::altaUnaTestata() const
{
    return m_campi.empty() ? 0 : m_campi.front()->didascalia()->sizeHint().height();
}

QSize RigaPagina::sizeHint() const
{
    const auto testate = static_cast<int>(std::count(m_intestate.begin(), m_intestate.end(), true));
    const int linee = std::max(1, static_cast<int>(m_intestate.size()));
    return {colonne::larghezzaMinima(this), linee * altaUnaCasella() + testate * altaUnaTestata()};
}

// Mette ogni cosa al suo posto: per linea le didascalie, se ci sono, e le caselle.
void RigaPagina::colloca()
{
    const int lettera = fontMetrics().averageCharWidth();
    const int alta = altaUnaCasella();
    const int testata = altaUnaTestata();
    std::vector<int> cime;
    int cima = 0;
    for (const bool intestata : m_intestate) {
        cime.push_back(cima + (intestata ? testata : 0));
        cima = cime.back() + alta;
    }
    const int prima = cime.empty() ? 0 : cime.front();
    const int rientro = m_rientrata ? lettera * 2 : 0;
    m_capo->setGeometry(rientro, prima, colonne::etichetta(this) - rientro, alta);
    if (const Campo *ruolo = nata(campoRuolo))
        ruolo->fuoco()->setGeometry(0, prima, colonne::etichetta(this) - lettera * 5 / 4, alta);
    for (const auto &[campo, posto] : m_collocati) {
        const auto linea = static_cast<size_t>(posto.linea);
        const auto [da, largo] = colonne::tratto(posto, width(), this);
        const bool sigla = campo->casella()->descrizione().formato == Formato::Scelta;
        campo->fuoco()->setGeometry(
            da, cime[linea], sigla ? std::min(largo, lettera * lettereDiUnaSigla) : largo, alta);
        campo->didascalia()->setGeometry(da, cime[linea] - testata, largo, testata);
        campo->didascalia()->setVisible(m_intestate[linea]);
    }
}

void RigaPagina::resizeEvent(QResizeEvent *evento)
{
    QWidget::resizeEvent(evento);
    colloca();
}

void RigaPagina::changeEvent(QEvent *evento)
{
    QWidget::changeEvent(evento);
    if (evento->type() == QEvent::FontChange || evento->type() == QEvent::StyleChange) {
        updateGeometry();
        colloca();
    }
}

bool RigaPagina::vuota() const
{
    return std::all_of(m_campi.begin(), m_campi.end(), [](const Campo *campo) {
        return campo->dove.campo == campoRuolo || campo->vuoto() || campo->proposto();
    });
}
