#include "db/connessioni.h"
#include "db/eliminazione.h"
#include "db/modello.h"
#include "db/schema.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <random>

using namespace modTarvola;

namespace
{

void esegue(ado::Connection &connessione, const QString &istruzione,
            const QVariantList &valori = {})
{
    connessione.Execute({istruzione, valori, {}});
}

// Qui conta l'esito, non che regga alla mancanza di corrente.
void senzaAttese(ado::Connection &connessione)
{
    esegue(connessione, QStringLiteral("PRAGMA synchronous = OFF"));
    esegue(connessione, QStringLiteral("PRAGMA journal_mode = MEMORY"));
}

QString esistente(const QString &tabella, const QString &codice)
{
    return QStringLiteral("EXISTS (SELECT 1 FROM %1 z WHERE z.Codice = %2)").arg(tabella, codice);
}

QString inNessuna(const QStringList &tabelle, const QString &codice)
{
    QStringList condizioni;
    for (const QString &tabella : tabelle)
        condizioni.append(QStringLiteral("NOT ") + esistente(tabella, codice));
    return condizioni.join(QStringLiteral(" AND "));
}

void togli(ado::Connection &connessione, const QString &tabella, const QStringList &proprietari,
           const char *colonna)
{
    esegue(connessione,
           QStringLiteral("DELETE FROM %1 WHERE %2")
               .arg(tabella, inNessuna(proprietari, tabella + u'.' + QString::fromUtf8(colonna))));
}

// Le righe di una tabella che a quel passo si guardano, e chi ne può essere proprietario.
struct Riguardo {
    int passo;
    const char *tabella;
    const char *proprietari;
    const char *colonna;
};

constexpr Riguardo riguardi[] = {
    {1, "Individui", "Voci", "Voce"},
    {2, "Famiglie", "Voci", "Voce"},
    {3, "FamiglieConiugi", "Famiglie", "CodiceFamiglia"},
    {3, "FamiglieGenitori", "Famiglie", "CodiceFamiglia"},
    {4, "FamiglieConiugi", "Individui", "CodiceIndividuo"},
    {4, "FamiglieGenitori", "Individui", "CodiceIndividuo"},
    {5, "Eventi", "Individui Famiglie", "IdProprietario"},
    {6, "OperatoriContesti", "", "CodiceContesto"},
    {7, "Luoghi", "Operatori Archivi", "IdProprietario"},
    {8, "Comunicazioni", "Operatori Archivi", "IdProprietario"},
    {9, "Binari", "", "IdProprietario"},
};

// La pulizia come la si direbbe a voce: ogni passo guarda tutto l'archivio.
void passo(ado::Connection &connessione, int numero, const QString &operatore)
{
    QStringList nove = tabelleConCodice();
    nove.removeOne(QStringLiteral("Binari"));
    for (const Riguardo &uno : riguardi) {
        const QString proprietari = QString::fromUtf8(uno.proprietari);
        if (uno.passo == numero)
            togli(connessione, QString::fromUtf8(uno.tabella),
                  proprietari.isEmpty() ? nove : proprietari.split(u' '), uno.colonna);
    }
    if (numero == 3)
        esegue(connessione,
               QStringLiteral("DELETE FROM Famiglie WHERE "
                              "Codice NOT IN (SELECT CodiceFamiglia FROM FamiglieConiugi) AND "
                              "Codice NOT IN (SELECT CodiceFamiglia FROM FamiglieGenitori)"));
    if (numero == 6)
        esegue(connessione,
               QStringLiteral("DELETE FROM Operatori WHERE Codice <> ? AND Codice NOT IN "
                              "(SELECT CodiceOperatore FROM OperatoriContesti)"),
               {operatore});
}

void eliminaAllaLettera(ado::Connection &connessione, const QString &codice,
                        const QString &operatore)
{
    const QString tabella = tabellaDiCodice(codice);
    if (tabella == QStringLiteral("Operatori"))
        return;
    if (tabella == QStringLiteral("Archivi"))
        esegue(connessione,
               QStringLiteral("DELETE FROM Voci WHERE Registro IN (SELECT Codice FROM Registri "
                              "WHERE Archivio = ?)"),
               {codice});
    if (tabella == QStringLiteral("Archivi"))
        esegue(connessione, QStringLiteral("DELETE FROM Registri WHERE Archivio = ?"), {codice});
    if (tabella == QStringLiteral("Registri"))
        esegue(connessione, QStringLiteral("DELETE FROM Voci WHERE Registro = ?"), {codice});
    esegue(connessione, QStringLiteral("DELETE FROM %1 WHERE Codice = ?").arg(tabella), {codice});
    QList<int> passi;
    switch (codice.front().toLatin1()) {
    case 'A':
    case 'R':
    case 'V':
        passi = {1, 4, 2, 3, 5, 6, 7, 8, 9};
        break;
    case 'I':
    case 'F':
        passi = {4, 3, 5, 6, 7, 8, 9};
        break;
    case 'E':
        passi = {6, 7, 8, 9};
        break;
    case 'L':
    case 'C':
        passi = {6, 9};
        break;
    default:
        break;
    }
    for (const int numero : passi)
        passo(connessione, numero, operatore);
}

// Un archivio piccolo e disordinato: righe scritte in ogni ordine, proprietari che mancano, di
// lettera sbagliata o Null, famiglie senza membri, operatori senza collegamenti.
class Disordine
{
public:
    struct Forma {
        const char *tabella;
        const char *colonna;
        const char *proprietari;
    };

