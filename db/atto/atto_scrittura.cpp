#include "db/atto/atto.h"
#include "db/lavoro/lavoro.h"
#include "db/schema/generi.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

// I campi che `dopo` ha diversi da `prima`; Null quelli che ha perso.
QVariantMap differenze(const Campi &prima, const Campi &dopo)
{
    QVariantMap diverse;
    for (auto campo = dopo.begin(); campo != dopo.end(); ++campo) {
        if (prima.value(campo.key()) != campo.value())
            diverse.insert(campo.key(), campo.value());
    }
    for (auto campo = prima.begin(); campo != prima.end(); ++campo) {
        if (!dopo.contains(campo.key()))
            diverse.insert(campo.key(), QVariant());
    }
    return diverse;
}

// Come stava prima il record col codice dato; uno vuoto se è nuovo.
template <typename Cosa>
Cosa comEra(const QList<Cosa> &prima, const QString &codice)
{
    for (const Cosa &una : prima) {
        if (!codice.isEmpty() && una.codice == codice)
            return una;
    }
    return {};
}

// Scrive un atto nel lavoro dato, dalla voce ai testi. Al primo rifiuto si ferma.
class Scrittore
{
public:
    Scrittore(Lavoro &lavoro, const Atto &prima, Atto &dopo)
        : m_lavoro(lavoro), m_prima(prima), m_dopo(dopo)
    {
    }

    bool scrive() { return voce() && persone() && famiglie() && testi(); }

    EsitoAtto esito() const { return m_esito; }

private:
    // Il record, se è nuovo o se qualcosa ne è cambiato; `fissi` sono le colonne di chi nasce.
    bool record(const QString &tabella, QString &codice, QVariantMap valori,
                const QVariantMap &fissi)
    {
        if (codice.isEmpty())
            valori.insert(fissi);
        else if (valori.isEmpty())
            return true;
        const Scritto scritto = m_lavoro.scrive({tabella, codice, valori});
        if (!scritto.rifiuto.isEmpty()) {
            m_esito.che = EsitoAtto::Rifiutato;
            m_esito.motivo = scritto.rifiuto;
            return false;
        }
        codice = scritto.codice;
        return true;
    }

    bool voce()
    {
        return record(QStringLiteral("Voci"), m_dopo.codice,
                      differenze(m_prima.campi, m_dopo.campi),
                      {{QStringLiteral("Registro"), m_dopo.registro}});
    }

    bool eventi(QList<EventoDiAtto> &eventi, const QList<EventoDiAtto> &prima,
                const QString &proprietario)
    {
        return std::all_of(eventi.begin(), eventi.end(), [&](EventoDiAtto &evento) {
            return record(QStringLiteral("Eventi"), evento.codice,
                          differenze(comEra(prima, evento.codice).campi, evento.campi),
                          {{QStringLiteral("Tipo"), evento.tipo},
                           {QStringLiteral("IdProprietario"), proprietario}});
        });
    }

    bool persone()
    {
        for (PersonaDiAtto &persona : m_dopo.persone) {
            const PersonaDiAtto era = comEra(m_prima.persone, persona.codice);
            QVariantMap valori = differenze(era.campi, persona.campi);
            if (!persona.codice.isEmpty() && persona.ruolo != era.ruolo)
                valori.insert(QStringLiteral("Ruolo"), persona.ruolo);
            // Di chi si sta scrivendo: se è rifiutato, la pagina sa accanto a chi dirlo.
            m_esito.persona = persona.chiave;
            if (!record(QStringLiteral("Individui"), persona.codice, valori,
                        {{QStringLiteral("Voce"), m_dopo.codice},
                         {QStringLiteral("Ruolo"), persona.ruolo}}) ||
                !eventi(persona.eventi, era.eventi, persona.codice))
                return false;
        }
        m_esito.persona = 0;
        return true;
    }

