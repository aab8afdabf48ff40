#include "db/atto/scheda_atto.h"
#include "db/schema/generi.h"

#include <algorithm>

// Dai posti della pagina alle famiglie dell'atto.
namespace modTarvola::scheda
{

namespace
{

const QString campoSesso = QStringLiteral("Sesso");

// Vero se la persona, appena nata in un posto, non dice nulla oltre a ciò che dice il posto.
bool vuota(const PersonaDiAtto &persona)
{
    Campi suoi = persona.campi;
    suoi.remove(campoSesso);
    return persona.codice.isEmpty() && vuoti(suoi) &&
           std::all_of(persona.eventi.begin(), persona.eventi.end(),
                       [](const EventoDiAtto &uno) { return vuoti(uno.campi); });
}

bool nuovoVuoto(const EventoDiAtto &evento)
{
    return evento.codice.isEmpty() && vuoti(evento.campi);
}

} // namespace

// Costruisce l'atto da scrivere, un posto per volta.
class Compositore
{
public:
    explicit Compositore(const SchedaAtto &scheda) : m_scheda(scheda), m_atto(scheda.m_atto) {}

    SchedaAtto::Pronto compone()
    {
        for (const Posto &posto : m_scheda.scheda().posti) {
            const int chiave = m_scheda.m_nate.value(posto.nome);
            const bool nata = chiave != 0 && !manca(chiave);
            if (nata && posto.come == Come::Genitore)
                figlioDi(posto, chiave);
            else if (nata && posto.come == Come::Coniuge)
                sposa(posto, chiave);
            else if (nata && posto.come == Come::Principale)
                raggiunge(posto, chiave);
            else if (posto.come == Come::Coppia)
                celebra(posto);
        }
        // Per ultimo: finché si compone, anche di chi non dice nulla si deve sapere che manca.
        m_atto.persone.removeIf(vuota);
        for (PersonaDiAtto &persona : m_atto.persone)
            persona.eventi.removeIf(nuovoVuoto);
        m_atto.testi.removeIf([](const TestoDiAtto &testo) {
            return testo.codice.isEmpty() && testo.testo.trimmed().isEmpty();
        });
        return {m_atto, m_motivo, m_dove};
    }

private:
    bool manca(int chiave) const
    {
        const PersonaDiAtto *persona = m_atto.persona(chiave);
        return persona == nullptr || vuota(*persona);
    }

    // La persona del posto da cui un altro dipende; 0, e il motivo, se non c'è.
    int appoggio(const QString &posto)
    {
        const int chiave = m_scheda.persona(posto);
        if (!manca(chiave))
            return chiave;
        if (m_motivo.isEmpty()) {
            m_motivo =
                QStringLiteral("Impossibile salvare un individuo senza un dettaglio del nome");
            m_dove = {posto, 0, 0, QStringLiteral("Nome")};
        }
        return 0;
    }

    FamigliaDiAtto &famiglia(int ruolo, int persona, bool figlio)
    {
        for (FamigliaDiAtto &una : m_atto.famiglie) {
            const QList<int> &suoi = figlio ? una.figli : una.coppia;
            if (una.ruolo == ruolo && suoi.contains(persona))
                return una;
        }
        FamigliaDiAtto nuova;
        nuova.ruolo = ruolo;
        (figlio ? nuova.figli : nuova.coppia).append(persona);
        m_atto.famiglie.append(nuova);
        return m_atto.famiglie.last();
    }

    void figlioDi(const Posto &posto, int genitore)
    {
        if (const int figlio = appoggio(posto.di); figlio != 0)
            famiglia(FamigliaGenitori, figlio, true).coppia.append(genitore);
    }

    // Chi può stare da solo nella voce ci sta, finché l'altro manca; se l'altro c'è ne è il
    // coniuge.
    void sposa(const Posto &posto, int chiave)
    {
        if (posto.altroRuolo != 0 && manca(m_scheda.persona(posto.di))) {
            m_atto.persona(chiave)->ruolo = posto.altroRuolo;
            return;
        }
        const int altro = appoggio(posto.di);
        if (altro == 0)
            return;
        const QString sesso = m_atto.persona(altro)->campi.value(campoSesso).toString();
        if (posto.ruolo == 0) {
            if (sesso.isEmpty()) {
                m_motivo = QStringLiteral(
                    "Per creare una famiglia come coniuge è necessario definire il sesso");
                m_dove = {posto.di, 0, 0, campoSesso};
                return;
            }
            const bool marito = sesso == QStringLiteral("F");
            m_atto.persona(chiave)->ruolo = marito ? Marito : Moglie;
            m_atto.persona(chiave)->campi.insert(campoSesso, marito ? QStringLiteral("M")
                                                                    : QStringLiteral("F"));
        }
        FamigliaDiAtto &sua = famiglia(FamigliaConiuge, altro, false);
        if (!sua.coppia.contains(chiave))
            sua.coppia.append(chiave);
    }

    // Chi arriva quando l'altro della coppia sta già da solo nella voce ne è il coniuge.
    void raggiunge(const Posto &posto, int chiave)
    {
        const Posto *altro = posto.di.isEmpty() ? nullptr : m_scheda.scheda().posto(posto.di);
        const int suo = altro == nullptr ? 0 : m_scheda.primaCon(altro->altroRuolo);
        if (suo == 0 || m_atto.persona(suo)->codice.isEmpty())
            return;
        m_atto.persona(chiave)->ruolo = posto.altroRuolo;
        famiglia(FamigliaConiuge, suo, false).coppia.append(chiave);
    }

    // Gli eventi nati per una coppia che non aveva ancora una famiglia.
    void celebra(const Posto &posto)
    {
        QList<EventoDiAtto> nati = m_scheda.m_diCoppia.value(posto.nome);
        nati.removeIf(nuovoVuoto);
        if (!nati.isEmpty()) {
            int chi = m_scheda.persona(posto.di);
            for (const Posto &altro : m_scheda.scheda().posti) {
                if (manca(chi) && altro.come == Come::Coniuge && altro.di == posto.di)
                    chi = m_scheda.persona(altro.nome);
            }
            chi = manca(chi) ? appoggio(posto.di) : chi;
            if (chi != 0)
                famiglia(FamigliaConiuge, chi, false).eventi += nati;
        }
        for (FamigliaDiAtto &una : m_atto.famiglie)
            una.eventi.removeIf(nuovoVuoto);
    }

    const SchedaAtto &m_scheda;
    Atto m_atto;
    QString m_motivo;
    Indirizzo m_dove;
};

SchedaAtto::Pronto SchedaAtto::pronto() const
{
    return Compositore(*this).compone();
}

} // namespace modTarvola::scheda
