#include "prova_editori.h"

#include <QGroupBox>
#include <QLabel>

#include <algorithm>

// Una password non va mai in ciò che una prova scrive: dove può capitare si verifica, non si
// confronta.

namespace
{

const char *const senzaNome = "Impossibile salvare i dati senza inserire il nome";
const char *const inUso = "La password è già in uso";
const QString registrati = u"I dati sono stati registrati\nAnnotare nome e password"_s;
const QString senzaVoci = u"Inserire almeno una voce"_s;

// Tutto ciò che una finestra di sola lettura potrebbe aver cambiato.
QString fotografia()
{
    return lette(u"SELECT Codice, Nome, Cognome, Tipo, Modifica FROM Operatori"_s) +
           lette(u"SELECT Codice, Indirizzo1, Modifica FROM Luoghi"_s) +
           lette(u"SELECT Codice, Telefono, Modifica FROM Comunicazioni"_s) +
           lette(u"SELECT * FROM Binari"_s) + legami().join(u' ');
}

} // namespace

class TstOperatori : public QObject, private ProvaEditori
{
    Q_OBJECT

    void apreOperatore(int tipo, const QString &codice, const Persona::Passo &passo)
    {
        apre(u"fmOperatore"_s, codice, tipo, passo);
    }

    // In sola lettura non si scrive, non si crea, non si elimina; "Salva" chiude soltanto.
    static void soloGuarda(QWidget *finestra)
    {
        QVERIFY(comandi(finestra).startsWith(u"ne"));
        const QString scritto = casella(finestra, 0)->text();
        batte(casella(finestra, 0), u"altro"_s);
        QCOMPARE(casella(finestra, 0)->text(), scritto);
        salva(finestra);
        QVERIFY(!finestra->isVisible());
    }

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void controlli_data()
    {
        colonneDiTesto({"nome", "password", "conferma", "messaggio"});
        const char *vuota = "Impossibile salvare i dati senza password";
        const char *senzaConferma = "Impossibile salvare i dati senza confermare la password";
        const char *diversa = "La password non è uguale alla conferma";
        const char *corta = "La password deve avere una lunghezza minima di 4 caratteri";
        const char *spazi = "Non è permesso inserire spazi nella password";
        // Ogni riga ha anche i difetti che si guardano dopo.
        riga("nome di spazi", {"  ", "a b", "x", senzaNome});
        riga("password di spazi", {"Noè", "   ", "x", vuota});
        riga("conferma di spazi", {"Noè", "a b", "  ", senzaConferma});
        riga("conferma con altre maiuscole", {"Noè", "a b", "A b", diversa});
        riga("conferma con uno spazio in più", {"Noè", "lune", "lune ", diversa});
        riga("tre caratteri", {"Noè", "a b", "a b", corta});
        riga("spazio in mezzo", {"Noè", "lun e", "lun e", spazi});
        riga("spazio in fondo", {"Noè", "perciò1 ", "perciò1 ", spazi});
        riga("stessa password di un omonimo", {" NOÈ ", "PERCIÒ1", "PERCIÒ1", inUso});
        riga("quattro caratteri", {"Noè", "lune", "lune", ""});
        riga("nome diverso per l'accento", {"Noe", "perciò1", "perciò1", ""});
    }
    void controlli()
    {
        QFETCH(QString, nome);
        QFETCH(QString, password);
        QFETCH(QString, conferma);
        QFETCH(QString, messaggio);
        esegui(u"UPDATE Operatori SET Nome = 'Noè', Password = 'perciò1'"_s);
        apreOperatore(0, {}, [&](QWidget *finestra) {
            riempie(finestra, {nome, QString(), password, conferma});
            QCOMPARE(casella(finestra, 2)->displayText(), QString(password.size(), u'*'));
            QCOMPARE(casella(finestra, 3)->displayText(), QString(conferma.size(), u'*'));
            persona->avviso(messaggio.isEmpty() ? registrati : messaggio);
            salva(finestra);
            QVERIFY(persona->finita());
            QCOMPARE(finestra->isVisible(), !messaggio.isEmpty());
            if (messaggio.isEmpty())
                return;
            QVERIFY(!contesto().SalvataggioRifiutato);
            QVERIFY(casella(finestra, 2)->text() == password);
            // Nemmeno un collegamento nasce da dati rifiutati.
            persona->avviso(messaggio);
            nuovo(finestra, u"Indirizzo"_s);
        });
        const QString scritto = messaggio.isEmpty() ? u"O2;%1;(Null);42"_s.arg(nome) : QString();
        QCOMPARE(lette(u"SELECT Codice, Nome, Cognome, Tipo FROM Operatori WHERE Codice > 'O1' "
                       "AND Modifica IS NOT NULL"_s),
                 scritto);
        QCOMPARE(legami().join(u' '), scritto.isEmpty() ? QString() : u"O1O2"_s);
        QVERIFY(scritto.isEmpty() ||
                legge(u"SELECT Password FROM Operatori WHERE Codice = 'O2'"_s) == password);
    }

