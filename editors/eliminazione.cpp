#include "editors/eliminazione.h"

#include "contesto/contesto.h"
#include "contesto/finestre.h"
#include "db/archivio/connessioni.h"
#include "db/lavoro/lavoro.h"
#include "db/lavoro/operatori.h"
#include "platform/finestre/avanzamento.h"
#include "platform/finestre/messaggi.h"

namespace modTarvola
{

namespace
{

bool avverte(QWidget *sopra, const QString &inPiu)
{
    return messaggi::avverte(
        sopra, QStringLiteral("Attenzione! Eliminando questa voce saranno, anche, \n"
                              "eliminate TUTTE le voci ad essa collegate. Procedere?\n"
                              "Si consiglia di annullare l'operazione e di effettuare, prima,\n"
                              "un back-up dell'archivio\n") +
                   contesto().PercorsoCorrente + inPiu);
}

} // namespace

namespace
{

void elimina(QWidget *sopra, const QString &codice, const QString &operatore, bool senzaStoria)
{
    avanzamento::compie(sopra, QStringLiteral("Eliminazione di ") + codice,
                        [&](const avanzamento::Passo &passo) {
                            Lavoro lavoro(connessione(), {}, operatore);
                            if (senzaStoria)
                                lavoro.senzaStoria();
                            lavoro.elimina(codice, passo);
                            lavoro.conferma();
                        });
}

// Nulla è ancora eliminato: chi vuole fa prima una copia. Vero se si procede comunque.
bool anchePerSempre(QWidget *sopra)
{
    constexpr int primaUnBackUp = 0;
    const int risposta = messaggi::sceglie(
        sopra,
        QObject::tr("Questa eliminazione è troppo grande perché la si possa poi annullare.\n"
                    "Non è ancora stato eliminato nulla: si consiglia di fare prima un back-up."),
        {QObject::tr("Prima un &back-up"), QObject::tr("&Elimina per sempre")});
    if (risposta != primaUnBackUp)
        return risposta > primaUnBackUp;
    if (FinestreAperte().empty() && contesto().FaiBackUp)
        contesto().FaiBackUp();
    else
        messaggi::avvisa(sopra, QObject::tr("Chiudere prima questa finestra; il back-up è nel "
                                            "menu File"));
    return false;
}

} // namespace

void EliminaVoce(QWidget *sopra, const QString &codice, const QString &operatore)
{
    if (!avverte(sopra, {}))
        return;
    try {
        try {
            elimina(sopra, codice, operatore, false);
        } catch (const storia::TroppoGrande &) {
            if (anchePerSempre(sopra))
                elimina(sopra, codice, operatore, true);
        }
    } catch (const ado::Errore &errore) {
        // Chi annulla a metà sa che non è stato eliminato nulla.
        if (errore.causa() != ado::Causa::Interrotto)
            throw;
    }
}

void EliminaLegame(QWidget *sopra, const QString &operatore, const QString &record,
                   const QString &entrato)
{
    QString inPiu = QStringLiteral("\n\nQui la voce è il collegamento con un operatore: sarà tolto "
                                   "soltanto quello. L'operatore e i suoi dati restano");
    // Chi non è più legato a nulla se ne va con la prossima pulizia, se non è chi sta lavorando.
    inPiu += operatore.compare(entrato, Qt::CaseInsensitive) == 0 ||
                     CollegamentiDi(connessione(), operatore) > 1
                 ? QStringLiteral(".")
                 : QStringLiteral("; non essendo collegato ad altro, potranno essere tolti alla "
                                  "prossima eliminazione di un record.");
    if (!avverte(sopra, inPiu))
        return;
    Lavoro lavoro(connessione(), QStringLiteral("Eliminazione del collegamento con ") + operatore);
    lavoro.scollega(operatore, record);
    lavoro.conferma();
}

} // namespace modTarvola
