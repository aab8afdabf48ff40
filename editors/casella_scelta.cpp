#include "editors/casella_scelta.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>

#include <algorithm>

CasellaScelta::CasellaScelta(const DescrizioneCampo &descrizione, QWidget *sopra)
    : Casella(descrizione, sopra), m_riquadro(new QGroupBox(descrizione.etichetta, sopra))
{
    auto *fila = new QHBoxLayout(m_riquadro);
    for (const QChar lettera : u'?' + descrizione.lettere) {
        auto *bottone = new QRadioButton(lettera, m_riquadro);
        connect(bottone, &QRadioButton::clicked, this, &Casella::cambiata);
        fila->addWidget(bottone);
        m_bottoni.push_back(bottone);
    }
    m_bottoni.front()->setChecked(true);
}

void CasellaScelta::presenta()
{
    mette(mostrato().toString());
}

void CasellaScelta::mette(const QString &testo)
{
    const auto sua = std::find_if(m_bottoni.begin() + 1, m_bottoni.end(),
                                  [&](const auto *uno) { return uno->text() == testo; });
    (sua == m_bottoni.end() ? m_bottoni.front() : *sua)->setChecked(true);
}

QVariant CasellaScelta::valore() const
{
    for (const QRadioButton *bottone : m_bottoni) {
        if (bottone->isChecked() && bottone != m_bottoni.front())
            return bottone->text();
    }
    return {};
}

void CasellaScelta::setSolaLettura(bool sola)
{
    m_riquadro->setEnabled(!sola);
}

QWidget *CasellaScelta::parte() const
{
    return m_riquadro;
}

// Si entra dal bottone scelto, come fa il tabulatore.
void CasellaScelta::riprende()
{
    (*std::find_if(m_bottoni.begin(), m_bottoni.end(), [](const auto *uno) {
        return uno->isChecked();
    }))->setFocus();
}

QLabel *CasellaScelta::etichetta(QWidget * /*sopra*/)
{
    return nullptr;
}

void CasellaScelta::numera(int indice)
{
    m_riquadro->setObjectName(QStringLiteral("Frame3_%1").arg(indice));
    int posto = indice * static_cast<int>(m_bottoni.size());
    for (QRadioButton *bottone : m_bottoni)
        bottone->setObjectName(QStringLiteral("Option1_%1").arg(posto++));
}
