#include "app/riprese.h"
#include "atti/fmScheda.h"
#include "atti/pagina.h"
#include "contesto/bozze.h"
#include "db/schema/generi.h"
#include "editors/editori.h"
#include "prova_editori.h"
#include "texts/testi.h"

#include <QSignalSpy>

// Le bozze di ciò che si scrive e non si registra.
class TestBozze : public QObject, private ProvaEditori
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> stato;

    QStringList nelCassetto() const
    {
        bozze::scriveSubito();
        QStringList trovate;
        for (const bozze::Bozza &una : bozze::legge(archivio->percorso()).aperte)
            trovate.append(una.dove() + u": "_s + una.che());
        return trovate;
    }
    // Come se il programma fosse morto con le finestre aperte e un altro avesse aperto l'archivio.
    QByteArray fotografa() const
    {
        bozze::scriveSubito();
        return byteDi(file());
    }
    QString file() const
    {
        const QDir cartella(stato->path());
        return cartella.filePath(cartella.entryList({u"*.json"_s}).value(0));
    }

private slots:
    void initTestCase() { registraEditori(); }
    void init()
    {
        comincia();
        stato = std::make_unique<QTemporaryDir>();
        bozze::usaCartella(stato->path());
        contesto().PercorsoCorrente = archivio->percorso();
    }
    void cleanup()
    {
        bozze::usaCartella({});
        finisce();
    }

    void scrittaPresto()
    {
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *voce) {
            batte(casella(voce, 2), u"12 bis, d'aprile: è così"_s);
            // La bozza c'è entro due secondi, senza che nessuno lasci la casella.
            QTRY_COMPARE_WITH_TIMEOUT(bozze::legge(archivio->percorso()).aperte.size(), 1, 2000);
            QCOMPARE(nelCassetto(), QStringList{u"Voce: 12 bis, d'aprile: è così"_s});
            const auto permessi = QFile::permissions(file());
            QVERIFY(!(permessi & (QFile::ReadGroup | QFile::ReadOther)));
            salva(voce);
        });
        QCOMPARE(nelCassetto(), QStringList());
        QVERIFY(bozze::ultime(archivio->percorso()).isEmpty());
        QVERIFY(!QFile::exists(file()) || nelCassetto().isEmpty());
    }

    void unaPasswordNonEsce()
    {
        apre(u"fmOperatore"_s, {}, Contatto, [&](QWidget *operatore) {
            const auto caselle = operatore->findChildren<QLineEdit *>();
            for (QLineEdit *una : caselle)
                batte(una, u"segreta"_s);
            QVERIFY(!fotografa().isEmpty());
            const bool cela = std::any_of(caselle.begin(), caselle.end(), [](const auto *una) {
                return una->echoMode() == QLineEdit::Password;
            });
            QVERIFY(cela);
            for (const bozze::Finestra &una :
                 bozze::legge(archivio->percorso()).aperte.value(0).finestre) {
                for (const bozze::Scritta &scritta : una.caselle)
                    QVERIFY(!scritta.nome.contains(u"Password"_s, Qt::CaseInsensitive));
            }
        });
    }

    // Tre finestre una sull'altra: il programma muore, e tornano tutte con ciò che vi era.
    void tornaTutta()
    {
        QByteArray morto;
        apre(u"fmIndividuo"_s, u"I1"_s, [&](QWidget *individuo) {
            casella(individuo, 1)->clear();
            batte(casella(individuo, 1), u"Nicolò"_s);
            poi([&](QWidget *evento) {
                batte(casella(evento, 2), u"Sant'Anna"_s);
                poi([&](QWidget *testo) {
                    batte(testo->findChild<QPlainTextEdit *>(), u"Così sta scritto"_s);
                    morto = fotografa();
                });
                nuovo(evento, u"Nota"_s);
            });
            nuovo(individuo, u"Battesimo"_s);
        });
        const QTemporaryDir altra;
        scrive(altra.filePath(QFileInfo(file()).fileName()), morto);
        bozze::usaCartella(altra.path());
        // Si riaprono tutte, ciascuna sull'altra, e si chiudono dall'ultima.
        QStringList tornate;
        const auto guarda = [&](QWidget *finestra) {
            const auto *testo = finestra->findChild<QPlainTextEdit *>();
            const int quale = finestra->objectName() == u"fmIndividuo"_s ? 1 : 2;
            tornate += testo != nullptr ? testo->toPlainText() : casella(finestra, quale)->text();
            QCOMPARE(finestra->windowTitle().contains(u"bozza"_s), quale == 1 || testo != nullptr);
        };
        poi([](QWidget *scelta) { preme(scelta, u"Riprende"_s); });
        for (int i = 0; i < 3; ++i)
            poi(guarda);
        contesto().OperatoreCorrente = u"O1"_s;
        Riprese(nullptr, {}).offre(archivio->percorso());
        QVERIFY(persona->finita());
        QCOMPARE(tornate, (QStringList{u"Così sta scritto"_s, u"Sant'Anna"_s, u"Nicolò"_s}));
    }

    // La scheda di un atto, con una riga in più e una data che non si può leggere.
    void tornaLaScheda()
    {
        const auto apre = [&] {
            ProprietaScheda sue;
            sue.Percorso = archivio->percorso();
            sue.VoceLocale = u"V1"_s;
            auto scheda = std::make_unique<fmScheda>(sue, nullptr);
            scheda->Form_Load();
            return scheda;
        };
        const QList<std::pair<scheda::Indirizzo, QString>> scritte{
            {{u"voce"_s, 0, 0, u"Data"_s}, u"30 2"_s},
            {{u"battezzato"_s, 0, 0, u"Cognome"_s}, u"D'Àro"_s},
            {{u"padrini"_s, 0, 0, u"Nome"_s}, u"Pietro"_s}};
        bozze::Finestra sua;
        {
            const auto scheda = apre();
            for (const auto &[dove, testo] : scritte) {
                QVERIFY2(scheda->pagina()->campo(dove) != nullptr, qUtf8Printable(dove.posto));
                auto *casella = scheda->pagina()->campo(dove)->fuoco();
                qobject_cast<QLineEdit *>(casella)->clear();
                batte(casella, testo);
            }
            QCOMPARE(nelCassetto().size(), 1);
            sua = bozze::legge(archivio->percorso()).aperte.constFirst().finestre.constFirst();
        }
        const auto scheda = apre();
        QVERIFY(!scheda->daRegistrare());
        scheda->riprende(sua);
        for (const auto &[dove, testo] : scritte)
            QCOMPARE(scheda->pagina()->campo(dove)->testo(), testo);
        QVERIFY(scheda->daRegistrare());
    }

    // Chi chiude dalla cornice, o senza "&Salva", ritrova ciò che aveva scritto.
    void chiusaSenzaRegistrare()
    {
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *voce) { batte(casella(voce, 2), u"99"_s); });
        QCOMPARE(bozze::ultime(archivio->percorso()).size(), 1);
        const bozze::Bozza sua = bozze::ultime(archivio->percorso()).constFirst();
        QCOMPARE(sua.che(), u"99"_s);
        // Intanto il record è cambiato: si mostra l'uno e l'altro.
        esegui(u"UPDATE Voci SET CodiceVoce = '7' WHERE Codice = 'V1'"_s);
        bool riuscita = false;
        bozze::riprende(sua.finestre, [&] { riuscita = true; });
        poi([&](QWidget *scelta) {
            QCOMPARE(scelta->objectName(), u"Discordia"_s);
            const auto *tavola = scelta->findChild<QTreeWidget *>();
            QCOMPARE(tavola->topLevelItem(0)->text(1), u"99"_s);
            QCOMPARE(tavola->topLevelItem(0)->text(2), u"7"_s);
        });
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *voce) {
            QTRY_VERIFY(riuscita);
            QTRY_COMPARE(casella(voce, 2)->text(), u"99"_s);
            salva(voce);
        });
        QCOMPARE(lette(u"SELECT CodiceVoce FROM Voci"_s), u"99"_s);
    }
};

PROVA_CON_FINESTRE(TestBozze)
#include "tst_bozze.moc"
