#include "comune.h"
#include "db/lavoro/lavoro.h"

#include <thread>

using ado::Causa;

// Le scritture dell'archivio, senza finestre: che cosa sta insieme e che cosa si annuncia.
class TestLavoro : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ArchivioDiProva> archivio;
    QStringList annunciati;

    static Record persona(const QString &nome)
    {
        return {u"Individui"_s, {}, {{u"Voce"_s, u"V1"_s}, {u"Nome"_s, nome}}};
    }
    void ascolta(const Annuncio &annuncio)
    {
        QString tutto = annuncio.nome + u':';
        for (const Cambiamento &uno : annuncio.cambiamenti)
            tutto += u" %1%2/%3"_s.arg(QLatin1Char("NCE"[uno.specie])).arg(uno.tabella, uno.codice);
        annunciati.append(tutto);
    }

private slots:
    void init()
    {
        archivio = std::make_unique<ArchivioDiProva>();
        esegui(u"INSERT INTO Registri (Codice, Tipo, Titolo) VALUES ('R1', 9, 'Battesimi')"_s);
        esegui(u"INSERT INTO Voci (Codice, Registro, Volume) VALUES ('V1', 'R1', 'I')"_s);
        esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8)"_s);
        annunciati.clear();
        connect(&annunci(), &Annunci::avvenuto, this, &TestLavoro::ascolta);
    }
    void cleanup() { disconnect(&annunci(), nullptr, this, nullptr); }

    void unRecord()
    {
        const auto salva = [](const QString &codice, const QVariantMap &valori) {
            Lavoro lavoro(connessione(), u"Salvato"_s, u"O1"_s);
            const Scritto scritto = lavoro.scrive({u"Individui"_s, codice, valori});
            lavoro.conferma();
            return scritto.codice + scritto.rifiuto;
        };
        const QVariantMap zoe{{u"Voce"_s, u"v1"_s}, {u"Nome"_s, u"Zoè"_s}, {u"Detto"_s, u" "_s}};
        QCOMPARE(salva({}, zoe), u"I1"_s);
        QCOMPARE(legge(u"SELECT Nome || (Detto IS NULL) || (Creazione <= Modifica) || "
                       "CodiceOperatore FROM Individui, OperatoriContesti "
                       "WHERE CodiceContesto = Codice"_s),
                 u"Zoè11O1"_s);
        esegui(u"UPDATE Individui SET Modifica = 'mai', Cognome = 'Rossi'"_s);
        QCOMPARE(salva(u"i1"_s, {{u"Nome"_s, u""_s}}), u"I1"_s);
        QCOMPARE(legge(u"SELECT (Nome IS NULL) || Cognome || (Modifica = 'mai') FROM Individui"_s),
                 u"1Rossi0"_s);
        // La regola vale per ciò che il record diventerebbe, non per le sole colonne date.
        QVERIFY(salva(u"I1"_s, {{u"Cognome"_s, u" "_s}}).startsWith(u"Impossibile"_s));
        QVERIFY(salva({}, {{u"Voce"_s, u"V1"_s}}).startsWith(u"Impossibile"_s));
        QVERIFY(errore([&] {
                    salva({}, {{u"Voce"_s, u"V9"_s}, {u"Nome"_s, u"Eva"_s}});
                })
                    .testo()
                    .contains(u"V9"_s));
        QCOMPARE(errore([&] { salva(u"I9"_s, zoe); }).testo(), u"il record non esiste più"_s);
        QCOMPARE(annunciati,
                 QStringList({u"Salvato: NIndividui/I1"_s, u"Salvato: CIndividui/I1"_s}));
    }

    void annidati()
    {
        {
            Lavoro fuori(connessione(), u"Atto"_s);
            // Da qui nessun altro scrive, anche se ancora non c'è nulla di scritto.
            QCOMPARE(
                errore([&] { Aparte(archivio->percorso()).esegui(u"BEGIN IMMEDIATE"_s); }).causa(),
                Causa::Occupato);
            fuori.scrive(persona(u"Ada"_s));
            {
                Lavoro perso(connessione());
                perso.scrive(persona(u"Bice"_s));
            }
            // Il codice di chi non è rimasto torna libero.
            Lavoro dentro(connessione(), u"Passo"_s);
            QCOMPARE(dentro.scrive(persona(u"Cleo"_s)).codice, u"I2"_s);
            dentro.conferma();
            QVERIFY(annunciati.isEmpty());
            QCOMPARE(Aparte(archivio->percorso()).legge(u"SELECT count(*) FROM Individui"_s), 0);
            fuori.conferma();
        }
        QCOMPARE(annunciati, {u"Atto: NIndividui/I1 NIndividui/I2"_s});
        {
            Lavoro perso(connessione());
            Lavoro dentro(connessione());
            dentro.scrive(persona(u"Dina"_s));
            dentro.conferma();
        }
        QCOMPARE(colonna(u"SELECT Nome FROM Individui"_s), QStringList({u"Ada"_s, u"Cleo"_s}));
        QCOMPARE(annunciati.size(), 1);
    }

    // Ciò che il motore annulla da sé porta via anche il lavoro intorno: dopo non si scrive più.
    void annullatoDalMotore()
    {
        {
            Lavoro fuori(connessione());
            fuori.scrive(persona(u"Ada"_s));
            try {
                Lavoro dentro(connessione());
                esegui(u"INSERT OR ROLLBACK INTO Famiglie (Codice) VALUES ('F1')"_s);
                QFAIL("il doppione è entrato");
            } catch (const ado::Errore &) {
                QVERIFY(!connessione().inTransazione());
            }
            QVERIFY(!errore([&] { fuori.scrive(persona(u"Bice"_s)); }).testo().isEmpty());
            QVERIFY(!errore([&] { const Lavoro altro(connessione()); }).testo().isEmpty());
            QVERIFY(!errore([&] { fuori.conferma(); }).testo().isEmpty());
        }
        QCOMPARE(righe(u"Individui"_s), 0);
        QCOMPARE(annunciati, QStringList());
    }

    // Un filo con una connessione sua scrive da sé, anche mentre qui un lavoro è aperto.
    void altroFilo()
    {
        Aparte altrove(archivio->percorso());
        ArchivioDiProva qui;
        Lavoro lavoro(connessione(), u"Qui"_s);
        std::thread filo([&] {
            Lavoro suo(altrove, u"Altrove"_s);
            suo.scrive(persona(u"Ada"_s));
            suo.conferma();
        });
        filo.join();
        QCOMPARE(annunciati, QStringList());
        QTRY_COMPARE(annunciati, QStringList(u"Altrove: NIndividui/I1"_s));
        QCOMPARE(righe(u"Individui"_s), 0);
    }

    // Chi nasce in una coppia non resta mai fuori: la persona e il suo posto sono un lavoro solo.
    void nuovoMembro()
    {
        const auto entra = [] {
            Lavoro lavoro(connessione(), u"Nuovo membro"_s);
            lavoro.iscrive(Posto::Coniuge, lavoro.scrive(persona(u"Eva"_s)).codice, u"F1"_s);
            lavoro.conferma();
        };
        esegui(u"CREATE TRIGGER guasto BEFORE INSERT ON FamiglieConiugi "
               "BEGIN SELECT RAISE(ABORT, 'guasto'); END"_s);
        QVERIFY(!errore(entra).testo().isEmpty());
        QCOMPARE(righe(u"Individui"_s), 0);
        esegui(u"DROP TRIGGER guasto"_s);
        entra();
        QCOMPARE(legge(u"SELECT CodiceIndividuo FROM FamiglieConiugi"_s), u"I1"_s);
        QCOMPARE(annunciati, {u"Nuovo membro: NIndividui/I1 NFamiglieConiugi/F1"_s});
        {
            Lavoro lavoro(connessione(), u"Via"_s);
            lavoro.elimina(u"V1"_s);
            lavoro.conferma();
        }
        QCOMPARE(annunciati.last(), u"Via: EVoci/V1 EIndividui/ EFamiglieConiugi/ EFamiglie/"_s);
    }
};

QTEST_GUILESS_MAIN(TestLavoro)
#include "tst_lavoro.moc"
