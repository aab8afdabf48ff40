#include "browser/genere_elenco.h"

#include "browser/fmTabella.h"
#include "db/archivio/connessioni.h"
#include "db/lavoro/codici.h"
#include "db/schema/generi.h"
#include "platform/finestre/messaggi.h"

#include <algorithm>

using namespace modTarvola;

namespace
{

// "Battesimo" e "Nuovo Battesimo": la didascalia della voce segue il tipo del suo registro.
struct DidascaliaVoce {
    int tipo;
    const char *esistente;
    const char *nuova;
};

constexpr DidascaliaVoce didascalieVoce[] = {
    {RegistroBattesimi, "Battesimo", "Nuovo Battesimo"},
    {RegistroMatrimoni, "Matrimonio", "Nuovo Matrimonio"},
    {RegistroMorti, "Morte", "Nuova Morte"},
};

// Niente per un tipo che non è di registro.
std::optional<QString> didascaliaVoce(int tipo, const char *DidascaliaVoce::*quale)
{
    for (const DidascaliaVoce &didascalia : didascalieVoce) {
        if (didascalia.tipo == tipo)
            return QString::fromUtf8(didascalia.*quale);
    }
    return {};
}

std::optional<QString> archivio(const fmTabella & /*elenco*/, FinestraEditor & /*editore*/)
{
    return QStringLiteral("Archivio");
}

std::optional<QString> archivioNuovo(const fmTabella & /*elenco*/, FinestraEditor &editore)
{
    editore.proprieta.Percorso = contesto().PercorsoCorrente;
    return QString();
}

std::optional<QString> registro(const fmTabella &elenco, FinestraEditor &editore)
{
    editore.proprieta.ArchivioLocale = elenco.proprieta.ArchivioLocale;
    return QStringLiteral("Registro");
}

std::optional<QString> registroNuovo(const fmTabella &elenco, FinestraEditor &editore)
{
    // Aperto dal menu Tabelle, il visualizzatore ha qui il codice di una voce: vale l'archivio.
    const ProprietaTabella &sue = elenco.proprieta;
    const bool dellaSelezione = sue.VoceLocaleTabella.startsWith(u'A', Qt::CaseInsensitive);
    const QString padre = dellaSelezione ? sue.VoceLocaleTabella : sue.ArchivioLocale;
    if (padre.isEmpty()) {
        messaggi::avvisa(elenco.window(),
                         QStringLiteral("Un registro sta in un archivio: scegliere prima "
                                        "l'archivio nel suo elenco"));
        return {};
    }
    editore.proprieta.ArchivioLocale = padre;
    return QString();
}

std::optional<QString> voce(const fmTabella &elenco, FinestraEditor &editore)
{
    const int tipo = TipoRegistroDiVoce(connessione(), elenco.codiceCorrente());
    contesto().TipoRegistroCorrente = tipo;
    editore.proprieta.VoceLocaleTipo = tipo;
    if (tipo == RegistroBattesimi)
        editore.proprieta.RegistroLocale = elenco.proprieta.RegistroLocale;
    return didascaliaVoce(tipo, &DidascaliaVoce::esistente);
}

std::optional<QString> voceNuova(const fmTabella &elenco, FinestraEditor &editore)
{
    // Aperto dal menu Tabelle il visualizzatore può non avere un registro: vale quello della riga,
    // che è di questo file. Il tipo è il suo, non quello dell'ultimo registro guardato altrove.
    QString registro = elenco.proprieta.RegistroLocale;
    if (registro.isEmpty())
        registro = elenco.campoCorrente(QStringLiteral("Registro")).toString();
    if (registro.isEmpty()) {
        messaggi::avvisa(elenco.window(),
                         QStringLiteral("Una voce sta in un registro: scegliere prima il registro "
                                        "nel suo elenco"));
        return {};
    }
    const int tipo = TipoRegistro(connessione(), registro);
    const auto didascalia = didascaliaVoce(tipo, &DidascaliaVoce::nuova);
    if (didascalia)
        contesto().TipoRegistroCorrente = tipo;
    editore.proprieta.VoceLocaleTipo = tipo;
    editore.proprieta.RegistroLocale = registro;
    return didascalia;
}

std::optional<QString> individuo(const fmTabella &elenco, FinestraEditor &editore)
{
    editore.proprieta.VoceLocale = elenco.proprieta.VoceLocale;
    return QStringLiteral("Individuo");
}

std::optional<QString> famiglia(const fmTabella &elenco, FinestraEditor &editore)
{
    editore.proprieta.VoceLocale = elenco.proprieta.VoceLocale;
    return QStringLiteral("Famiglia");
}

std::optional<QString> evento(const fmTabella &elenco, FinestraEditor &editore)
{
    contesto().EventoCorrente = elenco.codiceCorrente();
    const int tipo = elenco.campoCorrente(QStringLiteral("Tipo")).toInt();
    editore.proprieta.VoceLocale = elenco.proprieta.VoceLocale;
    editore.proprieta.EventoLocaleTipo = tipo;
    editore.Label2 = {EtichettaTraduzione(connessione(), contesto().ColonnaLingua, tipo), tipo};
    return editore.Label2.Caption;
}

const std::vector<GenereElenco> generi{
    {.tabella = QStringLiteral("Archivi"),
     .livello = Livello::Archivio,
     .figlia = QStringLiteral("Registri"),
     .nominati = 0,
     .sempreNominati = 0,
     .locale = &ProprietaTabella::ArchivioLocale,
     .corrente = &Contesto::ArchivioCorrente,
     .editore = QStringLiteral("fmArchivio"),
     .codice = &ProprietaFinestra::ArchivioLocale,
     .perAprire = archivio,
     .perCreare = archivioNuovo},
    {.tabella = QStringLiteral("Registri"),
     .livello = Livello::Registro,
     .figlia = QStringLiteral("Voci"),
     .nominati = 1,
     .sempreNominati = 0,
     .locale = &ProprietaTabella::RegistroLocale,
     .corrente = &Contesto::RegistroCorrente,
     .editore = QStringLiteral("fmRegistro"),
     .codice = &ProprietaFinestra::RegistroLocale,
     .perAprire = registro,
     .perCreare = registroNuovo},
    {.tabella = QStringLiteral("Voci"),
     .livello = Livello::Voce,
     .nominati = 2,
     .sempreNominati = 2,
     .locale = &ProprietaTabella::VoceLocale,
     .corrente = &Contesto::VoceCorrente,
     .editore = QStringLiteral("fmVoce"),
     .codice = &ProprietaFinestra::VoceLocale,
     .perAprire = voce,
     .perCreare = voceNuova},
    {.tabella = QStringLiteral("Individui"),
     .conDettagli = true,
     .editore = QStringLiteral("fmIndividuo"),
     .codice = &ProprietaFinestra::IndividuoLocale,
     .perAprire = individuo},
    {.tabella = QStringLiteral("Famiglie"),
     .editore = QStringLiteral("fmFamiglia"),
     .codice = &ProprietaFinestra::FamigliaLocale,
     .perAprire = famiglia},
    {.tabella = QStringLiteral("Eventi"),
     .editore = QStringLiteral("fmEvento"),
     .codice = &ProprietaFinestra::EventoLocale,
     .perAprire = evento},
    {.tabella = QStringLiteral("Binari"), .voceDiMenu = QStringLiteral("Testi e Oggetti")},
};

} // namespace

const std::vector<GenereElenco> &generiElenco()
{
    return generi;
}

const GenereElenco &genereElenco(const QString &tabella)
{
    const auto &tutti = generiElenco();
    const auto suo = std::find_if(tutti.begin(), tutti.end(), [&](const GenereElenco &genere) {
        return genere.tabella == tabella;
    });
    if (suo == tutti.end())
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("la tabella %1 non ha un elenco").arg(tabella));
    return *suo;
}
