#include "comune.h"
#include "db/codici.h"
#include "db/collegamenti.h"
#include "db/elenco.h"
#include "db/generi.h"
#include "db/schema.h"
#include "platform/recordset.h"
#include "platform/shell.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <memory>

using namespace Qt::StringLiterals;
using namespace modTarvola;
using ado::Causa;

namespace
{

void scriveFile(const QString &percorso, const QByteArray &contenuto)
{
    QFile file(percorso);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contenuto);
}

QByteArray contenuto(const QString &percorso)
{
    QFile file(percorso);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(manca)");
}

ado::Recordset aperto(const ado::Comando &comando, int blocco = ado::adLockOptimistic)
{
    ado::Recordset record;
    record.Open(comando, connessione(), blocco);
    return record;
}

} // namespace

class TstDati : public QObject
{
    Q_OBJECT

    std::unique_ptr<ArchivioDiProva> archivio;

    // I codici di un elenco, nell'ordine di una colonna.
    static QString codiciDi(const Richiesta &richiesta, const QString &colonnaOrdine)
    {
        const Elenco elenco(richiesta, connessione());
        const auto posto = static_cast<int>(elenco.colonne().indexOf(colonnaOrdine));
        QStringList codici;
        for (const qint64 chiave : elenco.chiaviOrdinate(posto))
            codici.append(elenco.riga(chiave).value(0).toString());
        return codici.join(u' ');
    }

private slots:
    void init() { archivio = std::make_unique<ArchivioDiProva>(); }

    void codiceNuovo_data()
    {
        QTest::addColumn<QString>("presenti");
        QTest::addColumn<QString>("atteso");
        QTest::newRow("nessuno") << u""_s << u"E1"_s;
        QTest::newRow("un buco resta") << u"E1 E7"_s << u"E8"_s;
        QTest::newRow("oltre il nove") << u"E9 E8"_s << u"E10"_s;
        QTest::newRow("dopo il dieci") << u"E10 E9 E2"_s << u"E11"_s;
        QTest::newRow("oltre il novantanove") << u"E99 E100 E12"_s << u"E101"_s;
        QTest::newRow("minuscolo") << u"e3"_s << u"E4"_s;
    }
    void codiceNuovo()
    {
        QFETCH(QString, presenti);
        const QStringList codici = presenti.split(u' ', Qt::SkipEmptyParts);
        for (const QString &codice : codici)
            esegui(u"INSERT INTO Eventi (Codice) VALUES (?)"_s, {codice});
        QTEST(NuovoCodice(u"Eventi"_s), "atteso");
    }

    void codiceDopoUnaEliminazione()
    {
        for (int i = 1; i <= 12; ++i)
            esegui(u"INSERT INTO Eventi (Codice) VALUES (?)"_s, {u"E%1"_s.arg(i)});
        esegui(u"DELETE FROM Eventi WHERE Codice IN ('E12', 'E4')"_s);
        QCOMPARE(NuovoCodice(u"Eventi"_s), u"E12"_s);
        esegui(u"INSERT INTO Eventi (Codice) VALUES ('E2147483647')"_s);
        QVERIFY_THROWS_EXCEPTION(ado::Errore, NuovoCodice(u"Eventi"_s));
    }

    void letteraDellaTabella()
    {
        QString lettere;
        for (const QString &tabella : tabelleConCodice()) {
            lettere += NuovoCodice(tabella);
            QCOMPARE(tabellaDiCodice(NuovoCodice(tabella).toLower()), tabella);
        }
        QCOMPARE(lettere, u"A1R1V1I1F1E1B1L1C1O1"_s);
        QCOMPARE(tabellaDiCodice(u"T1"_s), QString());
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
        QCOMPARE(TipoRegistroDiVoce(u"V1"_s), 10);
        QCOMPARE(TipoRegistroDiVoce(u"v1"_s), 10);
        QCOMPARE(TipoRegistroDiVoce(u"V2"_s), 0);
        QCOMPARE(TipoRegistroDiVoce(u"V3"_s), 0);
        QCOMPARE(TipoRegistro(u"R1"_s), 10);
        QCOMPARE(TipoRegistro(u"R9"_s), 0);
        QCOMPARE(EtichettaTraduzione(13), u"Testo riportato"_s);
        QCOMPARE(EtichettaTraduzione(9999), QString());
        QVERIFY(esiste(u"r1"_s));
        for (const QString &assente : {u"R2"_s, u"A1"_s, u"Z1"_s, u""_s})
            QVERIFY2(!esiste(assente), qUtf8Printable(assente));
    }

