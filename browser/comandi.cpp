#include "browser/fmTabella.h"
#include "browser/modello_tabella.h"
#include "contesto/contesto.h"
#include "contesto/finestre.h"
#include "db/codici.h"
#include "db/connessioni.h"
#include "db/generi.h"
#include "editors/eliminazione.h"
#include "platform/finestre/messaggi.h"
#include "platform/motore/recordset.h"
#include "texts/allegati.h"
#include "texts/testi.h"

using namespace modTarvola;

namespace
{

const QString tabellaArchivi = QStringLiteral("Archivi");
const QString tabellaRegistri = QStringLiteral("Registri");
const QString tabellaVoci = QStringLiteral("Voci");
const QString tabellaIndividui = QStringLiteral("Individui");
const QString tabellaFamiglie = QStringLiteral("Famiglie");
const QString tabellaEventi = QStringLiteral("Eventi");
const QString tabellaBinari = QStringLiteral("Binari");

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

QString didascaliaVoce(int tipo, bool nuova)
{
    for (const DidascaliaVoce &didascalia : didascalieVoce) {
        if (didascalia.tipo == tipo)
            return QString::fromUtf8(nuova ? didascalia.nuova : didascalia.esistente);
    }
    return {};
}

} // namespace

void fmTabella::esegue(ComandoTabella comando)
{
    messaggi::protetto(this, [&] {
        ApriArchivio(proprieta.Percorso);
        if (adoTabella->incompleto())
            rilegge({});
        if (comando != NuovaRiga && comando != Aggiorna && !rigaPronta())
            return;
        switch (comando) {
        case Seleziona:
            seleziona();
            break;
        case ApriRiga:
            apri();
            break;
        case NuovaRiga:
            nuovo();
            break;
        case Aggiorna:
            aggiorna();
            break;
        case EliminaRiga:
            EliminaVoce(window(), codiceCorrente(), proprieta.ConOperatore);
            aggiorna();
            break;
        }
    });
}

// Senza una riga corrente i comandi che ne vogliono una non fanno nulla. Di una riga eliminata
// altrove si aprirebbe un record nuovo, o si eliminerebbe un altro.
bool fmTabella::rigaPronta() const
{
    if (rigaCorrente() < 0)
        return false;
    if (!adoTabella->conferma(rigaCorrente()))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("la riga non si legge più: aggiornare l'elenco"));
    return true;
}

void fmTabella::seleziona()
{
    ProprietaTabella nuova;
    nuova.Percorso = proprieta.Percorso;
    nuova.ArchivioLocale = proprieta.ArchivioLocale;
    nuova.VoceLocaleTabella = codiceCorrente();
    nuova.ConOperatore = proprieta.ConOperatore;
    prendeContesto();
    if (proprieta.TipoTabella == tabellaArchivi) {
        nuova.TipoTabella = tabellaRegistri;
    } else if (proprieta.TipoTabella == tabellaRegistri) {
        nuova.TipoTabella = tabellaVoci;
        nuova.RegistroLocale = proprieta.RegistroLocale;
    } else {
        return;
    }
    m_servizi.apre(nuova);
}

void fmTabella::apreEditor(const QString &nome, const QString &didascalia,
                           const std::function<void(FinestraEditor &)> &imposta)
{
    const auto editore = NuovaFinestra(nome, window());
    editore->proprieta.Percorso = proprieta.Percorso;
    editore->proprieta.ConOperatore = proprieta.ConOperatore;
    editore->proprieta.TipoLock = ado::adLockOptimistic;
    imposta(*editore);
    ApriFinestra(*editore, didascalia);
}

void fmTabella::apri()
{
    const QString codice = codiceCorrente();
    if (proprieta.TipoTabella == tabellaArchivi) {
        contesto().ArchivioCorrente = codice;
        apreEditor(QStringLiteral("fmArchivio"), QStringLiteral("Archivio"),
                   [&](FinestraEditor &editore) { editore.proprieta.ArchivioLocale = codice; });
    } else if (proprieta.TipoTabella == tabellaRegistri) {
        contesto().RegistroCorrente = codice;
        apreEditor(QStringLiteral("fmRegistro"), QStringLiteral("Registro"),
                   [&](FinestraEditor &editore) {
                       editore.proprieta.ArchivioLocale = proprieta.ArchivioLocale;
                       editore.proprieta.RegistroLocale = codice;
                   });
    } else if (proprieta.TipoTabella == tabellaVoci) {
        apriVoce(codice);
    } else {
        apriDipendente(codice);
    }
}

void fmTabella::apriDipendente(const QString &codice)
{
    const QString &tabella = proprieta.TipoTabella;
    if (tabella == tabellaIndividui) {
        apreEditor(QStringLiteral("fmIndividuo"), QStringLiteral("Individuo"),
                   [&](FinestraEditor &editore) {
                       editore.proprieta.IndividuoLocale = codice;
                       editore.proprieta.VoceLocale = proprieta.VoceLocale;
                   });
    } else if (tabella == tabellaFamiglie) {
        apreEditor(QStringLiteral("fmFamiglia"), QStringLiteral("Famiglia"),
                   [&](FinestraEditor &editore) {
                       editore.proprieta.FamigliaLocale = codice;
                       editore.proprieta.VoceLocale = proprieta.VoceLocale;
                   });
    } else if (tabella == tabellaEventi) {
        apriEvento(codice);
    } else if (tabella == tabellaBinari) {
        ApriBinario(codice, tipoCorrente());
        aggiorna();
    }
}

