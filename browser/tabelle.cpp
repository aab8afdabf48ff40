#include "browser/tabelle.h"

#include "browser/fmTabella.h"
#include "browser/fmVisualizza.h"
#include "browser/genere_elenco.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "platform/finestre/messaggi.h"

#include <QAction>
#include <QMenu>

using namespace modTarvola;

namespace
{

// Che cosa la finestra dell'ambito mostra e propone, secondo l'elenco da cui si parte e quello
// che si vuole: sopra il livello di partenza si sceglie, sotto non c'è un "corrente".
void preparaAmbito(fmVisualizza &ambito, const GenereElenco &da, const GenereElenco &nuovo)
{
    const bool daArchivi = da.livello == Livello::Archivio;
    const bool sopraLeVoci = da.livello < Livello::Voce;
    if (daArchivi || nuovo.livello <= Livello::Registro)
        ambito.nasconde(fmVisualizza::Registro);
    if (sopraLeVoci || nuovo.livello <= Livello::Voce)
        ambito.nasconde(fmVisualizza::Voce);
    if (!nuovo.conDettagli)
        ambito.spegne(fmVisualizza::Dettagli,
                      QStringLiteral("I dettagli si mostrano soltanto degli individui"));
    if (daArchivi && nuovo.livello >= Livello::Voce)
        ambito.preimposta(fmVisualizza::tuttiIRegistri);
    if (sopraLeVoci && nuovo.livello == Livello::Dipendente)
        ambito.preimposta(fmVisualizza::tutteLeVoci);
}

void apreTabella(const fmTabella &da, const GenereElenco &genere)
{
    ApriArchivio(da.proprieta.Percorso);
    ProprietaTabella nuova = da.proprieta;
    nuova.TipoTabella = genere.tabella;
    if (genere.livello != Livello::Archivio) {
        fmVisualizza ambito(da.window());
        ambito.setWindowTitle(genere.tabella + QStringLiteral(" in ") + da.genere().tabella);
        preparaAmbito(ambito, da.genere(), genere);
        ambito.exec();
    }
    nuova.VoceLocaleTabella = contesto().VoceCorrente;
    nuova.Ordinamento = contesto().AmbitoScelto;
    contesto().AmbitoScelto = 0;
    da.apre(nuova);
}

} // namespace

QMenu *menuTabelle(fmTabella *elenco)
{
    auto *menu = new QMenu(QStringLiteral("&Tabelle"), elenco);
    menu->setObjectName(QStringLiteral("TItem"));
    for (const GenereElenco &genere : generiElenco()) {
        QObject::connect(menu->addAction(genere.voceDiMenu), &QAction::triggered, elenco,
                         [elenco, &genere] {
                             messaggi::protetto(elenco, [&] { apreTabella(*elenco, genere); });
                         });
    }
    return menu;
}
