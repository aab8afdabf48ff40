#include "comune.h"
#include "db/lavoro/codici.h"
#include "db/lavoro/collegamenti.h"
#include "db/schema/generi.h"
#include "db/schema/protezione.h"
#include "db/schema/schema.h"
#include "db/schema/tabelle.h"
#include "platform/disco/shell.h"
#include "platform/motore/recordset.h"

#include <QCryptographicHash>
#include <QDir>

using ado::Causa;

namespace
{

ado::Recordset aperto(const ado::Comando &comando, int blocco = ado::adLockOptimistic)
{
    ado::Recordset record;
    record.Open(comando, connessione(), blocco);
    return record;
}

QStringList etichette(const ado::Comando &comando)
{
    QStringList lette;
    for (auto generi = aperto(comando); !generi.Eof(); generi.MoveNext())
        lette.append(generi.Campo(2).toString());
    return lette;
}

} // namespace

class TstDati : public QObject
{
    Q_OBJECT

    std::unique_ptr<ArchivioDiProva> archivio;

    using Prepara = std::function<void(const QString &)>;
    static Prepara guastoDa(const QString &istruzione)
    {
        return [istruzione](const QString &percorso) {
            creaModello(percorso);
            Aparte(percorso).esegui(istruzione);
        };
    }
    static Prepara fileDi(const QByteArray &byte)
    {
        return [byte](const QString &percorso) { scrive(percorso, byte); };
    }

private slots:
    void init() { archivio = std::make_unique<ArchivioDiProva>(); }

    // I file già scritti hanno questo schema, lettera per lettera: chi cambia il catalogo cambia
    // versione.
    void loSchemaDeiFileGiaScritti()
    {
        QStringList presenti = colonna(u"SELECT type || ' ' || name || ' ' || tbl_name || ' ' || "
                                       "coalesce(sql, '') FROM sqlite_schema"_s);
        std::sort(presenti.begin(), presenti.end());
        const QByteArray impronta =
            QCryptographicHash::hash(presenti.join(u'\n').toUtf8(), QCryptographicHash::Sha256);
        QCOMPARE(impronta.toHex(), QByteArrayLiteral("634555c132192909d6bba36f7cd387c8"
                                                     "64e647a45ebe1789dad0ad724b68e22a"));
        QCOMPARE(versioneSchema, 1);
        QCOMPARE(catalogo::tabella(u"eventi").colonna(u"ORA")->formato, catalogo::Formato::Ora);
    }

    void codiceNuovo()
    {
        const auto dopo = [](const QString &presenti) {
            esegui(u"DELETE FROM Eventi"_s);
            esegui(u"INSERT INTO Eventi (Codice) VALUES "_s + presenti);
            return NuovoCodice(connessione(), u"Eventi"_s);
        };
        QCOMPARE(NuovoCodice(connessione(), u"Eventi"_s), u"E1"_s);
        QCOMPARE(dopo(u"('E10'), ('E9'), ('E2')"_s), u"E11"_s);
        // Un buco resta; il numero più alto, eliminato, si dà di nuovo.
        QCOMPARE(dopo(u"('E1'), ('E7')"_s), u"E8"_s);
        QCOMPARE(dopo(u"('e3')"_s), u"E4"_s);
        QVERIFY_THROWS_EXCEPTION(ado::Errore, dopo(u"('E2147483647')"_s));
    }

    void legameConLOperatore()
    {
        CollegaOperatore(connessione(), {}, u"V1"_s);
        QCOMPARE(righe(u"OperatoriContesti"_s), 0);
        for (const QString &operatore : {u"O1"_s, u"O1"_s, u"o1"_s, u"O2"_s})
            CollegaOperatore(connessione(), operatore, u"V1"_s);
        QCOMPARE(colonna(u"SELECT CodiceOperatore || CodiceContesto FROM OperatoriContesti"_s),
                 QStringList({u"O1V1"_s, u"O2V1"_s}));
    }

