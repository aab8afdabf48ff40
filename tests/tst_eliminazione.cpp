#include "comune.h"
#include "db/lavoro/eliminazione.h"
#include "db/schema/schema.h"

#include <QHash>

#include <random>

namespace
{

// A ogni passo le righe che si guardano, con la colonna del proprietario e chi può esserlo.
const QStringList riguardi{u"1 Individui Voce Voci"_s,
                           u"2 Famiglie Voce Voci"_s,
                           u"3 FamiglieConiugi CodiceFamiglia Famiglie"_s,
                           u"3 FamiglieGenitori CodiceFamiglia Famiglie"_s,
                           u"4 FamiglieConiugi CodiceIndividuo Individui"_s,
                           u"4 FamiglieGenitori CodiceIndividuo Individui"_s,
                           u"5 Eventi IdProprietario Individui Famiglie"_s,
                           u"6 OperatoriContesti CodiceContesto"_s,
                           u"7 Luoghi IdProprietario Operatori Archivi"_s,
                           u"8 Comunicazioni IdProprietario Operatori Archivi"_s,
                           u"9 Binari IdProprietario"_s};

// La pulizia come la si direbbe a voce: ogni passo guarda tutto l'archivio.
void passo(Aparte &archivio, int numero, const QString &operatore, bool conGliOperatori)
{
    QStringList nove = tabelleConCodice();
    nove.removeOne(u"Binari"_s);
    for (const QString &uno : riguardi) {
        const QStringList parole = uno.split(u' ');
        if (parole[0].toInt() != numero)
            continue;
        QString istruzione = u"DELETE FROM %1 WHERE 1"_s.arg(parole[1]);
        for (const QString &tabella : parole.size() > 3 ? parole.mid(3) : nove)
            istruzione += u" AND NOT EXISTS (SELECT 1 FROM %1 z WHERE z.Codice = %2.%3)"_s.arg(
                tabella, parole[1], parole[2]);
        archivio.esegui(istruzione);
    }
    if (numero == 3)
        archivio.esegui(u"DELETE FROM Famiglie WHERE "
                        "Codice NOT IN (SELECT CodiceFamiglia FROM FamiglieConiugi) AND "
                        "Codice NOT IN (SELECT CodiceFamiglia FROM FamiglieGenitori)"_s);
    if (numero == 6 && conGliOperatori)
        archivio.esegui(u"DELETE FROM Operatori WHERE Codice <> ? AND "
                        "Codice NOT IN (SELECT CodiceOperatore FROM OperatoriContesti)"_s,
                        {operatore});
}

void eliminaAllaLettera(Aparte &archivio, const QString &codice, const QString &operatore)
{
    const QString tabella = tabellaDiCodice(codice);
    const auto toglie = [&](const QString &condizione) {
        archivio.esegui(u"DELETE FROM "_s + condizione, {codice});
    };
    if (tabella == u"Operatori")
        return;
    if (tabella == u"Archivi") {
        toglie(u"Voci WHERE Registro IN (SELECT Codice FROM Registri WHERE Archivio = ?)"_s);
        toglie(u"Registri WHERE Archivio = ?"_s);
    }
    if (tabella == u"Registri")
        toglie(u"Voci WHERE Registro = ?"_s);
    toglie(tabella + u" WHERE Codice = ?"_s);
    const QHash<QChar, QString> passi{{u'A', u"142356789"_s}, {u'R', u"142356789"_s},
                                      {u'V', u"142356789"_s}, {u'I', u"4356789"_s},
                                      {u'F', u"4356789"_s},   {u'E', u"6789"_s},
                                      {u'L', u"69"_s},        {u'C', u"69"_s}};
    for (const QChar numero : passi.value(codice.front()))
        passo(archivio, numero.digitValue(), operatore,
              tabella != u"Luoghi" && tabella != u"Comunicazioni");
}

// Scrive in due archivi le stesse righe, in disordine: proprietari che mancano, di lettera
// sbagliata o Null, famiglie senza membri, operatori senza collegamenti.
class Disordine
{
public:
    Disordine(quint32 seme, Aparte &uno, Aparte &altro) : m_caso(seme), m_uno(uno), m_altro(altro)
    {
        // Qui conta l'esito, non che regga alla mancanza di corrente.
        esegue(u"PRAGMA synchronous = OFF"_s);
        esegue(u"PRAGMA journal_mode = MEMORY"_s);
    }

    int numero(int fino) { return std::uniform_int_distribution<int>(0, fino)(m_caso); }
    QString codice(QChar lettera) { return lettera + QString::number(1 + numero(5)); }
    QString unoDi(const QString &lettere)
    {
        return codice(lettere.at(numero(static_cast<int>(lettere.size()) - 1)));
    }