    void generi_data()
    {
        QTest::addColumn<int>("categoria");
        QTest::addColumn<QString>("offerti");
        const QString soliti = u"Contatto|File allegato|Nota|Testo riportato"_s;
        QTest::newRow("archivio")
            << 1 << u"Contatto|File allegato|Indirizzo|Nota|Recapito|Testo riportato"_s;
        QTest::newRow("registro") << 2 << soliti;
        QTest::newRow("battesimo") << 4
                                   << u"Altra persona|Battezzato/a|Contatto|Famiglia Genitori|"
                                      "File allegato|Nota|Padrino/Madrina|Testimone|"
                                      "Testo riportato"_s;
        QTest::newRow("matrimonio") << 8
                                    << u"Altra persona|Contatto|Famiglia Coniuge|File allegato|"
                                       "Nota|Sposa|Sposo|Testimone|Testo riportato"_s;
        QTest::newRow("morte") << 16
                               << u"Altra persona|Contatto|Defunto/a|Famiglia Genitori|"
                                  "File allegato|Nota|Testimone|Testo riportato"_s;
        QTest::newRow("individuo")
            << 256
            << u"Adozione|Altro evento|Battesimo|Censimento|Contatto|Cremazione|Cresima|"
               "Emigrazione|Famiglia Coniuge|Famiglia Genitori|File allegato|Immigrazione|"
               "Mestiere|Morte|Nascita|Nota|Ordinazione|Prima comunione|Professione religiosa|"
               "Residenza|Sepoltura|Testamento|Testo riportato|Titolo"_s;
        QTest::newRow("famiglia") << 512
                                  << u"Altro evento|Contatto|File allegato|Madre|Marito|"
                                     "Matrimonio|Moglie|Nota|Padre|Pubblicazioni di matrimonio|"
                                     "Testo riportato"_s;
        QTest::newRow("evento") << 1024 << soliti;
        QTest::newRow("operatore")
            << 2048 << u"Contatto|File allegato|Indirizzo|Nota|Recapito|Testo riportato"_s;
        QTest::newRow("indirizzo e recapito") << 4096 << soliti;
        QTest::newRow("nessuna") << 0 << QString();
    }
    void generi()
    {
        QFETCH(int, categoria);
        QStringList etichette;
        for (auto generi = aperto(generiInseribili(categoria)); !generi.Eof(); generi.MoveNext())
            etichette.append(generi.Campo(2).toString());
        QTEST(etichette.join(u'|'), "offerti");
    }

    void tipiDeiRegistri()
    {
        QStringList tipi;
        for (auto generi = aperto(tipiDiRegistro()); !generi.Eof(); generi.MoveNext())
            tipi.append(generi.Testo(u"Codice"_s) + generi.Campo(2).toString());
        QCOMPARE(tipi.join(u' '), u"9Battesimi 10Matrimoni 11Morti"_s);
    }

    void recordVuotoENull()
    {
        auto record = aperto(dettagli(u"Archivi"_s, {}));
        QVERIFY(record.Bof());
        QVERIFY_THROWS_EXCEPTION(ado::Errore, record.Campo(u"Nome"_s));
        record.AddNew();
        record.Assegna(u"CODICE"_s, u"A1"_s);
        record.Assegna(u"Nome"_s, u"Èlia d'Òrsi"_s);
        record.Assegna(u"Gruppo"_s, QString());
        record.Update();
        QCOMPARE(colonna(u"SELECT Nome FROM Archivi UNION ALL SELECT Gruppo FROM Archivi"_s),
                 QStringList({u"Èlia d'Òrsi"_s, u"(Null)"_s}));

        esegui(u"UPDATE Archivi SET Gruppo = ''"_s);
        record = aperto(dettagli(u"Archivi"_s, u"a1"_s));
        QVERIFY(record.Campo(u"Gruppo"_s).isValid());
        QVERIFY(!record.Campo(u"Abbreviazione"_s).isValid());
        record.Assegna(u"Gruppo"_s, QVariant());
        record.Update();
        QCOMPARE(colonna(u"SELECT Gruppo FROM Archivi"_s), QStringList(u"(Null)"_s));
    }

