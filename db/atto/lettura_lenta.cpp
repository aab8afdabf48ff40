#include "db/atto/lettura_lenta.h"

#include <QThread>

#include <limits>

namespace modTarvola
{

namespace
{

// Un pezzo dura meno di un millesimo di secondo: tanto aspetta al più chi salva.
constexpr int righePerPezzo = 250;
constexpr unsigned long pausaMillisecondi = 20;

} // namespace

LetturaLenta::LetturaLenta(ado::Connection &connessione, const Prosegue &prosegue)
    : m_connessione(connessione), m_prosegue(prosegue)
{
    for (const char *istruzione : {"PRAGMA query_only = 1", "PRAGMA busy_timeout = 0"})
        connessione.leggi({QString::fromLatin1(istruzione), {}, {}},
                          [](const ado::Riga &) { return true; });
}

void LetturaLenta::aspetta(const ado::Errore &errore)
{
    if (errore.causa() != ado::Causa::Occupato)
        throw errore;
    QThread::msleep(pausaMillisecondi);
}

void LetturaLenta::legge(const ado::Comando &comando, const PerRiga &perRiga)
{
    bool cominciata = false;
    riprova([&] {
        // Chi ha già ricevuto righe le conterebbe due volte.
        if (cominciata)
            throw ado::Errore(ado::Causa::Altro, QStringLiteral("la lettura si è interrotta"));
        m_connessione.leggi(comando, [&](const ado::Riga &riga) {
            cominciata = true;
            perRiga(riga);
            return true;
        });
        return true;
    });
}

void LetturaLenta::aPezzi(const QString &istruzione, const PerRiga &perRiga)
{
    qint64 dopo = std::numeric_limits<qint64>::min();
    for (int lette = righePerPezzo; lette == righePerPezzo && m_prosegue();) {
        lette = 0;
        legge({istruzione, {dopo, righePerPezzo}, {}}, [&](const ado::Riga &riga) {
            dopo = riga.intero(0);
            ++lette;
            perRiga(riga);
        });
    }
}

} // namespace modTarvola
