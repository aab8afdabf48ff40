#include "db/formule/atti_letti.h"

#include <algorithm>

namespace modTarvola::formule
{

namespace
{

constexpr size_t attiAlPiu = 150;
constexpr qsizetype testoAlPiu = 6000;

} // namespace

int Nomi::numero(const QString &testo)
{
    if (testo.isEmpty())
        return 0;
    const auto suo = m_numeri.constFind(testo);
    if (suo != m_numeri.constEnd())
        return *suo;
    m_testi.push_back(testo);
    m_numeri.insert(testo, quanti() - 1);
    return quanti() - 1;
}

int AttiLetti::casellaDi(const scheda::Indirizzo &dove)
{
    const auto sua = m_caselle.constFind(dove);
    if (sua != m_caselle.constEnd())
        return *sua;
    m_indirizzi.push_back(dove);
    const int numero = static_cast<int>(m_indirizzi.size()) - 1;
    m_caselle.insert(dove, numero);
    return numero;
}

const AttiLetti::Voci &AttiLetti::vociDi(const scheda::Indirizzo &dove, const QString &valore)
{
    // Le date e le ore hanno forme loro; degli altri campi conta solo il valore.
    const bool tempo = dove.campo == QStringLiteral("Data") || dove.campo == QStringLiteral("Ora");
    Voci &sue = m_voci[tempo ? dove.campo + valore : u'=' + valore];
    if (!sue.rese.isEmpty())
        return sue;
    sue.rese = rese(dove, valore);
    for (const Resa &resa : std::as_const(sue.rese)) {
        for (int g = 0; g < resa.grafie.size(); ++g) {
            const QString &testo = resa.grafie.at(g);
            if (testo.isEmpty() || resa.grafie.indexOf(testo) < g)
                continue;
            const QString minuscolo = testo.toLower();
            Pronte::Voce nuova{
                {}, testo, 0, resa.forma, g, resa.grafie.first(), resa.grafie.size() > 1};
            for (const Pezzo &pezzo : pezzi(minuscolo))
                nuova.pezzi.append(minuscolo.mid(pezzo.inizio, pezzo.lunghezza));
            if (!nuova.pezzi.isEmpty())
                sue.voci.push_back(nuova);
        }
    }
    return sue;
}

Pronte AttiLetti::prepara(const Caselle &caselle)
{
    Pronte pronte;
    pronte.caselle = caselle;
    for (auto una = caselle.cbegin(); una != caselle.cend(); ++una) {
        const int casella = casellaDi(una.key());
        if (!siScrive(una.key()) || una.value().trimmed().isEmpty())
            continue;
        pronte.piene.resize(std::max(pronte.piene.size(), static_cast<size_t>(casella) + 1));
        pronte.piene[static_cast<size_t>(casella)] = 1;
        const Voci &sue = vociDi(una.key(), una.value());
        for (const Resa &resa : sue.rese)
            pronte.grafie.insert((casella << 9) + resa.forma, resa.grafie);
        for (const Pronte::Voce &voce : sue.voci) {
            auto &qui = pronte.voci[voce.pezzi.first()];
            qui.push_back(voce);
            qui.back().casella = casella;
        }
        if (sue.rese.first().forma == FormaUguale && una.value().front().isLetter())
            pronte.nomi.push_back({casella, una.value().simplified().split(u' ')});
    }
    trattiDi(pronte);
    return pronte;
}

QString AttiLetti::luogo(int chiave, int parola) const
{
    const scheda::Indirizzo &dove = m_indirizzi[static_cast<size_t>(Chiave::casella(chiave))];
    return dove.posto + u'.' + dove.campo + u' ' + m_testi.testo(parola);
}

AttiLetti::Reso AttiLetti::reso(int chiave, int luogo, const Pronte &pronte) const
{
    const int casella = Chiave::casella(chiave);
    const int forma = Chiave::forma(chiave);
    if (forma == FormaDeclinata) {
        const auto nome =
            std::find_if(pronte.nomi.begin(), pronte.nomi.end(),
                         [casella](const Pronte::Nome &uno) { return uno.casella == casella; });
        if (nome == pronte.nomi.end())
            return {};
        QStringList parole;
        double sicurezza = 1;
        const QString dove = this->luogo(chiave, luogo);
        for (const QString &parola : nome->parole) {
            const auto sua = m_declinazioni.forma(parola, dove);
            if (sua.sicurezza <= 0)
                return {};
            parole.append(sua.testo);
            sicurezza = std::min(sicurezza, sua.sicurezza);
        }
        return {parole.join(u' '), sicurezza};
    }
    const auto grafie = pronte.grafie.constFind((casella << 9) + forma);
    if (grafie == pronte.grafie.constEnd() || grafie->isEmpty())
        return forma == FormaPrima || forma == FormaUltima
                   ? reso(Chiave::di(casella, FormaUguale, Chiave::veste(chiave)), luogo, pronte)
                   : Reso{};
    double sicurezza = 1;
    int quale = m_grafiaDi.value(grafie->first(), -1);
    if (quale < 0 && grafie->size() > 1) {
        quale = m_grafiaForma.value(forma, 0);
        // Le grafie che differiscono non si conoscono ancora tutte.
        constexpr double pocoMeno = 0.97;
        sicurezza = pocoMeno;
    }
    if (quale < 0 || quale >= grafie->size() || grafie->at(quale).isEmpty())
        quale = 0;
    return {vestita(grafie->at(quale), Chiave::veste(chiave)),
            grafie->at(quale).isEmpty() ? 0 : sicurezza};
}

QStringList AttiLetti::altreGrafie(int chiave, const Pronte &pronte) const
{
    QStringList altre;
    const int casella = Chiave::casella(chiave);
    if (Chiave::forma(chiave) == FormaDeclinata) {
        for (const Pronte::Nome &nome : pronte.nomi) {
            if (nome.casella == casella && nome.parole.size() == 1)
                altre = m_declinazioni.forme(nome.parole.first());
        }
        return altre;
    }
    const auto grafie = pronte.grafie.value((casella << 9) + Chiave::forma(chiave));
    for (const QString &una : grafie) {
        if (!una.isEmpty())
            altre.append(vestita(una, Chiave::veste(chiave)));
    }
    return altre;
}

// Le caselle, intere, che cominciano a un pezzo: restano le più lunghe.
qsizetype AttiLetti::trova(const QString &testo, const std::vector<Pezzo> &pezzi, size_t da,
                           const Pronte &pronte, Elemento &elemento, bool impara)
{
    qsizetype lunghi = 0;
    const auto scritto = [&](size_t quale) {
        return testo.mid(pezzi[quale].inizio, pezzi[quale].lunghezza).toLower();
    };
    const auto voci = pronte.voci.constFind(scritto(da));
    if (voci == pronte.voci.constEnd())
        return 0;
    for (const Pronte::Voce &voce : *voci) {
        const qsizetype quanti = voce.pezzi.size();
        if (quanti < lunghi || da + static_cast<size_t>(quanti) > pezzi.size())
            continue;
        bool uguale = true;
        for (qsizetype i = 1; i < quanti && uguale; ++i)
            uguale = voce.pezzi.at(i) == scritto(da + static_cast<size_t>(i));
        if (!uguale)
            continue;
        const Pezzo &ultimo = pezzi[da + static_cast<size_t>(quanti) - 1];
        const QString trovato = testo.mid(pezzi[da].inizio, ultimo.fine() - pezzi[da].inizio);
        if (trovato.size() != voce.testo.size())
            continue;
        if (quanti > lunghi)
            elemento.chiavi.clear();
        lunghi = quanti;
        elemento.sicura = true;
        elemento.chiavi.push_back(
            Chiave::di(voce.casella, voce.forma, vesteDi(voce.testo, trovato)));
        if (voce.forma == FormaUguale)
            elemento.chiavi.push_back(Chiave::di(voce.casella, FormaDeclinata, Veste::Uguale));
        if (impara && voce.varia) {
            m_grafiaDi.insert(voce.base, voce.grafia);
            m_grafiaForma.insert(voce.forma, voce.grafia);
        }
    }
    return lunghi;
}

// Le parole che possono essere quelle di una casella in un'altra forma.
qsizetype AttiLetti::trovaNomi(const QString &testo, const std::vector<Pezzo> &pezzi, size_t da,
                               const Pronte &pronte, qsizetype lunghi, Elemento &elemento)
{
    if (!testo.at(pezzi[da].inizio).isUpper())
        return lunghi;
    for (const Pronte::Nome &nome : pronte.nomi) {
        const qsizetype quanti = nome.parole.size();
        if (quanti < lunghi || da + static_cast<size_t>(quanti) > pezzi.size())
            continue;
        bool simili = true;
        bool note = true;
        for (qsizetype i = 0; i < quanti && simili; ++i) {
            const Pezzo &pezzo = pezzi[da + static_cast<size_t>(i)];
            const QString parola = testo.mid(pezzo.inizio, pezzo.lunghezza);
            const QString &sua = nome.parole.at(i);
            note = note && m_declinazioni.conosce(sua, parola);
            simili = pezzo.parola && parola.front().isUpper() == sua.front().isUpper() &&
                     (m_declinazioni.conosce(sua, parola) || somiglia(sua, parola));
        }
        if (!simili)
            continue;
        const int chiave = Chiave::di(nome.casella, FormaDeclinata, Veste::Uguale);
        if (quanti > lunghi) {
            elemento.chiavi.clear();
            elemento.sicura = false;
        }
        elemento.sicura = elemento.sicura || note;
        lunghi = quanti;
        if (std::find(elemento.chiavi.begin(), elemento.chiavi.end(), chiave) ==
            elemento.chiavi.end())
            elemento.chiavi.push_back(chiave);
    }
    return lunghi;
}

std::vector<Elemento> AttiLetti::smonta(const QString &testo, const Pronte &pronte, bool impara)
{
    std::vector<Elemento> elementi;
    const auto tutti = pezzi(testo);
    qsizetype fine = 0;
    int luogo = 0;
    for (size_t i = 0; i < tutti.size();) {
        Elemento nuovo;
        nuovo.luogo = luogo;
        nuovo.parola = tutti[i].parola;
        const QChar prima = testo.at(tutti[i].inizio);
        nuovo.variabile = prima.isUpper() || prima.isDigit();
        qsizetype quanti = trova(testo, tutti, i, pronte, nuovo, impara);
        if (tutti[i].parola)
            quanti = trovaNomi(testo, tutti, i, pronte, quanti, nuovo);
        const Pezzo &ultimo = tutti[i + static_cast<size_t>(std::max<qsizetype>(quanti, 1)) - 1];
        nuovo.inizio = tutti[i].inizio;
        nuovo.fine = ultimo.fine();
        nuovo.spazio = m_testi.numero(testo.mid(fine, nuovo.inizio - fine));
        nuovo.testo = m_testi.numero(testo.mid(nuovo.inizio, nuovo.fine - nuovo.inizio));
        std::sort(nuovo.chiavi.begin(), nuovo.chiavi.end());
        fine = nuovo.fine;
        i += static_cast<size_t>(std::max<qsizetype>(quanti, 1));
        if (nuovo.chiavi.empty())
            luogo = m_testi.numero(m_testi.testo(nuovo.testo).toLower());
        elementi.push_back(std::move(nuovo));
    }
    return elementi;
}

// Le forme dei nomi, dagli elementi che una casella sola spiega.
void AttiLetti::imparaForme(const AttoLetto &atto, const Pronte &pronte)
{
    for (const Elemento &elemento : atto.elementi) {
        for (const int chiave : elemento.chiavi) {
            if (Chiave::forma(chiave) != FormaDeclinata)
                continue;
            const int casella = Chiave::casella(chiave);
            const QString luogo = this->luogo(chiave, elemento.luogo);
            const QStringList scritte = m_testi.testo(elemento.testo).simplified().split(u' ');
            for (const Pronte::Nome &nome : pronte.nomi) {
                if (nome.casella != casella || nome.parole.size() != scritte.size())
                    continue;
                for (qsizetype i = 0; i < scritte.size(); ++i)
                    m_declinazioni.impara(nome.parole.at(i), scritte.at(i), luogo);
            }
        }
    }
}

void AttiLetti::aggiunge(const Caselle &caselle, const QString &testo, bool nelRegistro)
{
    Pronte pronte = prepara(caselle);
    AttoLetto nuovo;
    nuovo.elementi = smonta(testo.left(testoAlPiu), pronte, true);
    nuovo.tratti = pronte.tratti;
    nuovo.piene = pronte.piene;
    nuovo.caselle = caselle;
    constexpr double diAltri = 0.3;
    nuovo.peso = nelRegistro ? 1 : diAltri;
    imparaForme(nuovo, pronte);
    for (const Elemento &elemento : nuovo.elementi) {
        for (size_t t = 0; t < nuovo.tratti.size(); ++t) {
            if (m_diSesso[t] != 0 && nuovo.tratti[t] != 0)
                ++m_volte[(static_cast<quint64>(elemento.testo) << 32) +
                          (static_cast<quint64>(t) << 20) + static_cast<quint64>(nuovo.tratti[t])];
        }
    }
    m_atti.push_back(std::move(nuovo));
    if (m_atti.size() > attiAlPiu)
        m_atti.erase(m_atti.begin());
}

int AttiLetti::volte(int testo, int tratto, int valore) const
{
    return m_volte.value((static_cast<quint64>(testo) << 32) +
                         (static_cast<quint64>(tratto) << 20) + static_cast<quint64>(valore));
}

} // namespace modTarvola::formule
