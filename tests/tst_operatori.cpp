#include "app/avvio.h"
#include "app/contesto.h"
#include "app/finestre.h"
#include "finestre_di_prova.h"

#include <QGroupBox>
#include <QPlainTextEdit>

#include <memory>

using namespace Qt::StringLiterals;
using namespace modTarvola;

// Una password non va mai in ciò che una prova scrive: dove può capitare si verifica, non si
// confronta.

namespace
{

const QString registrati = u"I dati sono stati registrati\nAnnotare nome e password"_s;
const QString senzaNome = u"Impossibile salvare i dati senza inserire il nome"_s;
const QString senzaConferma = u"Impossibile salvare i dati senza confermare la password"_s;
const QString nonModificabili = u"I dati del trascrittore non\npossono essere modificati"_s;
const QString senzaVoci = u"Inserire almeno una voce"_s;

// Tutto ciò che una finestra di sola lettura potrebbe aver cambiato.
QStringList fotografia()
{
    return colonna(u"SELECT concat FROM (SELECT Codice || coalesce(Nome, '') || "
                   "coalesce(Cognome, '') || Tipo || coalesce(Modifica, '') AS concat "
                   "FROM Operatori UNION ALL SELECT Codice || coalesce(Indirizzo1, '') || "
                   "coalesce(Modifica, '') FROM Luoghi UNION ALL SELECT Codice || "
                   "coalesce(Telefono, '') || coalesce(Modifica, '') FROM Comunicazioni UNION ALL "
                   "SELECT Codice || coalesce(Nome, '') || Campolungo FROM Binari)"_s) +
           legami();
}

} // namespace

class TstOperatori : public QObject
{
    Q_OBJECT

    std::unique_ptr<ArchivioDiProva> archivio;
    std::unique_ptr<Persona> persona;

    // Apre un editore legato all'archivio A1, fa il passo e, se è ancora aperto, lo chiude dalla
    // cornice.
    void apre(const QString &nome, int tipo, const QString &codice, const Persona::Passo &passo)
    {
        const auto finestra = NuovaFinestra(nome, nullptr);
        finestra->proprieta.Percorso = archivio->percorso();
        finestra->proprieta.ConOperatore = u"O9"_s;
        finestra->proprieta.TipoLock = 3;
        finestra->proprieta.VoceLocale = u"A1"_s;
        finestra->proprieta.TipoOperatore = tipo;
        finestra->proprieta.OperatoreLocale = codice;
        finestra->proprieta.ArchivioLocale = codice;
        persona->poi([&](QWidget *aperta) {
            QCOMPARE(aperta->objectName(), nome);
            passo(aperta);
            aperta->close();
        });
        QVERIFY(ApriFinestra(*finestra, {}));
        QVERIFY(persona->finita());
        QVERIFY(FinestreAperte().empty());
    }

    // In sola lettura non si scrive, non si crea, non si elimina; "Salva" chiude soltanto.
    static void soloGuarda(QWidget *finestra)
    {
        QVERIFY(!parte<QPushButton>(finestra, u"Command3_0"_s)->isEnabled());
        QVERIFY(!parte<QPushButton>(finestra, u"Command3_1"_s)->isEnabled());
        const QString scritto = casella(finestra, 0)->text();
        batte(casella(finestra, 0), u"altro"_s);
        QCOMPARE(casella(finestra, 0)->text(), scritto);
        salva(finestra);
        QVERIFY(!finestra->isVisible());
    }
    void guardaTesto(const QWidget *luogo)
    {
        persona->poi([](QWidget *testo) {
            QVERIFY(parte<QPlainTextEdit>(testo, u"Text1"_s)->isReadOnly());
            QVERIFY(!parte<QPushButton>(testo, u"Command1"_s)->isEnabled());
            preme(testo, u"Command4"_s);
        });
        apri(luogo, u"B1"_s);
    }

private slots:
    void init()
    {
        avviaContesto();
        archivio = std::make_unique<ArchivioDiProva>();
        persona = std::make_unique<Persona>();
    }
    void cleanup() { QCOMPARE(persona->inattese(), QStringList()); }

