#include "atti/fmScheda.h"

#include "atti/caselle_dal_testo.h"
#include "atti/formule_scheda.h"
#include "atti/pagina.h"
#include "contesto/bozze.h"
#include "contesto/comandi.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/atto/registro_atti.h"
#include "db/lavoro/annunci.h"
#include "db/lavoro/codici.h"
#include "db/lavoro/collegamenti.h"
#include "db/schema/generi.h"
#include "editors/icone_generi.h"
#include "platform/finestre/messaggi.h"
#include "platform/motore/recordset.h"
#include "texts/fmAbbreviazioni.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
#include <QVBoxLayout>

using namespace modTarvola;
using scheda::SchedaAtto;

namespace
{

const QString campoData = QStringLiteral("Data");

// Le persone che si possono aggiungere a una voce di quel genere, con la loro etichetta.
std::vector<std::pair<int, QString>> ruoliOfferti(ado::Connection &connessione, int categoria)
{
    std::vector<std::pair<int, QString>> ruoli;
    ado::Recordset generi;
    generi.Open(generiInseribili(categoria, contesto().ColonnaLingua), connessione,
                ado::adLockReadOnly);
    for (; !generi.Eof(); generi.MoveNext()) {
        const int genere = generi.Campo(0).toInt();
        if (eIndividuo(genere))
            ruoli.emplace_back(genere, generi.Campo(2).toString());
    }
    return ruoli;
}

} // namespace

fmScheda::fmScheda(ProprietaScheda dalle, QWidget *sopra)
    : QWidget(sopra), proprieta(std::move(dalle))
{
    setObjectName(QStringLiteral("fmScheda"));
    setWindowIcon(iconaDellaTabella(QStringLiteral("Voci")));
    auto *colonna = new QVBoxLayout(this);
    colonna->setContentsMargins({});
    colonna->setSpacing(0);
    creaMenu();
    creaTesta();
}

void fmScheda::Form_Load()
{
    m_connessione = &connessione();
    const auto letto = proprieta.VoceLocale.isEmpty()
                           ? nuovoAtto(*m_connessione, proprieta.RegistroLocale)
                           : leggeAtto(*m_connessione, proprieta.VoceLocale);
    if (!letto)
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il record %1 non esiste più").arg(proprieta.VoceLocale));
    proprieta.RegistroLocale = letto->registro;
    m_titoloRegistro = titoloDiRegistro(*m_connessione, letto->registro);
    m_scheda = scheda::diTipo(letto->tipo);
    if (m_scheda == nullptr)
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il tipo di questo registro non ha una pagina"));
    m_pagina = new Pagina(*m_scheda, ruoliOfferti(*m_connessione, m_scheda->categoria), this);
    m_pagina->setSolaLettura(proprieta.TipoLock == ado::adLockReadOnly);
    connect(m_pagina, &Pagina::cambiata, this, &fmScheda::deriva);
    // Più tardi, quando chi ha scritto ha finito.
    connect(&annunci(), &Annunci::avvenuto, this, &fmScheda::riceve, Qt::QueuedConnection);
    layout()->addWidget(m_pagina);
    creaAltro();
    creaCompletamento();
    creaFormule();
    setFocusProxy(m_pagina);
    mostra(*letto);
    abbozza();
}

// Propone nel testo ciò che il registro ha già scritto.
void fmScheda::creaFormule()
{
    if (proprieta.TipoLock == ado::adLockReadOnly)
        return;
    m_formule = new FormuleScheda(m_pagina, proprieta.Percorso, proprieta.RegistroLocale);
    // Prima di "Tasti…", che sta in fondo dopo un separatore.
    const QList<QAction *> presenti = m_menu->actions();
    QAction *fondo = presenti.at(presenti.size() - 2);
    m_menu->insertSeparator(fondo);
    m_menu->insertActions(fondo, m_formule->comandi());
    leggeAbbreviazioni();
    m_dalTesto = new CaselleDalTesto(m_pagina, m_formule);
    connect(m_dalTesto, &CaselleDalTesto::letta, this, &fmScheda::deriva);
    m_menu->insertSeparator(fondo);
    const std::pair<const char *, std::function<void()>> comandi[] = {
        {"scheda.caselleDalTesto", [this] { leggeDalTesto(); }},
        {"scheda.confermaCaselle", [this] { m_dalTesto->conferma(); }},
        {"scheda.togliLette", [this] { m_dalTesto->ritira(); }},
        {"scheda.abbreviazioni", [this] { cambiaLeAbbreviazioni(); }}};
    for (const auto &[id, compie] : comandi) {
        auto *azione = new QAction(this);
        comandi::lega(azione, QString::fromUtf8(id));
        azione->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(azione, &QAction::triggered, this, compie);
        m_menu->insertAction(fondo, azione);
        addAction(azione);
    }
}

