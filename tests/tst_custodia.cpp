#include "db/schema/versioni.h"
#include "platform/disco/shell.h"
#include "platform/motore/jro.h"
#include "prova_custodia.h"

#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

// Compattare, copiare e recuperare: o per intero, o tutto resta com'era.
class TstCustodia : public QObject, ProvaCustodia
{
    Q_OBJECT

    // Il file e ciò che gli sta accanto, come li lascia chi cade mentre scrive.
    std::pair<QByteArray, QByteArray> aMetaDelLavoro(const QString &modo,
                                                     const QString &accanto) const
    {
        Aparte connessione(m_percorso);
        connessione.legge(modo);
        std::optional<ado::Transazione> aperta;
        if (accanto == u"-journal")
            aperta.emplace(connessione);
        connessione.esegui(u"UPDATE Individui SET Nome = 'a metà'"_s);
        connessione.esegui(u"UPDATE Binari SET Nome = 'a metà'"_s);
        return {byteDi(m_percorso), byteDi(m_percorso + accanto)};
    }

private slots:
    void initTestCase() { prepara(); }
    void init() { comincia(); }

    void compattaETieneTutto()
    {
        const Compattato esito = compattaArchivio(m_percorso, cestino(), avanti);
        QVERIFY(!esito.riparato);
        QCOMPARE(QFileInfo(esito.nelCestino), QFileInfo(cestino(u"prova.tvd"_s)));
        QCOMPARE(byteDi(esito.nelCestino), m_sano);
        QCOMPARE(righeDi(m_percorso), m_prima);
        QVERIFY(QFileInfo(m_percorso).size() < m_sano.size());
        QCOMPARE(contenuto(m_cartella->path()).keys(),
                 QStringList({u"Cestino/"_s, u"prova.tvd"_s}));
    }

    // Ciò che non riesce lascia la cartella com'era, byte per byte.
    void nonRiuscireNonCambiaNulla_data()
    {
        QTest::addColumn<QByteArray>("byte");
        QTest::addColumn<ado::Causa>("causa");
        const auto dopo = [this](const QString &istruzione, const QString &altra = {}) {
            comincia();
            Aparte(m_percorso).esegui(istruzione);
            if (!altra.isEmpty())
                Aparte(m_percorso).esegui(altra);
            return byteDi(m_percorso);
        };
        QTest::newRow("altro") << QByteArray(20000, 'q') << ado::Causa::NonArchivio;
        QTest::newRow("anteriore a metà")
            << QByteArray("\0\1\0\0Standard Jet DB\0", 20).append(QByteArray(20000, 'q'))
            << ado::Causa::NonArchivio;
        QTest::newRow("più nuovo")
            << dopo(u"PRAGMA user_version = 77"_s, u"CREATE TABLE Altra (a)"_s)
            << ado::Causa::VersioneNuova;
        QTest::newRow("altra password")
            << dopo(u"UPDATE Protezione SET Valore = printf('%.64c', 'a')"_s)
            << ado::Causa::PasswordErrata;
    }
    void nonRiuscireNonCambiaNulla()
    {
        QFETCH(QByteArray, byte);
        QFETCH(ado::Causa, causa);
        scrive(m_percorso, byte);
        const QString copia = accanto(u"altrove/prova.tvd"_s);
        QVERIFY(QDir().mkpath(accanto(u"altrove"_s)));
        scrive(copia, m_sano);
        const auto prima = contenuto(m_cartella->path());
        const ado::Errore uno = errore([&] { compattaArchivio(m_percorso, cestino(), avanti); });
        QVERIFY(uno.causa() == causa || uno.causa() == ado::Causa::Danneggiato);
        QCOMPARE(errore([&] { copiaArchivio(m_percorso, copia, avanti); }).causa(), causa);
        QCOMPARE(errore([&] { recuperaArchivio(m_percorso, copia, avanti); }).causa(), causa);
        if (causa == ado::Causa::VersioneNuova)
            QVERIFY2(uno.testo().contains(u"77"_s), qPrintable(uno.testo()));
        QCOMPARE(contenuto(m_cartella->path()), prima);
        QCOMPARE(contenuto(accanto(u"altrove"_s)), (QMap{std::pair{u"prova.tvd"_s, m_sano}}));
    }

