#include "prova_custodia.h"

#include <ctime>
#include <sqlite3.h>

namespace
{

// Che cosa si fa al file, e ciò che il rifiuto deve nominare.
struct Manomissione {
    const char *nome = nullptr;
    const char *nominato = nullptr;
    const char *istruzioni = nullptr;
};
constexpr Manomissione manomissioni[] = {
    {"vista al posto della password", "«Protezione»",
     "DROP TABLE Protezione; CREATE VIEW Protezione AS SELECT * FROM {senzaFine}"},
    {"vista", "la vista «Elenco»", "CREATE VIEW Elenco AS SELECT * FROM {senzaFine}"},
    {"trigger che non finisce", "il trigger «Lento»",
     "CREATE TRIGGER Lento AFTER UPDATE ON Voci BEGIN SELECT count(*) FROM {senzaFine}; END"},
    {"trigger che svuota, col nome di uno nostro", "il trigger «VociEliminato»",
     "DROP TRIGGER VociEliminato; CREATE TRIGGER VociEliminato AFTER DELETE ON Voci BEGIN "
     "DELETE FROM Individui; END"},
    {"colonna calcolata in fondo", "la tabella «Archivi», con colonne calcolate",
     "ALTER TABLE Archivi ADD COLUMN Grande AS (hex(zeroblob(900000000)))"},
    {"colonna calcolata nel mezzo", "la tabella «Voci», con colonne calcolate",
     "{aMano}UPDATE sqlite_schema SET sql = replace(sql, ', Volume TEXT', "
     "', Calcolata AS (hex(Registro)), Volume TEXT') WHERE name = 'Voci'"},
    {"colonne in più", "la tabella «Individui»",
     "ALTER TABLE Individui ADD COLUMN Mia TEXT DEFAULT 'x'; UPDATE Individui SET Mia = "
     "Nome"},
    {"colonne in altro ordine", "la tabella «Archivi»",
     "PRAGMA legacy_alter_table = ON; CREATE TABLE T (Gruppo, Modifica, Nome, Codice, "
     "Abbreviazione); INSERT INTO T SELECT "
     "Gruppo, Modifica, Nome, Codice, Abbreviazione FROM Archivi; DROP TABLE Archivi; "
     "ALTER TABLE T RENAME TO Archivi"},
    {"coppie con la chiave interna, al contrario", "la tabella «FamiglieConiugi»",
     "PRAGMA legacy_alter_table = ON; CREATE TABLE T (CodiceIndividuo, CodiceFamiglia); "
     "INSERT INTO T SELECT CodiceIndividuo, CodiceFamiglia FROM FamiglieConiugi; DROP TABLE "
     "FamiglieConiugi; "
     "ALTER TABLE T RENAME TO FamiglieConiugi"},
    {"vincolo", "la tabella «Luoghi»",
     "{aMano}UPDATE sqlite_schema SET sql = replace(sql, ', Stato TEXT', ', Stato TEXT "
     "CHECK (length(hex(zeroblob(400000000))) > 0)') WHERE name = 'Luoghi'"},
    {"tabella virtuale", "la tabella virtuale «Cerca»",
     "CREATE VIRTUAL TABLE Cerca USING fts5(testo)"},
    {"tabella altrui", "la tabella «Altra»", "CREATE TABLE Altra (x)"},
    {"indice che calcola", "l'indice «Calcola»",
     "CREATE INDEX Calcola ON Voci (length(hex(Volume)))"},
    {"indice che vieta", "l'indice «Unico»", "CREATE UNIQUE INDEX Unico ON Binari (Codice, Tipo)"},
    {"schema di troppe voci", "uno schema smisurato",
     "{aMano}WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 50000) "
     "INSERT INTO sqlite_schema SELECT 'view', 'v' || i, 'v' || i, 0, "
     "'CREATE VIEW v' || i || ' AS SELECT 1' FROM n"},
    {"schema di troppe parole", "uno schema smisurato",
     "{aMano}INSERT INTO sqlite_schema VALUES ('view', 'v', 'v', 0, 'CREATE VIEW v AS "
     "SELECT ''' || hex(zeroblob(9000000)) || '''')"},
};

} // namespace

