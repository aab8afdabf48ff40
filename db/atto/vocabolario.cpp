#include "db/atto/vocabolario.h"

#include "platform/lingua/piegatura.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace modTarvola
{

namespace
{

const QString campoNome = QStringLiteral("Nome");
const QString campoSesso = QStringLiteral("Sesso");
// I nomi e i soprannomi delle persone non si mescolano con i luoghi, né gli uni con gli altri.
const std::array campiDiPersona{QStringLiteral("Nome"),         QStringLiteral("Cognome"),
                                QStringLiteral("Soprannome"),   QStringLiteral("Detto"),
                                QStringLiteral("Precisazione"), QStringLiteral("Età")};
const std::array campiDiEvento{QStringLiteral("Luogo"), QStringLiteral("Indirizzo"),
                               QStringLiteral("Causa"), QStringLiteral("Valore")};
constexpr int righePerPezzo = 4000;

QString colonne(const auto &campi)
{
    QStringList nomi;
    for (const QString &campo : campi)
        nomi.append(u'"' + campo + u'"');
    return nomi.join(u',');
}

} // namespace

void Lessico::conta(const QString &testo, int volte, bool nelRegistro, int recente)
{
    const QString pulito = testo.simplified();
    if (pulito.isEmpty())
        return;
    auto posto = m_posti.constFind(pulito);
    if (posto == m_posti.constEnd()) {
        posto = m_posti.insert(pulito, static_cast<int>(m_voci.size()));
        m_voci.push_back({pulito, italiano::piegato(pulito), 0, 0, 0});
    }
    Voce &voce = m_voci[static_cast<size_t>(*posto)];
    voce.archivio += volte;
    voce.registro += nelRegistro ? volte : 0;
    voce.recente = std::max(voce.recente, recente);
}

QStringView Lessico::da(const Inizio &inizio) const
{
    return QStringView(m_voci[static_cast<size_t>(inizio.voce)].piegato).sliced(inizio.posto);
}

void Lessico::ordina()
{
    const auto prima = static_cast<std::ptrdiff_t>(m_inizi.size());
    for (; m_ordinati < m_voci.size(); ++m_ordinati) {
        const QString &piegato = m_voci[m_ordinati].piegato;
        for (int posto = 0; posto < piegato.size(); ++posto) {
            if (posto == 0 || piegato.at(posto - 1) == u' ')
                m_inizi.push_back({static_cast<int>(m_ordinati), posto});
        }
    }
    const auto precede = [this](const Inizio &uno, const Inizio &altro) {
        return da(uno) < da(altro);
    };
    std::sort(m_inizi.begin() + prima, m_inizi.end(), precede);
    std::inplace_merge(m_inizi.begin(), m_inizi.begin() + prima, m_inizi.end(), precede);
}

QStringList Lessico::cerca(const QString &inizio, int quanti) const
{
    const QString cercato = italiano::piegato(inizio);
    if (cercato.isEmpty())
        return {};
    const auto primo =
        std::lower_bound(m_inizi.begin(), m_inizi.end(), QStringView(cercato),
                         [this](const Inizio &uno, QStringView testo) { return da(uno) < testo; });
    std::vector<Inizio> trovati;
    for (auto uno = primo; uno != m_inizi.end() && da(*uno).startsWith(cercato); ++uno)
        trovati.push_back(*uno);
    // Chi comincia così dal principio viene prima di chi lo fa da un'altra parola, a parità.
    const auto merito = [this](const Inizio &uno) {
        const Voce &voce = m_voci[static_cast<size_t>(uno.voce)];
        return std::tuple(voce.recente > 0, voce.recente > 0 ? voce.registro : 0, voce.registro,
                          voce.archivio, -uno.posto, -uno.voce);
    };
    const auto meglio = [&](const Inizio &uno, const Inizio &altro) {
        return merito(uno) > merito(altro);
    };
    // Un testo si trova più volte se più parole cominciano così: si cerca qualcosa di più.
    const auto fine = std::min(trovati.size(), static_cast<size_t>(quanti) * 3);
    std::partial_sort(trovati.begin(), trovati.begin() + static_cast<std::ptrdiff_t>(fine),
                      trovati.end(), meglio);
    QStringList testi;
    for (size_t i = 0; i < fine && testi.size() < quanti; ++i) {
        const QString &testo = m_voci[static_cast<size_t>(trovati[i].voce)].testo;
        if (!testi.contains(testo))
            testi.append(testo);
    }
    return testi;
}

const Lessico *Vocabolario::lessico(const QString &campo) const
{
    const auto suo = m_lessici.constFind(campo);
    return suo == m_lessici.constEnd() ? nullptr : &*suo;
}

QStringList Vocabolario::proposte(const QString &campo, const QString &scritto, int quante) const
{
    const Lessico *suo = lessico(campo);
    if (suo == nullptr)
        return {};
    QStringList trovate = suo->cerca(scritto, quante + 1);
    const auto spazio = scritto.lastIndexOf(u' ');
    const Lessico *parole = lessico(campo + QStringLiteral(" parole"));
    if (spazio > 0 && parole != nullptr && trovate.size() < quante) {
        const auto ultime = parole->cerca(scritto.sliced(spazio + 1), quante);
        for (const QString &parola : ultime)
            trovate.append(scritto.first(spazio + 1) + parola);
    }
    trovate.removeAll(scritto.trimmed());
    trovate.removeDuplicates();
    return trovate.first(std::min<qsizetype>(quante, trovate.size()));
}

QString Vocabolario::sessoDi(const QString &nome) const
{
    const auto [maschi, femmine] = m_sessi.value(italiano::piegato(nome).section(u' ', 0, 0));
    constexpr int quasiSempre = 10;
    if (maschi > femmine * quasiSempre)
        return QStringLiteral("M");
    return femmine > maschi * quasiSempre ? QStringLiteral("F") : QString();
}

void Vocabolario::conta(const QString &campo, const QString &testo, bool nelRegistro, int recente,
                        int volte)
{
    if (testo.isEmpty())
        return;
    m_lessici[campo].conta(testo, volte, nelRegistro, recente);
    if (campo != campoNome)
        return;
    const auto parole = QStringView(testo).split(u' ', Qt::SkipEmptyParts);
    for (const QStringView parola : parole)
        m_lessici[campo + QStringLiteral(" parole")].conta(parola.toString(), volte, nelRegistro,
                                                           recente);
}

void Vocabolario::contaSesso(const QString &nome, const QString &sesso, int volte)
{
    if (nome.isEmpty() || sesso.isEmpty())
        return;
    auto &[maschi, femmine] = m_sessi[italiano::piegato(nome).section(u' ', 0, 0)];
    (sesso == QStringLiteral("M") ? maschi : femmine) += volte;
}

void Vocabolario::ordina()
{
    for (Lessico &lessico : m_lessici)
        lessico.ordina();
}

void Vocabolario::impara(const Atto &atto)
{
    ++m_recente;
    const auto eventi = [this](const QList<EventoDiAtto> &tutti) {
        for (const EventoDiAtto &evento : tutti) {
            for (const QString &campo : campiDiEvento)
                conta(campo, testoDi(evento.campi, campo), true, m_recente);
        }
    };
    for (const PersonaDiAtto &persona : atto.persone) {
        for (const QString &campo : campiDiPersona)
            conta(campo, testoDi(persona.campi, campo), true, m_recente);
        contaSesso(testoDi(persona.campi, campoNome), testoDi(persona.campi, campoSesso));
        eventi(persona.eventi);
    }
    for (const FamigliaDiAtto &famiglia : atto.famiglie)
        eventi(famiglia.eventi);
    ordina();
}

void Vocabolario::leggeRecenti(ado::Connection &connessione, const QString &registro, int atti)
{
    QHash<QString, int> posti;
    connessione.leggi({QStringLiteral("SELECT Codice FROM Voci WHERE Registro = ? ORDER BY "
                                      "CAST(substr(Codice, 2) AS INTEGER) DESC LIMIT ?"),
                       {registro, atti},
                       {}},
                      [&](const ado::Riga &riga) {
                          posti.insert(riga.testo(0), static_cast<int>(posti.size()));
                          return true;
                      });
    m_recente = static_cast<int>(posti.size());
    for (auto atto = posti.cbegin(); atto != posti.cend(); ++atto) {
        const int recente = m_recente - atto.value();
        connessione.leggi({QStringLiteral("SELECT %1, Sesso FROM Individui WHERE Voce = ?")
                               .arg(colonne(campiDiPersona)),
                           {atto.key()},
                           {}},
                          [&](const ado::Riga &riga) {
                              for (int i = 0; i < riga.colonne() - 1; ++i)
                                  conta(riga.nome(i), riga.testo(i), true, recente);
                              contaSesso(riga.testo(0), riga.testo(riga.colonne() - 1));
                              return true;
                          });
        connessione.leggi({QStringLiteral("SELECT %1 FROM Individui CROSS JOIN Eventi ON "
                                          "IdProprietario = Individui.Codice WHERE Voce = ?")
                               .arg(colonne(campiDiEvento)),
                           {atto.key()},
                           {}},
                          [&](const ado::Riga &riga) {
                              for (int i = 0; i < riga.colonne(); ++i)
                                  conta(riga.nome(i), riga.testo(i), true, recente);
                              return true;
                          });
    }
    ordina();
}

void Vocabolario::leggeArchivio(ado::Connection &connessione, const QString &registro,
                                const std::function<bool()> &prosegue)
{
    // Un pezzo per volta: chi legge senza fermarsi tiene fuori dal file chi vuole scrivere.
    const auto aPezzi = [&](const QString &istruzione,
                            const std::function<void(const ado::Riga &)> &perRiga) {
        qint64 dopo = std::numeric_limits<qint64>::min();
        for (int lette = righePerPezzo; lette == righePerPezzo && prosegue();) {
            lette = 0;
            connessione.leggi({istruzione, {dopo, righePerPezzo}, {}}, [&](const ado::Riga &riga) {
                dopo = riga.intero(0);
                ++lette;
                perRiga(riga);
                return true;
            });
        }
    };
    aPezzi(QStringLiteral("SELECT rowid, %1, Sesso FROM Individui WHERE rowid > ? ORDER BY rowid "
                          "LIMIT ?")
               .arg(colonne(campiDiPersona)),
           [&](const ado::Riga &riga) {
               for (int i = 1; i < riga.colonne() - 1; ++i)
                   conta(campiDiPersona[static_cast<size_t>(i - 1)], riga.testo(i), false, 0);
               contaSesso(riga.testo(1), riga.testo(riga.colonne() - 1));
           });
    aPezzi(QStringLiteral("SELECT rowid, %1 FROM Eventi WHERE rowid > ? ORDER BY rowid LIMIT ?")
               .arg(colonne(campiDiEvento)),
           [&](const ado::Riga &riga) {
               for (int i = 1; i < riga.colonne(); ++i)
                   conta(campiDiEvento[static_cast<size_t>(i - 1)], riga.testo(i), false, 0);
           });
    if (prosegue())
        leggeRecenti(connessione, registro);
}

} // namespace modTarvola