    // Fermato a metà, o verso una cartella che manca, o col file di un altro programma.
    void interrottoNonCambiaNulla()
    {
        const auto prima = contenuto(m_cartella->path());
        for (int passi : {0, 1, 3, 10}) {
            int restano = passi;
            const auto ferma = [&restano](qint64, qint64) { return restano-- > 0; };
            const auto prova = [&](const std::function<void()> &lavoro) {
                restano = passi;
                QCOMPARE(errore(lavoro).causa(), ado::Causa::Interrotto);
                QCOMPARE(contenuto(m_cartella->path()), prima);
            };
            prova([&] { compattaArchivio(m_percorso, cestino(), ferma); });
            prova([&] { copiaArchivio(m_percorso, accanto(u"c.tvd"_s), ferma); });
            if (passi < 3)
                prova([&] { recuperaArchivio(m_percorso, accanto(u"c.tvd"_s), ferma); });
        }
        const QString manca = accanto(u"manca"_s);
        QVERIFY(errore([&] { copiaArchivio(m_percorso, manca + u"/c.tvd"_s, avanti); })
                    .testo()
                    .startsWith(manca + u':'));
        Aparte altro(m_percorso);
        altro.esegui(u"BEGIN IMMEDIATE"_s);
        const ado::Errore occupato =
            errore([&] { compattaArchivio(m_percorso, cestino(), avanti); });
        QCOMPARE(occupato.causa(), ado::Causa::Occupato);
        QVERIFY(occupato.testo().contains(u"riprovare"_s));
        altro.Close();
        QCOMPARE(contenuto(m_cartella->path()), prima);
    }

    // Un programma caduto lascia accanto al file il giornale, da disfare, o, se un altro strumento
    // gli ha cambiato modo, le scritture compiute che il file non ha ancora.
    void riprendeCioCheStaAccanto_data()
    {
        QTest::addColumn<QString>("modo");
        QTest::addColumn<QString>("accanto");
        QTest::newRow("giornale") << u"PRAGMA cache_size = 5"_s << u"-journal"_s;
        QTest::newRow("wal") << u"PRAGMA journal_mode = WAL"_s << u"-wal"_s;
    }

    void riprendeCioCheStaAccanto()
    {
        QFETCH(QString, modo);
        QFETCH(QString, accanto);
        const QString caduto = this->accanto(u"caduto.tvd"_s);
        const QString copia = this->accanto(u"copia.tvd"_s);
        const auto [aMeta, suo] = aMetaDelLavoro(modo, accanto);
        QVERIFY(!suo.isEmpty());
        const auto attese = righeDi(m_percorso);
        const std::pair<std::function<void()>, QString> comandi[] = {
            {[&] { ApriArchivio(caduto); }, caduto},
            {[&] { compattaArchivio(caduto, cestino(), avanti); }, caduto},
            {[&] { copiaArchivio(m_percorso, caduto, avanti); }, caduto},
            {[&] { recuperaArchivio(m_percorso, caduto, avanti); }, caduto},
            {[&] { copiaArchivio(caduto, copia, avanti); }, copia},
            {[&] { recuperaArchivio(caduto, copia, avanti); }, copia}};
        for (const auto &[comando, arrivo] : comandi) {
            scrive(caduto, aMeta);
            scrive(caduto + accanto, suo);
            QFile::remove(copia);
            scrive(copia + accanto, suo);
            comando();
            avviaArchivi();
            QCOMPARE(righeDi(arrivo), attese);
            QVERIFY(!QFileInfo::exists(arrivo + accanto));
            QCOMPARE(byteDi(arrivo).mid(18, 2), QByteArray("\1\1"));
        }
        QFile::rename(copia, this->accanto(u"altrove"_s));
        scrive(copia + accanto, suo);
        QCOMPARE(shell::liberoDa(copia), this->accanto(u"copia (2).tvd"_s));
        creaArchivio(m_percorso, copia);
        QCOMPARE(righeDi(copia), attese);
        QVERIFY(!QFileInfo::exists(copia + accanto));
        QCOMPARE(righeDi(cestino(u"caduto.tvd"_s)), attese);
    }

