#include "browser/comandi_elenco.h"

#include "browser/fmTabella.h"
#include "db/schema/generi.h"
#include "editors/eliminazione.h"
#include "platform/motore/recordset.h"
#include "texts/allegati.h"
#include "texts/testi.h"

using namespace modTarvola;

namespace
{

// Scende di un livello: i registri di un archivio, le voci di un registro.
void seleziona(fmTabella &elenco)
{
    const GenereElenco &genere = elenco.genere();
    ProprietaTabella nuova;
    nuova.TipoTabella = genere.figlia;
    nuova.Percorso = elenco.proprieta.Percorso;
    nuova.ArchivioLocale = elenco.proprieta.ArchivioLocale;
    nuova.VoceLocaleTabella = elenco.codiceCorrente();
    nuova.ConOperatore = elenco.proprieta.ConOperatore;
    if (genere.livello == Livello::Registro)
        nuova.RegistroLocale = elenco.proprieta.RegistroLocale;
    elenco.prendeContesto();
    if (!genere.figlia.isEmpty())
        elenco.apre(nuova);
}

std::unique_ptr<FinestraEditor> editorePer(const fmTabella &elenco)
{
    auto editore = NuovaFinestra(elenco.genere().editore, elenco.window());
    editore->proprieta.Percorso = elenco.proprieta.Percorso;
    editore->proprieta.ConOperatore = elenco.proprieta.ConOperatore;
    editore->proprieta.TipoLock = ado::adLockOptimistic;
    return editore;
}

// Mostra un testo lungo, o apre un file allegato, secondo il tipo della riga.
void apreBinario(fmTabella &elenco)
{
    const QString codice = elenco.codiceCorrente();
    switch (elenco.campoCorrente(QStringLiteral("Tipo")).toInt()) {
    case Nota:
        ApriTesto(elenco.window(), codice, ado::adLockOptimistic, QStringLiteral("Nota"));
        break;
    case TestoRiportato:
        ApriTesto(elenco.window(), codice, ado::adLockOptimistic,
                  QStringLiteral("Testo riportato"));
        break;
    case FileAllegato:
        ApriAllegato(elenco.window(), codice);
        break;
    default:
        break;
    }
    elenco.aggiorna();
}

void apre(fmTabella &elenco)
{
    const GenereElenco &genere = elenco.genere();
    if (genere.editore.isEmpty())
        return apreBinario(elenco);
    if (genere.contenitore())
        contesto().*genere.corrente = elenco.codiceCorrente();
    const auto editore = editorePer(elenco);
    editore->proprieta.*genere.codice = elenco.codiceCorrente();
    if (const auto didascalia = genere.perAprire(elenco, *editore))
        ApriFinestra(*editore, *didascalia);
}

// Il record creato, se c'è, diventa la riga corrente.
void crea(fmTabella &elenco)
{
    const GenereElenco &genere = elenco.genere();
    if (genere.perCreare == nullptr)
        return;
    QString creato;
    const auto editore = editorePer(elenco);
    if (const auto didascalia = genere.perCreare(elenco, *editore)) {
        contesto().*genere.corrente = QString();
        ApriFinestra(*editore, *didascalia);
        creato = contesto().*genere.corrente;
    }
    elenco.aggiorna(creato);
}

void elimina(fmTabella &elenco)
{
    EliminaVoce(elenco.window(), elenco.codiceCorrente(), elenco.proprieta.ConOperatore);
    elenco.aggiorna();
}

bool conRighe(const fmTabella &elenco)
{
    return !elenco.vuota();
}

bool contiene(const fmTabella &elenco)
{
    return elenco.genere().contenitore();
}

bool siScende(const fmTabella &elenco)
{
    return conRighe(elenco) && !elenco.genere().figlia.isEmpty();
}

bool sempre(const fmTabella & /*elenco*/)
{
    return true;
}

} // namespace

const std::vector<ComandoElenco> &comandiElenco()
{
    static const std::vector<ComandoElenco> comandi{
        {QStringLiteral("Seleziona"), QStringLiteral(":/icone/seleziona.svg"),
         Qt::CTRL | Qt::Key_Return, true, seleziona, siScende,
         [](const fmTabella &elenco) {
             return siScende(elenco) || (contiene(elenco) && elenco.vuota());
         }},
        {QStringLiteral("Apri"), QStringLiteral(":/icone/apri.svg"), Qt::Key_Return, true, apre,
         conRighe, sempre},
        {QStringLiteral("Nuovo"), QStringLiteral(":/icone/nuovo.svg"), Qt::Key_Insert, false, crea,
         contiene, contiene},
        {QStringLiteral("Aggiorna"), QStringLiteral(":/icone/aggiorna.svg"), Qt::Key_F5, false,
         [](fmTabella &elenco) { elenco.aggiorna(); }, conRighe, sempre},
        {QStringLiteral("Elimina"), QStringLiteral(":/icone/elimina.svg"), Qt::Key_Delete, true,
         elimina, conRighe, sempre},
    };
    return comandi;
}

const ComandoElenco &comandoApre()
{
    return comandiElenco().at(1);
}
