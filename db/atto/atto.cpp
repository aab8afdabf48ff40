#include "db/atto/atto.h"

#include "db/lavoro/codici.h"
#include "db/schema/generi.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

// Le colonne che fanno parte del valore, tabella per tabella.
struct Colonne {
    const char *tabella;
    const char *nomi;
};

constexpr Colonne colonneVoce{"Voci", "Volume, Data, PaginaIniziale, CodiceVoce"};
constexpr Colonne colonneIndividuo{
    "Individui",
    "Nome, Cognome, Soprannome, Detto, Precisazione, \"Età\", Sesso, Legittimo, Vivente"};
constexpr Colonne colonneEvento{"Eventi", "Data, Ora, Luogo, Indirizzo, Causa, Valore"};

QString selezione(const Colonne &colonne, const char *davanti, const char *condizione)
{
    return QStringLiteral("SELECT %1, %2 FROM %3 WHERE %4")
        .arg(QString::fromUtf8(davanti), QString::fromUtf8(colonne.nomi),
             QString::fromUtf8(colonne.tabella), QString::fromUtf8(condizione));
}

// I valori che seguono la colonna data; i Null restano fuori.
Campi campiDi(const ado::Riga &riga, int da)
{
    Campi campi;
    for (int i = da; i < riga.colonne(); ++i) {
        if (!riga.nullo(i))
            campi.insert(riga.nome(i), riga.valore(i));
    }
    return campi;
}

// Ciò che serve mentre un atto si legge: dove sta ciascun record già letto.
class Lettore
{
public:
    Lettore(ado::Connection &connessione, Atto &atto) : m_connessione(connessione), m_atto(atto) {}

    void legge()
    {
        persone();
        famiglie();
        for (FamigliaDiAtto &famiglia : m_atto.famiglie)
            famiglia.eventi = eventi(famiglia.codice);
        for (PersonaDiAtto &persona : m_atto.persone)
            persona.eventi = eventi(persona.codice);
        testi();
    }

private:
    void leggi(const QString &testo, const QVariantList &valori,
               const std::function<void(const ado::Riga &)> &perRiga)
    {
        m_connessione.leggi({testo, valori, {}}, [&](const ado::Riga &riga) {
            perRiga(riga);
            return true;
        });
    }

    void aggiunge(const ado::Riga &riga)
    {
        PersonaDiAtto &persona = *m_atto.persona(m_atto.aggiunge(static_cast<int>(riga.intero(1))));
        persona.codice = riga.testo(0);
        persona.diAltraVoce = riga.testo(2).compare(m_atto.codice, Qt::CaseInsensitive) != 0;
        persona.campi = campiDi(riga, 3);
        m_chiavi.insert(persona.codice.toUpper(), persona.chiave);
    }

    void persone()
    {
        leggi(selezione(colonneIndividuo, "Codice, Ruolo, Voce",
                        "Voce = ? ORDER BY CAST(substr(Codice, 2) AS INTEGER)"),
              {m_atto.codice}, [this](const ado::Riga &riga) { aggiunge(riga); });
    }

    // La chiave del membro; 0 se il suo record non c'è.
    int chiaveDi(const QString &codice)
    {
        if (!m_chiavi.contains(codice.toUpper()))
            leggi(selezione(colonneIndividuo, "Codice, Ruolo, Voce", "Codice = ?"), {codice},
                  [this](const ado::Riga &riga) { aggiunge(riga); });
        return m_chiavi.value(codice.toUpper());
    }

    // Le famiglie della voce e quelle di cui le sue persone fanno parte.
    void famiglie()
    {
        leggi(
            QStringLiteral("SELECT Codice, Ruolo, Voce FROM Famiglie WHERE Voce = ?1 OR Codice IN "
                           "(SELECT CodiceFamiglia FROM Individui CROSS JOIN FamiglieConiugi ON "
                           "CodiceIndividuo = Individui.Codice WHERE Individui.Voce = ?1 UNION "
                           "SELECT CodiceFamiglia FROM Individui CROSS JOIN FamiglieGenitori ON "
                           "CodiceIndividuo = Individui.Codice WHERE Individui.Voce = ?1) "
                           "ORDER BY CAST(substr(Codice, 2) AS INTEGER)"),
            {m_atto.codice}, [this](const ado::Riga &riga) {
                FamigliaDiAtto famiglia;
                famiglia.codice = riga.testo(0);
                famiglia.ruolo = static_cast<int>(riga.intero(1));
                famiglia.diAltraVoce =
                    riga.testo(2).compare(m_atto.codice, Qt::CaseInsensitive) != 0;
                m_atto.famiglie.append(famiglia);
            });
        for (FamigliaDiAtto &famiglia : m_atto.famiglie) {
            famiglia.coppia = membri("FamiglieConiugi", famiglia.codice);
            famiglia.figli = membri("FamiglieGenitori", famiglia.codice);
        }
    }