    // Chi lo usa nell'altro modo lo tiene: si dice, e il file non cambia.
    void occupatoNellAltroModo()
    {
        Aparte altro(m_percorso);
        altro.legge(u"PRAGMA journal_mode = WAL"_s);
        altro.esegui(u"UPDATE Individui SET Nome = 'suo'"_s);
        for (const std::function<void()> &comando : std::initializer_list<std::function<void()>>{
                 [&] { ApriArchivio(m_percorso); },
                 [&] { compattaArchivio(m_percorso, cestino(), avanti); }}) {
            const ado::Errore trovato = errore(comando);
            QCOMPARE(trovato.causa(), ado::Causa::Occupato);
            QVERIFY(trovato.testo().contains(u"altro programma"_s));
        }
        QCOMPARE(altro.legge(u"SELECT DISTINCT Nome FROM Individui"_s).toString(), u"suo"_s);
        QVERIFY(!QFileInfo::exists(cestino()));
    }

    // Attraverso un collegamento il file è quello vero, che non diventa il collegamento.
    void copiaSuSeStessoDaUnCollegamento()
    {
        const QString legame = accanto(u"legame.tvd"_s);
        QVERIFY(QFile::link(m_percorso, legame));
        copiaArchivio(m_percorso, legame, avanti);
        QVERIFY(QFileInfo(legame).isSymLink());
        QVERIFY(QFileInfo(m_percorso).size() < m_sano.size());
        QCOMPARE(righeDi(m_percorso), m_prima);
    }

    // Una copia è confrontata tabella per tabella, riga per riga.
    void riconosceUnaCopiaDiversa()
    {
        const QString altra = accanto(u"altra.tvd"_s);
        copiaArchivio(m_percorso, altra, avanti);
        Aparte origine(m_percorso);
        Aparte copia(altra);
        jro::confronta(origine, copia, avanti);
        for (const QString &guasto :
             {u"CREATE TABLE Altra (a)"_s, u"DROP TABLE Luoghi"_s, u"DELETE FROM Eventi"_s}) {
            const ado::Transazione annullata(copia);
            copia.esegui(guasto);
            QCOMPARE(errore([&] { jro::confronta(origine, copia, avanti); }).causa(),
                     ado::Causa::Danneggiato);
        }
    }

    // Ciò che un programma ucciso ha lasciato si toglie, o va nel Cestino se è un archivio intero.
    void raccoglieIResti()
    {
        const QString morto = u".prova.tvd.%1-999999999-0"_s;
        scrive(accanto(morto.arg(u"parziale"_s)), "a metà");
        scrive(accanto(morto.arg(u"scambio"_s)), m_sano);
        compattaArchivio(m_percorso, cestino(), avanti);
        QCOMPARE(contenuto(m_cartella->path()).keys(),
                 QStringList({u"Cestino/"_s, u"prova.tvd"_s}));
        QCOMPARE(contenuto(cestino()).values(), QList<QByteArray>({m_sano, m_sano}));
        // Di un nome che comincia allo stesso modo non è il resto.
        const QString lungo = accanto(QString(70, u'a') + u".tvd"_s);
        const QString altrui = accanto(u'.' + QString(60, u'a') + u".scambio-999999999-0"_s);
        scrive(lungo, m_sano);
        scrive(altrui, m_sano);
        compattaArchivio(lungo, cestino(), avanti);
        QVERIFY(QFileInfo::exists(altrui));
    }