void fmTabella::apriEvento(const QString &codice)
{
    contesto().EventoCorrente = codice;
    const int tipo = tipoCorrente();
    const QString etichetta = EtichettaTraduzione(connessione(), archivi().ColonnaLingua, tipo);
    apreEditor(QStringLiteral("fmEvento"), etichetta, [&](FinestraEditor &editore) {
        editore.proprieta.VoceLocale = proprieta.VoceLocale;
        editore.proprieta.EventoLocale = codice;
        editore.proprieta.EventoLocaleTipo = tipo;
        editore.Label2 = {etichetta, tipo};
    });
}

void fmTabella::ApriBinario(const QString &codice, int tipo)
{
    switch (tipo) {
    case Nota:
        ApriTesto(window(), codice, ado::adLockOptimistic, QStringLiteral("Nota"));
        break;
    case TestoRiportato:
        ApriTesto(window(), codice, ado::adLockOptimistic, QStringLiteral("Testo riportato"));
        break;
    case FileAllegato:
        ApriAllegato(window(), codice);
        break;
    default:
        break;
    }
}

void fmTabella::apriVoce(const QString &codice)
{
    contesto().VoceCorrente = codice;
    const int tipo = TipoRegistroDiVoce(connessione(), codice);
    contesto().TipoRegistroCorrente = tipo;
    const QString didascalia = didascaliaVoce(tipo, false);
    if (didascalia.isEmpty())
        return;
    apreEditor(QStringLiteral("fmVoce"), didascalia, [&](FinestraEditor &editore) {
        editore.proprieta.VoceLocaleTipo = tipo;
        editore.proprieta.VoceLocale = codice;
        if (tipo == RegistroBattesimi)
            editore.proprieta.RegistroLocale = proprieta.RegistroLocale;
    });
}

void fmTabella::nuovo()
{
    QString creato;
    if (proprieta.TipoTabella == tabellaArchivi) {
        contesto().ArchivioCorrente.clear();
        apreEditor(QStringLiteral("fmArchivio"), {}, [](FinestraEditor &editore) {
            editore.proprieta.Percorso = contesto().PercorsoCorrente;
        });
        creato = contesto().ArchivioCorrente;
    } else if (proprieta.TipoTabella == tabellaRegistri) {
        creato = nuovoRegistro();
    } else if (proprieta.TipoTabella == tabellaVoci) {
        creato = nuovaVoce();
    }
    rilegge(creato);
    Form_Activate();
}

QString fmTabella::nuovoRegistro()
{
    // Aperto dal menu Tabelle, il visualizzatore ha qui il codice di una voce: vale l'archivio.
    const bool archivio = proprieta.VoceLocaleTabella.startsWith(u'A', Qt::CaseInsensitive);
    const QString padre = archivio ? proprieta.VoceLocaleTabella : proprieta.ArchivioLocale;
    if (padre.isEmpty()) {
        messaggi::avvisa(this, QStringLiteral("Un registro sta in un archivio: scegliere prima "
                                              "l'archivio nel suo elenco"));
        return {};
    }
    contesto().RegistroCorrente.clear();
    apreEditor(QStringLiteral("fmRegistro"), {},
               [&](FinestraEditor &editore) { editore.proprieta.ArchivioLocale = padre; });
    return contesto().RegistroCorrente;
}

QString fmTabella::nuovaVoce()
{
    // Aperto dal menu Tabelle il visualizzatore può non avere un registro: vale quello della riga,
    // che è di questo file. Il tipo è il suo, non quello dell'ultimo registro guardato altrove.
    QString registro = proprieta.RegistroLocale;
    if (registro.isEmpty() && rigaCorrente() >= 0)
        registro = adoTabella->campo(rigaCorrente(), QStringLiteral("Registro")).toString();
    if (registro.isEmpty()) {
        messaggi::avvisa(this, QStringLiteral("Una voce sta in un registro: scegliere prima il "
                                              "registro nel suo elenco"));
        return {};
    }
    const int tipo = TipoRegistro(connessione(), registro);
    const QString didascalia = didascaliaVoce(tipo, true);
    if (didascalia.isEmpty())
        return {};
    contesto().VoceCorrente.clear();
    contesto().TipoRegistroCorrente = tipo;
    apreEditor(QStringLiteral("fmVoce"), didascalia, [&](FinestraEditor &editore) {
        editore.proprieta.VoceLocaleTipo = tipo;
        editore.proprieta.RegistroLocale = registro;
    });
    return contesto().VoceCorrente;
}

void fmTabella::aggiorna()
{
    rilegge({});
    Form_Activate();
}