void fmScheda::cambiaLeAbbreviazioni()
{
    esegue([this] {
        if (cambiaAbbreviazioni(*m_connessione, window()))
            leggeAbbreviazioni();
    });
}

void fmScheda::leggeAbbreviazioni()
{
    if (TestoPagina *testo = m_formule->testo())
        testo->testo()->abbrevia([tutte = abbreviazioni(*m_connessione)](const QString &parola) {
            return distesa(tutte, parola);
        });
}

void fmScheda::leggeDalTesto()
{
    if (m_dalTesto->propone() > 0)
        m_pagina->comincia();
    else
        messaggi::avvisa(this, tr("Nel testo non si è letto nulla per le caselle vuote"));
}

// Ciò che è letto nel testo si registra se lo si conferma, se no resta fuori.
bool fmScheda::confermaLette()
{
    const int quante = m_dalTesto == nullptr ? 0 : m_dalTesto->inAttesa();
    if (quante == 0)
        return true;
    if (!messaggi::chiede(this,
                          tr("Le caselle lette nel testo e non ancora confermate sono %1.\n"
                             "Registrarle come sono?")
                              .arg(quante),
                          messaggi::Domanda::PropostoNo))
        return false;
    m_dalTesto->conferma();
    return true;
}

// Mostra un atto al posto di quello di prima; di uno nuovo propone ciò che si sa già.
void fmScheda::mostra(const Atto &atto)
{
    m_prima = atto;
    m_ripresa = false;
    m_altrove = Altrove::Niente;
    proprieta.VoceLocale = atto.codice;
    const QString prima = attoAccanto(*m_connessione, proprieta.RegistroLocale, atto.codice, false);
    m_precedente = prima.isEmpty() ? Atto{} : leggeAtto(*m_connessione, prima).value_or(Atto{});
    m_pagina->conta(testoDi(m_precedente.campi, campoData));
    m_pagina->attende(SchedaAtto(*m_scheda, m_precedente));
    usaCampi(scheda::leggeScelte(*m_connessione, proprieta.RegistroLocale));
    m_pagina->mostra(SchedaAtto(*m_scheda, atto));
    if (atto.codice.isEmpty())
        proponeNuovo();
    if (m_formule != nullptr)
        m_formule->mostra(SchedaAtto(*m_scheda, atto));
    aggiornaAltro();
    aggiornaTesta();
    m_pagina->comincia();
    emit passata();
}

// Le caselle che si vedono sono quelle scelte per il registro, anche da un'altra pagina.
void fmScheda::usaCampi(const scheda::Scelte &scelte)
{
    if (scelte == m_scelte)
        return;
    m_scelte = scelte;
    m_pagina->usa([this](const scheda::Indirizzo &dove, scheda::Uso inizio) {
        return m_scelte.value({dove.posto, dove.evento, dove.campo}, inizio);
    });
}

void fmScheda::comincia()
{
    m_pagina->comincia();
}

bool fmScheda::daRegistrare() const
{
    return m_pagina != nullptr && m_pagina->toccata();
}

void fmScheda::closeEvent(QCloseEvent *evento)
{
    evento->setAccepted(puoChiudersi());
    // Chi legge per le proposte ha aperto il file: smette ora, non quando la pagina sarà distrutta.
    if (evento->isAccepted())
        m_repertorio.reset();
}

void fmScheda::Form_Activate()
{
    Contesto &ora = contesto();
    ora.PercorsoCorrente = proprieta.Percorso;
    ora.RegistroCorrente = proprieta.RegistroLocale;
    ora.TipoRegistroCorrente = m_scheda->tipo;
    ora.VoceCorrente = proprieta.VoceLocale;
}

// Ogni comando comincia rendendo corrente il file della pagina, come in un elenco.
void fmScheda::esegue(const std::function<void()> &comando)
{
    messaggi::protetto(this, [&] {
        ApriArchivio(proprieta.Percorso);
        comando();
        aggiornaTesta();
    });
}
