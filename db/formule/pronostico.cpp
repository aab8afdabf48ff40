#include "db/formule/campioni.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace modTarvola::formule
{

const AttiLetti::Reso &Pronosticatore::reso(int chiave, int luogo) const
{
    const quint64 quale =
        (static_cast<quint64>(chiave) << 32) +
        (Chiave::forma(chiave) == FormaDeclinata ? static_cast<quint64>(luogo) : 0);
    const auto gia = m_resi.constFind(quale);
    if (gia != m_resi.constEnd())
        return *gia;
    return *m_resi.insert(quale, m_letti.reso(chiave, luogo, m_pronte));
}

// Vero se l'elemento è, intera, la forma che la casella dell'altro prende qui.
bool Pronosticatore::compiuta(const Elemento &scritto, const Elemento &letto) const
{
    return std::any_of(scritto.chiavi.begin(), scritto.chiavi.end(), [&](int chiave) {
        return std::binary_search(letto.chiavi.begin(), letto.chiavi.end(), chiave) &&
               reso(chiave, scritto.luogo).testo == m_letti.testi().testo(scritto.testo);
    });
}

// Quanti elementi di fila, all'indietro, sono gli stessi; due parole con la maiuscola, o due
// numeri, che differiscono non dicono nulla.
double Pronosticatore::seguito(const Allineamento &allineamento, size_t quanti,
                               const std::vector<Elemento> &elementi, size_t dove) const
{
    constexpr double pieno = 3;
    double uguali = 0;
    size_t perdonate = 2;
    for (size_t i = 1; i <= quanti && i <= dove && uguali < pieno; ++i) {
        const Elemento &uno = allineamento.scritto(quanti - i);
        const Elemento &altro = elementi[dove - i];
        if (stessi(uno, altro, false))
            uguali += 1;
        else if (perdonate-- == 0 || !(uno.variabile && altro.variabile))
            break;
    }
    // All'inizio del testo non c'è altro da confrontare.
    return static_cast<double>(quanti) < pieno &&
                   uguali + 2 - static_cast<double>(perdonate) >= static_cast<double>(quanti)
               ? 1
               : uguali / pieno;
}

Pronosticatore::Campioni Pronosticatore::campioni(const Allineamento &allineamento, size_t quanti,
                                                  bool aMeta, double &costo) const
{
    const auto posti = allineamento.posti(quanti);
    Campioni trovati;
    float minimo = 100;
    for (const auto &posto : posti)
        minimo = std::min(minimo, posto.costo);
    costo = minimo;
    const auto &atti = m_letti.atti();
    constexpr float lontano = 2.4F;
    double recente = 1 / oblio;
    std::vector<double> recenti(posti.size());
    for (size_t a = posti.size(); a-- > 0;)
        recenti[a] = recente *= oblio;
    for (size_t a = 0; a < posti.size(); ++a) {
        if (posti[a].costo - minimo > lontano)
            continue;
        const double peso = atti[a].peso * recenti[a] *
                            std::exp(-discordia * static_cast<double>(posti[a].costo - minimo));
        if (peso < trascurabile)
            continue;
        const auto qui = static_cast<size_t>(posti[a].elemento);
        const auto &elementi = atti[a].elementi;
        const Elemento *prima = qui == 0 ? nullptr : &elementi[qui - 1];
        if (aMeta && (prima == nullptr || !stessi(allineamento.scritto(quanti - 1), *prima, true)))
            continue;
        size_t dove = oltreLaCasella(elementi, qui, m_pronte.piene);
        // Il segno che chiude ciò che manca può essere già stato scritto.
        if (dove != qui && dove < elementi.size() && quanti > 0 && !elementi[dove].parola &&
            elementi[dove].testo == allineamento.scritto(quanti - 1).testo)
            ++dove;
        const double fila = seguito(allineamento, quanti, elementi, qui);
        trovati.push_back({&atti[a], dove < elementi.size() ? &elementi[dove] : nullptr, prima,
                           peso * (dove == qui ? 1 : 0.8) * (0.3 + 0.7 * fila), fila, 0});
    }
    return trovati;
}

// A parità di prove si preferisce la casella della persona di cui si stava parlando, e quella di
// cui non si è ancora detto.
double Pronosticatore::preferenza(int chiave, const Allineamento &allineamento, size_t quanti) const
{
    const int casella = Chiave::casella(chiave);
    double merito = 0;
    bool ultima = true;
    bool detta = false;
    for (size_t i = quanti; i-- > 0;) {
        const auto &chiavi = allineamento.scritto(i).chiavi;
        if (chiavi.empty())
            continue;
        for (const int sua : chiavi) {
            detta = detta || Chiave::casella(sua) == casella;
            if (ultima && m_letti.posto(Chiave::casella(sua)) == m_letti.posto(casella) &&
                Chiave::casella(sua) != casella &&
                m_letti.casella(Chiave::casella(sua)).quale == m_letti.casella(casella).quale)
                merito = 1.5;
        }
        ultima = false;
    }
    if (!detta)
        merito += 1;
    if (Chiave::forma(chiave) == FormaUguale)
        merito += 0.2;
    return merito;
}

// Le caselle che spiegano abbastanza ciò che si è visto, prima quella che lo spiega meglio.
std::vector<int> Pronosticatore::spiegazioni(const Campioni &campioni,
                                             const Allineamento &allineamento, size_t quanti) const
{
    Pesi spiegati;
    for (const Campione &uno : campioni) {
        if (uno.elemento == nullptr)
            continue;
        for (const int chiave : uno.elemento->chiavi) {
            if (piena(m_pronte.piene, Chiave::casella(chiave)))
                spiegati.di(chiave) += uno.peso;
        }
    }
    const auto conCasella = [&](int casella) {
        double tutti = 0;
        for (const Campione &uno : campioni) {
            if (uno.elemento != nullptr && piena(uno.atto->piene, casella))
                tutti += uno.peso;
        }
        return tutti;
    };
    std::vector<std::pair<int, double>> meriti;
    QHash<int, double> perCasella;
    for (const auto &[chiave, peso] : spiegati) {
        const int casella = Chiave::casella(chiave);
        if (!perCasella.contains(casella))
            perCasella.insert(casella, conCasella(casella));
        const double quota = (peso + 0.3) / (perCasella.value(casella) + 0.6);
        if (quota >= spiegaAbbastanza)
            meriti.emplace_back(chiave, quota + 0.02 * preferenza(chiave, allineamento, quanti));
    }
    std::sort(meriti.begin(), meriti.end(),
              [](const auto &una, const auto &altra) { return una.second > altra.second; });
    std::vector<int> chiavi;
    chiavi.reserve(meriti.size());
    for (const auto &[chiave, merito] : meriti)
        chiavi.push_back(chiave);
    return chiavi;
}

// Di ogni campione, che cosa vi sta: la casella che meglio spiega tutti, o la parola stessa.
std::vector<int> Pronosticatore::etichette(Campioni &campioni, const Allineamento &allineamento,
                                           size_t quanti) const
{
    const auto chiavi = spiegazioni(campioni, allineamento, quanti);
    std::vector<int> tutte;
    tutte.reserve(campioni.size());
    for (Campione &uno : campioni) {
        if (uno.elemento == nullptr) {
            uno.etichetta = 0;
        } else {
            const auto &sue = uno.elemento->chiavi;
            const auto sua = std::find_if(chiavi.begin(), chiavi.end(), [&](int chiave) {
                return std::binary_search(sue.begin(), sue.end(), chiave);
            });
            uno.etichetta = sua == chiavi.end() ? diParola(uno.elemento->testo) : diCasella(*sua);
        }
        tutte.push_back(uno.etichetta);
    }
    return tutte;
}

// Quanto ci si fida di ciò che si è visto una volta sola.
double Pronosticatore::solitario(int etichetta) const
{
    if (eCasella(etichetta))
        return 0.9;
    const QString &testo = m_letti.testi().testo(etichetta / 2);
    if (testo.isEmpty())
        return 0.8;
    const QChar prima = testo.front();
    if (prima.isDigit())
        return 0.4;
    if (!prima.isLetter())
        return 0.92;
    return prima.isUpper() ? 0.6 : 0.88;
}

// Ciò che venne l'ultima volta con il valore di adesso, e il peso degli atti in cui ripetere
// l'ultima volta sarebbe stato giusto, su quello di tutti.
Pronosticatore::Ripetuta Pronosticatore::ultimaVolta(const Campioni &campioni, int tratto,
                                                     bool ancheVuoto) const
{
    const int adesso = valore(m_pronte.tratti, tratto);
    std::vector<std::pair<int, int>> ultime; // valore, etichetta
    Ripetuta esito;
    for (const Campione &uno : campioni) {
        const int suo = valore(uno.atto->tratti, tratto);
        if (suo == 0 && !ancheVuoto)
            continue;
        auto ultima = std::find_if(ultime.begin(), ultime.end(),
                                   [suo](const auto &una) { return una.first == suo; });
        if (ultima == ultime.end()) {
            ultime.emplace_back(suo, uno.etichetta);
        } else {
            esito.provati += uno.peso;
            esito.giusti += ultima->second == uno.etichetta ? uno.peso : 0;
            ultima->second = uno.etichetta;
        }
        if (suo == adesso)
            esito.etichetta = uno.etichetta;
    }
    return esito;
}

// Ciò che venne l'ultima volta che il tratto aveva il valore di adesso, e quanto spesso sarebbe
// stato giusto dire così negli atti di prima.
Pronosticatore::Scelta Pronosticatore::perTratto(const Campioni &campioni, int tratto) const
{
    const int adesso = valore(m_pronte.tratti, tratto);
    const double fiducia = m_letti.fiducia(tratto);
    const bool ancheVuoto = fiducia >= 0.8;
    if (adesso == 0 && !ancheVuoto)
        return {};
    const auto [mia, giusti, provati] = ultimaVolta(campioni, tratto, ancheVuoto);
    if (mia < 0)
        return {};
    double concordi = 0;
    double stessi = 0;
    for (const Campione &uno : campioni) {
        if (valore(uno.atto->tratti, tratto) != adesso)
            continue;
        stessi += uno.peso;
        concordi += uno.etichetta == mia ? uno.peso : 0;
    }
    if (fiducia < 1 && provati < 1 - fiducia)
        return {};
    const double regola = (giusti + fiducia * 0.5) / (provati + 0.5 + (1 - fiducia) * 4);
    // Senza condizioni vale quanto spesso ciò che venne è tornato: così una parola cambiata, come
    // il nome di un parroco, lo è subito.
    if (fiducia >= 1)
        return {mia, regola, regola};
    constexpr double fede = 1.5;
    return {mia, (concordi + fede * regola) / (stessi + fede), regola};
}

Pronosticatore::Scelta Pronosticatore::sceglie(const Campioni &campioni,
                                               const std::vector<int> &tutte) const
{
    Pesi pesi;
    double insieme = 0;
    for (const Campione &uno : campioni) {
        pesi.di(uno.etichetta) += uno.peso;
        insieme += uno.peso;
    }
    Scelta scelta;
    double maggiore = 0;
    for (const auto &[etichetta, peso] : pesi) {
        if (peso > maggiore)
            scelta = {etichetta, (peso + solitario(etichetta)) / (insieme + 1), peso / insieme};
        maggiore = std::max(maggiore, peso);
    }
    if (tutte.empty() ||
        std::all_of(tutte.begin(), tutte.end(), [&](int una) { return una == tutte.front(); }))
        return scelta;
    // Un tratto decide solo se spiega ciò che la maggioranza non spiega.
    constexpr double margine = 0.01;
    double regola = scelta.regola + margine;
    for (int tratto = 1; tratto < m_letti.quantiTratti(); ++tratto) {
        const Scelta sua = perTratto(campioni, tratto);
        if (sua.etichetta < 0 || sua.regola <= regola)
            continue;
        regola = sua.regola;
        scelta = sua;
    }
    return scelta;
}

Candidato Pronosticatore::candidato(int etichetta, const Campioni &campioni, int luogo) const
{
    const Nomi &testi = m_letti.testi();
    Candidato suo;
    suo.luogo = luogo;
    if (eCasella(etichetta)) {
        suo.chiave = etichetta / 2;
        const AttiLetti::Reso &sua = reso(suo.chiave, luogo);
        suo.testo = sua.testo;
        suo.sicurezza = sua.sicurezza;
    } else {
        suo.testo = testi.testo(etichetta / 2);
        suo.sicurezza = 1;
    }
    Pesi spazi;
    for (const Campione &uno : campioni) {
        if (uno.etichetta != etichetta || uno.elemento == nullptr)
            continue;
        spazi.di(uno.elemento->spazio) += uno.peso;
        suo.parola = uno.elemento->parola;
    }
    double maggiore = 0;
    for (const auto &[spazio, peso] : spazi) {
        if (peso > maggiore)
            suo.spazio = testi.testo(spazio);
        maggiore = std::max(maggiore, peso);
    }
    return suo;
}

// Quanto pesa ogni possibilità; ciò che resta è di chi non si è mai visto.
Pronosticatore::Bilancio Pronosticatore::bilancio(const Campioni &campioni, int scelta) const
{
    Bilancio suo;
    double spazi = 0;
    double pieni = 0;
    double fila = 0;
    double nuove = 0.3;
    QList<int> gia;
    for (const Campione &uno : campioni) {
        suo.tutti += uno.peso;
        fila += uno.fila * uno.peso;
        if (uno.etichetta != scelta)
            suo.altre += uno.peso;
        nuove += gia.contains(uno.etichetta) ? 0 : uno.peso;
        gia.append(uno.etichetta);
        if (uno.elemento != nullptr) {
            pieni += uno.peso;
            if (m_letti.testo(uno.elemento->spazio) == QStringLiteral(" "))
                spazi += uno.peso;
        }
    }
    suo.spazioSicuro = pieni > 0 ? spazi / suo.tutti : 0;
    suo.fila = fila / suo.tutti;
    suo.ignote = std::min(0.9, nuove / (suo.tutti + 0.5));
    return suo;
}

void Pronosticatore::Gara::prova(const Candidato &suo, double sua, double peso)
{
    const QString intero = suo.spazio + suo.testo;
    if (suo.testo.isEmpty() || !intero.startsWith(coda) || intero.size() == coda.size())
        return;
    somma += sua;
    consistenti += peso;
    if (sua > massa) {
        massa = sua;
        migliore = suo;
    }
}

// Mette in gara ciò che l'etichetta dà qui, anche in un'altra grafia se se ne è già scritta una
// parte.
void Pronosticatore::gareggia(Candidato suo, int etichetta, double sua, double peso,
                              Gara &gara) const
{
    if (eCasella(etichetta) && Chiave::forma(etichetta / 2) == FormaDeclinata && gara.lettere > 0 &&
        !(suo.spazio + suo.testo).startsWith(gara.coda) &&
        completa(suo, gara.coda) == Completa::Forse) {
        // La forma non si conosce, ma ciò che è scritto ne può essere l'inizio.
        gara.somma += sua;
        gara.ignoti += peso;
        return;
    }
    if (suo.testo.isEmpty() && gara.lettere == 0)
        gara.ignoti += peso;
    gara.prova(suo, sua, peso);
    if (gara.lettere == 0 || !eCasella(etichetta))
        return;
    const QStringList grafie = m_letti.altreGrafie(etichetta / 2, m_pronte);
    for (const QString &grafia : grafie) {
        if (grafia == suo.testo)
            continue;
        Candidato altra = suo;
        altra.testo = grafia;
        altra.sicurezza = 1;
        gara.prova(altra, sua * 0.05, peso * 0.05);
    }
}

// La gara fra tutte le etichette; vero se vince la fine del testo.
bool Pronosticatore::corre(const Campioni &campioni, const Scelta &scelta, const Bilancio &conti,
                           int luogo, Gara &gara) const
{
    Pesi pesi;
    for (const Campione &uno : campioni)
        pesi.di(uno.etichetta) += uno.peso;
    bool fine = false;
    for (const auto &[etichetta, peso] : pesi) {
        const bool prima = etichetta == scelta.etichetta;
        double sua = prima ? scelta.sicurezza : 0;
        if (!prima && conti.altre > 0)
            sua = (1 - scelta.sicurezza) * (1 - conti.ignote * 0.5) * peso / conti.altre;
        if (etichetta == 0) {
            fine = fine || (prima && gara.coda.isEmpty() && sua > 0.5);
            continue;
        }
        Candidato suo = candidato(etichetta, campioni, luogo);
        if (prima)
            concorda(campioni, suo);
        gareggia(suo, etichetta, sua, peso, gara);
    }
    return fine;
}

Pronostico Pronosticatore::dopo(const Allineamento &allineamento, size_t quanti,
                                const QString &coda, int luogo, bool aMeta) const
{
    double costo = 0;
    Campioni tutti = campioni(allineamento, quanti, aMeta, costo);
    Pronostico esito;
    if (tutti.empty())
        return esito;
    const Scelta scelta = sceglie(tutti, etichette(tutti, allineamento, quanti));
    if (scelta.etichetta < 0)
        return esito;
    const Bilancio conti = bilancio(tutti, scelta.etichetta);
    esito.spazioSicuro = conti.spazioSicuro;
    Gara gara;
    gara.coda = coda;
    gara.lettere = coda.trimmed().size();
    if (gara.lettere > 0)
        gara.somma = conti.ignote * std::max(0.002, std::pow(0.06, gara.lettere));
    esito.fine = corre(tutti, scelta, conti, luogo, gara);
    Candidato &migliore = gara.migliore;
    if (migliore.testo.isEmpty() || esito.fine) {
        esito.peso = (esito.fine ? conti.tutti : gara.ignoti) * std::exp(-discordia * costo);
        return esito;
    }
    // Senza lettere davanti, ciò che non comincia come dovrebbe non è una possibilità in meno.
    migliore.sicurezza *= gara.lettere == 0 ? gara.massa : gara.massa / gara.somma;
    if (migliore.chiave != 0)
        migliore.sicurezza *= ambigua(migliore.chiave, tutti, allineamento, quanti, luogo);
    if (gara.lettere == 0 && novita(tutti, allineamento, quanti))
        migliore.sicurezza *= 0.8;
    esito.fiducia =
        (0.7 + 0.3 * conti.fila) * rottura(tutti, allineamento, quanti) * std::exp(-0.1 * costo);
    esito.primo = migliore;
    const double consistenti = gara.consistenti + gara.ignoti;
    esito.peso = (consistenti > 0 ? consistenti : 0.01) * std::exp(-discordia * costo);
    return esito;
}

} // namespace modTarvola::formule