    void controlli_data()
    {
        QTest::addColumn<QStringList>("testi");
        QTest::addColumn<QString>("messaggio");
        const auto riga = [](const char *caso, const char *nome, const char *password,
                             const char *conferma, const QString &messaggio) {
            QTest::newRow(caso) << QStringList{QString::fromUtf8(nome), u""_s,
                                               QString::fromUtf8(password),
                                               QString::fromUtf8(conferma)}
                                << messaggio;
        };
        const QString diversa = u"La password non è uguale alla conferma"_s;
        const QString spazi = u"Non è permesso inserire spazi nella password"_s;
        const QString inUso = u"La password è già in uso"_s;
        // Ogni riga ha anche i difetti che si guardano dopo.
        riga("tutto vuoto", "", "", "", senzaNome);
        riga("nome di spazi", "  ", "a b", "x", senzaNome);
        riga("password vuota", "Noè", "", "", u"Impossibile salvare i dati senza password"_s);
        riga("password di spazi", "Noè", "   ", "x",
             u"Impossibile salvare i dati senza password"_s);
        riga("conferma di spazi", "Noè", "a b", "  ", senzaConferma);
        riga("conferma con altre maiuscole", "Noè", "a b", "A b", diversa);
        riga("conferma con uno spazio in più", "Noè", "lune", "lune ", diversa);
        riga("tre caratteri", "Noè", "a b", "a b",
             u"La password deve avere una lunghezza minima di 4 caratteri"_s);
        riga("spazio in mezzo", "Noè", "lun e", "lun e", spazi);
        riga("spazio in fondo", "Noè", "perciò1 ", "perciò1 ", spazi);
        riga("stessa password di un omonimo", "Noè", "perciò1", "perciò1", inUso);
        riga("altre maiuscole", "NOÈ", "PERCIÒ1", "PERCIÒ1", inUso);
        riga("quattro caratteri", "Noè", "lune", "lune", {});
        riga("nome diverso per l'accento", "Noe", "perciò1", "perciò1", {});
        riga("nome diverso per uno spazio", "Noè ", "perciò1", "perciò1", {});
    }
    void controlli()
    {
        QFETCH(QStringList, testi);
        QFETCH(QString, messaggio);
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password, Tipo) "
               "VALUES ('O1', 'Noè', 'perciò1', 42)"_s);
        apre(u"fmOperatore"_s, 0, {}, [&](QWidget *finestra) {
            QCOMPARE(finestra->windowTitle(), u"Trascrittore"_s);
            for (int i = 0; i < 4; ++i)
                QVERIFY(casella(finestra, i)->text().isEmpty());
            riempie(finestra, testi);
            QCOMPARE(casella(finestra, 2)->displayText(), QString(testi.at(2).size(), u'*'));
            QCOMPARE(casella(finestra, 3)->displayText(), QString(testi.at(3).size(), u'*'));
            persona->avviso(messaggio.isEmpty() ? registrati : messaggio);
            salva(finestra);
            QVERIFY(persona->finita());
            QCOMPARE(finestra->isVisible(), !messaggio.isEmpty());
            if (messaggio.isEmpty())
                return;
            QVERIFY(!contesto().SalvataggioRifiutato);
            QVERIFY(casella(finestra, 2)->text() == testi.at(2));
            // Nemmeno un collegamento nasce da dati rifiutati.
            persona->avviso(messaggio);
            nuovo(finestra, u"Indirizzo"_s);
            QVERIFY(persona->finita());
        });
        QCOMPARE(righe(u"Operatori"_s), messaggio.isEmpty() ? 2 : 1);
        QCOMPARE(legami(), messaggio.isEmpty() ? QStringList(u"O9O2"_s) : QStringList());
        if (messaggio.isEmpty()) {
            const QVariant trovato =
                legge(u"SELECT Nome || Tipo FROM Operatori WHERE Codice = 'O2' AND Password = ? "
                      "AND Cognome IS NULL AND Modifica IS NOT NULL"_s,
                      {testi.at(2)});
            QCOMPARE(trovato.toString(), testi.at(0) + u"42"_s);
        }
    }

    void propriDati()
    {
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password, Tipo) VALUES "
               "('O1', 'Noè', 'perciò1', 42), ('O2', 'Pia', 'perciò1', 42)"_s);
        apre(u"fmOperatore"_s, 1, u"O1"_s, [&](QWidget *finestra) {
            QCOMPARE(finestra->windowTitle(), u"Trascrittore"_s);
            QVERIFY(parte<QGroupBox>(finestra, u"Frame3"_s)->isVisible());
            QVERIFY(casella(finestra, 2)->text() == u"perciò1"_s);
            persona->avviso(senzaConferma);
            salva(finestra);
            compila(finestra, u"Text1_3"_s, u"perciò1"_s);
            compila(finestra, u"Text1_0"_s, u"PIA"_s);
            persona->avviso(u"La password è già in uso"_s);
            salva(finestra);
            compila(finestra, u"Text1_0"_s, u"NOÈ"_s);
            persona->avviso(registrati);
            salva(finestra);
            QVERIFY(!finestra->isVisible());
        });
        QCOMPARE(colonna(u"SELECT Codice || Nome FROM Operatori"_s),
                 QStringList({u"O1NOÈ"_s, u"O2Pia"_s}));
    }

    void contatto()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')"_s);
        esegui(u"INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O1', 'Don Luigi', 41)"_s);
        apre(u"fmOperatore"_s, 41, {}, [&](QWidget *finestra) {
            QCOMPARE(finestra->windowTitle(), u"Contatto"_s);
            QVERIFY(!parte<QGroupBox>(finestra, u"Frame3"_s)->isVisible());
            persona->avviso(senzaNome);
            salva(finestra);
            QVERIFY(finestra->isVisible());
            riempie(finestra, {u"Don Luigi"_s, u"D'Òrsi"_s});
        });
        QCOMPARE(righe(u"Operatori"_s), 1);
        // Chi è entrato non è legato al contatto; il contatto lo è a chi l'ha fatto nascere.
        for (const QString &codice : {QString(), u"O2"_s, u"O2"_s}) {
            apre(u"fmOperatore"_s, 41, codice, [&](QWidget *finestra) {
                riempie(finestra, {u"Don Luigi"_s, u"D'Òrsi"_s});
                salva(finestra);
                QVERIFY(!finestra->isVisible());
            });
        }
        QCOMPARE(legami(), QStringList(u"O2A1"_s));
        QCOMPARE(colonna(u"SELECT Nome || Cognome || Tipo FROM Operatori WHERE Password IS NULL "
                         "AND Codice = 'O2'"_s),
                 QStringList(u"Don LuigiD'Òrsi41"_s));
        // Un contatto sparito si ricrea.
        apre(u"fmOperatore"_s, 41, u"O8"_s, [&](QWidget *finestra) {
            riempie(finestra, {u"Eva"_s});
            salva(finestra);
        });
        QCOMPARE(legami(), QStringList({u"O2A1"_s, u"O3A1"_s}));
    }

    void modiSconosciuti()
    {
        const QString inizio = u"Operazione non riuscita:\n"_s;
        for (const auto &[tipo, motivo] : {std::pair{7, u"7 non è un genere di operatore"_s},
                                           std::pair{43, u"43 non è un genere di operatore"_s},
                                           std::pair{1, u"manca il codice del trascrittore"_s},
                                           std::pair{42, u"manca il codice del trascrittore"_s}}) {
            const auto finestra = NuovaFinestra(u"fmOperatore"_s, nullptr);
            finestra->proprieta.TipoLock = 3;
            finestra->proprieta.TipoOperatore = tipo;
            persona->avviso(inizio + motivo);
            QVERIFY(!ApriFinestra(*finestra, {}));
            QVERIFY(persona->finita() && FinestreAperte().empty());
        }
    }

    void trascrittoreNonOfferto()
    {
        esegui(u"UPDATE Traduzioni SET Tipo = 7967 WHERE Codice = 42"_s);
        for (const QString &nome : {u"fmOperatore"_s, u"fmArchivio"_s, u"fmLuogo"_s}) {
            apre(nome, 0, {}, [](QWidget *finestra) {
                const auto *generi = parte<QComboBox>(finestra, u"ImageCombo1"_s);
                QVERIFY(generi->findData(u"K41"_s) >= 0);
                QCOMPARE(generi->findData(u"K42"_s), -1);
            });
        }
    }

    // Dal trascrittore in giù nulla si cambia, per quanto si scenda.
    void solaLettura()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')"_s);
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password, Tipo) VALUES "
               "('O1', 'Noè', 'perciò1', 42), ('O2', 'Don Luigi', NULL, 41)"_s);
        esegui(u"INSERT INTO OperatoriContesti VALUES ('O1', 'A1'), ('O2', 'O1'), ('O1', 'O2')"_s);
        esegui(u"INSERT INTO Luoghi (Codice, IdProprietario, Indirizzo1) VALUES "
               "('L1', 'O1', 'Piazza')"_s);
        esegui(u"INSERT INTO Comunicazioni (Codice, IdProprietario, Telefono) VALUES "
               "('C1', 'O1', '0583')"_s);
        esegui(u"INSERT INTO Binari (Codice, Tipo, IdProprietario, Campolungo) VALUES "
               "('B1', 12, 'L1', 'nota')"_s);
        const QStringList prima = fotografia();
        apre(u"fmArchivio"_s, 0, u"A1"_s, [this](QWidget *archivi) {
            persona->avviso(nonModificabili);
            persona->poi([this](QWidget *operatore) {
                QCOMPARE(operatore->windowTitle(), u"Trascrittore"_s);
                QVERIFY(!parte<QGroupBox>(operatore, u"Frame3"_s)->isVisible());
                persona->poi([this](QWidget *luogo) {
                    guardaTesto(luogo);
                    soloGuarda(luogo);
                });
                apri(operatore, u"L1"_s);
                for (const QString &codice : {u"C1"_s, u"O2"_s}) {
                    persona->poi(soloGuarda);
                    apri(operatore, codice);
                }
                soloGuarda(operatore);
            });
            apri(archivi, u"O1"_s);
        });
        QCOMPARE(fotografia(), prima);
    }

    void indirizzi()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')"_s);
        apre(u"fmArchivio"_s, 0, u"A1"_s, [this](QWidget *archivi) {
            persona->poi([](QWidget *luogo) {
                QCOMPARE(luogo->windowTitle(), u"Indirizzo"_s);
                compila(luogo, u"Text1_2"_s, u"  "_s);
                compila(luogo, u"Text1_3"_s, u"Città d'Òrsi"_s);
                salva(luogo);
                QVERIFY(!luogo->isVisible());
            });
            nuovo(archivi, u"Indirizzo"_s);
            // Il vuoto non ha collegamenti, ma "Salva" lo registra.
            persona->poi([this](QWidget *luogo) {
                persona->avviso(senzaVoci);
                nuovo(luogo, u"Contatto"_s);
                QCOMPARE(righe(u"Luoghi"_s), 1);
                salva(luogo);
                QVERIFY(!luogo->isVisible());
            });
            nuovo(archivi, u"Indirizzo"_s);
        });
        QCOMPARE(colonna(u"SELECT Codice || IdProprietario || coalesce(Città, '-') FROM Luoghi "
                         "WHERE coalesce(Indirizzo1, Indirizzo2, Indirizzo3, Stato, Nazione, "
                         "CodicePostale) IS NULL AND Modifica IS NOT NULL ORDER BY Codice"_s),
                 QStringList({u"L1A1Città d'Òrsi"_s, u"L2A1-"_s}));
        QCOMPARE(legami(), QStringList({u"O9L1"_s, u"O9L2"_s}));
    }

    void collegamentiDegliIndirizzi()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')"_s);
        apre(u"fmLuogo"_s, 0, {}, [this](QWidget *luogo) {
            persona->avviso(u"Selezionare una voce"_s);
            preme(luogo, u"Command3_0"_s);
            // Basta una voce, qualunque sia.
            for (int i = 0; i < 7; ++i) {
                riempie(luogo, QStringList(7, u" "_s));
                persona->avviso(senzaVoci);
                nuovo(luogo, u"Nota"_s);
                QCOMPARE(righe(u"Luoghi"_s), i == 0 ? 0 : 1);
                compila(luogo, u"Text1_%1"_s.arg(i), u"x"_s);
                persona->poi([](QWidget *testo) {
                    QCOMPARE(testo->objectName(), u"fmTxtL"_s);
                    preme(testo, u"Command4"_s);
                });
                nuovo(luogo, u"Nota"_s);
                QVERIFY(persona->finita());
            }
        });
        QCOMPARE(colonna(u"SELECT Indirizzo1 FROM Luoghi"_s), QStringList(u"x"_s));
    }

    void recapiti()
    {
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')"_s);
        apre(u"fmRecapito"_s, 0, {}, [&](QWidget *finestra) {
            QCOMPARE(finestra->windowTitle(), u"Recapito"_s);
            persona->avviso(senzaVoci);
            nuovo(finestra, u"Nota"_s);
            riempie(finestra, {u" "_s, u""_s, u"  "_s});
            persona->avviso(senzaVoci);
            salva(finestra);
            QVERIFY(!finestra->isVisible());
        });
        QCOMPARE(righe(u"Comunicazioni"_s) + righe(u"Binari"_s), 0);
        apre(u"fmRecapito"_s, 0, {}, [](QWidget *finestra) {
            compila(finestra, u"Text1_3"_s, u"pieve@esempio.it"_s);
            salva(finestra);
        });
        QCOMPARE(colonna(u"SELECT Codice || IdProprietario || \"E-mail\" FROM Comunicazioni WHERE "
                         "coalesce(Telefono, Cellulare, Fax, PaginaWeb, Altro1, Altro2) IS NULL"_s),
                 QStringList(u"C1A1pieve@esempio.it"_s));
        QCOMPARE(legami(), QStringList(u"O9C1"_s));
    }
};

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstOperatori prove;
    return QTest::qExec(&prove, argc, argv);
}

#include "tst_operatori.moc"
