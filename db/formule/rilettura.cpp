#include "db/formule/rilettura.h"

#include <QDate>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

namespace modTarvola::formule
{

namespace
{

constexpr size_t attiSimili = 8;
constexpr size_t pezziAlPiu = 400;
constexpr size_t spanAlPiu = 7;
constexpr size_t diLa = 100; // il passo che salta un elemento dell'atto
constexpr double salto = 0.7;
constexpr double saltoSegno = 0.35;

quint64 dopo(int luogo, int che, bool testo)
{
    return (static_cast<quint64>(luogo) << 33) + (static_cast<quint64>(che) << 1) + (testo ? 1 : 0);
}

// Un valore con le cifre tutte uguali: "d'anni 35" è fatto come "d'anni 48".
QString sagoma(QString valore)
{
    static const QRegularExpression cifre(QStringLiteral("\\d+"));
    return valore.replace(cifre, QStringLiteral("0"));
}

bool eData(const scheda::Indirizzo &dove)
{
    return dove.campo == QStringLiteral("Data");
}

bool diPersona(const QString &campo)
{
    return campo == QStringLiteral("Nome") || campo == QStringLiteral("Cognome");
}

} // namespace

Rilettura::Rilettura(const AttiLetti &letti, const QString &testo, const Caselle &note)
    : m_letti(letti), m_testo(testo), m_note(note), m_pezzi(pezzi(testo))
{
    m_pezzi.resize(std::min(m_pezzi.size(), pezziAlPiu));
    for (const Pezzo &pezzo : m_pezzi)
        m_parole.append(testo.mid(pezzo.inizio, pezzo.lunghezza));
    for (const AttoLetto &atto : letti.atti()) {
        for (const Elemento &elemento : atto.elementi) {
            ++m_volte[dopo(elemento.luogo, elemento.testo, true)];
            for (const int chiave : elemento.chiavi) {
                ++m_volte[dopo(elemento.luogo, chiave, false)];
                const QString &campo = letti.casella(Chiave::casella(chiave)).campo;
                const QString &suo = letti.testo(elemento.testo);
                m_valori[campo].insert(suo);
                m_valori[campo].insert(sagoma(suo));
                const QStringList sue = suo.split(u' ');
                for (const QString &parola : sue)
                    m_valori[campo + u'*'].insert(parola);
            }
        }
    }
}

QString Rilettura::scritto(size_t da, size_t quanti) const
{
    const qsizetype inizio = m_pezzi[da].inizio;
    return m_testo.mid(inizio, m_pezzi[da + quanti - 1].fine() - inizio);
}

QString Rilettura::nota(const scheda::Indirizzo &dove) const
{
    const auto sua = m_note.constFind(dove);
    return sua != m_note.constEnd() ? *sua : m_lette.value(dove).valore;
}

void Rilettura::mette(const scheda::Indirizzo &dove, const QString &valore)
{
    if (!valore.isEmpty() && nota(dove).isEmpty())
        m_lette.insert(dove, {valore, 0, 0});
}

// Gli atti le cui parole ferme stanno nel testo; a parità i più vicini.
std::vector<const AttoLetto *> Rilettura::simili() const
{
    QSet<QString> parole;
    for (const QString &una : m_parole)
        parole.insert(una.toLower());
    std::vector<std::pair<double, const AttoLetto *>> tutti;
    double vicino = 0;
    for (const AttoLetto &atto : m_letti.atti()) {
        double trovate = 0;
        double ferme = 1;
        for (const Elemento &elemento : atto.elementi) {
            if (!elemento.chiavi.empty() || !elemento.parola)
                continue;
            ferme += 1;
            trovate += parole.contains(m_letti.testo(elemento.testo).toLower()) ? 1 : 0;
        }
        vicino += 0.0005;
        tutti.emplace_back(trovate / ferme * atto.peso + vicino, &atto);
    }
    std::sort(tutti.begin(), tutti.end(),
              [](const auto &uno, const auto &altro) { return uno.first > altro.first; });
    std::vector<const AttoLetto *> scelti;
    for (const auto &[merito, atto] : tutti) {
        if (scelti.size() < attiSimili && merito > 0.5)
            scelti.push_back(atto);
    }
    return scelti;
}

// La casella da cui l'elemento viene davvero: quella che in quel luogo c'è più spesso; 0 se è una
// parola ferma.
int Rilettura::chiaveDi(const Elemento &elemento) const
{
    int migliore = 0;
    int volte = 0;
    for (const int chiave : elemento.chiavi) {
        const int forma = Chiave::forma(chiave);
        if (forma == FormaPrima || forma == FormaUltima)
            continue;
        const int sue = m_volte.value(dopo(elemento.luogo, chiave, false));
        // La forma della casella stessa vale quanto quella declinata, se c'è quasi sempre.
        if (sue * 10 >= volte * (forma == FormaUguale ? 9 : 10) &&
            (sue > volte || forma == FormaUguale)) {
            volte = sue;
            migliore = chiave;
        }
    }
    const bool somiglia = Chiave::forma(migliore) == FormaDeclinata;
    if (somiglia && m_volte.value(dopo(elemento.luogo, elemento.testo, true)) > volte)
        return 0;
    return migliore;
}

// Quanto costa leggere quei pezzi come il valore della casella; oltre l'1 non si può.
double Rilettura::costo(int chiave, size_t da, size_t quanti)
{
    constexpr double mai = 9;
    const scheda::Indirizzo &dove = m_letti.casella(Chiave::casella(chiave));
    const QString testo = scritto(da, quanti);
    const int forma = Chiave::forma(chiave);
    if (!m_pezzi[da].parola)
        return mai;
    if (forma >= FormeSpeciali)
        return numero({chiave, da, quanti}).isEmpty() ? mai : -0.1;
    const QString &campo = dove.campo;
    if (m_valori[campo].contains(testo))
        return 0;
    if (m_valori[campo].contains(sagoma(testo)))
        return 0.02;
    const bool nome = diPersona(campo);
    double somma = nome ? 0.1 : 0.3;
    for (size_t i = da; i < da + quanti; ++i) {
        const QString parola = m_testo.mid(m_pezzi[i].inizio, m_pezzi[i].lunghezza);
        if (!m_pezzi[i].parola)
            return mai;
        if (nome && !parola.front().isUpper() && !(quanti > 1 && i + 1 < da + quanti))
            return mai;
        const bool sua = m_valori[campo + u'*'].contains(parola);
        const bool diAltri =
            nome && m_valori[(campo == QStringLiteral("Nome") ? QStringLiteral("Cognome")
                                                              : QStringLiteral("Nome")) +
                             u'*']
                        .contains(parola);
        const double ignota = campo == QStringLiteral("Cognome") ? 0.25 : 0.12;
        somma += sua ? 0.02 : diAltri ? 0.5 : ignota;
        somma += nome && parola.front().isLower() ? 0.5 : 0;
    }
    return somma;
}

// Lo stesso, contato una volta sola.
double Rilettura::costoCasella(int chiave, size_t da, size_t quanti)
{
    const quint64 quale = (static_cast<quint64>(chiave) << 24) + (da << 8) + quanti;
    auto suo = m_noti.constFind(quale);
    if (suo == m_noti.constEnd())
        suo = m_noti.insert(quale, costo(chiave, da, quanti));
    return *suo;
}

double Rilettura::costoParola(int testo, size_t pezzo)
{
    const quint64 quale = (static_cast<quint64>(testo) << 16) + pezzo;
    auto suo = m_distanze.constFind(quale);
    if (suo == m_distanze.constEnd())
        suo = m_distanze.insert(
            quale, static_cast<double>(distanza(scritto(pezzo, 1), m_letti.testo(testo))));
    return *suo;
}

double Rilettura::allinea(const AttoLetto &atto, std::vector<Tratto> &tratti)
{
    const size_t n = m_pezzi.size();
    const size_t m = atto.elementi.size();
    std::vector<double> costi((n + 1) * (m + 1), 1e9);
    std::vector<size_t> passi((n + 1) * (m + 1), 0); // 0: si salta di qua; 100: di là; k: k pezzi
    const auto qui = [m](size_t i, size_t j) { return i * (m + 1) + j; };
    std::vector<int> chiavi(m);
    std::transform(atto.elementi.begin(), atto.elementi.end(), chiavi.begin(),
                   [this](const Elemento &uno) { return chiaveDi(uno); });
    costi[0] = 0;
    for (size_t i = 0; i <= n; ++i) {
        for (size_t j = 0; j <= m; ++j) {
            const double adesso = costi[qui(i, j)];
            const auto arriva = [&](size_t verso, double quanto, size_t passo) {
                if (adesso + quanto < costi[verso]) {
                    costi[verso] = adesso + quanto;
                    passi[verso] = passo;
                }
            };
            if (i < n)
                arriva(qui(i + 1, j), m_pezzi[i].parola ? salto : saltoSegno, 0);
            if (j < m)
                arriva(qui(i, j + 1), atto.elementi[j].parola ? salto : saltoSegno, diLa);
            if (i == n || j == m)
                continue;
            const Elemento &elemento = atto.elementi[j];
            if (chiavi[j] == 0) {
                if (m_pezzi[i].parola == elemento.parola)
                    arriva(qui(i + 1, j + 1), costoParola(elemento.testo, i) * 1.2, 1);
                continue;
            }
            for (size_t k = 1; k <= std::min(spanAlPiu, n - i); ++k) {
                if (const double suo = costoCasella(chiavi[j], i, k); suo <= 1)
                    arriva(qui(i + k, j + 1), suo, k);
            }
        }
    }
    tratti = ripercorre(passi, chiavi, n);
    return costi[qui(n, m)];
}

// I tratti delle caselle, dalla fine all'inizio.
std::vector<Rilettura::Tratto> Rilettura::ripercorre(const std::vector<size_t> &passi,
                                                     const std::vector<int> &chiavi, size_t pezzi)
{
    std::vector<Tratto> tratti;
    size_t i = pezzi;
    size_t j = chiavi.size();
    while (i > 0 || j > 0) {
        const size_t passo = passi[i * (chiavi.size() + 1) + j];
        if (passo == diLa) {
            --j;
        } else if (passo == 0) {
            --i;
        } else {
            i -= passo;
            --j;
            if (chiavi[j] != 0)
                tratti.push_back({chiavi[j], i, passo});
        }
    }
    return tratti;
}

// Il numero scritto in una certa forma, come testo; vuoto se non lo è.
QString Rilettura::numero(const Tratto &tratto) const
{
    const scheda::Indirizzo &dove = m_letti.casella(Chiave::casella(tratto.chiave));
    return m_letti.rovescio(dove, Chiave::forma(tratto.chiave),
                            scritto(tratto.da, tratto.quanti).toLower());
}

// Il nome nella grafia delle caselle; vuoto se non si conosce.
QString Rilettura::nome(const Tratto &tratto) const
{
    const scheda::Indirizzo &dove = m_letti.casella(Chiave::casella(tratto.chiave));
    QStringList basi;
    const QStringList parole = scritto(tratto.da, tratto.quanti).simplified().split(u' ');
    for (const QString &parola : parole) {
        QString base = m_letti.declinazioni().base(parola);
        if (base.isEmpty() && m_letti.declinazioni().immutate(dove.posto + u'.' + dove.campo))
            base = parola;
        if (base.isEmpty())
            return {};
        basi.append(base);
    }
    return basi.join(u' ');
}

QString Rilettura::valore(const Tratto &tratto) const
{
    const int forma = Chiave::forma(tratto.chiave);
    if (forma == FormaDeclinata)
        return nome(tratto);
    if (forma >= FormeSpeciali)
        return numero(tratto);
    const QString testo = scritto(tratto.da, tratto.quanti).simplified();
    const Veste veste = Chiave::veste(tratto.chiave);
    return veste == Veste::Uguale || veste == Veste::Iniziale ? testo : QString();
}

// Il giorno che i pezzi di una data dicono: quelli che mancano sono come nella data più vicina.
void Rilettura::date(const QMap<scheda::Indirizzo, QList<Tratto>> &sue, const QDate &base,
                     double peso, Voti &voti) const
{
    for (auto una = sue.cbegin(); una != sue.cend(); ++una) {
        QDate trovata;
        qint64 distanza = 1000;
        constexpr int intorno = 400;
        QStringList chiesti;
        for (const Tratto &tratto : *una)
            chiesti.append(numero(tratto));
        for (int passo = -intorno; passo <= intorno; ++passo) {
            const QDate giorno = base.addDays(passo);
            const bool giusto = std::all_of(chiesti.begin(), chiesti.end(), [&](const QString &n) {
                const int suo = n.sliced(1).toInt();
                switch (n.front().toLatin1()) {
                case 'g':
                    return giorno.day() == suo;
                case 'm':
                    return giorno.month() == suo;
                case 'a':
                    return giorno.year() == suo || giorno.year() % 100 == suo;
                default:
                    return true;
                }
            });
            // A parità il giorno prima: ciò che si registra è già avvenuto.
            const qint64 sua = passo <= 0 ? -passo : passo * 2;
            if (giusto && sua < distanza) {
                trovata = giorno;
                distanza = sua;
            }
        }
        const bool conGiorno = std::any_of(chiesti.begin(), chiesti.end(),
                                           [](const QString &n) { return n.startsWith(u'g'); });
        if (trovata.isValid() && conGiorno)
            voti[una.key()].append({trovata.toString(Qt::ISODate), una->last().da,
                                    una->first().da + una->first().quanti - una->last().da, peso});
    }
}

// La data più vicina fra quelle degli atti letti.
QDate Rilettura::ultimaData() const
{
    QDate ultima;
    for (const AttoLetto &atto : m_letti.atti()) {
        for (auto una = atto.caselle.cbegin(); una != atto.caselle.cend(); ++una) {
            if (giornoDi(una.value()) != 0)
                ultima = QDate::fromJulianDay(giornoDi(una.value()));
        }
    }
    return ultima;
}

// Ciò che una lettura dice: prima le date dell'atto, da cui dipendono quelle degli altri eventi.
void Rilettura::vota(const std::vector<Tratto> &tratti, const QDate &base, double peso,
                     Voti &voti) const
{
    QMap<scheda::Indirizzo, QList<Tratto>> prima;
    QMap<scheda::Indirizzo, QList<Tratto>> seconda;
    for (const Tratto &tratto : tratti) {
        const scheda::Indirizzo &dove = m_letti.casella(Chiave::casella(tratto.chiave));
        if (eData(dove))
            (dove.evento == 0 ? prima : seconda)[dove].append(tratto);
        else
            voti[dove].append({valore(tratto), tratto.da, tratto.quanti, peso});
    }
    Voti diAtto;
    date(prima, base, peso, diAtto);
    QDate atto = base;
    for (const auto &lette : std::as_const(diAtto))
        atto = QDate::fromString(lette.first().valore, Qt::ISODate);
    for (auto una = m_note.cbegin(); una != m_note.cend(); ++una) {
        if (una.key().evento == 0 && giornoDi(una.value()) != 0)
            atto = QDate::fromJulianDay(giornoDi(una.value()));
    }
    date(seconda, atto, peso, diAtto);
    for (auto una = diAtto.cbegin(); una != diAtto.cend(); ++una)
        voti[una.key()].append(*una);
}

// Restano i valori su cui le letture concordano; `tutti` è il peso di tutte insieme.
void Rilettura::elegge(const Voti &voti, double tutti)
{
    constexpr double quasiTutti = 0.75;
    constexpr double abbastanza = 0.35;
    for (auto una = voti.cbegin(); una != voti.cend(); ++una) {
        QMap<QString, double> pesi;
        double suoi = 0;
        for (const Letto &letto : *una) {
            pesi[letto.valore] += letto.peso;
            suoi += letto.peso;
        }
        for (const Letto &letto : *una) {
            if (letto.valore.isEmpty() || pesi.value(letto.valore) < quasiTutti * suoi ||
                suoi < abbastanza * tutti || m_note.contains(una.key()) ||
                m_lette.contains(una.key()))
                continue;
            const qsizetype inizio = m_pezzi[letto.da].inizio;
            const qsizetype fine = m_pezzi[letto.da + letto.quanti - 1].fine();
            m_lette.insert(una.key(), {letto.valore, inizio, fine - inizio});
        }
    }
}

void Rilettura::raccoglie()
{
    double migliore = 1e9;
    std::vector<std::pair<double, std::vector<Tratto>>> letture;
    const auto scelti = simili();
    letture.reserve(scelti.size());
    for (const AttoLetto *atto : scelti) {
        std::vector<Tratto> tratti;
        const double costo = allinea(*atto, tratti);
        migliore = std::min(migliore, costo);
        letture.emplace_back(costo, std::move(tratti));
    }
    // Un testo troppo diverso da tutti non dice nulla.
    if (migliore > static_cast<double>(m_pezzi.size()) * 0.35)
        return;
    Voti voti;
    double tutti = 0;
    const QDate base = ultimaData();
    for (const auto &[costo, tratti] : letture) {
        const double peso = std::exp(-(costo - migliore));
        tutti += peso;
        vota(tratti, base, peso, voti);
    }
    elegge(voti, tutti);
}

QMap<scheda::Indirizzo, Lettura> Rilettura::legge()
{
    if (m_pezzi.empty() || m_letti.atti().size() < 2)
        return {};
    raccoglie();
    if (m_lette.isEmpty())
        return {};
    perUguaglianza();
    perParole();
    perUguaglianza();
    perPersona();
    for (auto una = m_note.cbegin(); una != m_note.cend(); ++una)
        m_lette.remove(una.key());
    return m_lette;
}

} // namespace modTarvola::formule
