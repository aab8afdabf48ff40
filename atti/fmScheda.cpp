#include "atti/fmScheda.h"

#include "atti/completamento.h"
#include "atti/formule_scheda.h"
#include "atti/pagina.h"
#include "atti/proposte.h"
#include "contesto/bozze.h"
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

// Propone nelle caselle ciò che gli ultimi atti del registro hanno già scritto.
void fmScheda::creaCompletamento()
{
    if (proprieta.TipoLock == ado::adLockReadOnly)
        return;
    constexpr int quante = 8;
    constexpr int atti = 80; // quanti se ne leggono senza far aspettare la pagina
    m_vocabolario.leggeRecenti(*m_connessione, proprieta.RegistroLocale, atti);
    Completamento *completamento = m_pagina->completa([this](const Campo &campo) {
        const QString &nome = campo.dove.campo;
        const int tolte = static_cast<int>(m_nonProposti.size());
        QStringList trovate = m_vocabolario.proposte(nome, campo.testo(), quante + tolte);
        trovate.removeIf(
            [&](const QString &testo) { return m_nonProposti.contains(std::pair(nome, testo)); });
        return trovate.first(std::min<qsizetype>(quante, trovate.size()));
    });
    connect(completamento, &Completamento::nonPiu, this,
            [this](const Campo *campo, const QString &testo) {
                m_nonProposti.insert(std::pair(campo->dove.campo, testo));
            });
}

// Propone nel testo ciò che il registro ha già scritto.
void fmScheda::creaFormule()
{
    if (proprieta.TipoLock == ado::adLockReadOnly)
        return;
    m_formule = new FormuleScheda(m_pagina, proprieta.Percorso, proprieta.RegistroLocale);
    m_menu->addSeparator();
    m_menu->addActions(m_formule->comandi());
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

void fmScheda::proponeNuovo()
{
    for (const auto &[dove, valore] : proposte::diUnAttoNuovo(*m_scheda, m_precedente)) {
        if (Campo *campo = m_pagina->campo(dove))
            campo->propone(valore);
    }
}

// Da ciò che si scrive viene altro: il cognome del padre dà quello del figlio.
void fmScheda::deriva(Campo *cambiato)
{
    aggiornaTesta();
    if (m_formule != nullptr && cambiato != nullptr)
        m_formule->cambiate();
    if (cambiato == nullptr || !m_prima.codice.isEmpty())
        return;
    for (const scheda::Indirizzo &dove : proposte::derivate(*m_scheda, cambiato->dove)) {
        Campo *campo = m_pagina->campo(dove);
        if (campo == nullptr)
            continue;
        campo->ritira();
        campo->propone(cambiato->valore());
    }
    if (cambiato->dove.campo == QStringLiteral("Nome"))
        derivaSesso(*cambiato);
}

// Il sesso che il nome dice quasi sempre, dove il ruolo non lo dice già.
void fmScheda::derivaSesso(const Campo &nome)
{
    if (!m_scheda->posto(nome.dove.posto)->sesso.isEmpty())
        return;
    for (const RigaPagina *riga : m_pagina->righe()) {
        const auto &campi = riga->campi();
        if (std::find(campi.begin(), campi.end(), &nome) == campi.end())
            continue;
        for (Campo *campo : campi) {
            if (campo->dove.campo != QStringLiteral("Sesso"))
                continue;
            campo->ritira();
            campo->propone(m_vocabolario.sessoDi(nome.testo()));
        }
    }
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
