#include "editors/fmVoce.h"

#include "contesto/contesto.h"

using namespace modTarvola;

namespace
{

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmVoce"),
        QStringLiteral("Voce"),
        QStringLiteral("Voci"),
        &ProprietaFinestra::VoceLocale,
        {
            {0, QStringLiteral("Volume"), 0, 0},
            {1, QStringLiteral("PaginaIniziale"), 0, 1},
            {2, QStringLiteral("CodiceVoce"), 0, 2},
            {3, QStringLiteral("Data"), 1, 0},
        },
        {Legami::TestiEFile, Legami::IndividuiDellaVoce, Legami::FamiglieDellaVoce,
         Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto},
    };
}

} // namespace

fmVoce::fmVoce(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

int fmVoce::categoria() const
{
    switch (proprieta.VoceLocaleTipo) {
    case RegistroBattesimi:
        return CategoriaBattesimo;
    case RegistroMatrimoni:
        return CategoriaMatrimonio;
    case RegistroMorti:
        return CategoriaMorte;
    default:
        return NessunaCategoria;
    }
}

void fmVoce::completaNuovo()
{
    adoDettagli.Assegna(QStringLiteral("Registro"), proprieta.RegistroLocale);
}

void fmVoce::salvato()
{
    contesto().VoceCorrente = proprieta.VoceLocale;
}

bool fmVoce::nuovoProprio(const Elemento &genere)
{
    if (eIndividuo(genere.Tag))
        apreIndividuo(genere, {});
    else if (eFamiglia(genere.Tag))
        apreFamiglia(genere.Tag, {});
    else
        return false;
    return true;
}

bool fmVoce::apriProprio(const Elemento &collegamento)
{
    if (eIndividuo(collegamento.Tag))
        apreIndividuo(collegamento, collegamento.Key);
    else if (eFamiglia(collegamento.Tag))
        apreFamiglia(collegamento.Tag, collegamento.Key);
    else
        return false;
    return true;
}

void fmVoce::apreIndividuo(const Elemento &ruolo, const QString &individuo)
{
    apreFiglio(QStringLiteral("fmIndividuo"), ruolo.Text, [&](FinestraEditor &finestra) {
        finestra.proprieta.VoceLocale = proprieta.VoceLocale;
        finestra.proprieta.IndividuoLocale = individuo;
        finestra.Label2 = {ruolo.Text, ruolo.Tag};
    });
}

void fmVoce::apreFamiglia(int genere, const QString &famiglia)
{
    apreFiglio(QStringLiteral("fmFamiglia"), {}, [&](FinestraEditor &finestra) {
        finestra.proprieta.VoceLocale = proprieta.VoceLocale;
        finestra.proprieta.FamigliaLocale = famiglia;
        finestra.proprieta.TipoFamigliaLocale = genere;
    });
}