    // Una password più lunga della casella non si accorcia di nascosto; uno spazio dopo il nome
    // non lo cambia.
    void cioCheNonEntra()
    {
        apreOperatore(0, {}, [&](QWidget *finestra) {
            riempie(finestra, {u"Noè "_s, QString(), QString(60, u'x')});
            QVERIFY(casella(finestra, 2)->accessibleDescription().isEmpty());
            batte(casella(finestra, 2), u"y"_s);
            const QString nota = u"Al massimo 60 caratteri: il resto non è entrato"_s;
            QCOMPARE(casella(finestra, 2)->accessibleDescription(), nota);
            const auto etichette = finestra->findChildren<QLabel *>();
            QVERIFY(std::any_of(etichette.begin(), etichette.end(), [&](const QLabel *una) {
                return una->isVisible() && una->text() == nota;
            }));
            QTest::keyClick(casella(finestra, 2), Qt::Key_Backspace);
            QVERIFY(casella(finestra, 2)->accessibleDescription().isEmpty());
            riempie(finestra, u"2=lune|3=lune"_s);
            persona->avviso(registrati);
            salva(finestra);
        });
        QCOMPARE(lette(u"SELECT Nome FROM Operatori"_s), u"Ada|Noè"_s);
    }

    void propriDati()
    {
        esegui(u"UPDATE Operatori SET Nome = 'Noè', Password = 'perciò1'"_s);
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password) VALUES ('O2', 'Pia', 'perciò1')"_s);
        apreOperatore(1, u"O1"_s, [this](QWidget *finestra) {
            QVERIFY(parte<QGroupBox>(finestra, u"Frame3"_s)->isVisible());
            QVERIFY(casella(finestra, 2)->text() == u"perciò1"_s);
            persona->avviso(u"Impossibile salvare i dati senza confermare la password"_s);
            salva(finestra);
            riempie(finestra, u"3=perciò1|0=PIA"_s);
            persona->avviso(QString::fromUtf8(inUso));
            salva(finestra);
            riempie(finestra, u"0=NOÈ"_s);
            persona->avviso(registrati);
            salva(finestra);
            QVERIFY(!finestra->isVisible());
        });
        QCOMPARE(lette(u"SELECT Codice, Nome FROM Operatori"_s), u"O1;NOÈ|O2;Pia"_s);
    }

    void contatto()
    {
        apreOperatore(41, {}, [this](QWidget *finestra) {
            QCOMPARE(finestra->windowTitle(), u"Contatto"_s);
            QVERIFY(!parte<QGroupBox>(finestra, u"Frame3"_s)->isVisible());
            persona->avviso(QString::fromUtf8(senzaNome));
            salva(finestra);
            QVERIFY(finestra->isVisible());
            riempie(finestra, u"0=Luigi"_s);
        });
        QCOMPARE(righe(u"Operatori"_s), 1);
        // Chi è entrato non è legato al contatto; il contatto lo è a chi l'ha fatto nascere. Può
        // avere il nome di un altro, e un contatto sparito si ricrea.
        for (const QString &codice : {QString(), u"O2"_s, u"O8"_s}) {
            apreOperatore(41, codice, [](QWidget *finestra) {
                riempie(finestra, u"0=Luigi|1=D'Òrsi"_s);
                salva(finestra);
                QVERIFY(!finestra->isVisible());
            });
        }
        QCOMPARE(legami(), QStringList({u"O2A1"_s, u"O3A1"_s}));
        QCOMPARE(lette(u"SELECT Codice, Cognome, Tipo, Password FROM Operatori"_s),
                 u"O1;(Null);42;(Null)|O2;D'Òrsi;41;(Null)|O3;D'Òrsi;41;(Null)"_s);
    }

    // Un modo che non c'è, o che vuole un trascrittore e non l'ha, non apre alcun record.
    void modiSconosciuti()
    {
        for (const auto &[modo, motivo] : {std::pair{7, u"7 non è un genere di operatore"_s},
                                           std::pair{42, u"manca il codice del trascrittore"_s}}) {
            const auto finestra = NuovaFinestra(u"fmOperatore"_s, nullptr);
            finestra->proprieta.TipoOperatore = modo;
            persona->avviso(u"Operazione non riuscita:\n"_s + motivo);
            QVERIFY(!ApriFinestra(*finestra, {}));
            QVERIFY(persona->finita() && FinestreAperte().empty());
        }
    }

    // Il modello non lo offre, ma un archivio può farlo.
    void trascrittoreNonOfferto()
    {
        esegui(u"UPDATE Traduzioni SET Tipo = 7967 WHERE Codice = 42"_s);
        apre(u"fmArchivio"_s, {}, [](QWidget *finestra) {
            const auto *generi = parte<QComboBox>(finestra, u"ImageCombo1"_s);
            QVERIFY(generi->findData(u"K41"_s) >= 0);
            QCOMPARE(generi->findData(u"K42"_s), -1);
        });
    }

    // Dal trascrittore in giù nulla si cambia, per quanto si scenda.
    void solaLettura()
    {
        esegui(u"INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O2', 'Don Luigi', 41)"_s);
        esegui(u"INSERT INTO OperatoriContesti VALUES ('O1', 'A1'), ('O2', 'O1'), ('O1', 'O2')"_s);
        esegui(u"INSERT INTO Luoghi (Codice, IdProprietario, Indirizzo1) "
               "VALUES ('L1', 'O1', 'Piazza')"_s);
        esegui(u"INSERT INTO Comunicazioni (Codice, IdProprietario, Telefono) "
               "VALUES ('C1', 'O1', '0583')"_s);
        esegui(u"INSERT INTO Binari (Codice, Tipo, IdProprietario, Campolungo) "
               "VALUES ('B1', 12, 'L1', 'nota')"_s);
        const QString prima = fotografia();
        apre(u"fmArchivio"_s, u"A1"_s, [this](QWidget *archivi) {
            persona->avviso(u"I dati del trascrittore non\npossono essere modificati"_s);
            poi([this](QWidget *operatore) {
                QCOMPARE(operatore->windowTitle(), u"Trascrittore"_s);
                QVERIFY(!parte<QGroupBox>(operatore, u"Frame3"_s)->isVisible());
                poi([this](QWidget *luogo) {
                    poi([](QWidget *testo) {
                        QVERIFY(parte<QPlainTextEdit>(testo, u"Text1"_s)->isReadOnly());
                        QVERIFY(!acceso(testo, u"Command1"_s));
                    });
                    apri(luogo, u"B1"_s);
                    soloGuarda(luogo);
                });
                apri(operatore, u"L1"_s);
                for (const QString &codice : {u"C1"_s, u"O2"_s}) {
                    poi(soloGuarda);
                    apri(operatore, codice);
                }
                soloGuarda(operatore);
            });
            apri(archivi, u"O1"_s);
        });
        QCOMPARE(fotografia(), prima);
    }

    // Per un collegamento basta una voce, qualunque sia.
    void collegamentiDegliIndirizzi()
    {
        apre(u"fmArchivio"_s, u"A1"_s, [this](QWidget *archivi) {
            poi([this](QWidget *luogo) {
                QCOMPARE(luogo->windowTitle(), u"Indirizzo"_s);
                for (int i = 0; i < 7; ++i) {
                    riempie(luogo, QStringList(7, u" "_s));
                    persona->avviso(senzaVoci);
                    nuovo(luogo, u"Nota"_s);
                    QCOMPARE(righe(u"Luoghi"_s), i == 0 ? 0 : 1);
                    compila(luogo, u"Text1_%1"_s.arg(i), u"x"_s);
                    poi([](QWidget *testo) { QCOMPARE(testo->objectName(), u"fmTxtL"_s); });
                    nuovo(luogo, u"Nota"_s);
                    QVERIFY(persona->finita());
                }
            });
            nuovo(archivi, u"Indirizzo"_s);
        });
        QCOMPARE(lette(u"SELECT IdProprietario, Indirizzo1 FROM Luoghi"_s), u"A1;x"_s);
    }
};

PROVA_CON_FINESTRE(TstOperatori)

#include "tst_operatori.moc"
