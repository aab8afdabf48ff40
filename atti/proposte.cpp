#include "atti/proposte.h"

#include "db/schema/generi.h"
#include "platform/lingua/numerazione.h"

using namespace modTarvola;
using scheda::Come;

namespace proposte
{

namespace
{

const QString voce = QStringLiteral("voce");
const QString campoData = QStringLiteral("Data");
const QString campoCognome = QStringLiteral("Cognome");

// Gli eventi che cadono nel giorno dell'atto.
bool nelGiornoDellAtto(int evento)
{
    return evento == Battesimo || evento == 18;
}

} // namespace

QList<Proposta> diUnAttoNuovo(const scheda::Scheda & /*scheda*/, const Atto &precedente)
{
    QList<Proposta> nuove;
    for (const char *campo : {"Volume", "PaginaIniziale"}) {
        const QString nome = QString::fromUtf8(campo);
        nuove.append({{voce, 0, 0, nome}, precedente.campi.value(nome)});
    }
    const QString numero = QStringLiteral("CodiceVoce");
    nuove.append(
        {{voce, 0, 0, numero}, italiano::numeroSeguente(testoDi(precedente.campi, numero))});
    return nuove;
}

QList<scheda::Indirizzo> derivate(const scheda::Scheda &scheda, const scheda::Indirizzo &da)
{
    QList<scheda::Indirizzo> altre;
    if (da.posto == voce && da.campo == campoData) {
        for (const scheda::Riga &riga : scheda.righe) {
            if (nelGiornoDellAtto(riga.evento))
                altre.append({riga.posto, 0, riga.evento, campoData});
        }
    }
    if (da.campo != campoCognome)
        return altre;
    // Padre e figlio hanno lo stesso cognome, da qualunque parte si cominci.
    for (const scheda::Posto &posto : scheda.posti) {
        if (posto.come != Come::Genitore || posto.ruolo != Padre)
            continue;
        if (posto.nome == da.posto)
            altre.append({posto.di, 0, 0, campoCognome});
        else if (posto.di == da.posto)
            altre.append({posto.nome, 0, 0, campoCognome});
    }
    return altre;
}

} // namespace proposte