    void ricerche()
    {
        esegui(u"INSERT INTO Registri (Codice, Tipo) VALUES ('R1', 10)"_s);
        esegui(u"INSERT INTO Voci (Codice, Registro) VALUES ('V1', 'r1'), ('V2', 'R9')"_s);
        QCOMPARE(TipoRegistroDiVoce(connessione(), u"V1"_s), 10);
        QCOMPARE(TipoRegistroDiVoce(connessione(), u"v1"_s), 10);
        QCOMPARE(TipoRegistroDiVoce(connessione(), u"V2"_s), 0);
        QCOMPARE(TipoRegistroDiVoce(connessione(), u"V3"_s), 0);
        QCOMPARE(TipoRegistro(connessione(), u"R1"_s), 10);
        QCOMPARE(TipoRegistro(connessione(), u"R9"_s), 0);
        QCOMPARE(EtichettaTraduzione(connessione(), u"L1"_s, 13), u"Testo riportato"_s);
        QCOMPARE(EtichettaTraduzione(connessione(), u"L1"_s, 9999), QString());
        QVERIFY(esiste(connessione(), u"r1"_s));
        for (const QString &assente : {u"R2"_s, u"A1"_s, u"Z1"_s, u""_s})
            QVERIFY2(!esiste(connessione(), assente), qUtf8Printable(assente));
    }

    void generi_data()
    {
        QTest::addColumn<int>("categoria");
        QTest::addColumn<QString>("propri");
        const auto riga = [](const char *caso, int categoria, const char *propri) {
            QTest::newRow(caso) << categoria << QString::fromUtf8(propri);
        };
        riga("archivio", 1, "|Indirizzo|Recapito");
        riga("registro", 2, "");
        riga("battesimo", 4,
             "|Altra persona|Battezzato/a|Famiglia Genitori|Padrino/Madrina|Testimone");
        riga("matrimonio", 8, "|Altra persona|Famiglia Coniuge|Sposa|Sposo|Testimone");
        riga("morte", 16, "|Altra persona|Defunto/a|Famiglia Genitori|Testimone");
        riga("individuo", 256,
             "|Adozione|Altro evento|Battesimo|Censimento|Cremazione|Cresima|Emigrazione|"
             "Famiglia Coniuge|Famiglia Genitori|Immigrazione|Mestiere|Morte|Nascita|Ordinazione|"
             "Prima comunione|Professione religiosa|Residenza|Sepoltura|Testamento|Titolo");
        riga("famiglia", 512,
             "|Altro evento|Madre|Marito|Matrimonio|Moglie|Padre|Pubblicazioni di matrimonio");
        riga("evento", 1024, "");
        riga("operatore", 2048, "|Indirizzo|Recapito");
        riga("indirizzo e recapito", 4096, "");
    }
    void generi()
    {
        QFETCH(int, categoria);
        QFETCH(QString, propri);
        QStringList attesi =
            (u"Contatto|File allegato|Nota|Testo riportato"_s + propri).split(u'|');
        attesi.sort();
        QCOMPARE(etichette(generiInseribili(categoria, u"L1"_s)), attesi);
        QCOMPARE(etichette(generiInseribili(0, u"L1"_s)), QStringList());
        QCOMPARE(etichette(tipiDiRegistro(u"L1"_s)),
                 QStringList({u"Battesimi"_s, u"Matrimoni"_s, u"Morti"_s}));
    }

    // Un record raccoglie ciò che cambia, per nome di campo comunque lo si scriva.
    void recordVuotoENull()
    {
        auto record = aperto(dettagli(u"Archivi"_s, {}));
        QVERIFY(record.Bof());
        QVERIFY_THROWS_EXCEPTION(ado::Errore, record.Campo(u"Nome"_s));
        record.AddNew();
        record.Assegna(u"NOME"_s, u"Èlia d'Òrsi"_s);
        record.Assegna(u"Gruppo"_s, QString());
        QCOMPARE(record.Cambiati(), QVariantMap({{u"Nome"_s, u"Èlia d'Òrsi"_s}}));
        esegui(u"INSERT INTO Archivi (Codice, Nome, Gruppo) VALUES ('A1', 'prima', '')"_s);
        record = aperto(dettagli(u"Archivi"_s, u"a1"_s));
        QVERIFY(record.Campo(u"Gruppo"_s).isValid());
        QVERIFY(!record.Campo(u"Abbreviazione"_s).isValid());
        record.Assegna(u"Gruppo"_s, QVariant());
        record.Assegna(u"Nome"_s, u"prima"_s);
        QCOMPARE(record.Cambiati(), QVariantMap({{u"Gruppo"_s, QVariant()}}));
        record = aperto(dettagli(u"Archivi"_s, u"A1"_s), ado::adLockReadOnly);
        QCOMPARE(errore([&] { record.Assegna(u"Nome"_s, u"dopo"_s); }).causa(), Causa::SolaLettura);
    }

