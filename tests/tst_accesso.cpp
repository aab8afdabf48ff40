#include "app/fmLogin.h"
#include "finestre_di_prova.h"
#include "prova_principale.h"

// Una password non va mai in ciò che una prova scrive: dove può capitare si verifica, non si
// confronta.

namespace
{

const QString registrati = u"I dati sono stati registrati\nAnnotare nome e password"_s;
const QString inesistente = u"Password inesistente"_s;

} // namespace

class TstAccesso : public QObject, private ProvaPrincipale
{
    Q_OBJECT

    // Mostra l'accesso e fa il passo; se è ancora aperto lo chiude dalla cornice.
    void accede(const Persona::Passo &passo)
    {
        persona->entra = true;
        fmLogin accesso(nullptr);
        persona->poi([&](QWidget *aperta) {
            QCOMPARE(aperta, &accesso);
            passo(aperta);
            aperta->close();
        });
        accesso.exec();
        QVERIFY(persona->finita());
    }
    static void presenta(const QWidget *accesso, const QString &nome, const QString &password)
    {
        compila(accesso, u"txtUserName"_s, nome);
        compila(accesso, u"txtPassword"_s, password);
    }
    const fmTabella *apreElenco(bool entrando)
    {
        persona->entra = entrando;
        batteFile(u"Apri un file"_s, percorso(u"prova.tvd"_s));
        if (entrando)
            persona->poi([](QWidget *finestra) {
                presenta(finestra, u"Pia"_s, u"lune1"_s);
                preme(finestra, u"cmdOK"_s);
            });
        sceglie(u"&File"_s, u"Apri"_s);
        return ultimo();
    }
    void nuovoArchivio(const fmTabella *tabella)
    {
        persona->poi([](QWidget *finestra) {
            riempie(finestra, {u"Duomo"_s});
            salva(finestra);
        });
        comando(tabella, 3);
    }

private slots:
    void init()
    {
        comincia();
        creaModello(percorso(u"prova.tvd"_s));
        ApriArchivio(percorso(u"prova.tvd"_s));
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password, Tipo) VALUES "
               "('O1', 'Pia', 'lune1', 42)"_s);
    }
    void cleanup() { finisce(); }

    void accesso_data()
    {
        QTest::addColumn<QString>("nome");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("esito");
        const QString manca = u"Inserire il nome e la password"_s;
        const auto riga = [](const char *caso, const char *nome, const char *password,
                             const QString &esito) {
            QTest::newRow(caso) << QString::fromUtf8(nome) << QString::fromUtf8(password) << esito;
        };
        riga("niente", "", "", manca);
        riga("nome di spazi", "  ", "lune1", manca);
        riga("password di spazi", "Pia", "  ", manca);
        riga("altre maiuscole", "pIA", "LUNE1", u"O1"_s);
        riga("spazio davanti al nome", " Pia", "lune1", inesistente);
        riga("spazio dopo la password", "Pia", "lune1 ", inesistente);
        riga("omonima", "Pia", "altra2", u"O3"_s);
        riga("accenti maiuscoli", "d'ÀNGELO", "PERCIÒ", u"O2"_s);
        riga("accento tolto", "D'Angelo", "perciò", inesistente);
        riga("omonime con la stessa password", "Zoe", "gemella", u"O5"_s);
        riga("contatto senza password", "Don Luigi", "gemella", inesistente);
        riga("apici", "' OR '1'='1", "' OR '1'='1", inesistente);
    }
    void accesso()
    {
        QFETCH(QString, nome);
        QFETCH(QString, password);
        QFETCH(QString, esito);
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password, Tipo) VALUES "
               "('O2', 'D''Àngelo', 'perciò', 42), "
               "('O3', 'Pia', 'altra2', 42), ('O4', 'Don Luigi', NULL, 41), "
               "('O5', 'Zoe', 'gemella', 42), ('O6', 'Zoe', 'gemella', 42)"_s);
        const bool entra = esito.startsWith(u'O');
        contesto().OperatoreCorrente = u"O9"_s;
        accede([&](QWidget *finestra) {
            QCOMPARE(contesto().OperatoreCorrente, QString());
            auto *segreta = parte<QLineEdit>(finestra, u"txtPassword"_s);
            presenta(finestra, nome, password);
            QCOMPARE(segreta->displayText(), QString(password.size(), u'*'));
            segreta->deselect();
            if (!entra)
                persona->avviso(esito);
            QTest::keyClick(segreta, Qt::Key_Return);
            QCOMPARE(finestra->isVisible(), !entra);
            QCOMPARE(contesto().OperatoreCorrente, entra ? esito : QString());
            if (esito == inesistente) {
                QCOMPARE(finestra->focusWidget(), segreta);
                QVERIFY(segreta->selectedText() == password);
                persona->avviso(esito);
                preme(finestra, u"cmdModifica"_s);
                QVERIFY(persona->finita());
            }
        });
        QCOMPARE(contesto().OperatoreCorrente, entra ? esito : QString());
    }

    void rinunce()
    {
        const std::function<void(QWidget *)> modi[] = {
            [](QWidget *finestra) { preme(finestra, u"cmdCancel"_s); },
            [](QWidget *finestra) { QTest::keyClick(finestra, Qt::Key_Escape); },
            [](QWidget *finestra) { finestra->close(); }};
        for (const auto &modo : modi) {
            accede([&](QWidget *finestra) {
                contesto().OperatoreCorrente = u"O9"_s;
                modo(finestra);
                QVERIFY(!finestra->isVisible());
                QCOMPARE(contesto().OperatoreCorrente, QString());
            });
        }
    }

    void nuovaEModifica()
    {
        contesto().PercorsoCorrente = percorso(u"prova.tvd"_s);
        accede([&](QWidget *finestra) {
            presenta(finestra, u"Pia"_s, u"lune1"_s);
            persona->poi([](QWidget *operatore) {
                QCOMPARE(operatore->windowTitle(), u"Trascrittore"_s);
                for (int i = 0; i < 4; ++i)
                    QVERIFY(casella(operatore, i)->text().isEmpty());
                operatore->close();
            });
            preme(finestra, u"cmdNuova"_s);
            persona->poi([this](QWidget *operatore) {
                QCOMPARE(casella(operatore, 0)->text(), u"Pia"_s);
                compila(operatore, u"Text1_1"_s, u"Rossi"_s);
                compila(operatore, u"Text1_3"_s, u"lune1"_s);
                persona->avviso(registrati);
                salva(operatore);
            });
            preme(finestra, u"cmdModifica"_s);
            QVERIFY(finestra->isVisible());
            // Correggere i propri dati non è ancora entrare.
            QCOMPARE(contesto().OperatoreCorrente, QString());
        });
        QCOMPARE(colonna(u"SELECT Codice || Nome || Cognome FROM Operatori"_s),
                 QStringList(u"O1PiaRossi"_s));
        QCOMPARE(legami(), QStringList());
    }

    // Chi entra è legato a ciò che crea dagli elenchi aperti da allora, e da quelli soltanto.
    void visualizzatoriDiPrima()
    {
        const fmTabella *senza = apreElenco(false);
        const fmTabella *conPia = apreElenco(true);
        nuovoArchivio(senza);
        nuovoArchivio(conPia);
        QCOMPARE(legami(), QStringList(u"O1A2"_s));
        const fmTabella *ancoraSenza = apreElenco(false);
        QCOMPARE(contesto().OperatoreCorrente, QString());
        nuovoArchivio(ancoraSenza);
        nuovoArchivio(conPia);
        QCOMPARE(legami(), QStringList({u"O1A2"_s, u"O1A4"_s}));
    }
};

PROVA_CON_FINESTRE(TstAccesso)

#include "tst_accesso.moc"
