#include "atti/fmScheda.h"
#include "atti/formule_scheda.h"
#include "atti/pagina.h"
#include "contesto/bozze.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/atto/registro_atti.h"
#include "db/lavoro/annunci.h"
#include "platform/finestre/messaggi.h"
#include "platform/motore/recordset.h"

// L'atto della pagina e il suo posto nel file: registrarlo, rileggerlo, passare a un altro.

using namespace modTarvola;
using scheda::SchedaAtto;

bool fmScheda::salva()
{
    bool riuscito = false;
    esegue([&] {
        if (!registra())
            return;
        riuscito = true;
        rilegge();
    });
    return riuscito;
}

// La pagina mostra ciò che c'è nel file: ciò che vi era scritto è registrato, o abbandonato, e
// ogni riga sa di chi è. La tastiera resta dov'è. Falso se l'atto nel file non c'è più.
bool fmScheda::rilegge()
{
    if (proprieta.VoceLocale.isEmpty())
        return true;
    const auto nelFile = leggeAtto(*m_connessione, proprieta.VoceLocale);
    m_altrove = nelFile ? Altrove::Niente : Altrove::Eliminato;
    if (nelFile) {
        m_prima = *nelFile;
        m_pagina->aggiorna(SchedaAtto(*m_scheda, m_prima));
        aggiornaAltro();
    }
    aggiornaTesta();
    emit passata();
    return nelFile.has_value();
}

// Qualcosa è cambiato nel file: se nella pagina non è scritto nulla si rilegge, se no si segna.
void fmScheda::riceve(const Annuncio &annuncio)
{
    if (m_prima.codice.isEmpty() || !stessoFile(annuncio.archivio, proprieta.Percorso))
        return;
    messaggi::protetto(this, [this] {
        const auto nelFile = leggeAtto(*m_connessione, m_prima.codice);
        if (nelFile == m_prima) {
            m_altrove = Altrove::Niente;
            aggiornaAltro();
        } else if (nelFile && !daRegistrare()) {
            rilegge();
        } else {
            m_altrove = nelFile ? Altrove::Cambiato : Altrove::Eliminato;
        }
        aggiornaTesta();
    });
}

// Falso, e la tastiera nella casella, se una casella non si legge.
bool fmScheda::siLegge()
{
    Campo *quale = nullptr;
    const QString motivo = m_pagina->rifiuto(quale);
    if (motivo.isEmpty())
        return true;
    messaggi::avvisa(this, motivo);
    m_pagina->segna(quale, motivo);
    return false;
}

bool fmScheda::registra()
{
    if (proprieta.TipoLock == ado::adLockReadOnly)
        return true;
    if (m_prima.codice.isEmpty() && !daRegistrare()) {
        messaggi::avvisa(this, tr("Nell'atto non è ancora scritto nulla"));
        return false;
    }
    if (!siLegge() || !confermaLette())
        return false;
    SchedaAtto scritto(*m_scheda, m_prima);
    m_pagina->raccoglie(scritto);
    SchedaAtto::Pronto pronto = scritto.pronto();
    if (!pronto.motivo.isEmpty()) {
        messaggi::avvisa(this, pronto.motivo);
        segnaCasella(pronto.dove, pronto.motivo);
        return false;
    }
    if (!m_prima.codice.isEmpty() && pronto.atto == m_prima)
        return true;
    const EsitoAtto esito =
        scriveAtto(*m_connessione, proprieta.ConOperatore, m_prima, pronto.atto);
    if (esito.che == EsitoAtto::Rifiutato) {
        rifiutato(scritto, esito);
        return false;
    }
    if (esito.che == EsitoAtto::Cambiato)
        return concorda(esito.nelFile);
    if (m_formule != nullptr)
        m_formule->impara(SchedaAtto(*m_scheda, pronto.atto));
    m_prima = pronto.atto;
    m_ripresa = false;
    proprieta.VoceLocale = m_prima.codice;
    contesto().VoceCorrente = m_prima.codice;
    return true;
}

// Il motivo si dice accanto alla prima casella di chi lo ha dato.
void fmScheda::rifiutato(const SchedaAtto &scritto, const EsitoAtto &esito)
{
    messaggi::avvisa(this, esito.motivo);
    for (const RigaPagina *riga : m_pagina->righe()) {
        if (riga->campi().empty())
            continue;
        Campo *primo = riga->campi().front();
        const int sua =
            esito.persona == 0 ? 0 : scritto.persona(primo->dove.posto, primo->dove.quale);
        if (sua == esito.persona) {
            const QString nome = QStringLiteral("Nome");
            Campo *daRiempire =
                sua == 0 ? nullptr
                         : m_pagina->campo({primo->dove.posto, primo->dove.quale, 0, nome});
            m_pagina->segna(daRiempire == nullptr ? primo : daRiempire, esito.motivo);
            return;
        }
    }
}

void fmScheda::segnaCasella(const scheda::Indirizzo &dove, const QString &motivo)
{
    if (Campo *campo = m_pagina->campo(dove))
        m_pagina->segna(campo, motivo);
}

void fmScheda::salvaENuovo()
{
    esegue([this] {
        if (registra())
            mostra(nuovoAtto(*m_connessione, proprieta.RegistroLocale));
    });
}

void fmScheda::nuovo()
{
    esegue([this] {
        if (puoChiudersi())
            mostra(nuovoAtto(*m_connessione, proprieta.RegistroLocale));
    });
}

void fmScheda::vicino(bool segue)
{
    esegue([this, segue] {
        const QString altro =
            attoAccanto(*m_connessione, proprieta.RegistroLocale, proprieta.VoceLocale, segue);
        if (!altro.isEmpty() && puoChiudersi())
            apre(altro);
    });
}

void fmScheda::apre(const QString &voce)
{
    const auto atto = leggeAtto(*m_connessione, voce);
    if (!atto)
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il record %1 non esiste più").arg(voce));
    mostra(*atto);
}

bool fmScheda::puoChiudersi()
{
    if (!daRegistrare())
        return true;
    switch (messaggi::salva(this, tr("L'atto ha modifiche non salvate. Salvarle?"))) {
    case messaggi::Salva:
        return salva();
    case messaggi::Abbandona:
        if (m_sorgente != nullptr)
            m_sorgente->abbandonata();
        return true;
    default:
        return false;
    }
}