    void recordInSolaLettura()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'prima')"_s);
        auto record = aperto(dettagli(u"Archivi"_s, u"A1"_s), ado::adLockReadOnly);
        QCOMPARE(record.Testo(u"nome"_s), u"prima"_s);
        QCOMPARE(errore([&] { record.Assegna(u"Nome"_s, u"dopo"_s); }).causa(), Causa::SolaLettura);
        record.AddNew();
        QCOMPARE(errore([&] { record.Update(); }).causa(), Causa::SolaLettura);
        QCOMPARE(colonna(u"SELECT Nome FROM Archivi"_s), QStringList(u"prima"_s));
    }

    void recordSparito()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'prima')"_s);
        auto record = aperto(dettagli(u"Archivi"_s, u"A1"_s));
        esegui(u"DELETE FROM Archivi"_s);
        record.Assegna(u"Nome"_s, u"dopo"_s);
        QCOMPARE(errore([&] { record.Update(); }).testo(), u"il record non esiste più"_s);
        QCOMPARE(righe(u"Archivi"_s), 0);
    }

    void valoriPredefinitiENomiAccentati()
    {
        const std::tuple<QString, QString, QString> nomi[] = {
            {u"Individui"_s, u"Età"_s, u"I1"_s},
            {u"Luoghi"_s, u"Città"_s, u"L1"_s},
            {u"Comunicazioni"_s, u"E-mail"_s, u"C1"_s}};
        for (const auto &[tabella, campo, codice] : nomi) {
            auto record = aperto(dettagli(tabella, {}));
            record.AddNew();
            record.Assegna(u"Codice"_s, codice);
            record.Assegna(campo, u"così è"_s);
            record.Update();
            record = aperto(dettagli(tabella, codice));
            QCOMPARE(record.Testo(campo), u"così è"_s);
            record.Assegna(campo, u"poi"_s);
            record.Update();
            QCOMPARE(aperto(dettagli(tabella, codice)).Testo(campo.toUpper()), u"poi"_s);
        }
        static const QRegularExpression istante(u"^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"_s);
        QVERIFY(istante.match(legge(u"SELECT Creazione FROM Individui"_s).toString()).hasMatch());
    }

    void trovaNelRecord()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'uno'), ('A2', 'Òrsi')"_s);
        auto record = aperto({u"SELECT * FROM Archivi"_s, {}, u"Archivi"_s});
        QVERIFY(record.Find(u"Nome"_s, u"òRSI"_s));
        QCOMPARE(record.Testo(u"Codice"_s), u"A2"_s);
        QVERIFY(!record.Find(u"Nome"_s, u"Orsi"_s));
        QVERIFY(record.Eof());
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
        QTest::addColumn<QString>("nome");
        QTest::addColumn<Causa>("causa");
        QTest::addColumn<QString>("motivo");
        const auto riga = [](const char *caso, Causa causa, const QString &motivo) {
            QTest::newRow(caso) << QString::fromLatin1(caso) << causa << motivo;
        };
        riga("mancante", Causa::Mancante, u"il file non esiste"_s);
        riga("testo", Causa::NonArchivio, u"il file non è un archivio di Tarvola"_s);
        riga("vuoto", Causa::NonArchivio, u"il file non è un archivio di Tarvola"_s);
        riga("altra base", Causa::NonArchivio, u"il file non è un archivio di Tarvola"_s);
        riga("cartella", Causa::NonArchivio, u"non è un file"_s);
        riga("altra password", Causa::PasswordErrata, u"la password del file è un'altra"_s);
        riga("versione nuova", Causa::VersioneNuova, u"della versione 99"_s);
        riga("senza tabella", Causa::NonArchivio, u"manca la tabella Luoghi"_s);
        riga("occupato", Causa::Occupato, u"il file è bloccato da un altro programma"_s);
        riga("troncato", Causa::Danneggiato, u"il file è danneggiato"_s);
        riga("prova.tvd/sotto", Causa::Mancante, u"il file non esiste"_s);
    }
    void fileCattivi()
    {
        QFETCH(QString, nome);
        const QString percorso = archivio->accanto(nome);
        ado::Connection altra;
        if (nome == u"testo")
            scriveFile(percorso, QByteArray("Non sono un archivio.\n").repeated(100));
        else if (nome == u"vuoto")
            scriveFile(percorso, {});
        else if (nome == u"cartella")
            QVERIFY(QDir().mkdir(percorso));
        else if (nome == u"altra base")
            altra.Create(percorso);
        else if (nome != u"mancante" && !nome.contains(u'/'))
            creaModello(percorso);
        if (nome == u"troncato")
            QVERIFY(QFile::resize(percorso, QFileInfo(percorso).size() / 2));
        if (altra.State() == ado::adStateOpen)
            altra.Execute({u"CREATE TABLE Cose (Nome TEXT)"_s, {}, {}});
        const QHash<QString, QString> guasti{{u"versione nuova"_s, u"PRAGMA user_version = 99"_s},
                                             {u"senza tabella"_s, u"DROP TABLE Luoghi"_s},
                                             {u"occupato"_s, u"BEGIN EXCLUSIVE"_s}};
        if (guasti.contains(nome) || nome == u"altra password") {
            altra.Open(stringaDiConnessione(percorso));
            if (nome == u"altra password")
                ado::proteggi(altra, u"Altra;'è"_s);
            else
                altra.Execute({guasti.value(nome), {}, {}});
        }

        const ado::Errore trovato = errore([&] { ApriArchivio(percorso); });
        QTEST(trovato.causa(), "causa");
        QFETCH(QString, motivo);
        QVERIFY2(trovato.testo().contains(motivo), qUtf8Printable(trovato.testo()));
        QCOMPARE(archivi().ConnessioneCorrente, 0);
        QCOMPARE(righe(u"Archivi"_s), 0);
        QVERIFY(nome != u"mancante" || !QFile::exists(percorso));
    }

    void archivioSenzaPassword()
    {
        const QString percorso = archivio->accanto(u"libero.tvd"_s);
        creaModello(percorso);
        ado::Connection altra;
        altra.Open(stringaDiConnessione(percorso));
        ado::proteggi(altra, {});
        altra.Close();
        ApriArchivio(percorso);
        QCOMPARE(archivi().ConnessioneCorrente, 1);
    }

    void transazione()
    {
        const auto scrive = [](const char *codice, bool riesce) {
            ado::Transazione cambiamenti(connessione());
            esegui(u"INSERT INTO Archivi (Codice) VALUES (?)"_s, {QLatin1String(codice)});
            if (!riesce)
                throw ado::Errore(Causa::Altro, u"a metà"_s);
            cambiamenti.conferma();
        };
        QCOMPARE(errore([&] { scrive("A1", false); }).testo(), u"a metà"_s);
        QVERIFY(!connessione().inTransazione());
        scrive("A2", true);
        QCOMPARE(colonna(u"SELECT Codice FROM Archivi"_s), QStringList(u"A2"_s));
    }

    void ordineDegliElenchi()
    {
        const QVariantList nomi{u"Zoe"_s,  u"Èlia"_s, QVariant(), u"elia"_s, u"Fede"_s,
                                u"Elia"_s, u"anna"_s, u"Anna"_s,  u"elia"_s, u"anna"_s};
        const QVariantList pagine{0, 7, 2, 9, QVariant(), 11, 6, 1, 8, 100};
        for (qsizetype i = 0; i < nomi.size(); ++i) {
            esegui(u"INSERT INTO Voci (Codice, Volume, PaginaIniziale) VALUES (?, ?, ?)"_s,
                   {u"V%1"_s.arg(i + 1), nomi.at(i), pagine.at(i)});
        }
        const Richiesta voci{u"Voci"_s, 7, false, {}, {}, {}};
        const Elenco elenco(voci, connessione());
        // Null davanti; le maiuscole sono pari, e fra pari resta l'ordine di scrittura.
        QCOMPARE(codiciDi(voci, u"Volume"_s), u"V3 V7 V8 V10 V4 V6 V9 V2 V5 V1"_s);
        QCOMPARE(codiciDi(voci, u"PaginaIniziale"_s), u"V5 V1 V8 V3 V7 V2 V9 V4 V6 V10"_s);
        QVERIFY(elenco.ordinabile(0));
        QVERIFY(!elenco.ordinabile(-1));
        QVERIFY(!elenco.ordinabile(7));
        // I registri hanno dodici colonne.
        QVERIFY(!Elenco({u"Registri"_s, 7, false, {}, {}, {}}, connessione()).ordinabile(0));
        QCOMPARE(elenco.riga(elenco.chiaveDi(u"v6"_s)).value(0).toString(), u"V6"_s);
        QCOMPARE(elenco.chiaveDi(u"V99"_s), qint64{-1});
    }

    void spostareSenzaSovrascrivere()
    {
        const QString origine = archivio->accanto(u"S.Rocco 1845.tvd"_s);
        QVERIFY(QDir().mkdir(archivio->accanto(u"Cestino"_s)));
        const QString arrivo = archivio->accanto(u"Cestino/S.Rocco 1845.tvd"_s);
        for (int volta = 1; volta <= 3; ++volta) {
            scriveFile(origine, QByteArray::number(volta));
            const shell::Esito esito = shell::OperazioneFile(u"Muovi"_s, origine, arrivo, true);
            QCOMPARE(esito.stato, 0);
            const QString preso = archivio->accanto(u"Cestino/S.Rocco 1845 (%1).tvd"_s.arg(volta));
            QCOMPARE(esito.nuovoNome, volta == 1 ? QString() : preso);
            QCOMPARE(contenuto(volta == 1 ? arrivo : preso), QByteArray::number(volta));
            QVERIFY(!QFile::exists(origine));
        }
        scriveFile(origine, "nuovo");
        for (const QString &operazione : {u"Muovi"_s, u"Copia"_s})
            QCOMPARE(shell::OperazioneFile(operazione, origine, arrivo, false).stato, 1);
        const QString altrove = archivio->accanto(u"non c'è/x.tvd"_s);
        for (const QString &operazione : {u"Muovi"_s, u"Copia"_s}) {
            const shell::Esito esito = shell::OperazioneFile(operazione, origine, altrove, true);
            QCOMPARE(esito.stato, 1);
            QVERIFY(!esito.motivo.isEmpty());
        }
        QCOMPARE(contenuto(origine), QByteArray("nuovo"));
        QCOMPARE(contenuto(arrivo), QByteArray("1"));
        QCOMPARE(shell::OperazioneFile(u"Copia"_s, origine, origine + u".c"_s, false).stato, 0);
        QCOMPARE(contenuto(origine + u".c"_s), QByteArray("nuovo"));
    }

    void nomiDiFile()
    {
        QCOMPARE(shell::NomeFileDaPercorso(u"C:\\Dati\\d'Òrsi 1.tvd"_s), u"d'Òrsi 1.tvd"_s);
        QCOMPARE(shell::NomeFileDaPercorso(u"/home\\x/y.z.tvd"_s), u"y.z.tvd"_s);
        QCOMPARE(shell::NomeFileDaPercorso(u"x.tvd"_s), u"x.tvd"_s);
        QCOMPARE(shell::NomeFileDaPercorso(u"/x/"_s), QString());
        QCOMPARE(shell::NomeFileDaPercorso({}), QString());
    }
};

Q_DECLARE_METATYPE(ado::Causa)
QTEST_GUILESS_MAIN(TstDati)
#include "tst_dati.moc"
