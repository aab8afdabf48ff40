#include "editors/editori.h"

#include "contesto/finestre.h"
#include "editors/fmArchivio.h"
#include "editors/fmEvento.h"
#include "editors/fmFamiglia.h"
#include "editors/fmIndividuo.h"
#include "editors/fmLuogo.h"
#include "editors/fmOperatore.h"
#include "editors/fmRecapito.h"
#include "editors/fmRegistro.h"
#include "editors/fmVoce.h"

using modTarvola::FinestraEditor;

namespace
{

template <class Finestra>
std::unique_ptr<FinestraEditor> crea(QWidget *sopra)
{
    return std::make_unique<Finestra>(sopra);
}

struct Voce {
    const char *nome;
    std::unique_ptr<FinestraEditor> (*crea)(QWidget *);
};

constexpr Voce editori[] = {
    {"fmArchivio", crea<fmArchivio>},   {"fmRegistro", crea<fmRegistro>},
    {"fmVoce", crea<fmVoce>},           {"fmIndividuo", crea<fmIndividuo>},
    {"fmFamiglia", crea<fmFamiglia>},   {"fmEvento", crea<fmEvento>},
    {"fmLuogo", crea<fmLuogo>},         {"fmRecapito", crea<fmRecapito>},
    {"fmOperatore", crea<fmOperatore>},
};

} // namespace

void registraEditori()
{
    modTarvola::impostaFabbrica([](const QString &nome, QWidget *sopra) {
        for (const Voce &editore : editori) {
            if (nome == QLatin1String(editore.nome))
                return editore.crea(sopra);
        }
        return std::unique_ptr<FinestraEditor>();
    });
}