    explicit Disordine(quint32 seme) : m_caso(seme) {}

    int numero(int fino) { return std::uniform_int_distribution<int>(0, fino)(m_caso); }
    QString codice(char lettera) { return QLatin1Char(lettera) + QString::number(1 + numero(5)); }
    QVariant proprietario(const char *lettere)
    {
        const int scelta = numero(19);
        if (scelta == 0)
            return {};
        if (scelta == 1)
            return QStringLiteral("Z9");
        if (scelta == 2)
            return codice("ARVIFEBLCO"[numero(9)]);
        const int quante = static_cast<int>(qstrlen(lettere));
        return codice(lettere[numero(quante - 1)]);
    }
    void riga(ado::Connection &connessione)
    {
        static constexpr Forma forme[] = {
            {"Archivi", nullptr, ""},
            {"Registri", "Archivio", "A"},
            {"Voci", "Registro", "R"},
            {"Individui", "Voce", "V"},
            {"Famiglie", "Voce", "V"},
            {"Eventi", "IdProprietario", "IF"},
            {"Luoghi", "IdProprietario", "OA"},
            {"Comunicazioni", "IdProprietario", "OA"},
            {"Binari", "IdProprietario", "ARVIFELCO"},
            {"Operatori", nullptr, ""},
        };
        const int quale = numero(12);
        if (quale > 9)
            return legame(connessione, quale);
        const Forma &forma = forme[quale];
        const QString colonna =
            QString::fromUtf8(forma.colonna == nullptr ? "Modifica" : forma.colonna);
        const QVariant valore =
            forma.colonna == nullptr ? QVariant() : proprietario(forma.proprietari);
        const QVariant suo = codice(forma.tabella[0]);
        esegue(connessione,
               QStringLiteral("INSERT OR IGNORE INTO %1 (Codice, %2) VALUES (?, ?)")
                   .arg(QString::fromUtf8(forma.tabella), colonna),
               {suo, valore});
        cambia(connessione, forma, colonna, suo);
    }
    // A volte una riga passa ad altro proprietario, o cambia codice.
    void cambia(ado::Connection &connessione, const Forma &forma, const QString &colonna,
                const QVariant &suo)
    {
        if (numero(9) == 0)
            esegue(connessione,
                   QStringLiteral("UPDATE %1 SET %2 = ? WHERE Codice = ?")
                       .arg(QString::fromUtf8(forma.tabella), colonna),
                   {forma.colonna == nullptr ? QVariant() : proprietario(forma.proprietari), suo});
        if (numero(14) == 0)
            esegue(connessione,
                   QStringLiteral("UPDATE OR IGNORE %1 SET Codice = ? WHERE Codice = ?")
                       .arg(QString::fromUtf8(forma.tabella)),
                   {codice(forma.tabella[0]), suo});
    }
    void legame(ado::Connection &connessione, int quale)
    {
        const QString tabella = quale == 10   ? QStringLiteral("FamiglieConiugi")
                                : quale == 11 ? QStringLiteral("FamiglieGenitori")
                                              : QStringLiteral("OperatoriContesti");
        const QVariant primo = codice(quale == 12 ? 'O' : 'F');
        const QVariant secondo = quale == 12 ? proprietario("ARVIFELCO") : QVariant(codice('I'));
        esegue(connessione, QStringLiteral("INSERT OR IGNORE INTO %1 VALUES (?, ?)").arg(tabella),
               {primo, secondo.isValid() ? secondo : QVariant(QStringLiteral("Z9"))});
        if (numero(9) == 0)
            esegue(connessione, QStringLiteral("DELETE FROM %1 WHERE rowid_finto = 0")
                                    .replace(QStringLiteral("rowid_finto = 0"),
                                             quale == 12 ? QStringLiteral("CodiceOperatore = 'O1'")
                                                         : QStringLiteral("CodiceFamiglia = 'F1'"))
                                    .arg(tabella));
    }

private:
    std::mt19937 m_caso;
};

QStringList contenuto(ado::Connection &connessione)
{
    QStringList righe;
    for (const QString &tabella : tabelle()) {
        connessione.leggi({QStringLiteral("SELECT * FROM %1 ORDER BY 1, 2").arg(tabella), {}, {}},
                          [&](const ado::Riga &riga) {
                              QStringList valori{tabella};
                              for (int i = 0; i < riga.colonne(); ++i) {
                                  if (riga.nome(i) != QStringLiteral("Creazione"))
                                      valori.append(riga.nullo(i) ? QStringLiteral("Null")
                                                                  : riga.testo(i));
                              }
                              righe.append(valori.join(u'|'));
                              return true;
                          });
    }
    return righe;
}

// Le righe che stanno in uno solo dei due; vuoto se sono gli stessi.
QString diverse(const QStringList &una, const QStringList &altra)
{
    QStringList sole;
    for (const QString &riga : una) {
        if (!altra.contains(riga))
            sole.append(u'+' + riga);
    }
    for (const QString &riga : altra) {
        if (!una.contains(riga))
            sole.append(u'-' + riga);
    }
    return sole.join(u'\n');
}

} // namespace

