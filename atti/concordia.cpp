#include "atti/fmScheda.h"
#include "atti/pagina.h"
#include "platform/finestre/discordia.h"

#include <algorithm>

// Ciò che la pagina fa quando il suo atto è cambiato, o è stato eliminato, da un'altra parte.

using namespace modTarvola;
using scheda::SchedaAtto;

namespace
{

const QString campoTesto = QStringLiteral("Campolungo");

// La chiave che la persona con quel codice ha nell'atto; 0 se non c'è.
int chiaveDi(const Atto &atto, const QString &codice)
{
    const auto sua =
        std::find_if(atto.persone.begin(), atto.persone.end(), [&](const PersonaDiAtto &una) {
            return !codice.isEmpty() && una.codice == codice;
        });
    return sua == atto.persone.end() ? 0 : sua->chiave;
}

QVariant valoreDi(const SchedaAtto &atto, const Campo &campo, bool elenco, int chiave)
{
    if (!elenco)
        return atto.valore(campo.dove);
    const PersonaDiAtto *persona = atto.atto().persona(chiave);
    if (persona == nullptr)
        return {};
    return campo.dove.campo == QStringLiteral("Ruolo") ? QVariant(persona->ruolo)
                                                       : persona->campi.value(campo.dove.campo);
}

// Tenere è scrivere ciò che c'è nella pagina; di un atto che non c'è più, scriverlo da capo.
discordia::Parole parole(bool esiste)
{
    return {QObject::tr("L'atto è cambiato"),
            esiste ? QObject::tr("Mentre la pagina era aperta quest'atto è stato cambiato da "
                                 "un'altra parte. Nulla è stato scritto.")
                   : QObject::tr("Mentre la pagina era aperta quest'atto è stato eliminato da "
                                 "un'altra parte. Nulla è stato scritto."),
            QObject::tr("Nella pagina"),
            esiste ? QObject::tr("&Tieni ciò che è nella pagina")
                   : QObject::tr("&Scrivilo da capo"),
            esiste ? QObject::tr("&Prendi ciò che è nel file") : QObject::tr("&Lascialo perdere")};
}

} // namespace

// Ciò che è scritto nella pagina resta, il resto prende il valore del file. Le chiavi valgono per
// un atto solo: le righe di un elenco si ritrovano per il codice della persona.
void Pagina::concilia(const SchedaAtto &era, const SchedaAtto &ora)
{
    for (RigaPagina *riga : m_righe) {
        const bool elenco = eElenco(riga->riga().posto);
        if (elenco && riga->chiave != 0)
            riga->chiave = chiaveDi(ora.atto(), era.atto().persona(riga->chiave)->codice);
        for (Campo *campo : riga->campi()) {
            if (!campo->scritto())
                campo->mostra(valoreDi(ora, *campo, elenco, riga->chiave));
        }
        riga->rivede();
    }
    for (TestoPagina *testo : m_testi) {
        if (!testo->scritto())
            testo->mostra(ora.valore({testo->posto(), 0, 0, campoTesto}).toString());
    }
}

void Pagina::tuttoDaScrivere()
{
    // Una copia: scrivere nell'ultima riga di un elenco ne fa nascere un'altra.
    const std::vector<RigaPagina *> tutte = m_righe;
    for (RigaPagina *riga : tutte)
        riga->chiave = 0;
    for (RigaPagina *riga : tutte) {
        for (Campo *campo : riga->campi()) {
            if (!campo->vuoto())
                campo->scrive(campo->valore());
        }
    }
    for (TestoPagina *testo : m_testi)
        testo->segnaScritto();
}

QList<discordia::Casella> Pagina::differenze(const SchedaAtto &ora) const
{
    QList<discordia::Casella> diverse;
    for (const RigaPagina *riga : m_righe) {
        const bool elenco = eElenco(riga->riga().posto);
        // La riga che aspetta una persona non è di nessuno.
        if (elenco && riga->chiave == 0 && riga->vuota())
            continue;
        for (Campo *campo : riga->campi()) {
            const QString nelFile = valoreDi(ora, *campo, elenco, riga->chiave).toString();
            // Di una casella nascosta chi scrive non ha deciso nulla.
            if (campo->valore().toString() != nelFile && campo->fuoco()->isVisibleTo(this))
                diverse.append({campo->nome(), campo->testo(), nelFile});
        }
    }
    for (const TestoPagina *testo : m_testi) {
        const QString nelFile = ora.valore({testo->posto(), 0, 0, campoTesto}).toString();
        if (testo->valore() != nelFile)
            diverse.append({testo->testo()->accessibleName(), testo->valore(), nelFile});
    }
    return diverse;
}

// Falso se si è rinunciato, o se dopo la scelta non si è potuto registrare.
bool fmScheda::concorda(const std::optional<Atto> &nelFile)
{
    const SchedaAtto era(*m_scheda, m_prima);
    const SchedaAtto ora(*m_scheda, nelFile.value_or(Atto{}));
    switch (discordia::chiede(this, parole(nelFile.has_value()), m_pagina->differenze(ora))) {
    case discordia::Tiene:
        if (!nelFile) {
            ricomincia();
            return registra();
        }
        m_pagina->concilia(era, ora);
        // Da qui in poi l'atto di prima è quello del file: si scrive soltanto ciò che ne
        // differisce.
        m_prima = *nelFile;
        return registra();
    case discordia::Prende:
        if (nelFile)
            mostra(*nelFile);
        else
            mostra(nuovoAtto(*m_connessione, proprieta.RegistroLocale));
        return false;
    default:
        return false;
    }
}

// L'atto che nel file non c'è più diventa uno nuovo: tutto ciò che la pagina mostra è da scrivere.
void fmScheda::ricomincia()
{
    m_prima = nuovoAtto(*m_connessione, proprieta.RegistroLocale);
    proprieta.VoceLocale.clear();
    m_pagina->tuttoDaScrivere();
}
