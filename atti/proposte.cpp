#include "atti/proposte.h"

#include "db/schema/generi.h"
#include "platform/lingua/numerazione.h"

#include <QDate>

using namespace modTarvola;
using scheda::Come;

namespace proposte
{

namespace
{

const QString voce = QStringLiteral("voce");
const QString campoData = QStringLiteral("Data");
const QString campoCognome = QStringLiteral("Cognome");
constexpr int lungaUnaData = 10; // di un testo ISO

// Gli eventi che cadono nel giorno dell'atto.
bool nelGiornoDellAtto(int evento)
{
    return evento == Battesimo || evento == 18;
}

// Le altre date, contate da questa. Dove gli ultimi atti non hanno una regola vale il giorno
// dell'atto; e la data dell'atto dice la sua prima di quella di un evento.
QList<Proposta> giorni(const scheda::Scheda &scheda, const scheda::Indirizzo &da,
                       const QVariant &valore, const Abitudini &abitudini)
{
    QList<Proposta> altri;
    const bool diAtto = da.posto == voce;
    const QDate giorno = QDate::fromString(valore.toString().left(lungaUnaData), Qt::ISODate);
    bool dopo = diAtto;
    for (const scheda::Riga &riga : scheda.righe) {
        const bool lei = riga.posto == da.posto && riga.evento == da.evento;
        if (dopo && riga.evento != 0 && !lei) {
            const auto distanza = abitudini.distanza(da.evento, riga.evento);
            const bool gia = !diAtto && abitudini.distanza(Abitudini::dataDellAtto, riga.evento);
            const bool dellAtto = diAtto && nelGiornoDellAtto(riga.evento);
            if ((distanza && !gia) || dellAtto)
                altri.append({{riga.posto, 0, riga.evento, campoData},
                              giorno.isValid()
                                  ? giorno.addDays(distanza.value_or(0)).toString(Qt::ISODate)
                                  : QVariant()});
        }
        dopo = dopo || lei;
    }
    return altri;
}

} // namespace

QList<Proposta> diUnAttoNuovo(const scheda::Scheda & /*scheda*/, const Atto &precedente)
{
    QList<Proposta> nuove;
    for (const char *campo : {"Volume", "PaginaIniziale"}) {
        const QString nome = QString::fromUtf8(campo);
        nuove.append({{voce, 0, 0, nome}, precedente.campi.value(nome)});
    }
    const QString numero = QStringLiteral("CodiceVoce");
    nuove.append(
        {{voce, 0, 0, numero}, italiano::numeroSeguente(testoDi(precedente.campi, numero))});
    return nuove;
}

QList<Proposta> derivate(const scheda::Scheda &scheda, const scheda::Indirizzo &da,
                         const QVariant &valore, const Abitudini &abitudini)
{
    QList<Proposta> altre;
    if (da.campo == campoData)
        return giorni(scheda, da, valore, abitudini);
    if (da.campo != campoCognome)
        return altre;
    // Padre e figlio hanno lo stesso cognome, da qualunque parte si cominci.
    for (const scheda::Posto &posto : scheda.posti) {
        if (posto.come != Come::Genitore || posto.ruolo != Padre)
            continue;
        if (posto.nome == da.posto)
            altre.append({{posto.di, 0, 0, campoCognome}, valore});
        else if (posto.di == da.posto)
            altre.append({{posto.nome, 0, 0, campoCognome}, valore});
    }
    return altre;
}

QList<Proposta> diCoppia(const scheda::Scheda &scheda, const QString &marito,
                         const std::optional<CoppiaNota> &coppia)
{
    QList<Proposta> tutte;
    const scheda::Posto *suo = scheda.posto(marito);
    if (suo->come != Come::Genitore || suo->ruolo != Padre)
        return tutte;
    const CoppiaNota nota = coppia.value_or(CoppiaNota{});
    const auto persona = [&tutte](const QString &posto, const Campi &campi,
                                  const QStringList &quali) {
        for (const QString &campo : quali)
            tutte.append({{posto, 0, 0, campo}, campi.value(campo)});
    };
    const QStringList altri{QStringLiteral("Soprannome"), QStringLiteral("Detto"),
                            QStringLiteral("Precisazione")};
    persona(marito, nota.marito, altri);
    for (const scheda::Posto &posto : scheda.posti) {
        if (posto.come == Come::Genitore && posto.ruolo == Madre && posto.di == suo->di)
            persona(posto.nome, nota.moglie,
                    altri + QStringList{QStringLiteral("Nome"), campoCognome});
    }
    tutte.append({{suo->di, 0, Nascita, QStringLiteral("Luogo")}, nota.luogo});
    return tutte;
}

} // namespace proposte