    void riga()
    {
        // La tabella, una colonna e le lettere dei proprietari che vi sono giusti.
        static const QStringList forme{u"Archivi Modifica"_s,
                                       u"Registri Archivio A"_s,
                                       u"Voci Registro R"_s,
                                       u"Individui Voce V"_s,
                                       u"Famiglie Voce V"_s,
                                       u"Eventi IdProprietario IF"_s,
                                       u"Luoghi IdProprietario OA"_s,
                                       u"Comunicazioni IdProprietario OA"_s,
                                       u"Binari IdProprietario ARVIFELCO"_s,
                                       u"Operatori Modifica"_s,
                                       u"FamiglieConiugi CodiceFamiglia I"_s,
                                       u"FamiglieGenitori CodiceFamiglia I"_s,
                                       u"OperatoriContesti CodiceOperatore ARVIFELCO"_s};
        const QStringList forma = forme.at(numero(12)).split(u' ');
        const QString &tabella = forma[0];
        const QString &colonna = forma[1];
        const QString suo = codice(tabella.front());
        const QVariant di = proprietario(forma.value(2));
        if (colonna.startsWith(u"Codice"_s)) {
            esegue(u"INSERT OR IGNORE INTO %1 VALUES (?, ?)"_s.arg(tabella),
                   {suo, di.isNull() ? u"Z9"_s : di});
            if (numero(9) == 0)
                esegue(u"DELETE FROM %1 WHERE %2 = ?"_s.arg(tabella, colonna),
                       {tabella.front() + u"1"_s});
            return;
        }
        esegue(u"INSERT OR IGNORE INTO %1 (Codice, %2) VALUES (?, ?)"_s.arg(tabella, colonna),
               {suo, di});
        // A volte una riga passa ad altro proprietario, o cambia codice.
        if (numero(9) == 0)
            esegue(u"UPDATE %1 SET %2 = ? WHERE Codice = ?"_s.arg(tabella, colonna),
                   {proprietario(forma.value(2)), suo});
        if (numero(14) == 0)
            esegue(u"UPDATE OR IGNORE %1 SET Codice = ? WHERE Codice = ?"_s.arg(tabella),
                   {codice(tabella.front()), suo});
    }

private:
    QVariant proprietario(const QString &lettere)
    {
        const int scelta = numero(19);
        if (scelta == 0 || lettere.isEmpty())
            return {};
        if (scelta == 1)
            return u"Z9"_s;
        return unoDi(scelta == 2 ? u"ARVIFEBLCO"_s : lettere);
    }

    void esegue(const QString &istruzione, const QVariantList &valori = {})
    {
        m_uno.esegui(istruzione, valori);
        m_altro.esegui(istruzione, valori);
    }

    std::mt19937 m_caso;
    Aparte &m_uno;
    Aparte &m_altro;
};

QStringList contenuto(ado::Connection &archivio)
{
    QStringList righe;
    for (const QString &tabella : tabelle()) {
        archivio.leggi({u"SELECT * FROM %1 ORDER BY 1, 2"_s.arg(tabella), {}, {}},
                       [&](const ado::Riga &riga) {
                           QString valori = tabella;
                           for (int i = 0; i < riga.colonne(); ++i) {
                               if (riga.nome(i) != u"Creazione")
                                   valori += u'|' + (riga.nullo(i) ? u"Null"_s : riga.testo(i));
                           }
                           righe.append(valori);
                           return true;
                       });
    }
    return righe;
}

} // namespace

class TestEliminazione : public QObject
{
    Q_OBJECT

    std::unique_ptr<ArchivioDiProva> archivio;

private slots:
    void init() { archivio = std::make_unique<ArchivioDiProva>(); }

    // Più eliminazioni di seguito sugli stessi file: le annotazioni lasciate da una servono alla
    // seguente.
    void comeAllaLettera()
    {
        const QString uno = archivio->accanto(u"uno.tvd"_s);
        const QString altro = archivio->accanto(u"altro.tvd"_s);
        const auto semi = static_cast<quint32>(volte(60));
        for (quint32 seme = 0; seme < semi; ++seme) {
            for (const QString &copia : {uno, altro}) {
                QFile::remove(copia);
                QVERIFY(QFile::copy(archivio->percorso(), copia));
            }
            Aparte veloce(uno);
            Aparte lenta(altro);
            Disordine caso(seme, veloce, lenta);
            for (int i = 0; i < 60; ++i)
                caso.riga();
            for (int volta = 0; volta < 8; ++volta) {
                const QString codice = caso.unoDi(u"ARVIFEBLCO"_s);
                const QString operatore = caso.codice(u'O');
                elimina(veloce, codice, operatore);
                eliminaAllaLettera(lenta, codice, operatore);
                if (contenuto(veloce) != contenuto(lenta))
                    qWarning("archivio %u, eliminazione %d: %s", seme, volta, qPrintable(codice));
                QCOMPARE(contenuto(veloce), contenuto(lenta));
                for (int i = caso.numero(4); i > 0; --i)
                    caso.riga();
            }
        }
    }

    void unGuastoNonEliminaNulla()
    {
        esegui(u"INSERT INTO Archivi (Codice) VALUES ('A1')"_s);
        esegui(u"INSERT INTO Registri (Codice, Archivio) VALUES ('R1', 'A1')"_s);
        esegui(u"INSERT INTO Binari (Codice, IdProprietario) VALUES ('B1', 'R1')"_s);
        esegui(u"CREATE TRIGGER Rotto BEFORE DELETE ON Binari BEGIN "
               "SELECT RAISE(FAIL, 'rotto'); END"_s);
        const QStringList prima = contenuto(connessione());
        QVERIFY_THROWS_EXCEPTION(ado::Errore, elimina(connessione(), u"A1"_s, {}));
        QCOMPARE(contenuto(connessione()), prima);
        QVERIFY(!connessione().inTransazione());
    }

    void annullataAMetaNonEliminaNulla()
    {
        esegui(u"INSERT INTO Registri (Codice) VALUES ('R1')"_s);
        esegui(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 5000) "
               "INSERT INTO Voci (Codice, Registro) SELECT 'V' || i, 'R1' FROM n"_s);
        const auto fermaAMeta = [](int compiuti, int totale) { return compiuti < totale / 2; };
        QCOMPARE(errore([&] { elimina(connessione(), u"R1"_s, {}, fermaAMeta); }).causa(),
                 ado::Causa::Interrotto);
        QVERIFY(!connessione().inTransazione());
        QCOMPARE(righe(u"Voci"_s), 5000);
        elimina(connessione(), u"r1"_s, {});
        QCOMPARE(righe(u"Voci"_s), 0);
    }
};

QTEST_GUILESS_MAIN(TestEliminazione)
#include "tst_eliminazione.moc"
