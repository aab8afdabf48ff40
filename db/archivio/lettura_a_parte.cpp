#include "db/archivio/lettura_a_parte.h"

#include "db/archivio/connessioni.h"

#include <QThread>

namespace modTarvola
{

LetturaAParte::LetturaAParte(const QString &percorso, Legge legge, Consegna consegna)
{
    const auto gira = [this, percorso, legge = std::move(legge), consegna = std::move(consegna)] {
        const QString guasto = compie(percorso, legge);
        if (m_ferma)
            return;
        // Se intanto è distrutta, ciò che le era destinato si perde con lei.
        QMetaObject::invokeMethod(
            this,
            [this, guasto, consegna] {
                m_finita = true;
                consegna(guasto);
            },
            Qt::QueuedConnection);
    };
    m_filo.reset(QThread::create(gira));
    m_filo->start(QThread::LowPriority);
}

LetturaAParte::~LetturaAParte()
{
    m_ferma = true;
    m_filo->wait();
}

QString LetturaAParte::compie(const QString &percorso, const Legge &legge) const
{
    const Prosegue prosegue = [this] { return !m_ferma; };
    try {
        ado::Connection sua;
        sua.Open(stringaDiConnessione(percorso));
        sua.Execute({QStringLiteral("PRAGMA query_only = 1"), {}, {}});
        const ado::Sorveglianza sorveglianza(sua, prosegue);
        legge(sua, prosegue);
    } catch (const ado::Errore &errore) {
        return errore.testo();
    } catch (const std::exception &errore) {
        return QString::fromUtf8(errore.what());
    }
    return {};
}

} // namespace modTarvola
