#include "contesto/bozze.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/lavoro/codici.h"
#include "editors/eliminazione.h"
#include "editors/fmEditor.h"
#include "platform/finestre/messaggi.h"
#include "texts/allegati.h"
#include "texts/testi.h"

#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>

// I comandi di un editore sui collegamenti del suo record, e le finestre che aprono.

using namespace modTarvola;

namespace
{

// Come una bozza dice quale comando ha aperto la finestra che segue.
const QString viaNuovo = QStringLiteral("nuovo ");
const QString viaApri = QStringLiteral("apri ");

} // namespace

void fmEditor::nuovo()
{
    if (casellaInSospeso())
        return;
    const auto genere = pannello->genereScelto();
    if (!genere) {
        messaggi::avvisa(this, QStringLiteral("Selezionare una voce"));
        return;
    }
    const QString motivo = rifiutoNuovo(genere->Tag);
    if (!motivo.isEmpty()) {
        messaggi::avvisa(this, motivo);
        return;
    }
    if (codice().isEmpty() && !solaLettura() && !SalvaDettagli()) {
        contesto().SalvataggioRifiutato = false;
        return;
    }
    // Può essere stato eliminato da una finestra aperta su questa.
    if (!esiste(connessione(), codice()))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il record %1 non esiste più").arg(codice()));
    const std::vector<Elemento> prima = pannello->collegamenti();
    const QScopedValueRollback via(m_via, viaNuovo + QString::number(genere->Tag));
    if (nuovoProprio(*genere) || nuovoComune(*genere)) {
        CaricaCollegamenti();
        pannello->sceglieNuovo(prima);
    }
}

bool fmEditor::nuovoComune(const Elemento &genere)
{
    const auto &generi = m_descrizione.generi;
    if (std::find(generi.begin(), generi.end(), genere.Tag) == generi.end())
        return false;
    switch (genere.Tag) {
    case Nota:
    case TestoRiportato:
        NuovoTesto(this, codice(), genere.Tag, genere.Text);
        return true;
    case FileAllegato:
        return NuovoAllegato(this, codice(), genere.Tag);
    default:
        apreRecapito(genere.Tag, {}, genere.Text);
        return true;
    }
}

void fmEditor::apri()
{
    if (casellaInSospeso())
        return;
    const auto collegamento = pannello->collegamentoScelto();
    if (!collegamento)
        return;
    const QScopedValueRollback via(m_via, viaApri + collegamento->Key);
    if (apriProprio(*collegamento) || apriComune(*collegamento))
        CaricaCollegamenti();
}

// Falso quando l'elenco non va riletto.
bool fmEditor::apriComune(const Elemento &collegamento)
{
    switch (collegamento.Tag) {
    case Nota:
    case TestoRiportato:
        return ApriTesto(this, collegamento.Key, proprieta.TipoLock, collegamento.Text);
    case FileAllegato:
        ApriAllegato(this, collegamento.Key);
        return true;
    case Contatto:
    case Trascrittore:
    case Indirizzo:
    case Recapito:
        apreRecapito(collegamento.Tag, collegamento.Key, collegamento.Text);
        return true;
    default:
        return false;
    }
}

// Operatori, indirizzi e recapiti: nuovi quando il codice è vuoto.
void fmEditor::apreRecapito(int genere, const QString &suo, const QString &didascalia)
{
    const QString nome = genere == Indirizzo  ? QStringLiteral("fmLuogo")
                         : genere == Recapito ? QStringLiteral("fmRecapito")
                                              : QStringLiteral("fmOperatore");
    apreFiglio(nome, didascalia, [&](FinestraEditor &figlia) {
        figlia.proprieta.VoceLocale = codice();
        switch (genere) {
        case Indirizzo:
            figlia.proprieta.LuogoLocale = suo;
            break;
        case Recapito:
            figlia.proprieta.RecapitoLocale = suo;
            break;
        default:
            figlia.proprieta.OperatoreLocale = suo;
            figlia.proprieta.TipoOperatore = genere;
            // Il trascrittore si guarda soltanto: i suoi dati li cambia lui, entrando.
            if (genere == Trascrittore)
                figlia.proprieta.TipoLock = ado::adLockReadOnly;
        }
    });
}

