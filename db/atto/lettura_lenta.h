#pragma once

#include "platform/motore/ado.h"

// La lettura di molte righe da un filo a parte, mentre nella finestra si scrive.
namespace modTarvola
{

// Chiesta fra un pezzo e l'altro; se rende falso si smette.
using Prosegue = std::function<bool()>;

// Legge poco per volta: fra un pezzo e l'altro non tiene il file, e chi vuole scrivere non aspetta
// più di un pezzo. Se il file è di chi scrive riprova dopo un poco, finché `prosegue` lo consente.
class LetturaLenta
{
public:
    // La connessione è di chi legge soltanto: da qui in poi non scrive più e non aspetta blocchi.
    LetturaLenta(ado::Connection &connessione, const Prosegue &prosegue);

    using PerRiga = std::function<void(const ado::Riga &)>;
    // Compie una lettura breve, da capo finché il file è occupato; un esito vuoto se si smette.
    template <typename Funzione>
    auto riprova(const Funzione &lettura) -> decltype(lettura())
    {
        while (m_prosegue()) {
            try {
                return lettura();
            } catch (const ado::Errore &errore) {
                aspetta(errore);
            }
        }
        return {};
    }
    // Una lettura breve. Lancia ado::Errore, salvo che il file sia occupato.
    void legge(const ado::Comando &comando, const PerRiga &perRiga);
    // Tutte le righe di un'istruzione che finisce con "rowid > ? ORDER BY rowid LIMIT ?" e ha il
    // numero della riga nella prima colonna.
    void aPezzi(const QString &istruzione, const PerRiga &perRiga);

private:
    // Lancia l'errore, se non è di quelli che passano da sé.
    static void aspetta(const ado::Errore &errore);

    ado::Connection &m_connessione;
    Prosegue m_prosegue;
};

} // namespace modTarvola