    void postiDelleConnessioni()
    {
        const QString altro = archivio->accanto(u"altro; d'Òrsi;Jet OLEDB:x.tvd"_s);
        creaModello(altro);
        const Archivi &tutti = archivi();
        QCOMPARE(tutti.Connessioni.size(), size_t{1});
        ApriArchivio(altro);
        QCOMPARE(tutti.ConnessioneCorrente, 1);
        QCOMPARE(connessione().Properties(u"data source"), altro);
        // Le maiuscole non contano finché non c'è davvero un altro file.
        const QString maiuscolo = archivio->accanto(u"PROVA.tvd"_s);
        ApriArchivio(maiuscolo);
        QCOMPARE(tutti.ConnessioneCorrente, 0);
        QCOMPARE(tutti.Connessioni.size(), size_t{2});
        connessione().Close();
        ApriArchivio(maiuscolo);
        QCOMPARE(tutti.ConnessioneCorrente, 0);
        QCOMPARE(connessione().State(), ado::adStateOpen);
        creaModello(maiuscolo);
        ApriArchivio(maiuscolo);
        QCOMPARE(tutti.ConnessioneCorrente, 2);
        ApriArchivio(archivio->accanto(u"./prova.tvd"_s));
        QCOMPARE(tutti.ConnessioneCorrente, 0);
    }

    void fileCattivi_data()
    {
        QTest::addColumn<Prepara>("prepara");
        QTest::addColumn<Causa>("causa");
        QTest::addColumn<QString>("motivo");
        const auto riga = [](const char *caso, Causa causa, const char *motivo,
                             const Prepara &prepara) {
            QTest::newRow(caso) << prepara << causa << QString::fromUtf8(motivo);
        };
        const char *const altro = "non è un file di archivi di Tarvola";
        riga("mancante", Causa::Mancante, "il file non esiste", [](const QString &) {});
        riga("testo", Causa::NonArchivio, altro, fileDi(QByteArray(2000, 'q')));
        riga("vuoto", Causa::NonArchivio, altro, fileDi({}));
        riga("altra base", Causa::NonArchivio, altro, [](const QString &percorso) {
            ado::Connection base;
            base.Create(percorso);
            base.Execute({u"CREATE TABLE Cose (Nome TEXT)"_s, {}, {}});
        });
        riga("cartella", Causa::NonArchivio, "non è un file",
             [](const QString &percorso) { QVERIFY(QDir().mkdir(percorso)); });
        riga("altra password", Causa::PasswordErrata, "la password del file è un'altra",
             guastoDa(u"UPDATE Protezione SET Valore = printf('%.64c', 'a')"_s));
        riga("password rovinata", Causa::Danneggiato, "Compatta e ripristina",
             guastoDa(u"UPDATE Protezione SET Valore = 'z' || substr(Valore, 2)"_s));
        riga("versione rovinata", Causa::Danneggiato, "Compatta e ripristina",
             guastoDa(u"PRAGMA user_version = 99"_s));
        riga("versione nuova", Causa::VersioneNuova, "della versione 99",
             [](const QString &percorso) {
                 creaModello(percorso);
                 Aparte nuovo(percorso);
                 nuovo.esegui(u"CREATE TABLE Altra (a)"_s);
                 nuovo.esegui(u"PRAGMA user_version = 99"_s);
             });
        riga("senza tabella", Causa::NonArchivio, "manca la tabella Luoghi",
             guastoDa(u"DROP TABLE Luoghi"_s));
        riga("troncato", Causa::Danneggiato, "il file è danneggiato", [](const QString &percorso) {
            creaModello(percorso);
            QVERIFY(QFile::resize(percorso, QFileInfo(percorso).size() / 2));
        });
    }
    void fileCattivi()
    {
        QFETCH(Prepara, prepara);
        QFETCH(QString, motivo);
        const QString percorso = archivio->accanto(u"cattivo.tvd"_s);
        prepara(percorso);
        const bool presente = QFileInfo::exists(percorso);
        const ado::Errore trovato = errore([&] { ApriArchivio(percorso); });
        QTEST(trovato.causa(), "causa");
        QVERIFY2(trovato.testo().contains(motivo), qUtf8Printable(trovato.testo()));
        QCOMPARE(archivi().ConnessioneCorrente, 0);
        QCOMPARE(righe(u"Archivi"_s), 0);
        QCOMPARE(QFileInfo::exists(percorso), presente);
    }

