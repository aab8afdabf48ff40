#include "db/atto/scheda_atto.h"

#include "db/schema/generi.h"

#include <algorithm>

namespace modTarvola::scheda
{

namespace
{

const QString campoRuolo = QStringLiteral("Ruolo");
const QString campoTesto = QStringLiteral("Campolungo");
const QString campoSesso = QStringLiteral("Sesso");

bool vuoto(const QVariant &valore)
{
    return valore.toString().trimmed().isEmpty();
}

template <typename Evento>
Evento *delTipo(QList<Evento> &eventi, int tipo)
{
    const auto posto = std::find_if(eventi.begin(), eventi.end(),
                                    [tipo](const Evento &uno) { return uno.tipo == tipo; });
    return posto == eventi.end() ? nullptr : &*posto;
}

void mette(Campi &campi, const QString &campo, const QVariant &valore)
{
    if (vuoto(valore))
        campi.remove(campo);
    else
        campi.insert(campo, valore);
}

} // namespace

SchedaAtto::SchedaAtto(const Scheda &scheda, Atto atto) : m_scheda(&scheda), m_atto(std::move(atto))
{
}

int SchedaAtto::primaCon(int ruolo) const
{
    for (const PersonaDiAtto &persona : m_atto.persone) {
        if (persona.ruolo == ruolo && !persona.diAltraVoce)
            return persona.chiave;
    }
    return 0;
}

const FamigliaDiAtto *SchedaAtto::famigliaDi(int chiave) const
{
    for (const FamigliaDiAtto &famiglia : m_atto.famiglie) {
        if (famiglia.ruolo == FamigliaConiuge && famiglia.coppia.contains(chiave))
            return &famiglia;
    }
    return nullptr;
}

// L'altro della coppia: chi ha il ruolo dato o, se nessuno l'ha, chi c'è.
int SchedaAtto::coniugeDi(int chiave, int ruolo) const
{
    int altro = 0;
    for (const FamigliaDiAtto &famiglia : m_atto.famiglie) {
        if (famiglia.ruolo != FamigliaConiuge || !famiglia.coppia.contains(chiave))
            continue;
        for (const int membro : famiglia.coppia) {
            if (membro == chiave)
                continue;
            if (ruolo != 0 && m_atto.persona(membro)->ruolo == ruolo)
                return membro;
            altro = altro == 0 ? membro : altro;
        }
    }
    return altro;
}

int SchedaAtto::genitoreDi(int chiave, const Posto &posto) const
{
    int perSesso = 0;
    for (const FamigliaDiAtto &famiglia : m_atto.famiglie) {
        if (!famiglia.figli.contains(chiave))
            continue;
        for (const int membro : famiglia.coppia) {
            const PersonaDiAtto &persona = *m_atto.persona(membro);
            if (persona.ruolo == posto.ruolo)
                return membro;
            if (perSesso == 0 && !eGenitore(persona.ruolo) &&
                persona.campi.value(campoSesso).toString() == posto.sesso)
                perSesso = membro;
        }
    }
    return perSesso;
}

int SchedaAtto::trova(const Posto &posto) const
{
    if (const int nata = m_nate.value(posto.nome); nata != 0 && m_atto.persona(nata) != nullptr)
        return nata;
    switch (posto.come) {
    case Come::Principale: {
        if (const int prima = primaCon(posto.ruolo); prima != 0)
            return prima;
        const Posto *altro = posto.di.isEmpty() ? nullptr : m_scheda->posto(posto.di);
        const int suo = altro == nullptr ? 0 : primaCon(altro->altroRuolo);
        return suo == 0 ? 0 : coniugeDi(suo, posto.altroRuolo);
    }
    case Come::Coniuge: {
        const int altro = trova(*m_scheda->posto(posto.di));
        const int coniuge = altro == 0 ? 0 : coniugeDi(altro, posto.ruolo);
        return coniuge != 0 || posto.altroRuolo == 0 ? coniuge : primaCon(posto.altroRuolo);
    }
    case Come::Genitore: {
        const int figlio = trova(*m_scheda->posto(posto.di));
        return figlio == 0 ? 0 : genitoreDi(figlio, posto);
    }
    default:
        return 0;
    }
}

QList<int> SchedaAtto::elenco(const Posto &posto) const
{
    QList<int> presi;
    for (const Posto &altro : m_scheda->posti) {
        if (const int suo = trova(altro); suo != 0)
            presi.append(suo);
        if (posto.come == Come::Altre && altro.come == Come::Elenco)
            presi += elenco(altro);
    }
    QList<int> chiavi;
    for (const PersonaDiAtto &persona : m_atto.persone) {
        const bool sua =
            posto.come == Come::Altre || (persona.ruolo == posto.ruolo && !persona.diAltraVoce);
        if (sua && !presi.contains(persona.chiave))
            chiavi.append(persona.chiave);
    }
    return chiavi;
}

int SchedaAtto::quante(const QString &posto) const
{
    const Posto &suo = *m_scheda->posto(posto);
    if (suo.come == Come::Elenco || suo.come == Come::Altre)
        return static_cast<int>(elenco(suo).size());
    return trova(suo) == 0 ? 0 : 1;
}

int SchedaAtto::persona(const QString &posto, int quale) const
{
    const Posto &suo = *m_scheda->posto(posto);
    if (suo.come == Come::Elenco || suo.come == Come::Altre)
        return elenco(suo).value(quale);
    return trova(suo);
}

const QList<EventoDiAtto> *SchedaAtto::eventi(const QString &posto, int quale) const
{
    const Posto &suo = *m_scheda->posto(posto);
    if (suo.come == Come::Coppia) {
        for (const Posto &sposo : m_scheda->posti) {
            if (sposo.nome != suo.di && sposo.di != suo.di)
                continue;
            const FamigliaDiAtto *famiglia = famigliaDi(trova(sposo));
            if (famiglia != nullptr)
                return &famiglia->eventi;
        }
        const auto nati = m_diCoppia.constFind(posto);
        return nati == m_diCoppia.constEnd() ? nullptr : &*nati;
    }
    const PersonaDiAtto *una = m_atto.persona(persona(posto, quale));
    return una == nullptr ? nullptr : &una->eventi;
}

const EventoDiAtto *SchedaAtto::evento(const Indirizzo &dove) const
{
    const auto *suoi = eventi(dove.posto, dove.quale);
    return suoi == nullptr ? nullptr
                           : delTipo(*const_cast<QList<EventoDiAtto> *>(suoi), dove.evento);
}

QVariant SchedaAtto::valore(const Indirizzo &dove) const
{
    const Posto &posto = *m_scheda->posto(dove.posto);
    if (posto.come == Come::Voce)
        return m_atto.campi.value(dove.campo);
    if (posto.come == Come::Testo) {
        for (const TestoDiAtto &testo : m_atto.testi) {
            if (testo.tipo == posto.ruolo)
                return dove.campo == campoTesto ? testo.testo : testo.titolo;
        }
        return {};
    }
    if (dove.evento != 0) {
        const EventoDiAtto *suo = evento(dove);
        return suo == nullptr ? QVariant() : suo->campi.value(dove.campo);
    }
    const PersonaDiAtto *una = m_atto.persona(persona(dove.posto, dove.quale));
    if (una == nullptr)
        return {};
    return dove.campo == campoRuolo ? QVariant(una->ruolo) : una->campi.value(dove.campo);
}

// La persona che nasce in un posto ha già il ruolo e il sesso che il posto dice.
int SchedaAtto::nasce(const Posto &posto)
{
    const int chiave = m_atto.aggiunge(posto.ruolo);
    if (!posto.sesso.isEmpty())
        m_atto.persona(chiave)->campi.insert(campoSesso, posto.sesso);
    if (posto.come != Come::Elenco && posto.come != Come::Altre)
        m_nate.insert(posto.nome, chiave);
    return chiave;
}

EventoDiAtto &SchedaAtto::eventoDi(const Indirizzo &dove)
{
    const Posto &posto = *m_scheda->posto(dove.posto);
    // L'atto da cui questo è stato copiato non deve cambiare con lui.
    m_atto.famiglie.detach();
    m_atto.persone.detach();
    auto *suoi = const_cast<QList<EventoDiAtto> *>(eventi(dove.posto, dove.quale));
    if (suoi == nullptr)
        suoi = posto.come == Come::Coppia ? &m_diCoppia[dove.posto]
                                          : &m_atto.persona(nasce(posto))->eventi;
    if (delTipo(*suoi, dove.evento) == nullptr)
        suoi->append({{}, dove.evento, {}});
    return *delTipo(*suoi, dove.evento);
}

TestoDiAtto &SchedaAtto::testoDi(const Posto &posto)
{
    for (TestoDiAtto &testo : m_atto.testi) {
        if (testo.tipo == posto.ruolo)
            return testo;
    }
    m_atto.testi.append({{}, posto.ruolo, {}, {}});
    return m_atto.testi.last();
}

void SchedaAtto::assegna(const Indirizzo &dove, const QVariant &valore)
{
    const Posto &posto = *m_scheda->posto(dove.posto);
    if (vuoto(valore) && vuoto(this->valore(dove)))
        return;
    if (posto.come == Come::Voce) {
        mette(m_atto.campi, dove.campo, valore);
    } else if (posto.come == Come::Testo) {
        TestoDiAtto &testo = testoDi(posto);
        (dove.campo == campoTesto ? testo.testo : testo.titolo) = valore.toString();
    } else if (dove.evento != 0) {
        mette(eventoDi(dove).campi, dove.campo, valore);
    } else {
        const int chiave = persona(dove.posto, dove.quale);
        assegna(chiave == 0 ? nasce(posto) : chiave, dove.campo, valore);
    }
}

void SchedaAtto::assegna(int chiave, const QString &campo, const QVariant &valore)
{
    if (campo == campoRuolo)
        m_atto.persona(chiave)->ruolo = valore.toInt();
    else
        mette(m_atto.persona(chiave)->campi, campo, valore);
}

int SchedaAtto::aggiunge(const QString &posto)
{
    return nasce(*m_scheda->posto(posto));
}

void SchedaAtto::toglie(int chiave)
{
    m_atto.persone.removeIf([chiave](const PersonaDiAtto &una) {
        return una.chiave == chiave && una.codice.isEmpty();
    });
}

QList<EventoDiAtto> SchedaAtto::eventiDiTroppo() const
{
    QList<const EventoDiAtto *> mostrati;
    for (const Riga &riga : m_scheda->righe) {
        for (int i = 0; riga.evento != 0 && i < std::max(1, quante(riga.posto)); ++i)
            mostrati.append(evento({riga.posto, i, riga.evento, {}}));
    }
    QList<EventoDiAtto> restano;
    const auto guarda = [&](const QList<EventoDiAtto> &eventi) {
        for (const EventoDiAtto &uno : eventi) {
            if (!mostrati.contains(&uno))
                restano.append(uno);
        }
    };
    for (const PersonaDiAtto &persona : m_atto.persone)
        guarda(persona.eventi);
    for (const FamigliaDiAtto &famiglia : m_atto.famiglie)
        guarda(famiglia.eventi);
    return restano;
}

} // namespace modTarvola::scheda
