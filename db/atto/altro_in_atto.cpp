#include "db/atto/altro_in_atto.h"

#include "db/lavoro/codici.h"
#include "db/schema/generi.h"
#include "platform/lingua/italiano.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

QString nomeDi(const PersonaDiAtto &persona)
{
    QStringList parti;
    for (const char *campo : {"Nome", "Cognome"}) {
        const QString parte = testoDi(persona.campi, QString::fromUtf8(campo)).trimmed();
        if (!parte.isEmpty())
            parti.append(parte);
    }
    return parti.isEmpty() ? persona.codice : parti.join(u' ');
}

class Cercatore
{
public:
    Cercatore(ado::Connection &connessione, const QString &colonna,
              const scheda::SchedaAtto &scheda)
        : m_connessione(connessione),
          m_colonna(colonna),
          m_atto(scheda.atto()),
          m_diTroppo(scheda.eventiDiTroppo())
    {
    }

    QList<AltroRecord> trova()
    {
        allegati(m_atto.codice, QString(), true);
        for (const PersonaDiAtto &persona : m_atto.persone)
            diUno(persona.codice, nomeDi(persona), persona.eventi);
        for (const FamigliaDiAtto &famiglia : m_atto.famiglie)
            diUno(famiglia.codice, membri(famiglia), famiglia.eventi);
        operatori();
        return m_trovati;
    }

private:
    void diUno(const QString &codice, const QString &nome, const QList<EventoDiAtto> &eventi)
    {
        allegati(codice, nome, false);
        for (const EventoDiAtto &evento : eventi) {
            if (m_diTroppo.contains(evento))
                aggiunge(evento.codice, evento.tipo,
                         QStringList{nome,
                                     italiano::mostraDataEstesa(
                                         testoDi(evento.campi, QStringLiteral("Data"))),
                                     testoDi(evento.campi, QStringLiteral("Luogo"))});
            allegati(evento.codice, nome, false);
        }
    }

    QString membri(const FamigliaDiAtto &famiglia) const
    {
        QStringList nomi;
        for (const int chiave : famiglia.coppia)
            nomi.append(nomeDi(*m_atto.persona(chiave)));
        return nomi.join(QStringLiteral(" e "));
    }

    // I testi della voce stanno già nella pagina, il primo di ogni genere.
    void allegati(const QString &proprietario, const QString &nome, bool dellaVoce)
    {
        QList<int> mostrati;
        m_connessione.leggi(
            {QStringLiteral("SELECT Codice, Tipo, Nome FROM Binari WHERE IdProprietario = ? ORDER "
                            "BY CAST(substr(Codice, 2) AS INTEGER)"),
             {proprietario},
             {}},
            [&](const ado::Riga &riga) {
                const int tipo = static_cast<int>(riga.intero(1));
                const bool inPagina = dellaVoce && (tipo == Nota || tipo == TestoRiportato) &&
                                      !mostrati.contains(tipo);
                mostrati.append(tipo);
                if (!inPagina)
                    m_daDire.append({riga.testo(0), tipo, {riga.testo(2), nome}});
                return true;
            });
        for (const auto &[codice, tipo, parole] : std::exchange(m_daDire, {}))
            aggiunge(codice, tipo, parole);
    }

    void operatori()
    {
        m_connessione.leggi(
            {QStringLiteral("SELECT Operatori.Codice, Operatori.Tipo, Nome, Cognome FROM "
                            "OperatoriContesti INNER JOIN Operatori ON Operatori.Codice = "
                            "CodiceOperatore WHERE CodiceContesto = ? ORDER BY Operatori.Codice"),
             {m_atto.codice},
             {}},
            [&](const ado::Riga &riga) {
                m_daDire.append({riga.testo(0),
                                 static_cast<int>(riga.intero(1)),
                                 {riga.testo(2) + u' ' + riga.testo(3)}});
                return true;
            });
        for (const auto &[codice, tipo, parole] : std::exchange(m_daDire, {}))
            aggiunge(codice, tipo, parole);
    }

    void aggiunge(const QString &codice, int genere, QStringList parole)
    {
        parole.removeIf([](const QString &parola) { return parola.trimmed().isEmpty(); });
        QString testo = EtichettaTraduzione(m_connessione, m_colonna, genere);
        if (!parole.isEmpty())
            testo += QStringLiteral(": ") + parole.join(QStringLiteral(", ")).simplified();
        m_trovati.append({codice, genere, testo});
    }

    struct DaDire {
        QString codice;
        int tipo;
        QStringList parole;
    };

    ado::Connection &m_connessione;
    QString m_colonna;
    const Atto &m_atto;
    QList<EventoDiAtto> m_diTroppo;
    QList<DaDire> m_daDire;
    QList<AltroRecord> m_trovati;
};

} // namespace

QList<AltroRecord> altroInAtto(ado::Connection &connessione, const QString &colonna,
                               const scheda::SchedaAtto &atto)
{
    return Cercatore(connessione, colonna, atto).trova();
}

} // namespace modTarvola
