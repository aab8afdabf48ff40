#include "db/storia/chiavi.h"

#include <QDataStream>
#include <QHash>
#include <QIODevice>

#include <algorithm>

namespace modTarvola::storia
{

namespace
{

// Il numero di un codice; -1 se è scritto in un altro modo, e allora si riconosce solo da sé.
qint64 numeroDi(QStringView codice)
{
    bool intero = false;
    const qint64 numero = codice.mid(1).toLongLong(&intero);
    return intero && QString::number(numero) == codice.mid(1) ? numero : -1;
}

} // namespace

void Chiavi::annota(ado::Connection &connessione, const QString &tabella, const QString &dove,
                    const QVariantList &valori)
{
    std::vector<std::pair<qint64, qint64>> sue;
    connessione.leggi(
        {QStringLiteral("SELECT Codice, rowid FROM %1 WHERE %2").arg(tabella, dove), valori, {}},
        [&sue](const ado::Riga &riga) {
            const QByteArrayView codice = riga.byte(0);
            bool intero = false;
            const qint64 numero =
                QByteArray::fromRawData(codice.data() + 1, codice.size() - 1).toLongLong(&intero);
            if (intero && numero > 0)
                sue.emplace_back(numero, riga.intero(1));
            return true;
        });
    if (sue.empty())
        return;
    auto &tutte = m_chiavi[tabella];
    tutte.insert(tutte.end(), sue.begin(), sue.end());
}

// In due tempi: il posto di una può essere quello che un'altra ha preso tornando.
void Chiavi::rimette(ado::Connection &connessione, const QHash<QString, QStringList> &codici) const
{
    for (auto tabella = codici.cbegin(); tabella != codici.cend(); ++tabella) {
        QHash<qint64, qint64> sue;
        for (const auto &[numero, chiave] : m_chiavi.value(tabella.key()))
            sue.insert(numero, chiave);
        const QString &nome = tabella.key();
        const QString sposta =
            QStringLiteral("UPDATE OR IGNORE %1 SET rowid = ? WHERE Codice = ?").arg(nome);
        const QString inFondo =
            QStringLiteral("UPDATE %1 SET rowid = (SELECT max(rowid) + 1 FROM %1) WHERE Codice = ?")
                .arg(nome);
        for (const bool aParte : {true, false}) {
            for (const QString &codice : tabella.value()) {
                const qint64 chiave = sue.value(numeroDi(codice), 0);
                if (chiave > 0 &&
                    connessione.Execute({sposta, {aParte ? -chiave : chiave, codice}, {}}) == 0)
                    connessione.Execute({inFondo, {codice}, {}});
            }
        }
    }
}

// Differenze, in ordine: quasi sempre uguali, e si comprimono in nulla.
QByteArray Chiavi::byte() const
{
    QByteArray tutte;
    QDataStream flusso(&tutte, QIODevice::WriteOnly);
    for (auto tabella = m_chiavi.cbegin(); tabella != m_chiavi.cend(); ++tabella) {
        auto inOrdine = *tabella;
        std::sort(inOrdine.begin(), inOrdine.end());
        flusso << tabella.key() << static_cast<quint32>(inOrdine.size());
        qint64 numero = 0;
        qint64 chiave = 0;
        for (const auto &[suo, sua] : inOrdine) {
            flusso << suo - numero << sua - chiave;
            numero = suo;
            chiave = sua;
        }
    }
    return tutte;
}

Chiavi Chiavi::da(const QByteArray &byte)
{
    Chiavi lette;
    QDataStream flusso(byte);
    while (!flusso.atEnd()) {
        QString tabella;
        quint32 quante = 0;
        flusso >> tabella >> quante;
        qint64 numero = 0;
        qint64 chiave = 0;
        for (; quante > 0 && flusso.status() == QDataStream::Ok; --quante) {
            qint64 passoNumero = 0;
            qint64 passoChiave = 0;
            flusso >> passoNumero >> passoChiave;
            numero += passoNumero;
            chiave += passoChiave;
            lette.m_chiavi[tabella].emplace_back(numero, chiave);
        }
        if (flusso.status() != QDataStream::Ok)
            throw ado::Errore(ado::Causa::Danneggiato,
                              QStringLiteral("i cambiamenti registrati non si leggono"));
    }
    return lette;
}

} // namespace modTarvola::storia