class TestEliminazione : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_modello;

private slots:
    void initTestCase() { creaModello(m_modello.filePath(QStringLiteral("modello"))); }
    void comeAllaLettera_data()
    {
        QTest::addColumn<int>("seme");
        for (int seme = 0; seme < 8; ++seme)
            QTest::addRow("archivi da %d", seme * 40) << seme * 40;
    }
    // Più eliminazioni di seguito sullo stesso file: le annotazioni lasciate da una servono alla
    // seguente.
    void comeAllaLettera();
    void unGuastoNonEliminaNulla();
    void annullataAMetaNonEliminaNulla();
};

void TestEliminazione::comeAllaLettera()
{
    QFETCH(int, seme);
    for (int archivio = seme; archivio < seme + 40; ++archivio) {
        QTemporaryDir cartella;
        const QString uno = cartella.filePath(QStringLiteral("uno.tvd"));
        const QString altro = cartella.filePath(QStringLiteral("altro.tvd"));
        QVERIFY(QFile::copy(m_modello.filePath(QStringLiteral("modello")), uno));
        Disordine caso(static_cast<quint32>(archivio));
        ado::Connection veloce;
        veloce.Open(stringaDiConnessione(uno));
        senzaAttese(veloce);
        for (int i = 0; i < 60; ++i)
            caso.riga(veloce);
        veloce.Close();
        QVERIFY(QFile::copy(uno, altro));
        veloce.Open(stringaDiConnessione(uno));
        ado::Connection lenta;
        lenta.Open(stringaDiConnessione(altro));
        senzaAttese(veloce);
        senzaAttese(lenta);
        for (int volta = 0; volta < 8; ++volta) {
            const QString codice = caso.codice("ARVIFEBLCO"[caso.numero(9)]);
            elimina(veloce, codice, QStringLiteral("O2"));
            eliminaAllaLettera(lenta, codice, QStringLiteral("O2"));
            const QString differenza = diverse(contenuto(veloce), contenuto(lenta));
            QVERIFY2(differenza.isEmpty(),
                     qPrintable(QStringLiteral("archivio %1, eliminazione %2 di %3: %4")
                                    .arg(archivio)
                                    .arg(volta)
                                    .arg(codice, differenza)));
            const int aggiunte = caso.numero(4);
            const auto prima = caso;
            for (int i = 0; i < aggiunte; ++i)
                caso.riga(veloce);
            auto stesso = prima;
            for (int i = 0; i < aggiunte; ++i)
                stesso.riga(lenta);
        }
    }
}