    void iscrive(Posto posto, const QList<int> &chiavi, const QList<int> &prima,
                 const QString &famiglia)
    {
        for (const int chiave : chiavi) {
            const PersonaDiAtto *persona = m_dopo.persona(chiave);
            if (!prima.contains(chiave) && persona != nullptr)
                m_lavoro.iscrive(posto, persona->codice, famiglia);
        }
    }

    bool famiglie()
    {
        for (FamigliaDiAtto &famiglia : m_dopo.famiglie) {
            const FamigliaDiAtto era = comEra(m_prima.famiglie, famiglia.codice);
            if (!record(QStringLiteral("Famiglie"), famiglia.codice, {},
                        {{QStringLiteral("Voce"), m_dopo.codice},
                         {QStringLiteral("Ruolo"), famiglia.ruolo}}))
                return false;
            iscrive(Posto::Coniuge, famiglia.coppia, era.coppia, famiglia.codice);
            iscrive(Posto::Figlio, famiglia.figli, era.figli, famiglia.codice);
            if (!eventi(famiglia.eventi, era.eventi, famiglia.codice))
                return false;
        }
        return true;
    }

    bool testi()
    {
        for (TestoDiAtto &testo : m_dopo.testi) {
            const TestoDiAtto era = comEra(m_prima.testi, testo.codice);
            if (testo.testo.trimmed().isEmpty() && testo != era) {
                m_esito = {EsitoAtto::Rifiutato,
                           QStringLiteral("Impossibile salvare un testo vuoto"),
                           0,
                           {}};
                return false;
            }
            QVariantMap valori;
            if (testo.testo != era.testo)
                valori.insert(QStringLiteral("Campolungo"), testo.testo);
            if (testo.titolo != era.titolo)
                valori.insert(QStringLiteral("Nome"), testo.titolo);
            if (!record(QStringLiteral("Binari"), testo.codice, valori,
                        {{QStringLiteral("Tipo"), testo.tipo},
                         {QStringLiteral("IdProprietario"), m_dopo.codice}}))
                return false;
        }
        return true;
    }

    Lavoro &m_lavoro;
    const Atto &m_prima;
    Atto &m_dopo;
    EsitoAtto m_esito;
};

// Il nome del passo: l'atto e la prima delle sue persone.
QString nomeDelPasso(const Atto &atto)
{
    QString nome = QStringLiteral("Salvato l'atto");
    const QString numero = testoDi(atto.campi, QStringLiteral("CodiceVoce"));
    if (!numero.isEmpty())
        nome += u' ' + numero;
    if (atto.persone.isEmpty())
        return nome;
    const Campi &campi = atto.persone.first().campi;
    const QString chi =
        QStringLiteral("%1 %2")
            .arg(testoDi(campi, QStringLiteral("Nome")), testoDi(campi, QStringLiteral("Cognome")))
            .trimmed();
    return chi.isEmpty() ? nome : QStringLiteral("%1, %2").arg(nome, chi);
}

} // namespace

EsitoAtto scriveAtto(ado::Connection &connessione, const QString &operatore, const Atto &prima,
                     Atto &dopo)
{
    Lavoro lavoro(connessione, nomeDelPasso(dopo), operatore);
    // Dentro la transazione: fra il confronto e la scrittura nessun altro può cambiare l'atto.
    if (!dopo.codice.isEmpty()) {
        const auto nelFile = leggeAtto(connessione, dopo.codice);
        if (nelFile != prima)
            return {EsitoAtto::Cambiato, {}, 0, nelFile};
    }
    // Su una copia: se a metà si rinuncia, in `dopo` non restano codici di record mai registrati.
    Atto scritto = dopo;
    Scrittore scrittore(lavoro, prima, scritto);
    if (!scrittore.scrive())
        return scrittore.esito();
    for (const QString &codice : std::as_const(scritto.daEliminare))
        lavoro.elimina(codice);
    lavoro.conferma();
    dopo = scritto;
    return {};
}

} // namespace modTarvola