void fmEditor::elimina()
{
    if (casellaInSospeso())
        return;
    const auto collegamento = pannello->collegamentoScelto();
    if (!collegamento)
        return;
    if (collegamento->Tag == Contatto || collegamento->Tag == Trascrittore)
        EliminaLegame(this, collegamento->Key, codice(), proprieta.ConOperatore);
    else
        EliminaVoce(this, collegamento->Key, proprieta.ConOperatore);
    CaricaCollegamenti();
}

// Ciò che si scrive qui è tenuto da parte finché non è registrato.
void fmEditor::abbozza()
{
    if (solaLettura() || !salvaChiudendo())
        return;
    m_sorgente = new bozze::Sorgente(this, proprieta.Percorso, bozze::Sorgente::Posto::InPila,
                                     [this] { return bozza(); });
    for (const Casella *casella : Text1.tutte())
        connect(casella, &Casella::cambiata, m_sorgente, &bozze::Sorgente::cambiata);
    connect(this, &QDialog::rejected, m_sorgente, &bozze::Sorgente::abbandonata);
    if (const auto mia = bozze::prende(objectName(), codice()))
        QTimer::singleShot(0, this, [this, mia] {
            messaggi::protetto(this, [&] { riprendeBozza(*mia); });
            // Ciò che non si è riaperto non aspetti la prossima finestra dello stesso nome.
            bozze::smette();
        });
}

bozze::Finestra fmEditor::bozza() const
{
    return {objectName(), windowTitle(), come(), codice(), m_via, Text1.scritte()};
}

// Rimette ciò che era scritto, fa scegliere dove il record intanto è cambiato, e riapre la finestra
// che era sopra.
void fmEditor::riprendeBozza(const bozze::Finestra &mia)
{
    const ado::Recordset nelFile = adoDettagli;
    const QList<discordia::Casella> cambiate = Text1.riprende(mia.caselle);
    // Chi è stata interrotta due volte la porta già nella didascalia.
    const QString segno = tr(" – bozza");
    if (!mia.caselle.isEmpty() && !windowTitle().endsWith(segno))
        setWindowTitle(windowTitle() + segno);
    if (!cambiate.isEmpty() &&
        discordia::chiede(this,
                          {tr("Il record è cambiato"),
                           tr("Dopo che questa bozza è stata scritta il record è cambiato. Nulla è "
                              "ancora registrato."),
                           tr("Nella bozza"), tr("&Tieni la bozza"),
                           tr("&Prendi ciò che è nel file")},
                          cambiate) == discordia::Prende)
        Text1.mostra(nelFile);
    // Chi era nato da "Nuovo" può essere stato registrato per aprire una finestra sopra la sua.
    const QString suo = bozze::recordAtteso();
    const QString via = suo.isEmpty() ? mia.via : viaApri + suo;
    if (via.startsWith(viaNuovo) && pannello->sceglieGenere(via.mid(viaNuovo.size()).toInt()))
        nuovo();
    else if (via.startsWith(viaApri) && pannello->sceglie(via.mid(viaApri.size())))
        apri();
}

std::unique_ptr<modTarvola::FinestraEditor>
fmEditor::apreFiglio(const QString &nome, const QString &didascalia,
                     const std::function<void(FinestraEditor &)> &imposta,
                     const std::function<void(FinestraEditor &)> &caricato)
{
    auto figlia = NuovaFinestra(nome, this);
    if (figlia == nullptr)
        return {};
    figlia->proprieta.Percorso = proprieta.Percorso;
    figlia->proprieta.ConOperatore = proprieta.ConOperatore;
    figlia->proprieta.TipoLock = proprieta.TipoLock;
    imposta(*figlia);
    const bool aperta = ApriFinestra(*figlia, didascalia, [&] {
        if (caricato)
            caricato(*figlia);
    });
    if (!aperta)
        figlia.reset();
    return figlia;
}
