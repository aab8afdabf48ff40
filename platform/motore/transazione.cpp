#include "platform/motore/ado.h"

#include <sqlite3.h>
#include <utility>

namespace ado
{

Sorveglianza::Sorveglianza(Connection &connessione, std::function<bool()> procede)
    : m_connessione(connessione), m_procede(std::move(procede))
{
    constexpr int istruzioniFraDueDomande = 10000;
    sqlite3_progress_handler(
        connessione.base(), istruzioniFraDueDomande,
        [](void *questa) { return static_cast<Sorveglianza *>(questa)->chiede(); }, this);
}

Sorveglianza::~Sorveglianza()
{
    sqlite3_progress_handler(m_connessione.base(), 0, nullptr, nullptr);
}

int Sorveglianza::chiede()
{
    m_connessione.m_sospesa = true;
    const bool procedere = m_procede();
    m_connessione.m_sospesa = false;
    return procedere ? 0 : 1;
}

Transazione::Transazione(Connection &connessione) : m_connessione(connessione)
{
    connessione.Execute({QStringLiteral("BEGIN IMMEDIATE"), {}, {}});
}

Transazione::~Transazione()
{
    // Dopo certi guasti il motore ha già annullato da sé.
    if (!m_aperta || !m_connessione.inTransazione())
        return;
    try {
        m_connessione.Execute({QStringLiteral("ROLLBACK"), {}, {}});
    } catch (const Errore &) {
        // L'annullamento non riesce solo su una base persa: alla riapertura il giornale lo compie.
        m_connessione.Close();
    }
}

void Transazione::conferma()
{
    m_connessione.Execute({QStringLiteral("COMMIT"), {}, {}});
    m_aperta = false;
}

} // namespace ado
