#include "db/formule/rilettura.h"

#include <QDate>

#include <algorithm>

// Le caselle che nel testo non stanno scritte, ma che il resto dice.
namespace modTarvola::formule
{

namespace
{

const QString campoNome = QStringLiteral("Nome");
const QString campoSesso = QStringLiteral("Sesso");
constexpr int proveMinime = 3;

// Quanti giorni dalla data di riferimento; vuoto se una delle due manca.
QString giorniDa(const QString &riferimento, const QString &data)
{
    const qint64 da = giornoDi(riferimento);
    const qint64 a = giornoDi(data);
    return da == 0 || a == 0 ? QString() : QString::number(a - da);
}

QString dopoGiorni(const QString &riferimento, const QString &giorni)
{
    const qint64 da = giornoDi(riferimento);
    return da == 0 ? QString() : QDate::fromJulianDay(da + giorni.toInt()).toString(Qt::ISODate);
}

// Parole e coppie di parole di un testo, una volta ciascuna; non i nomi, che non decidono nulla.
QSet<QString> indizi(const QStringList &parole)
{
    QSet<QString> trovati;
    const auto ferma = [&](qsizetype i) {
        return i >= 0 && !parole.at(i).isEmpty() && parole.at(i).front().isLower();
    };
    for (qsizetype i = 0; i < parole.size(); ++i) {
        if (!ferma(i))
            continue;
        trovati.insert(parole.at(i));
        if (ferma(i - 1))
            trovati.insert(parole.at(i - 1) + u' ' + parole.at(i));
    }
    return trovati;
}

// Il valore che gli indizi distinguono; vuoto se non è netto.
QString distinto(const QHash<QString, QMap<QString, int>> &conti, const QMap<QString, int> &tutti)
{
    // Ogni parola che si è vista con un valore solo vota per quello, tanto più quanto più spesso
    // c'è quando il valore è quello.
    QMap<QString, double> voti;
    if (tutti.size() == 1 && tutti.first() >= proveMinime)
        voti.insert(tutti.firstKey(), 1);
    for (auto conto = conti.cbegin(); tutti.size() > 1 && conto != conti.cend(); ++conto) {
        constexpr int vista = 2;
        if (conto->size() == 1 && conto->first() >= vista) {
            double &suo = voti[conto->firstKey()];
            suo = std::max(suo,
                           static_cast<double>(conto->first()) / tutti.value(conto->firstKey(), 1));
        }
    }
    QString migliore;
    double primo = 0;
    double secondo = 0;
    for (auto voto = voti.cbegin(); voto != voti.cend(); ++voto) {
        secondo = std::max(secondo, std::min(primo, *voto));
        if (*voto > primo) {
            secondo = primo;
            primo = *voto;
            migliore = voto.key();
        }
    }
    constexpr double netta = 1.5;
    constexpr double minima = 0.3;
    return primo < minima || primo < secondo * netta ? QString() : migliore;
}

// Chi sta in una casella. Dei genitori fa fede la coppia: di omonimi ce n'è molti.
template <typename Valore>
QString chi(const scheda::Indirizzo &dove, const Valore &valoreDi)
{
    QStringList nomi;
    QStringList posti{dove.posto};
    if (dove.posto == QStringLiteral("padre") || dove.posto == QStringLiteral("madre"))
        posti = {QStringLiteral("padre"), QStringLiteral("madre")};
    for (const QString &posto : std::as_const(posti)) {
        for (const char *campo : {"Nome", "Cognome"}) {
            const QString suo =
                valoreDi(scheda::Indirizzo{posto, dove.quale, 0, QString::fromLatin1(campo)});
            if (suo.isEmpty())
                return {};
            nomi.append(suo);
        }
    }
    return nomi.join(u'|');
}

} // namespace

// Le caselle che in ogni atto, o quasi, sono come un'altra; le date, a tanti giorni da un'altra.
void Rilettura::perUguaglianza()
{
    QMap<scheda::Indirizzo, int> volte;
    for (const AttoLetto &atto : m_letti.atti()) {
        for (auto una = atto.caselle.cbegin(); una != atto.caselle.cend(); ++una)
            ++volte[una.key()];
    }
    const auto atti = static_cast<int>(m_letti.atti().size());
    for (auto una = volte.cbegin(); una != volte.cend(); ++una) {
        // Ciò che c'è solo a volte non si può dedurre.
        if (!nota(una.key()).isEmpty() || *una * 20 < atti * 19 || *una < proveMinime ||
            una.key().campo == QStringLiteral("Campolungo"))
            continue;
        const bool data = una.key().campo == QStringLiteral("Data");
        for (auto altra = volte.cbegin(); altra != volte.cend(); ++altra) {
            if (altra.key() == una.key() || altra.key().campo != una.key().campo ||
                nota(altra.key()).isEmpty())
                continue;
            QMap<QString, int> modi;
            int provati = 0;
            for (const AttoLetto &atto : m_letti.atti()) {
                const QString sua = atto.caselle.value(una.key());
                const QString diAltra = atto.caselle.value(altra.key());
                if (sua.isEmpty() || diAltra.isEmpty())
                    continue;
                ++provati;
                ++modi[data ? giorniDa(diAltra, sua)
                            : (sua == diAltra ? QStringLiteral("=") : QStringLiteral("x"))];
            }
            for (auto modo = modi.cbegin(); modo != modi.cend(); ++modo) {
                if (provati < proveMinime || *modo * 50 < provati * 49 ||
                    modo.key() == QStringLiteral("x"))
                    continue;
                mette(una.key(),
                      data ? dopoGiorni(nota(altra.key()), modo.key()) : nota(altra.key()));
            }
        }
    }
}

// Dove sta la data dell'atto, se si sa.
scheda::Indirizzo Rilettura::dataDiAtto() const
{
    scheda::Indirizzo diAtto;
    for (auto una = m_lette.cbegin(); una != m_lette.cend(); ++una) {
        if (una.key().evento == 0 && una.key().campo == QStringLiteral("Data"))
            diAtto = una.key();
    }
    for (auto una = m_note.cbegin(); una != m_note.cend(); ++una) {
        if (una.key().evento == 0 && una.key().campo == QStringLiteral("Data"))
            diAtto = una.key();
    }
    return diAtto;
}

// Ciò che ha pochi valori, e che una parola del testo distingue: "figlia", "del fu", "ieri".
void Rilettura::perParole()
{
    const QSet<QString> miei = indizi(m_parole);
    const scheda::Indirizzo diAtto = dataDiAtto();
    std::vector<QSet<QString>> indiziDi;
    QMap<scheda::Indirizzo, int> volte;
    for (const AttoLetto &atto : m_letti.atti()) {
        QStringList parole;
        for (const Elemento &elemento : atto.elementi)
            parole += m_letti.testo(elemento.testo).split(u' ');
        indiziDi.push_back(indizi(parole) & miei);
        for (auto una = atto.caselle.cbegin(); una != atto.caselle.cend(); ++una)
            ++volte[una.key()];
    }
    const auto atti = static_cast<int>(m_letti.atti().size());
    for (auto una = volte.cbegin(); una != volte.cend(); ++una) {
        const scheda::Indirizzo &dove = una.key();
        const bool data = dove.campo == QStringLiteral("Data");
        const bool segno = !siScrive(dove) && dove.campo != QStringLiteral("Campolungo");
        if (!nota(dove).isEmpty() || (!data && !segno) || *una * 20 < atti * 19 ||
            *una < proveMinime || (data && nota(diAtto).isEmpty()))
            continue;
        QHash<QString, QMap<QString, int>> conti;
        QMap<QString, int> tutti;
        for (size_t a = 0; a < indiziDi.size(); ++a) {
            const Caselle &sue = m_letti.atti()[a].caselle;
            const QString suo =
                data ? giorniDa(sue.value(diAtto), sue.value(dove)) : sue.value(dove);
            if (suo.isEmpty())
                continue;
            ++tutti[suo];
            for (const QString &indizio : std::as_const(indiziDi[a]))
                ++conti[indizio][suo];
        }
        const QString migliore = distinto(conti, tutti);
        if (migliore.isEmpty())
            continue;
        mette(dove, data ? dopoGiorni(nota(diAtto), migliore) : migliore);
    }
}

// Il sesso che un nome dice, e ciò che gli atti di prima dicono della stessa persona.
void Rilettura::perPersona()
{
    QHash<QString, QSet<QString>> sessi;
    QMap<scheda::Indirizzo, int> volte;
    QMap<scheda::Indirizzo, QHash<QString, QSet<QString>>> diPersona;
    for (const AttoLetto &atto : m_letti.atti()) {
        const auto diAtto = [&](const scheda::Indirizzo &dove) { return atto.caselle.value(dove); };
        for (auto una = atto.caselle.cbegin(); una != atto.caselle.cend(); ++una) {
            ++volte[una.key()];
            if (una.key().campo == campoSesso) {
                auto nome = una.key();
                nome.campo = campoNome;
                sessi[diAtto(nome).section(u' ', 0, 0)].insert(una.value());
            }
        }
        for (auto una = volte.cbegin(); una != volte.cend(); ++una) {
            if (una.key().evento == 0 && una.key().posto != QStringLiteral("voce"))
                diPersona[una.key()][chi(una.key(), diAtto)].insert(diAtto(una.key()));
        }
    }
    const auto adesso = [this](const scheda::Indirizzo &dove) { return nota(dove); };
    for (auto una = volte.cbegin(); una != volte.cend(); ++una) {
        if (!nota(una.key()).isEmpty() || una.key().evento != 0)
            continue;
        if (una.key().campo == campoSesso) {
            auto nome = una.key();
            nome.campo = campoNome;
            const auto suoi = sessi.value(nota(nome).section(u' ', 0, 0));
            if (suoi.size() == 1 && !nota(nome).isEmpty())
                mette(una.key(), *suoi.cbegin());
            continue;
        }
        const QString persona = chi(una.key(), adesso);
        const auto valori = diPersona.value(una.key()).value(persona);
        const bool diCoppia = una.key().posto == QStringLiteral("padre") ||
                              una.key().posto == QStringLiteral("madre");
        if (diCoppia && !persona.isEmpty() && valori.size() == 1)
            mette(una.key(), *valori.cbegin());
    }
}

} // namespace modTarvola::formule
