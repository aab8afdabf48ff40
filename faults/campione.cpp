#include "faults/campione.h"

#include "db/schema/schema.h"
#include "platform/riparazione/pagine.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QSet>

#include <algorithm>
#include <sqlite3.h>

namespace campione
{

namespace
{

void scrive(ado::Connection &connessione, const char *istruzione, const QVariantList &valori)
{
    connessione.Execute({QString::fromUtf8(istruzione), valori, {}});
}

QString codice(char lettera, int numero)
{
    return QLatin1Char(lettera) + QString::number(numero);
}

void scriveVoce(ado::Connection &connessione, int i)
{
    const QString voce = codice('V', i);
    const QString uno = codice('I', 2 * i - 1);
    const QString altro = codice('I', 2 * i);
    scrive(connessione, "INSERT INTO Voci VALUES (?, ?, ?, ?, ?, ?, ?)",
           {voce, codice('R', 1 + i % 3), QStringLiteral("III"), QStringLiteral("1750-03-04"), i,
            QString::number(i), QStringLiteral("2024-01-01 10:00:00")});
    // Una famiglia di origine: il padre e il figlio.
    for (const auto &[persona, ruolo] : {std::pair{uno, 36}, {altro, 1}})
        scrive(connessione,
               "INSERT INTO Individui (Codice, Voce, Nome, Cognome, Soprannome, Ruolo) "
               "VALUES (?, ?, ?, ?, ?, ?)",
               {persona, voce, QStringLiteral("Niccolò Giovanni %1").arg(i),
                QStringLiteral("Zùccari"), QString(i % 70, u'x'), ruolo});
    scrive(connessione, "INSERT INTO Famiglie VALUES (?, ?, 35, NULL)", {codice('F', i), voce});
    scrive(connessione, "INSERT INTO FamiglieConiugi VALUES (?, ?)", {codice('F', i), uno});
    scrive(connessione, "INSERT INTO FamiglieGenitori VALUES (?, ?)", {codice('F', i), altro});
    scrive(connessione, "INSERT INTO OperatoriContesti VALUES ('O1', ?)", {voce});
    scrive(connessione,
           "INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Luogo) VALUES (?, ?, 20, ?, ?)",
           {codice('E', i), uno, QStringLiteral("1750-03-04"), QStringLiteral("Borgo %1").arg(i)});
}

void scriveBinario(ado::Connection &connessione, int i)
{
    const bool file = i % 2 == 0;
    constexpr int misure[] = {0, 40, 3000, 5000, 30000, 400000};
    const int lunghezza = misure[i % 6];
    QRandomGenerator caso(static_cast<quint32>(i));
    QByteArray byte(lunghezza, Qt::Uninitialized);
    for (char &uno : byte)
        uno = static_cast<char>('a' + caso.bounded(26));
    scrive(connessione, "INSERT INTO Binari VALUES (?, ?, ?, ?, ?)",
           {codice('B', i), file ? 14 : 12, codice('V', i), QStringLiteral("carta %1").arg(i),
            file ? QVariant(byte) : QVariant(QString::fromLatin1(byte))});
}

QByteArray improntaDi(const ado::Riga &riga, int da)
{
    QCryptographicHash somma(QCryptographicHash::Sha1);
    for (int i = da; i < riga.colonne(); ++i) {
        const int tipo = riga.valore(i).typeId();
        const QByteArray byte = riga.byte(i).toByteArray();
        somma.addData(QByteArray::number(tipo) + ':' + QByteArray::number(byte.size()) + ':');
        somma.addData(byte);
    }
    return somma.result();
}

// Dove la riga si ritrova: il codice, o la coppia. Traduzioni ha il suo numero.
QString chiave(const QString &tabella)
{
    if (modTarvola::tabelleConCodice().contains(tabella) || tabella == QStringLiteral("Traduzioni"))
        return QStringLiteral("Codice");
    return tabella == QStringLiteral("OperatoriContesti")
               ? QStringLiteral("CodiceOperatore || '|' || CodiceContesto")
               : QStringLiteral("CodiceFamiglia || '|' || CodiceIndividuo");
}

} // namespace

void riempie(ado::Connection &connessione, int voci)
{
    ado::Transazione transazione(connessione);
    scrive(connessione, "INSERT INTO Archivi VALUES ('A1', 'Duomo', NULL, NULL, NULL)", {});
    scrive(connessione, "INSERT INTO Operatori VALUES ('O1', 'Ada', 'Neri', 'x', 42, NULL)", {});
    scrive(connessione, "INSERT INTO Luoghi (Codice, IdProprietario) VALUES ('L1', 'A1')", {});
    scrive(connessione, "INSERT INTO Comunicazioni (Codice, IdProprietario) VALUES ('C1', 'O1')",
           {});
    for (int i = 1; i <= 3; ++i)
        scrive(connessione,
               "INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) VALUES (?, 'A1', 9, 'B')",
               {codice('R', i)});
    for (int i = 1; i <= voci; ++i)
        scriveVoce(connessione, i);
    for (int i = 1; i <= qMin(voci, 24); ++i)
        scriveBinario(connessione, i);
    transazione.conferma();
}

QHash<QString, Righe> istantanea(ado::Connection &connessione)
{
    QHash<QString, Righe> tutte;
    for (const QString &tabella : modTarvola::tabelle()) {
        Righe &righe = tutte[tabella];
        connessione.leggi(
            {QStringLiteral("SELECT %1, * FROM %2 NOT INDEXED").arg(chiave(tabella), tabella),
             {},
             {}},
            [&righe](const ado::Riga &riga) {
                righe.insert(riga.testo(0), improntaDi(riga, 1));
                return true;
            });
    }
    return tutte;
}

QHash<QString, Righe> leggibili(const QString &percorso, const QHash<QString, Righe> &prima)
{
    QHash<QString, Righe> tutte;
    sqlite3 *base = nullptr;
    sqlite3_open_v2(percorso.toUtf8().constData(), &base, SQLITE_OPEN_READONLY, nullptr);
    for (auto tabella = prima.cbegin(); tabella != prima.cend(); ++tabella) {
        Righe &righe = tutte[tabella.key()];
        const bool coppia = chiave(tabella.key()) != QStringLiteral("Codice");
        const QString nomi = tabella.key() == QStringLiteral("OperatoriContesti")
                                 ? QStringLiteral("CodiceOperatore = ?1 AND CodiceContesto = ?2")
                                 : QStringLiteral("CodiceFamiglia = ?1 AND CodiceIndividuo = ?2");
        const QString dove = coppia ? nomi : QStringLiteral("Codice = ?1");
        const QString testo = QStringLiteral("SELECT * FROM %1 WHERE %2").arg(tabella.key(), dove);
        sqlite3_stmt *istruzione = nullptr;
        if (sqlite3_prepare_v2(base, testo.toUtf8().constData(), -1, &istruzione, nullptr) !=
            SQLITE_OK)
            continue;
        for (auto riga = tabella->cbegin(); riga != tabella->cend(); ++riga) {
            const QByteArrayList parti = riga.key().toUtf8().split('|');
            for (qsizetype i = 0; i < parti.size(); ++i)
                sqlite3_bind_text(istruzione, static_cast<int>(i + 1), parti.at(i).constData(), -1,
                                  SQLITE_TRANSIENT);
            if (sqlite3_step(istruzione) == SQLITE_ROW &&
                improntaDi(ado::Riga(istruzione), 0) == *riga)
                righe.insert(riga.key(), *riga);
            sqlite3_reset(istruzione);
        }
        sqlite3_finalize(istruzione);
    }
    sqlite3_close(base);
    return tutte;
}

QHash<QString, Righe> intatte(const QString &sano, const QString &guasto,
                              const QHash<QString, Righe> &prima)
{
    const pagine::File fonte(sano);
    const pagine::File rotto(guasto, false);
    const QList<pagine::Uso> uso(qsizetype{fonte.quante()} + 1, pagine::Uso::Ignoto);
    const auto intatta = [&](quint32 numero) { return fonte.leggi(numero) == rotto.leggi(numero); };
    QHash<QString, Righe> tutte;
    QSet<QString> viste;
    const auto prende = [&](const pagine::Cella &cella, quint32 numero) {
        const auto riga = pagine::Carico(fonte, cella).colonne();
        const QString codice = riga ? QString::fromUtf8(riga->constFirst().byte) : QString();
        const QString tabella = modTarvola::tabellaDiCodice(codice);
        if (!prima.value(tabella).contains(codice))
            return;
        // Di una riga che si trova due volte, anche in una pagina ormai libera, non si sa qual è.
        if (viste.contains(codice)) {
            tutte[tabella].remove(codice);
            return;
        }
        viste.insert(codice);
        const auto seguito = pagine::catena(fonte, cella, uso);
        if (intatta(numero) && seguito && std::all_of(seguito->cbegin(), seguito->cend(), intatta))
            tutte[tabella].insert(codice, prima[tabella][codice]);
    };
    for (quint32 numero = 1; numero <= fonte.quante(); ++numero) {
        const pagine::Pagina pagina = fonte.pagina(numero);
        if (pagina.genere != pagine::Genere::Tabella || !pagina.foglia)
            continue;
        for (const pagine::Cella &cella : pagina.celle)
            prende(cella, numero);
    }
    return tutte;
}

qint64 mancano(const Righe &prima, const Righe &dopo)
{
    qint64 quante = 0;
    for (auto riga = prima.cbegin(); riga != prima.cend(); ++riga)
        quante += dopo.value(riga.key()) == *riga ? 0 : 1;
    return quante;
}

} // namespace campione