// Archivi nel cui schema un altro ha messo qualcosa: non si eseguono, e se ne salvano i record.
class TstOstili : public QObject, ProvaCustodia
{
    Q_OBJECT

    // Con il motore soltanto, senza le difese del programma.
    void manomette(const QByteArray &istruzioni) const
    {
        sqlite3 *base = nullptr;
        QCOMPARE(sqlite3_open(m_percorso.toUtf8().constData(), &base), SQLITE_OK);
        const int esito = sqlite3_exec(base, istruzioni.constData(), nullptr, nullptr, nullptr);
        const QByteArray errore = sqlite3_errmsg(base);
        sqlite3_close(base);
        QVERIFY2(esito == SQLITE_OK, errore.constData());
    }

private slots:
    void initTestCase() { prepara(); }
    void init() { comincia(); }

    void nonSiAprono_data()
    {
        QTest::addColumn<QByteArray>("istruzioni");
        QTest::addColumn<QString>("nominato");
        for (const Manomissione &una : manomissioni)
            QTest::newRow(una.nome)
                << QByteArray(una.istruzioni)
                       .replace("{aMano}", "PRAGMA writable_schema = ON; ")
                       .replace(
                           "{senzaFine}",
                           "(WITH RECURSIVE n(Nome, Valore) AS (SELECT 'password', 1 UNION ALL "
                           "SELECT Nome, Valore FROM n) SELECT * FROM n)")
                << QString::fromUtf8(una.nominato);
    }
    void nonSiAprono()
    {
        QFETCH(QByteArray, istruzioni);
        QFETCH(QString, nominato);
        manomette(istruzioni);
        const std::clock_t prima = std::clock();
        const ado::Errore trovato = errore([&] { ApriArchivio(m_percorso); });
        QVERIFY2(trovato.testo().contains(nominato), qUtf8Printable(trovato.testo()));
        QCOMPARE(trovato.causa(), ado::Causa::Estraneo);
        for (const QString &nome : {u"copia.tvd"_s, u"altra.tvd"_s}) {
            const ado::Errore rifiuto = errore([&] {
                nome == u"copia.tvd" ? copiaArchivio(m_percorso, accanto(nome), avanti, true)
                                     : recuperaArchivio(m_percorso, accanto(nome), avanti, true);
            });
            QCOMPARE(rifiuto.causa(), ado::Causa::Estraneo);
            QVERIFY(!QFileInfo::exists(accanto(nome)));
        }
        const Compattato esito = compattaArchivio(m_percorso, cestino(), avanti);
        QVERIFY(esito.riparato && esito.estraneo);
        QCOMPARE(righeDi(m_percorso), m_prima);
        ApriArchivio(m_percorso);
        // Di ciò che non finisce mai non si esegue nulla. Conta il lavoro fatto, non l'attesa.
        const double secondi = static_cast<double>(std::clock() - prima) / CLOCKS_PER_SEC;
        QVERIFY2(secondi < 20, qPrintable(QString::number(secondi)));
    }

    void innocuiSiAprono()
    {
        manomette("CREATE INDEX \"Per cognome\" ON \"Individui\" (Cognome COLLATE NOCASE, "
                  "\"Età\" DESC); ANALYZE; DROP INDEX VociNumero; DROP TRIGGER VociEliminato; "
                  "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = replace(sql, "
                  "'TABLE Archivi (', 'table \"Archivi\" -- di prima' || char(10) || '(' || "
                  "char(9)) WHERE name = 'Archivi'");
        ApriArchivio(m_percorso);
        QCOMPARE(campione::istantanea(connessione()), m_prima);
        esegui(u"UPDATE Individui SET Cognome = 'Rossi'"_s);
        connessione().Close();
        QVERIFY(!compattaArchivio(m_percorso, cestino(), avanti).riparato);
    }
};

QTEST_GUILESS_MAIN(TstOstili)
#include "tst_ostili.moc"