void TestEliminazione::unGuastoNonEliminaNulla()
{
    QTemporaryDir cartella;
    const QString percorso = cartella.filePath(QStringLiteral("a.tvd"));
    creaModello(percorso);
    ado::Connection connessione;
    connessione.Open(stringaDiConnessione(percorso));
    esegue(connessione, QStringLiteral("INSERT INTO Archivi (Codice) VALUES ('A1')"));
    esegue(connessione,
           QStringLiteral("INSERT INTO Registri (Codice, Archivio) VALUES ('R1', 'A1')"));
    esegue(connessione, QStringLiteral("INSERT INTO Binari (Codice, IdProprietario) "
                                       "VALUES ('B1', 'R1')"));
    esegue(connessione, QStringLiteral("CREATE TRIGGER Rotto BEFORE DELETE ON Binari BEGIN "
                                       "SELECT RAISE(FAIL, 'rotto'); END"));
    const QStringList prima = contenuto(connessione);
    QVERIFY_THROWS_EXCEPTION(ado::Errore, elimina(connessione, QStringLiteral("A1"), {}));
    QCOMPARE(contenuto(connessione), prima);
    QVERIFY(!connessione.inTransazione());
}

void TestEliminazione::annullataAMetaNonEliminaNulla()
{
    ado::Connection connessione;
    connessione.Open(stringaDiConnessione(m_modello.filePath(QStringLiteral("modello"))));
    esegue(connessione, QStringLiteral("INSERT INTO Registri (Codice) VALUES ('R1')"));
    esegue(
        connessione,
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 5000) "
                       "INSERT INTO Voci (Codice, Registro) SELECT 'V' || i, 'R1' FROM n"));
    QList<int> detti;
    try {
        elimina(connessione, QStringLiteral("R1"), {}, [&detti](int compiuti, int totale) {
            detti.append(compiuti);
            return compiuti < totale / 2;
        });
        QFAIL("l'eliminazione non si è fermata");
    } catch (const ado::Errore &errore) {
        QCOMPARE(errore.causa(), ado::Causa::Interrotto);
    }
    QVERIFY(!detti.isEmpty() && !connessione.inTransazione());
    QCOMPARE(connessione.valore({QStringLiteral("SELECT count(*) FROM Voci"), {}, {}}).toInt(),
             5000);
    elimina(connessione, QStringLiteral("R1"), {});
    QCOMPARE(connessione.valore({QStringLiteral("SELECT count(*) FROM Voci"), {}, {}}).toInt(), 0);
}

QTEST_GUILESS_MAIN(TestEliminazione)
#include "tst_eliminazione.moc"