    // Senza nome resta solo il vecchio archivio: lo riprende, purché nessuno l'abbia preso.
    void ritrovaIlVecchioSenzaNome()
    {
        const QString morto = accanto(u".prova.tvd.scambio-999999999-%1"_s);
        QVERIFY(QFile::rename(m_percorso, morto.arg(0)));
        provvisorio::ritrovaIn(m_cartella->path());
        QCOMPARE(byteDi(m_percorso), m_sano);
        scrive(morto.arg(1), "altro");
        provvisorio::ritrovaIn(m_cartella->path());
        QCOMPARE(byteDi(m_percorso), m_sano);
        QCOMPARE(byteDi(morto.arg(1)), QByteArray("altro"));
        // Un secondo nome dell'archivio stesso non è un vecchio file.
        QVERIFY(QFile::remove(morto.arg(1)));
        QCOMPARE(::link(qPrintable(m_percorso), qPrintable(morto.arg(2))), 0);
        compattaArchivio(m_percorso, cestino(), avanti);
        QCOMPARE(contenuto(cestino()).keys(), QStringList(u"prova.tvd"_s));
    }

    // Il Cestino può stare su un altro disco: anche mentre vi si copia il vecchio ci si può
    // fermare.
    void siFermaAncheVersoUnAltroDisco()
    {
        const QTemporaryDir altrove(u"/dev/shm/tarvola-XXXXXX"_s);
        struct stat uno = {};
        struct stat altro = {};
        if (!altrove.isValid() || ::stat(qPrintable(altrove.path()), &altro) != 0 ||
            ::stat(qPrintable(m_percorso), &uno) != 0 || uno.st_dev == altro.st_dev)
            QSKIP("qui c'è un disco solo");
        const auto ferma = [](qint64 fatto, qint64 totale) { return fatto < totale; };
        const ado::Errore fermato =
            errore([&] { compattaArchivio(m_percorso, altrove.path(), ferma); });
        QCOMPARE(fermato.causa(), ado::Causa::Interrotto);
        QCOMPARE(byteDi(m_percorso), m_sano);
        QVERIFY(contenuto(altrove.path()).isEmpty());
        QCOMPARE(contenuto(m_cartella->path()).size(), 1);
    }

    // Un nome che qualcuno ha preso dopo la domanda resta suo.
    void nonSovrascriveCioCheCompare()
    {
        const QString copia = accanto(u"copia.tvd"_s);
        for (const auto comando : {copiaArchivio, recuperaArchivio}) {
            bool comparso = false;
            const auto compare = [&](qint64, qint64) {
                if (!std::exchange(comparso, true))
                    scrive(copia, "di un altro");
                return true;
            };
            errore([&] { comando(m_percorso, copia, compare, true); });
            QCOMPARE(byteDi(copia), QByteArray("di un altro"));
            QVERIFY(QFile::remove(copia));
            QCOMPARE(contenuto(m_cartella->path()).size(), 1);
        }
    }

    // Un file nuovo ha i permessi di ogni documento, una copia non di più del suo originale; finché
    // è a metà nessun altro lo legge.
    void rispettaLaMaschera()
    {
        const auto permessi = [](const QString &percorso) {
            struct stat stato = {};
            return ::stat(qPrintable(percorso), &stato) == 0 ? stato.st_mode & 0777U : 0U;
        };
        QStringList leggibili;
        const auto guarda = [&](qint64, qint64) {
            const QDir dove(m_cartella->path());
            for (const QString &nome :
                 dove.entryList({u".*parziale*"_s}, QDir::Files | QDir::Hidden))
                if ((permessi(dove.filePath(nome)) & 077U) != 0)
                    leggibili.append(nome);
            return true;
        };
        QVERIFY(::chmod(qPrintable(m_percorso), 0644) == 0);
        const mode_t prima = ::umask(0);
        const auto rimette = qScopeGuard([prima] { ::umask(prima); });
        const std::function<void(const QString &)> comandi[] = {
            [&](const QString &nuovo) { creaArchivio(m_percorso, nuovo); },
            [&](const QString &nuovo) { copiaArchivio(m_percorso, nuovo, guarda); },
            [&](const QString &nuovo) { recuperaArchivio(m_percorso, nuovo, guarda); }};
        const QString nuovo = accanto(u"nuovo.tvd"_s);
        for (const auto &[maschera, attesi] :
             {std::pair{0U, 0666U}, {022U, 0644U}, {077U, 0600U}}) {
            ::umask(maschera);
            for (const auto &comando : comandi) {
                comando(nuovo);
                QCOMPARE(permessi(nuovo), &comando == comandi ? attesi : attesi & 0644U);
                QVERIFY(QFile::remove(nuovo));
            }
            compattaArchivio(m_percorso, cestino(), guarda);
            QCOMPARE(permessi(m_percorso), 0644U);
        }
        QCOMPARE(leggibili, QStringList());
    }

