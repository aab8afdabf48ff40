#include "db/formule/atti_letti.h"

#include <QDate>

#include <algorithm>

// Ciò che di un atto può decidere le parole del suo testo.
namespace modTarvola::formule
{

namespace
{

// Quanto ci si crede prima di ogni prova.
constexpr double sempre = 1;
constexpr double molto = 0.8;
constexpr double abbastanza = 0.6;
constexpr double poco = 0.4;

QString nome(const scheda::Indirizzo &dove)
{
    return dove.posto + u'.' + QString::number(dove.quale) + u'.' + QString::number(dove.evento) +
           u'.' + dove.campo;
}

bool vocale(QChar c)
{
    return QStringLiteral("aeiouàèéìòù").contains(c.toLower());
}

} // namespace

void AttiLetti::tratto(Tratti &tratti, const QString &nome, const QString &valore, double fiducia,
                       bool sesso)
{
    const auto quale = static_cast<size_t>(m_nomiTratti.numero(nome));
    if (m_fiducia.size() <= quale) {
        m_fiducia.resize(quale + 1);
        m_diSesso.resize(quale + 1);
        m_presenza.resize(quale + 1);
        if (nome.endsWith(QStringLiteral(" c'è")))
            m_presenza[quale] = nome.section(u'.', 0, 0);
    }
    m_fiducia[quale] = fiducia;
    m_diSesso[quale] = sesso ? 1 : 0;
    if (tratti.size() <= quale)
        tratti.resize(quale + 1);
    tratti[quale] = m_valori.numero(valore);
}

// Ciò che una data decide.
void AttiLetti::trattiDiData(Tratti &tratti, const QString &nome, qint64 giorno)
{
    const QDate data = QDate::fromJulianDay(giorno);
    tratto(tratti, nome + QStringLiteral(" giorno"), QString::number(data.day()), abbastanza);
    tratto(tratti, nome + QStringLiteral(" mese"), QString::number(data.month()), abbastanza);
    tratto(tratti, nome + QStringLiteral(" anno"), QString::number(data.year()), abbastanza);
    tratto(tratti, nome + QStringLiteral(" feria"), QString::number(data.dayOfWeek()), poco);
}

// Ciò che una casella scritta, che non è una data, decide da sola.
void AttiLetti::trattiDiCasella(Tratti &tratti, const QString &nome, const QString &campo,
                                const QString &valore)
{
    const auto seVero = [](bool vero) { return vero ? QStringLiteral("1") : QStringLiteral("0"); };
    tratto(tratti, nome + QStringLiteral(" c'è"), QStringLiteral("1"), molto);
    tratto(tratti, nome, valore, poco);
    tratto(tratti, nome + QStringLiteral(" vocale"), seVero(vocale(valore.front())), poco);
    if (campo == QStringLiteral("Nome"))
        tratto(tratti, nome + QStringLiteral(" fine"), valore.section(u' ', 0, 0).right(1), poco);
    if (campo == QStringLiteral("Ora"))
        tratto(tratti, nome + QStringLiteral(" mezzodì"),
               seVero(valore.section(u':', 0, 0).toInt() >= 12), abbastanza);
}

// Ciò che due date, o due cognomi o luoghi, decidono insieme.
void AttiLetti::trattiDiCoppie(Tratti &tratti, const QList<QPair<QString, qint64>> &giorni,
                               const QList<QPair<QString, QString>> &uguali)
{
    for (qsizetype i = 0; i < giorni.size(); ++i) {
        for (qsizetype j = i + 1; j < giorni.size(); ++j) {
            const qint64 giorno = giorni.at(j).second - giorni.at(i).second;
            const QString coppia = giorni.at(i).first + u'-' + giorni.at(j).first;
            tratto(tratti, coppia, QString::number(giorno), molto);
            tratto(tratti, coppia + QStringLiteral(" circa"),
                   QString::number(std::clamp<qint64>(giorno, -2, 2)), molto);
        }
    }
    for (qsizetype i = 0; i < uguali.size(); ++i) {
        for (qsizetype j = i + 1; j < uguali.size(); ++j)
            tratto(tratti, uguali.at(i).first + u'=' + uguali.at(j).first,
                   uguali.at(i).second == uguali.at(j).second ? QStringLiteral("1")
                                                              : QStringLiteral("0"),
                   poco);
    }
}

void AttiLetti::trattiDi(Pronte &pronte)
{
    Tratti &tratti = pronte.tratti;
    tratto(tratti, QStringLiteral("*"), QStringLiteral("*"), sempre);
    QList<QPair<QString, qint64>> giorni;
    QMap<QString, QString> persone;
    QList<QPair<QString, QString>> uguali;
    QMap<QString, int> quante;
    for (auto una = pronte.caselle.cbegin(); una != pronte.caselle.cend(); ++una) {
        const scheda::Indirizzo &dove = una.key();
        const QString valore = una.value().simplified();
        const QString suo = nome(dove);
        if (valore.isEmpty())
            continue;
        quante[dove.posto] = std::max(quante.value(dove.posto), dove.quale + 1);
        if (!siScrive(dove)) {
            if (dove.campo != QStringLiteral("Campolungo"))
                tratto(tratti, suo, valore, molto, dove.campo == QStringLiteral("Sesso"));
        } else if (const qint64 giorno = giornoDi(valore); giorno != 0) {
            giorni.append({suo, giorno});
            trattiDiData(tratti, suo, giorno);
        } else {
            trattiDiCasella(tratti, suo, dove.campo, valore);
            if (dove.campo == QStringLiteral("Nome") || dove.campo == QStringLiteral("Cognome"))
                persone[dove.posto + QString::number(dove.quale)] += u' ' + valore;
            if (dove.campo == QStringLiteral("Cognome") || dove.campo == QStringLiteral("Luogo"))
                uguali.append({suo, valore});
        }
    }
    for (auto una = persone.cbegin(); una != persone.cend(); ++una)
        tratto(tratti, una.key() + QStringLiteral(" chi"), una.value(), abbastanza);
    const QString genitori =
        persone.value(QStringLiteral("padre0")) + persone.value(QStringLiteral("madre0"));
    tratto(tratti, QStringLiteral("genitori"), genitori, abbastanza);
    for (auto una = quante.cbegin(); una != quante.cend(); ++una)
        tratto(tratti, una.key() + QStringLiteral(" quante"), QString::number(una.value()), molto);
    trattiDiCoppie(tratti, giorni, uguali);
}

} // namespace modTarvola::formule
