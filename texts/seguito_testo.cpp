#include "texts/seguito_testo.h"

#include "db/atto/abbreviazioni.h"
#include "db/schema/schema.h"
#include "texts/fmTxtL.h"
#include "texts/formule_registro.h"
#include "texts/testo_proposto.h"

namespace modTarvola
{

void continuaDalRegistro(fmTxtL &finestra, ado::Connection &connessione,
                         const QString &proprietario)
{
    if (tabellaDiCodice(proprietario) != QStringLiteral("Voci"))
        return;
    const auto atto = leggeAtto(connessione, proprietario);
    const scheda::Scheda *sua = atto ? scheda::diTipo(atto->tipo) : nullptr;
    if (sua == nullptr)
        return;
    const formule::Caselle caselle = formule::caselleDi(scheda::SchedaAtto(*sua, *atto));
    auto *registro = new FormuleRegistro(connessione.Properties(u"Data Source"), atto->registro,
                                         atto->codice, &finestra);
    finestra.testo()->continua([registro, caselle](const QString &prima) {
        const formule::Formulario *formulario = registro->formulario();
        return formulario == nullptr ? formule::Seguito{} : formulario->seguito(caselle, prima);
    });
    finestra.testo()->abbrevia([tutte = abbreviazioni(connessione)](const QString &parola) {
        return distesa(tutte, parola);
    });
    QObject::connect(registro, &FormuleRegistro::letto, finestra.testo(),
                     &TestoProposto::fonteLetta);
}

} // namespace modTarvola
