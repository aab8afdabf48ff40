#include "editors/casella_genere.h"

#include <QComboBox>

CasellaGenere::CasellaGenere(const DescrizioneCampo &descrizione, QWidget *sopra)
    : Casella(descrizione, sopra), m_elenco(new QComboBox(sopra))
{
    sorveglia();
    connect(m_elenco, &QComboBox::activated, this, &Casella::cambiata);
}

void CasellaGenere::offre(const QIcon &icona, const QString &etichetta, int codice)
{
    m_elenco->addItem(icona, etichetta, codice);
    // La prima voce si sceglierebbe da sé.
    if (m_elenco->count() == 1)
        m_elenco->setCurrentIndex(-1);
}

void CasellaGenere::presenta()
{
    m_elenco->setCurrentIndex(mostrato().isValid() ? m_elenco->findData(mostrato().toInt()) : -1);
}

void CasellaGenere::mette(const QString &testo)
{
    m_elenco->setCurrentIndex(testo.isEmpty() ? -1 : m_elenco->findData(testo.toInt()));
}

QVariant CasellaGenere::valore() const
{
    return vuota() || m_elenco->currentData() == mostrato() ? mostrato() : m_elenco->currentData();
}

bool CasellaGenere::vuota() const
{
    return m_elenco->currentIndex() < 0;
}

void CasellaGenere::setSolaLettura(bool sola)
{
    m_elenco->setEnabled(!sola);
}

QWidget *CasellaGenere::parte() const
{
    return m_elenco;
}

void CasellaGenere::numera(int indice)
{
    m_elenco->setObjectName(QStringLiteral("ImageCombo%1").arg(indice));
}
