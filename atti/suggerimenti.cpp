#include "atti/completamento.h"
#include "atti/fmScheda.h"
#include "atti/formule_scheda.h"
#include "atti/pagina.h"
#include "atti/repertorio.h"
#include "atti/tolte.h"
#include "db/schema/generi.h"
#include "platform/finestre/messaggi.h"
#include "platform/motore/recordset.h"

#include <algorithm>

// Ciò che la pagina propone: come comincia un atto nuovo, ciò che viene da ciò che si scrive, le
// voci sotto una casella.

using namespace modTarvola;
using scheda::Come;

namespace
{

const QString campoNome = QStringLiteral("Nome");
const QString campoCognome = QStringLiteral("Cognome");
const QString campoSesso = QStringLiteral("Sesso");

// Come una casella si chiama fra quelle che non propongono; le persone di un elenco fanno uno.
QString nomeDi(const scheda::Indirizzo &dove)
{
    QString nome = dove.posto + u' ' + dove.campo;
    if (dove.evento != 0)
        nome += u' ' + QString::number(dove.evento);
    return nome;
}

} // namespace

bool fmScheda::proponeIn(const Campo &campo) const
{
    return m_repertorio != nullptr && !m_repertorio->tolta(nomeDi(campo.dove), {});
}

void fmScheda::creaCompletamento()
{
    if (proprieta.TipoLock == ado::adLockReadOnly)
        return;
    m_repertorio = Repertorio::di(*m_connessione, proprieta.Percorso);
    m_repertorio->registro(proprieta.RegistroLocale);
    constexpr int quante = 8;
    Completamento *completamento = m_pagina->completa([this](const Campo &campo) {
        if (!proponeIn(campo))
            return QStringList();
        const QString &nome = campo.dove.campo;
        const auto sue = [this, &nome, &campo](int altre) {
            return modTarvola::proposte(m_repertorio->strati(proprieta.RegistroLocale), nome,
                                        campo.testo(), quante + altre);
        };
        QStringList trovate = sue(0);
        const auto tolta = [this, &nome](const QString &testo) {
            return m_repertorio->tolta(nome, testo);
        };
        // Di rado una proposta è tolta: allora se ne cerca una in più per ciascuna.
        if (std::any_of(trovate.begin(), trovate.end(), tolta)) {
            trovate = sue(static_cast<int>(m_repertorio->tolte().size()));
            trovate.removeIf(tolta);
        }
        return trovate.first(std::min<qsizetype>(quante, trovate.size()));
    });
    connect(completamento, &Completamento::nonPiu, this,
            [this](const Campo *campo, const QString &testo) {
                esegue([&] { m_repertorio->toglie({campo->dove.campo, testo}); });
            });
}

// Mette le proposte nelle caselle; quelle vuote tolgono ciò che vi era proposto.
void fmScheda::propone(const QList<proposte::Proposta> &nuove)
{
    const std::vector<Campo *> presenti = m_pagina->campi();
    for (const proposte::Proposta &una : nuove) {
        const scheda::Indirizzo &dove = una.first;
        const QVariant &valore = una.second;
        const bool vuota = valore.toString().trimmed().isEmpty();
        const auto gia = std::find_if(presenti.begin(), presenti.end(),
                                      [&dove](const Campo *uno) { return uno->dove == dove; });
        Campo *campo = gia != presenti.end() ? *gia : vuota ? nullptr : m_pagina->campo(dove);
        if (campo == nullptr)
            continue;
        campo->ritira();
        if (proponeIn(*campo))
            campo->propone(valore);
    }
}

void fmScheda::proponeNuovo()
{
    propone(proposte::diUnAttoNuovo(*m_scheda, m_precedente));
}

// Da ciò che si scrive viene altro: il cognome del padre dà quello del figlio.
void fmScheda::deriva(Campo *cambiato)
{
    aggiornaTesta();
    if (m_formule != nullptr && cambiato != nullptr)
        m_formule->cambiate();
    if (cambiato == nullptr || !m_prima.codice.isEmpty() || m_repertorio == nullptr)
        return;
    const auto &registro = m_repertorio->registro(proprieta.RegistroLocale);
    propone(proposte::derivate(*m_scheda, cambiato->dove, cambiato->valore(), registro.abitudini));
    derivaCoppia(cambiato->dove);
    if (cambiato->dove.campo == campoNome)
        derivaSesso(*cambiato);
}

// Di un padre già noto si sa la moglie; il suo cognome può venire da quello del figlio.
void fmScheda::derivaCoppia(const scheda::Indirizzo &da)
{
    if (da.campo != campoNome && da.campo != campoCognome)
        return;
    const auto testo = [this](const QString &posto, const QString &campo) {
        const Campo *suo = m_pagina->campo({posto, 0, 0, campo});
        return suo == nullptr ? QString() : suo->testo();
    };
    const Coppie &vicine = m_repertorio->registro(proprieta.RegistroLocale).coppie;
    for (const scheda::Posto &posto : m_scheda->posti) {
        if (posto.come != Come::Genitore || posto.ruolo != Padre ||
            (posto.nome != da.posto && posto.di != da.posto))
            continue;
        propone(proposte::diCoppia(*m_scheda, posto.nome,
                                   coppiaNota(*m_connessione, vicine, m_repertorio->coppie(),
                                              testo(posto.nome, campoNome),
                                              testo(posto.nome, campoCognome))));
    }
}

// Il sesso che il nome dice quasi sempre, dove il ruolo non lo dice già.
void fmScheda::derivaSesso(const Campo &nome)
{
    if (!m_scheda->posto(nome.dove.posto)->sesso.isEmpty())
        return;
    scheda::Indirizzo dove = nome.dove;
    dove.campo = campoSesso;
    propone({{dove, sessoDi(m_repertorio->strati(proprieta.RegistroLocale), nome.testo())}});
}

// Spegne le proposte nella casella dove si scrive, o le riaccende.
void fmScheda::spegneProposte()
{
    const Campo *qui = m_pagina->campoCorrente();
    if (qui == nullptr || m_repertorio == nullptr)
        return;
    const PropostaTolta casella{nomeDi(qui->dove), {}};
    const bool spenta = m_repertorio->tolta(casella.dove, {});
    esegue([&] { spenta ? m_repertorio->rimette(casella) : m_repertorio->toglie(casella); });
    m_pagina->rivedeProposte();
    aggiornaTesta();
}

void fmScheda::mostraTolte()
{
    if (m_repertorio == nullptr)
        return;
    esegue([this] { tolte::mostra(this, *m_repertorio); });
}