    QList<int> membri(const char *tabella, const QString &famiglia)
    {
        QStringList codici;
        leggi(QStringLiteral("SELECT CodiceIndividuo FROM %1 WHERE CodiceFamiglia = ? ORDER BY "
                             "CAST(substr(CodiceIndividuo, 2) AS INTEGER)")
                  .arg(QString::fromUtf8(tabella)),
              {famiglia}, [&](const ado::Riga &riga) { codici.append(riga.testo(0)); });
        QList<int> chiavi;
        for (const QString &codice : std::as_const(codici)) {
            if (const int chiave = chiaveDi(codice); chiave != 0)
                chiavi.append(chiave);
        }
        return chiavi;
    }

    QList<EventoDiAtto> eventi(const QString &proprietario)
    {
        QList<EventoDiAtto> letti;
        leggi(selezione(colonneEvento, "Codice, Tipo",
                        "IdProprietario = ? ORDER BY CAST(substr(Codice, 2) AS INTEGER)"),
              {proprietario}, [&](const ado::Riga &riga) {
                  letti.append({riga.testo(0), static_cast<int>(riga.intero(1)), campiDi(riga, 2)});
              });
        return letti;
    }

    void testi()
    {
        leggi(QStringLiteral("SELECT Codice, Tipo, Nome, Campolungo FROM Binari WHERE "
                             "IdProprietario = ? AND Tipo IN (%1, %2) ORDER BY "
                             "CAST(substr(Codice, 2) AS INTEGER)")
                  .arg(Nota)
                  .arg(TestoRiportato),
              {m_atto.codice}, [this](const ado::Riga &riga) {
                  m_atto.testi.append({riga.testo(0), static_cast<int>(riga.intero(1)),
                                       riga.testo(2), riga.testo(3)});
              });
    }

    ado::Connection &m_connessione;
    Atto &m_atto;
    QMap<QString, int> m_chiavi;
};

} // namespace

PersonaDiAtto *Atto::persona(int chiave)
{
    const auto posto = std::find_if(persone.begin(), persone.end(),
                                    [chiave](const auto &una) { return una.chiave == chiave; });
    return posto == persone.end() ? nullptr : &*posto;
}

const PersonaDiAtto *Atto::persona(int chiave) const
{
    return const_cast<Atto *>(this)->persona(chiave);
}

int Atto::aggiunge(int ruolo)
{
    int massima = 0;
    for (const PersonaDiAtto &una : std::as_const(persone))
        massima = std::max(massima, una.chiave);
    PersonaDiAtto nuova;
    nuova.chiave = massima + 1;
    nuova.ruolo = ruolo;
    persone.append(nuova);
    return nuova.chiave;
}

bool vuoti(const Campi &campi)
{
    return std::all_of(campi.begin(), campi.end(), [](const QVariant &valore) {
        return valore.toString().trimmed().isEmpty();
    });
}

std::optional<Atto> leggeAtto(ado::Connection &connessione, const QString &codice)
{
    std::optional<Atto> atto;
    connessione.leggi({selezione(colonneVoce, "Codice, Registro", "Codice = ?"), {codice}, {}},
                      [&](const ado::Riga &riga) {
                          atto.emplace();
                          atto->codice = riga.testo(0);
                          atto->registro = riga.testo(1);
                          atto->campi = campiDi(riga, 2);
                          return false;
                      });
    if (!atto)
        return {};
    atto->tipo = connessione
                     .valore({QStringLiteral("SELECT Tipo FROM Registri WHERE Codice = ?"),
                              {atto->registro},
                              {}})
                     .toInt();
    Lettore(connessione, *atto).legge();
    return atto;
}

Atto nuovoAtto(ado::Connection &connessione, const QString &registro)
{
    Atto atto;
    atto.registro = registro;
    atto.tipo =
        connessione
            .valore({QStringLiteral("SELECT Tipo FROM Registri WHERE Codice = ?"), {registro}, {}})
            .toInt();
    return atto;
}

} // namespace modTarvola
