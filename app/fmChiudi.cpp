#include "app/fmChiudi.h"

#include "contesto/contesto.h"

#include <QHBoxLayout>
#include <QPushButton>

using namespace modTarvola;

fmChiudi::fmChiudi(QWidget *sopra) : QDialog(sopra), m_scelta(ChiusuraAnnulla)
{
    setObjectName(QStringLiteral("fmChiudi"));
    setWindowTitle(QStringLiteral("Chiudi Tarvola"));
    const QString didascalie[] = {QStringLiteral("&Chiudi"), QStringLiteral("&Back-up"),
                                  QStringLiteral("&Annulla chiudi")};
    auto *riga = new QHBoxLayout(this);
    for (int scelta = 0; scelta < 3; ++scelta) {
        auto *Command1 = new QPushButton(didascalie[scelta], this);
        Command1->setObjectName(QStringLiteral("Command1_%1").arg(scelta));
        connect(Command1, &QPushButton::clicked, this, [this, scelta] {
            m_scelta = scelta;
            accept();
        });
        riga->addWidget(Command1);
    }
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);
}

int fmChiudi::chiede()
{
    exec();
    contesto().SceltaChiusura = m_scelta;
    return m_scelta;
}
