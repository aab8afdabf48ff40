#include "db/formule/atti_letti.h"

#include <QDate>
#include <QRegularExpression>

// Dalle forme di una data, o di un numero, al numero.
namespace modTarvola::formule
{

namespace
{

QStringList grafie(const scheda::Indirizzo &dove, const QString &valore, int forma)
{
    const auto tutte = rese(dove, valore);
    for (const Resa &una : tutte) {
        if (una.forma == forma)
            return una.grafie;
    }
    return {};
}

void segna(QHash<QString, QString> &numeri, const QStringList &grafie, const QString &numero)
{
    for (const QString &una : grafie) {
        if (!una.isEmpty() && !numeri.contains(una.toLower()))
            numeri.insert(una.toLower(), numero);
    }
}

// Le parole di una forma di data: se dice il giorno, il mese o l'anno lo mostra ciò da cui dipende.
QHash<QString, QString> diData(const scheda::Indirizzo &dove, int forma, int anno)
{
    const auto di = [&](int a, int m, int g) {
        return grafie(dove, QDate(a, m, g).toString(Qt::ISODate), forma);
    };
    QHash<QString, QString> numeri;
    const bool giorno = di(anno, 1, 1) != di(anno, 1, 2);
    const bool mese = di(anno, 1, 1) != di(anno, 2, 1);
    if (giorno && mese)
        return numeri; // il giorno della settimana non basta
    if (giorno) {
        for (int g = 1; g <= 31; ++g)
            segna(numeri, di(anno, 1, g), QStringLiteral("g%1").arg(g));
    } else if (mese || di(anno, 9, 1) != di(anno, 10, 1)) {
        for (int m = 1; m <= 12; ++m)
            segna(numeri, di(anno, m, 1), QStringLiteral("m%1").arg(m));
    } else {
        constexpr int intorno = 6;
        for (int a = anno - intorno; a <= anno + intorno; ++a)
            segna(numeri, di(a, 1, 1), QStringLiteral("a%1").arg(a));
    }
    return numeri;
}

} // namespace

QString AttiLetti::rovescio(const scheda::Indirizzo &dove, int forma, const QString &testo) const
{
    QString ultimo;
    for (auto atto = m_atti.crbegin(); atto != m_atti.crend() && ultimo.isEmpty(); ++atto)
        ultimo = atto->caselle.value(dove);
    const qint64 giorno = giornoDi(ultimo);
    if (dove.campo == QStringLiteral("Data")) {
        if (giorno == 0)
            return {};
        const int anno = QDate::fromJulianDay(giorno).year();
        const QString quale = QStringLiteral("d%1 %2").arg(forma).arg(anno);
        if (!m_rovesci.contains(quale))
            m_rovesci.insert(quale, diData(dove, forma, anno));
        return m_rovesci[quale].value(testo);
    }
    if (dove.campo == QStringLiteral("Ora"))
        return {};
    // Il numero sta nel valore come nell'ultimo scritto.
    const QString quale = QStringLiteral("n%1").arg(forma);
    if (!m_rovesci.contains(quale)) {
        QHash<QString, QString> numeri;
        constexpr int alPiu = 130;
        for (int n = 0; n <= alPiu; ++n)
            segna(numeri, grafie(dove, QString::number(n), forma), QString::number(n));
        m_rovesci.insert(quale, numeri);
    }
    const QString numero = m_rovesci[quale].value(testo);
    if (numero.isEmpty())
        return {};
    static const QRegularExpression cifre(QStringLiteral("\\d+"));
    return QString(ultimo).replace(cifre, numero);
}

} // namespace modTarvola::formule
