#include "app/contesto.h"
#include "app/finestre.h"
#include "app/fmLogin.h"
#include "app/MDITras.h"
#include "finestre_di_prova.h"
#include "programma.h"

#include <QAction>
#include <QFileDialog>

#include <memory>

using namespace Qt::StringLiterals;
using namespace modTarvola;

// Una password non va mai in ciò che una prova scrive: dove può capitare si verifica, non si
// confronta.

namespace
{

const QString registrati = u"I dati sono stati registrati\nAnnotare nome e password"_s;
const QString inesistente = u"Password inesistente"_s;

} // namespace

class TstAccesso : public QObject
{
    Q_OBJECT

    std::unique_ptr<ArchivioDiProva> archivio;
    std::unique_ptr<Persona> persona;

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
    static void scrive(const QWidget *accesso, const QString &nome, const QString &password)
    {
        compila(accesso, u"txtUserName"_s, nome);
        compila(accesso, u"txtPassword"_s, password);
    }

    void apreFile(MDITras &principale, const Persona::Passo &accesso)
    {
        persona->entra = accesso != nullptr;
        persona->poi([this](QWidget *finestra) {
            auto *nome = parte<QLineEdit>(finestra, u"fileNameEdit"_s);
            nome->setText(archivio->percorso());
            QTest::keyClick(nome, Qt::Key_Return);
        });
        if (accesso)
            persona->poi(accesso);
        principale.SubFileItem_Click(1);
        QVERIFY(persona->finita());
    }
    static void comando(const fmTabella *tabella, int numero)
    {
        parte<QAction>(tabella, u"Toolbar1_%1"_s.arg(numero))->trigger();
    }
    static const fmTabella *ultimo(const MDITras &principale)
    {
        return principale.visualizzatori().constLast();
    }
    void nuovoArchivio(const fmTabella *tabella)
    {
        persona->poi([](QWidget *finestra) {
            riempie(finestra, {u"Duomo"_s});
            salva(finestra);
        });
        comando(tabella, NuovaRiga);
        QVERIFY(persona->finita());
    }
    // Un atto, il suo battezzato e il battesimo, ciascuno nella finestra aperta dall'altro.
    void trascrive(const fmTabella *voci)
    {
        persona->poi([this](QWidget *voce) {
            QCOMPARE(voce->windowTitle(), u"Nuovo Battesimo"_s);
            riempie(voce, {u"I"_s});
            persona->poi([this](QWidget *individuo) {
                compila(individuo, u"Text1_1"_s, u"Zoe"_s);
                persona->poi([](QWidget *evento) {
                    QCOMPARE(FinestreAperte().size(), 3U);
                    compila(evento, u"Text1_2"_s, u"Pieve"_s);
                    salva(evento);
                });
                nuovo(individuo, u"Battesimo"_s);
                salva(individuo);
            });
            nuovo(voce, u"Battezzato/a"_s);
            salva(voce);
        });
        comando(voci, NuovaRiga);
        QVERIFY(persona->finita());
    }

private slots:
    void init()
    {
        avviaContesto();
        archivio = std::make_unique<ArchivioDiProva>();
        persona = std::make_unique<Persona>();
    }
    void cleanup() { QCOMPARE(persona->inattese(), QStringList()); }

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
        riga("come registrati", "Pia", "lune1", u"O1"_s);
        riga("altre maiuscole", "pIA", "LUNE1", u"O1"_s);
        riga("spazio davanti al nome", " Pia", "lune1", inesistente);
        riga("spazio dopo la password", "Pia", "lune1 ", inesistente);
        riga("omonima", "Pia", "altra2", u"O3"_s);
        riga("apostrofo e accenti", "D'Àngelo", "perciò", u"O2"_s);
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
               "('O1', 'Pia', 'lune1', 42), ('O2', 'D''Àngelo', 'perciò', 42), "
               "('O3', 'Pia', 'altra2', 42), ('O4', 'Don Luigi', NULL, 41), "
               "('O5', 'Zoe', 'gemella', 42), ('O6', 'Zoe', 'gemella', 42)"_s);
        const bool entra = esito.startsWith(u'O');
        contesto().OperatoreCorrente = u"O9"_s;
        accede([&](QWidget *finestra) {
            QCOMPARE(contesto().OperatoreCorrente, QString());
            auto *segreta = parte<QLineEdit>(finestra, u"txtPassword"_s);
            scrive(finestra, nome, password);
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

    void rinunce_data()
    {
        QTest::addColumn<int>("modo");
        QTest::newRow("Annulla") << 0;
        QTest::newRow("Esc") << 1;
        QTest::newRow("cornice") << 2;
    }
    void rinunce()
    {
        QFETCH(int, modo);
        accede([&](QWidget *finestra) {
            scrive(finestra, u"Pia"_s, u"lune1"_s);
            persona->avviso(inesistente);
            preme(finestra, u"cmdOK"_s);
            contesto().OperatoreCorrente = u"O9"_s;
            if (modo == 0)
                preme(finestra, u"cmdCancel"_s);
            else if (modo == 1)
                QTest::keyClick(finestra, Qt::Key_Escape);
            else
                finestra->close();
            QVERIFY(!finestra->isVisible());
            QCOMPARE(contesto().OperatoreCorrente, QString());
        });
    }

    void nuovaEModifica()
    {
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password, Tipo) VALUES "
               "('O1', 'Pia', 'lune1', 42)"_s);
        contesto().PercorsoCorrente = archivio->percorso();
        accede([&](QWidget *finestra) {
            scrive(finestra, u"Pia"_s, u"lune1"_s);
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
    // Chi si registra ed entra è legato a ogni record che crea, una volta sola.
    void giornata()
    {
        MDITras principale;
        principale.show();
        const auto accesso = [this](QWidget *finestra) {
            persona->poi([this](QWidget *operatore) {
                riempie(operatore, {u"Noè"_s, u"D'Àngelo"_s, u"perciò1"_s, u"perciò1"_s});
                persona->avviso(registrati);
                salva(operatore);
            });
            preme(finestra, u"cmdNuova"_s);
            scrive(finestra, u"noÈ"_s, u"PERCIÒ1"_s);
            preme(finestra, u"cmdOK"_s);
        };
        apreFile(principale, accesso);
        nuovoArchivio(ultimo(principale));
        comando(ultimo(principale), Seleziona);
        persona->poi([](QWidget *registro) {
            riempie(registro, {u"Libro I"_s});
            parte<QComboBox>(registro, u"ImageCombo2"_s)->setCurrentText(u"Battesimi"_s);
            salva(registro);
        });
        comando(ultimo(principale), NuovaRiga);
        comando(ultimo(principale), Seleziona);
        trascrive(ultimo(principale));
        // Riaprire e salvare non lega due volte.
        for (int volta = 0; volta < 2; ++volta) {
            persona->poi([this](QWidget *voce) {
                persona->poi([](QWidget *individuo) { salva(individuo); });
                apri(voce, u"I1"_s);
                salva(voce);
            });
            comando(ultimo(principale), ApriRiga);
            QVERIFY(persona->finita());
        }
        QCOMPARE(righe(u"Eventi"_s), 1);
        QCOMPARE(legami(), QStringList({u"O1A1"_s, u"O1E1"_s, u"O1I1"_s, u"O1R1"_s, u"O1V1"_s}));
    }

    void visualizzatoriDiPrima()
    {
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password, Tipo) VALUES "
               "('O1', 'Pia', 'lune1', 42)"_s);
        MDITras principale;
        ApriArchivio(archivio->percorso());
        principale.show();
        apreFile(principale, {});
        const fmTabella *senza = ultimo(principale);
        apreFile(principale, [](QWidget *finestra) {
            scrive(finestra, u"Pia"_s, u"lune1"_s);
            preme(finestra, u"cmdOK"_s);
        });
        const fmTabella *conPia = ultimo(principale);
        nuovoArchivio(senza);
        nuovoArchivio(conPia);
        QCOMPARE(legami(), QStringList(u"O1A2"_s));
        apreFile(principale, {});
        QCOMPARE(contesto().OperatoreCorrente, QString());
        nuovoArchivio(ultimo(principale));
        nuovoArchivio(conPia);
        QCOMPARE(legami(), QStringList({u"O1A2"_s, u"O1A4"_s}));
    }
};

PROVA_CON_FINESTRE(TstAccesso)

#include "tst_accesso.moc"
