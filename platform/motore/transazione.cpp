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
    // Chi risponde può tornare al ciclo degli eventi, e di lì rivolgersi a questa connessione: a
    // metà di un'istruzione lo si rifiuta.
    m_connessione.m_sospesa = true;
    const bool procedere = m_procede();
    m_connessione.m_sospesa = false;
    return procedere ? 0 : 1;
}

// Dentro un'altra è un punto cui si può tornare; i nomi uguali si annidano.
Transazione::Transazione(Connection &connessione)
    : m_connessione(connessione), m_interna(connessione.inTransazione())
{
    esegue(m_interna ? "SAVEPOINT passo" : "BEGIN IMMEDIATE");
}

void Transazione::esegue(const char *istruzione)
{
    m_connessione.Execute({QString::fromUtf8(istruzione), {}, {}});
}

Transazione::~Transazione()
{
    // Dopo certi guasti il motore ha già annullato da sé.
    if (!m_aperta || !m_connessione.inTransazione())
        return;
    try {
        esegue(m_interna ? "ROLLBACK TO passo" : "ROLLBACK");
        // Tornare al punto non lo toglie: resterebbe aperto sotto chi sta fuori.
        if (m_interna)
            esegue("RELEASE passo");
    } catch (const Errore &) {
        // L'annullamento non riesce solo su una base persa: alla riapertura il giornale lo compie.
        m_connessione.Close();
    }
}

void Transazione::conferma()
{
    esegue(m_interna ? "RELEASE passo" : "COMMIT");
    m_aperta = false;
}

} // namespace ado