    void tieneIPermessi()
    {
        const auto propri = QFile::ReadOwner | QFile::WriteOwner;
        const auto permessi = [](const QString &percorso) {
            return QFile::permissions(percorso) & (QFile::ReadGroup | QFile::ReadOther);
        };
        QVERIFY(QFile::setPermissions(m_percorso, propri));
        const QString copia = accanto(u"copia.tvd"_s);
        copiaArchivio(m_percorso, copia, avanti);
        QVERIFY(!permessi(copia));
        QVERIFY(QFile::setPermissions(copia, propri | QFile::ReadGroup));
        recuperaArchivio(m_percorso, copia, avanti);
        QCOMPARE(permessi(copia), QFile::ReadGroup);
        compattaArchivio(m_percorso, cestino(), avanti);
        QVERIFY(!permessi(m_percorso));
    }

    // Il giornale di un file che non si apre lo segue, e nel Cestino non incontra un altro file.
    void ilGiornaleSegueIlSuoFile()
    {
        scrive(m_percorso, QByteArray(4096, 'x') + m_sano.mid(4096));
        // Quello che comincia con uno zero il motore non lo disfa.
        const QByteArray suo("\0suo", 4);
        scrive(m_percorso + u"-journal"_s, suo);
        QVERIFY(QDir().mkpath(cestino()));
        scrive(cestino(u"prova.tvd-journal"_s), "di un altro");
        const Compattato esito = compattaArchivio(m_percorso, cestino(), avanti);
        QCOMPARE(QFileInfo(esito.nelCestino).fileName(), u"prova (2).tvd"_s);
        QCOMPARE(byteDi(esito.nelCestino + u"-journal"_s), suo);
        QVERIFY(!QFileInfo::exists(m_percorso + u"-journal"_s));
    }

    // Il passaggio a una versione nuova è tutto o niente.
    void portaAvantiLoSchema()
    {
        Aparte connessione(m_percorso);
        const char *const due[] = {"ALTER TABLE Voci ADD COLUMN Foglio TEXT",
                                   "UPDATE Voci SET Foglio = 'r'"};
        const char *const tre[] = {"ALTER TABLE Voci ADD COLUMN Altro TEXT", "questo non va"};
        const Passaggio passaggi[] = {{2, due}, {3, tre}};
        QVERIFY_THROWS_EXCEPTION(ado::Errore, portaAllaVersione(connessione, passaggi, 3));
        QCOMPARE(versioneDi(connessione), 1);
        QVERIFY(!connessione.colonne({u"SELECT * FROM Voci"_s, {}, {}}).contains(u"Foglio"_s));
        portaAllaVersione(connessione, passaggi, 2);
        QCOMPARE(versioneDi(connessione), 2);
        QCOMPARE(connessione.legge(u"SELECT count(Foglio) FROM Voci"_s).toInt(), 60);
        portaAllaVersione(connessione, passaggi, 2);
        QCOMPARE(errore([&] { portaAllaVersione(connessione, passaggi, 1); }).causa(),
                 ado::Causa::VersioneNuova);
        QVERIFY_THROWS_EXCEPTION(ado::Errore, portaAllaVersione(connessione, passaggi, 5));
        QCOMPARE(versioneDi(connessione), 2);
    }
};

QTEST_GUILESS_MAIN(TstCustodia)
#include "tst_custodia.moc"