    void occupatoESenzaPassword()
    {
        const QString percorso = archivio->accanto(u"altro.tvd"_s);
        creaModello(percorso);
        Aparte altro(percorso);
        proteggi(altro, {});
        altro.esegui(u"BEGIN EXCLUSIVE"_s);
        const ado::Errore trovato = errore([&] { ApriArchivio(percorso); });
        QCOMPARE(trovato.causa(), Causa::Occupato);
        QVERIFY(trovato.testo().contains(u"il file è bloccato da un altro programma"_s));
        altro.Close();
        ApriArchivio(percorso);
        QCOMPARE(archivi().ConnessioneCorrente, 1);
    }

    // Dove si è costruito il programma non si tiene nulla che non si possa rifare.
    void cartellaDeiFile()
    {
        const QString segno = QCoreApplication::applicationDirPath() + u"/CMakeCache.txt"_s;
        const QByteArray casa = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(archivio->accanto({})));
        QCOMPARE(shell::cartellaApplicazione(), QCoreApplication::applicationDirPath());
        scrive(segno, {});
        const QString sua = shell::cartellaApplicazione();
        QFile::remove(segno);
        qputenv("HOME", casa);
        QVERIFY(sua.startsWith(archivio->accanto({})) && sua.endsWith(u"/Tarvola"));
        QVERIFY(QFileInfo(sua).isDir());
    }

    void spostareSenzaSovrascrivere()
    {
        const QString origine = archivio->accanto(u"S.Rocco 1845.tvd"_s);
        const QString arrivo = archivio->accanto(u"Cestino/S.Rocco 1845.tvd"_s);
        QVERIFY(QDir().mkdir(archivio->accanto(u"Cestino"_s)));
        scrive(arrivo, "vecchio");
        scrive(origine, "nuovo");
        const QString altrove = archivio->accanto(u"non c'è/x.tvd"_s);
        for (const auto operazione : {shell::Operazione::Muovi, shell::Operazione::Copia}) {
            QCOMPARE(shell::OperazioneFile(operazione, origine, arrivo, false).stato, 1);
            const shell::Esito esito = shell::OperazioneFile(operazione, origine, altrove, true);
            QCOMPARE(esito.stato, 1);
            QVERIFY(!esito.motivo.isEmpty());
        }
        QCOMPARE(byteDi(arrivo), QByteArray("vecchio"));
        for (const int numero : {2, 3}) {
            const auto operazione =
                numero == 2 ? shell::Operazione::Copia : shell::Operazione::Muovi;
            const QString libero =
                archivio->accanto(u"Cestino/S.Rocco 1845 (%1).tvd"_s.arg(numero));
            QCOMPARE(shell::OperazioneFile(operazione, origine, arrivo, true).nuovoNome, libero);
            QCOMPARE(byteDi(libero), QByteArray("nuovo"));
            QCOMPARE(QFile::exists(origine), numero == 2);
        }
    }
};

QTEST_GUILESS_MAIN(TstDati)
#include "tst_dati.moc"
