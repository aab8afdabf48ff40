#include "db/atto/coppie.h"

#include "db/schema/generi.h"
#include "platform/lingua/piegatura.h"

#include <QHashFunctions>

#include <algorithm>
#include <array>

namespace modTarvola
{

namespace
{

constexpr int ruoloSposo = 2;
constexpr int ruoloSposa = 3;
const QString campoNome = QStringLiteral("Nome");
const QString campoCognome = QStringLiteral("Cognome");
// Ciò che di una persona resta vero da un atto all'altro.
const std::array campiStabili{campoNome, campoCognome, QStringLiteral("Soprannome"),
                              QStringLiteral("Detto"), QStringLiteral("Precisazione")};

QString nomeIntero(const QString &nome, const QString &cognome)
{
    return italiano::piegato(nome) + u'|' + italiano::piegato(cognome);
}

QString nomeIntero(const Campi &campi)
{
    return nomeIntero(testoDi(campi, campoNome), testoDi(campi, campoCognome));
}

// Di chi non ha un nome e un cognome non si sa chi sia.
bool noto(const QString &intero)
{
    return !intero.startsWith(u'|') && !intero.endsWith(u'|');
}

// Lo stesso da un avvio all'altro non serve; lo stesso in tutto il programma sì.
quint32 segnoDi(const QString &intero)
{
    constexpr size_t seme = 0;
    return static_cast<quint32>(qHash(intero, seme));
}

bool eMarito(int ruolo, const QString &sesso)
{
    if (ruolo == Padre || ruolo == Marito || ruolo == ruoloSposo)
        return true;
    const bool donna = ruolo == Madre || ruolo == Moglie || ruolo == ruoloSposa;
    return !donna && sesso == QStringLiteral("M");
}

CoppiaNota leggeCoppia(ado::Connection &connessione, const QString &famiglia)
{
    CoppiaNota letta;
    connessione.leggi(
        {QStringLiteral("SELECT Nome, Cognome, Soprannome, Detto, Precisazione, Ruolo, Sesso FROM "
                        "FamiglieConiugi CROSS JOIN Individui ON Codice = CodiceIndividuo WHERE "
                        "CodiceFamiglia = ?"),
         {famiglia},
         {}},
        [&letta](const ado::Riga &riga) {
            const auto quanti = static_cast<int>(campiStabili.size());
            const bool marito =
                eMarito(static_cast<int>(riga.intero(quanti)), riga.testo(quanti + 1));
            Campi &suoi = marito ? letta.marito : letta.moglie;
            for (int i = 0; i < quanti; ++i) {
                if (!riga.nullo(i))
                    suoi.insert(campiStabili.at(static_cast<size_t>(i)), riga.testo(i));
            }
            return true;
        });
    letta.luogo = connessione
                      .valore({QStringLiteral("SELECT Luogo FROM FamiglieGenitori CROSS JOIN "
                                              "Eventi ON IdProprietario = CodiceIndividuo AND Tipo "
                                              "= ? WHERE CodiceFamiglia = ? AND Luogo IS NOT NULL"),
                               {Nascita, famiglia},
                               {}})
                      .toString();
    return letta;
}

} // namespace

void Coppie::aggiunge(const QString &nome, const QString &cognome, const QString &famiglia)
{
    const QString intero = nomeIntero(nome, cognome);
    if (noto(intero) && famiglia.size() > 1)
        m_coppie.push_back({segnoDi(intero), famiglia.sliced(1).toUInt()});
}

void Coppie::impara(const Atto &atto)
{
    for (const FamigliaDiAtto &famiglia : atto.famiglie) {
        const PersonaDiAtto *marito = nullptr;
        const PersonaDiAtto *moglie = nullptr;
        for (const int chiave : famiglia.coppia) {
            const PersonaDiAtto *una = atto.persona(chiave);
            const bool suo = eMarito(una->ruolo, testoDi(una->campi, QStringLiteral("Sesso")));
            (suo ? marito : moglie) = una;
        }
        if (marito == nullptr)
            continue;
        if (famiglia.ruolo == FamigliaGenitori)
            ++(moglie == nullptr ? m_soli : m_accompagnati);
        if (moglie == nullptr)
            continue;
        const QString suo = nomeIntero(marito->campi);
        const QString sua = nomeIntero(moglie->campi);
        if (!noto(suo))
            continue;
        const QString prima = m_mogli.value(suo);
        if (!prima.isEmpty())
            ++(prima == sua ? m_giuste : m_sbagliate);
        m_mogli.insert(suo, sua);
        aggiunge(testoDi(marito->campi, campoNome), testoDi(marito->campi, campoCognome),
                 famiglia.codice);
    }
    ordina();
}

void Coppie::ordina()
{
    const auto prima = m_coppie.begin() + static_cast<std::ptrdiff_t>(m_ordinate);
    std::sort(prima, m_coppie.end());
    std::inplace_merge(m_coppie.begin(), prima, m_coppie.end());
    m_ordinate = m_coppie.size();
}

QStringList Coppie::famiglie(const QString &nome, const QString &cognome, size_t quante) const
{
    const QString intero = nomeIntero(nome, cognome);
    const quint32 segno = segnoDi(intero);
    QStringList trovate;
    if (!noto(intero))
        return trovate;
    auto dopo =
        std::upper_bound(m_coppie.begin(), m_coppie.end(), segno,
                         [](quint32 uno, const Coppia &altra) { return uno < altra.segno; });
    while (dopo != m_coppie.begin() && (--dopo)->segno == segno &&
           static_cast<size_t>(trovate.size()) < quante)
        trovate.append(u'F' + QString::number(dopo->famiglia));
    return trovate;
}

Coppie leggeCoppie(ado::Connection &connessione, const Prosegue &prosegue)
{
    Coppie lette;
    LetturaLenta lettura(connessione, prosegue);
    lettura.aPezzi(
        QStringLiteral("SELECT Individui.rowid, CodiceFamiglia, Nome, Cognome, Ruolo, Sesso FROM "
                       "Individui CROSS JOIN FamiglieConiugi ON CodiceIndividuo = Codice WHERE "
                       "Individui.rowid > ? ORDER BY Individui.rowid LIMIT ?"),
        [&lette](const ado::Riga &riga) {
            constexpr int nome = 2;
            constexpr int ruolo = 4;
            if (eMarito(static_cast<int>(riga.intero(ruolo)), riga.testo(ruolo + 1)))
                lette.aggiunge(riga.testo(nome), riga.testo(nome + 1), riga.testo(1));
        });
    lette.ordina();
    return lette;
}

std::optional<CoppiaNota> coppiaNota(ado::Connection &connessione, const Coppie &vicine,
                                     const Coppie &tutte, const QString &nome,
                                     const QString &cognome)
{
    if (!vicine.fedeli())
        return {};
    constexpr size_t guardate = 6;
    const QString cercato = nomeIntero(nome, cognome);
    QStringList famiglie = vicine.famiglie(nome, cognome, 1);
    if (famiglie.isEmpty())
        famiglie = tutte.famiglie(nome, cognome, guardate);
    std::optional<CoppiaNota> trovata;
    for (const QString &famiglia : std::as_const(famiglie)) {
        const CoppiaNota letta = leggeCoppia(connessione, famiglia);
        // Un'altra famiglia con lo stesso segno, una coppia non più intera, una moglie senza nome.
        if (nomeIntero(letta.marito) != cercato || testoDi(letta.moglie, campoNome).isEmpty())
            continue;
        if (trovata && nomeIntero(trovata->moglie) != nomeIntero(letta.moglie))
            return {};
        if (!trovata)
            trovata = letta;
    }
    return trovata;
}

} // namespace modTarvola
