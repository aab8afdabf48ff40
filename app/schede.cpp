#include "app/schede.h"

#include "browser/fmTabella.h"
#include "contesto/bozza.h"
#include "db/archivio/connessioni.h"
#include "db/atto/registro_atti.h"
#include "db/lavoro/codici.h"
#include "platform/finestre/messaggi.h"

#include <QMdiSubWindow>

#include <algorithm>

using namespace modTarvola;

namespace
{

// Un comando nostro di un elenco, con l'icona della scheda.
ComandoElenco aggiunto(const QString &id, bool suRiga, std::function<void(fmTabella &)> compie)
{
    ComandoElenco nuovo;
    nuovo.id = id;
    nuovo.icona = QStringLiteral(":/icone/scheda.svg");
    nuovo.suRiga = suRiga;
    nuovo.compie = std::move(compie);
    if (suRiga)
        nuovo.abilitato = [](const fmTabella &elenco) { return !elenco.vuota(); };
    return nuovo;
}

} // namespace

Schede::Schede(QMdiArea *area, std::function<void(QMdiSubWindow *)> colloca,
               std::function<void(const fmScheda &, const QString &)> apreRecord)
    : m_area(area), m_colloca(std::move(colloca)), m_apreRecord(std::move(apreRecord))
{
}

std::vector<ComandoElenco> Schede::comandi(const GenereElenco &genere)
{
    switch (genere.livello) {
    case Livello::Archivio:
        return {};
    case Livello::Registro:
        return {aggiunto(QStringLiteral("elenco.trascrivi"), true, [this](fmTabella &elenco) {
            apreDa(elenco, elenco.codiceCorrente(), {});
        })};
    case Livello::Voce:
        return {
            aggiunto(QStringLiteral("elenco.scheda"), true,
                     [this](fmTabella &elenco) { apreDa(elenco, {}, elenco.codiceCorrente()); }),
            aggiunto(QStringLiteral("elenco.nuovaScheda"), false,
                     [this](fmTabella &elenco) { apreNuova(elenco); })};
    case Livello::Dipendente:
        break;
    }
    return {aggiunto(QStringLiteral("elenco.schedaDellAtto"), true, [this](fmTabella &elenco) {
        const QString atto = attoDi(connessione(), elenco.codiceCorrente());
        if (atto.isEmpty())
            messaggi::avvisa(&elenco, QObject::tr("Questa riga non è di nessun atto"));
        else
            apreDa(elenco, {}, atto);
    })};
}

void Schede::apreNuova(fmTabella &elenco)
{
    QString registro = elenco.proprieta.RegistroLocale;
    if (registro.isEmpty())
        registro = elenco.campoCorrente(QStringLiteral("Registro")).toString();
    if (registro.isEmpty())
        messaggi::avvisa(&elenco, QObject::tr("Una voce sta in un registro: scegliere "
                                              "prima il registro nel suo elenco"));
    else
        apreDa(elenco, registro, {});
}

void Schede::apreDa(fmTabella &elenco, const QString &registro, const QString &voce)
{
    ProprietaScheda nuova;
    nuova.Percorso = elenco.proprieta.Percorso;
    nuova.ConOperatore = elenco.proprieta.ConOperatore;
    nuova.RegistroLocale = registro;
    nuova.VoceLocale = voce;
    apre(nuova);
}

void Schede::apre(const ProprietaScheda &proprieta)
{
    pagina(proprieta);
}

void Schede::riprende(const bozze::Finestra &bozza, const QString &archivio,
                      const QString &operatore)
{
    ProprietaScheda sua;
    sua.Percorso = archivio;
    sua.ConOperatore = operatore;
    sua.RegistroLocale = bozza.come.value(QStringLiteral("registro")).toString();
    sua.VoceLocale = bozza.come.value(QStringLiteral("voce")).toString();
    if (!sua.VoceLocale.isEmpty() && !esiste(connessione(), sua.VoceLocale)) {
        messaggi::avvisa(m_area->window(),
                         QObject::tr("L'atto di questa bozza non c'è più: ciò che vi era scritto è "
                                     "in una scheda nuova"));
        sua.VoceLocale.clear();
    }
    pagina(sua)->riprende(bozza);
}

fmScheda *Schede::pagina(const ProprietaScheda &proprieta)
{
    const QList<fmScheda *> tutte = aperte();
    const auto gia = std::find_if(tutte.begin(), tutte.end(), [&](const fmScheda *una) {
        return !proprieta.VoceLocale.isEmpty() &&
               una->proprieta.VoceLocale.compare(proprieta.VoceLocale, Qt::CaseInsensitive) == 0 &&
               una->usa(&connessione());
    });
    if (gia != tutte.end()) {
        m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow *>((*gia)->parentWidget()));
        return *gia;
    }
    auto scheda = std::make_unique<fmScheda>(proprieta, m_area->window());
    scheda->apreRecord = [this, pagina = scheda.get()](const QString &codice) {
        m_apreRecord(*pagina, codice);
    };
    scheda->Form_Load();
    QMdiSubWindow *finestra = m_area->addSubWindow(scheda.release());
    finestra->setAttribute(Qt::WA_DeleteOnClose);
    finestra->setWindowIcon(finestra->widget()->windowIcon());
    m_colloca(finestra);
    auto *nuova = qobject_cast<fmScheda *>(finestra->widget());
    nuova->comincia();
    return nuova;
}

QList<fmScheda *> Schede::aperte() const
{
    QList<fmScheda *> tutte;
    const auto finestre = m_area->subWindowList();
    for (const QMdiSubWindow *finestra : finestre) {
        if (auto *scheda = qobject_cast<fmScheda *>(finestra->widget()))
            tutte.append(scheda);
    }
    return tutte;
}

bool Schede::mostraNuova(const QString &percorso, const QString &registro) const
{
    const QList<fmScheda *> tutte = aperte();
    for (fmScheda *una : tutte) {
        if (una->proprieta.VoceLocale.isEmpty() && una->proprieta.RegistroLocale == registro &&
            stessoFile(una->proprieta.Percorso, percorso)) {
            m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(una->parentWidget()));
            return true;
        }
    }
    return false;
}

bool Schede::possonoChiudersi(const ado::Connection *connessione) const
{
    const QList<fmScheda *> tutte = aperte();
    return std::all_of(tutte.begin(), tutte.end(), [&](fmScheda *una) {
        return (connessione != nullptr && !una->usa(connessione)) || una->puoChiudersi();
    });
}
