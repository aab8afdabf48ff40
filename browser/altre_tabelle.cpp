#include "browser/fmTabella.h"
#include "browser/fmVisualizza.h"
#include "contesto/contesto.h"
#include "db/connessioni.h"
#include "platform/finestre/messaggi.h"

using namespace modTarvola;

namespace
{

// Che cosa la finestra dell'ambito mostra e propone, secondo la tabella da cui si parte (`da`) e
// la voce scelta nel menu Tabelle.
void preparaAmbito(fmVisualizza &ambito, const QString &da, int voce)
{
    constexpr int voceRegistri = 2;
    constexpr int voceVoci = 3;
    constexpr int voceIndividui = 4;
    const bool daArchivi = da == QStringLiteral("Archivi");
    const bool daRegistri = da == QStringLiteral("Registri");
    if (daArchivi || voce == voceRegistri)
        ambito.nasconde(fmVisualizza::Registro);
    if (daArchivi || daRegistri || voce <= voceVoci)
        ambito.nasconde(fmVisualizza::Voce);
    if (daArchivi && voce >= voceVoci)
        ambito.preimposta(fmVisualizza::tuttiIRegistri);
    if ((daArchivi || daRegistri) && voce >= voceIndividui)
        ambito.preimposta(fmVisualizza::tutteLeVoci);
}

} // namespace

void fmTabella::TsubItem_Click(int voce)
{
    static const QStringList tabelle{QStringLiteral("Archivi"),  QStringLiteral("Registri"),
                                     QStringLiteral("Voci"),     QStringLiteral("Individui"),
                                     QStringLiteral("Famiglie"), QStringLiteral("Eventi"),
                                     QStringLiteral("Binari")};
    messaggi::protetto(this, [&] {
        ApriArchivio(proprieta.Percorso);
        ProprietaTabella nuova = proprieta;
        nuova.TipoTabella = tabelle.at(voce - 1);
        if (voce > 1) {
            fmVisualizza ambito(window());
            ambito.setWindowTitle(nuova.TipoTabella + QStringLiteral(" in ") +
                                  proprieta.TipoTabella);
            preparaAmbito(ambito, proprieta.TipoTabella, voce);
            ambito.exec();
        }
        nuova.VoceLocaleTabella = contesto().VoceCorrente;
        nuova.Ordinamento = contesto().AmbitoScelto;
        contesto().AmbitoScelto = 0;
        m_servizi.apre(nuova);
    });
}
