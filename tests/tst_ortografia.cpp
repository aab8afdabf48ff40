#include "platform/elaboratore/elaboratore.h"
#include "platform/elaboratore/registro.h"
#include "platform/lingua/correttore.h"
#include "platform/lingua/dizionario.h"
#include "platform/lingua/parole.h"
#include "prova_editori.h"
#include "texts/fmTxtL.h"
#include "texts/ortografia.h"

#include <QListWidget>
#include <QMainWindow>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardPaths>

using registro::Radice;

namespace
{

QString paroleDi(const QString &testo)
{
    QStringList trovate;
    qsizetype da = 0;
    for (auto parola = parole::prossima(testo, da); parola; parola = parole::prossima(testo, da)) {
        trovate << testo.mid(parola->inizio, parola->lunghezza);
        da = parola->inizio + parola->lunghezza;
    }
    return trovate.join(u'|');
}

} // namespace

class TstOrtografia : public QObject, private ProvaEditori
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init()
    {
        qunsetenv("DICPATH");
        QFile::remove(dizionario::fileParole());
        avviaContesto();
        persona = std::make_unique<Persona>();
    }
    void cleanup()
    {
        QVERIFY(persona->finita());
        QCOMPARE(persona->inattese(), QStringList());
    }
    void cleanupTestCase() { QFile::remove(dizionario::fileParole()); }

    void divide_data()
    {
        colonneDiTesto({"testo", "parole"});
        riga("segni", {" , ; -- 12 ", ""});
        riga("elisione", {"nell'anno dell’Incarnazione", "nell'anno|dell’Incarnazione"});
        riga("troncamento", {"un po' de' fedeli", "un|po'|de'|fedeli"});
        riga("accenti", {"Così è, perché più", "Così|perché|più"});
        riga("accento scomposto", {"perche\u0301 no", "perche\u0301|no"});
        riga("virgolette", {"disse 'parola' e ‘altra’", "disse|parola|altra"});
        riga("numeri", {"addì 3 marzo 1750, n.12bis, 2a", "addì|marzo"});
        riga("romani", {"Pio VI nel MDCCLXXXII", "Pio|nel"});
        riga("maiuscole", {"DELL'ANNO CIVILE", "DELL'ANNO|CIVILE"});
        riga("trattino", {"nord-est", "nord|est"});
        riga("righe", {"fine\nriga", "fine|riga"});
        riga("fuori dal piano", {"\U00010300\U00010301 qui", "\U00010300\U00010301|qui"});
    }
    void divide()
    {
        QFETCH(QString, testo);
        QTEST(paroleDi(testo), "parole");
    }

    void frase()
    {
        const QString testo = u"Prima frase. Nella seconda c'è sbalgio! Terza.\nAltra riga"_s;
        const auto trova = [&](const QString &parola) {
            const auto posto = parole::frase(testo, {testo.indexOf(parola), parola.size()});
            return testo.mid(posto.inizio, posto.lunghezza);
        };
        QCOMPARE(trova(u"sbalgio"_s), u"Nella seconda c'è sbalgio!"_s);
        QCOMPARE(trova(u"Prima"_s), u"Prima frase."_s);
        QCOMPARE(trova(u"riga"_s), u"Altra riga"_s);
    }

    void dizionarioItaliano_data()
    {
        QTest::addColumn<bool>("buona");
        const auto righe = [](bool buona, const char *parole) {
            for (const QString &parola : QString::fromUtf8(parole).split(u' '))
                QTest::newRow(qUtf8Printable(parola)) << buona;
        };
        righe(true, "anno dell'anno dell’anno po' de' perché perche\u0301 PERCHÉ Giovanni anch' "
                    "DELL'ANNO un'altra SANT'");
        righe(false, "annno battezato citta' perchè' giovanni ANNNO łódka");
    }
    void dizionarioItaliano()
    {
        QFETCH(bool, buona);
        const dizionario::Dizionario italiano;
        QCOMPARE(italiano.corretta(QString::fromUtf8(QTest::currentDataTag())), buona);
    }

    // I dizionari più vecchi sono in ISO 8859-15, dove "è" è un byte solo e "œ" non è "½".
    void altraCodifica()
    {
        const QTemporaryDir cartella;
        scrive(cartella.filePath(u"it_IT.aff"_s), "SET ISO8859-15\nTRY aeiou\xE8\n");
        scrive(cartella.filePath(u"it_IT.dic"_s), "2\ncaff\xE8\nf\xBDtale\n");
        qputenv("DICPATH", cartella.path().toUtf8());
        const dizionario::Dizionario vecchio;
        QVERIFY(vecchio.corretta(u"caffè"_s));
        QVERIFY(vecchio.corretta(u"fœtale"_s));
        QVERIFY(!vecchio.corretta(u"f½tale"_s));
        QVERIFY(!vecchio.corretta(u"caffł"_s));
        QVERIFY(vecchio.suggerimenti(u"caffa"_s).contains(u"caffè"_s));
    }

    void programma_data()
    {
        colonneDiTesto({"classe", "comando", "atteso"});
        riga("virgolette e argomenti",
             {"Prova.1", "\"C:\\Word\\WINWORD.EXE\" /n \"%1\"", "C:\\Word\\WINWORD.EXE"});
        riga("senza virgolette", {"Prova.1", "C:\\Word\\winword.exe %1", "C:\\Word\\winword.exe"});
        riga("non è un eseguibile", {"Prova.1", "\"apri\" %1", "apri\" %1"});
        riga("comando vuoto", {"Prova.1", "", ""});
        const QByteArray lungo(511, 'x');
        riga("troppo lungo", {"Prova.1", lungo + 'x', ""});
        riga("al limite", {"Prova.1", lungo, lungo});
        riga("classe senza comando", {"Altra", "x.exe", ""});
    }
    void programma()
    {
        QFETCH(QString, classe);
        QFETCH(QString, comando);
        registro::scrivi(Radice::HKEY_CLASSES_ROOT, u".prova"_s, classe);
        registro::scrivi(Radice::HKEY_CLASSES_ROOT, u"prova.1\\shell\\open\\COMMAND"_s, comando);
        QTEST(PercorsoProgramma(u".PROVA"_s), "atteso");
        registro::togli(Radice::HKEY_CLASSES_ROOT, u".prova"_s);
        QCOMPARE(PercorsoProgramma(u".prova"_s), u"False"_s);
    }

    void valoreRegistro()
    {
        QString valore = u"vecchio"_s;
        QCOMPARE(LeggiValoreRegistro(Radice::HKEY_CLASSES_ROOT, u"manca"_s, valore),
                 registro::ERROR_FILE_NOT_FOUND);
        QCOMPARE(valore, QString());
        QCOMPARE(TroncaAlNul(u"ab\0cd"_s), u"ab"_s);
        QCOMPARE(TroncaAlNul(u"intero"_s), u"intero"_s);
    }

    void giro()
    {
        const dizionario::Dizionario italiano;
        Correttore giro(u"Il battezato, ANNNO, il battezato e il battezato dell'annno"_s, italiano,
                        false);
        QVERIFY(giro.avanza());
        QCOMPARE(giro.parola(), u"battezato"_s);
        giro.cambia(u"battezzato"_s, true);
        QVERIFY(giro.avanza());
        QCOMPARE(giro.parola(), u"ANNNO"_s);
        giro.ignora(false);
        QVERIFY(giro.avanza());
        QCOMPARE(giro.parola(), u"annno"_s);
        giro.cambia(u"anno"_s, false);
        QVERIFY(!giro.avanza());
        QCOMPARE(giro.testo(), u"Il battezzato, ANNNO, il battezzato e il battezzato dell'anno"_s);

        // Un'elisione resta unita alla parola che segue, col suo apostrofo.
        Correttore elisa(u"qest’anno di delll'uomo"_s, italiano, false);
        for (const QString &pezzo : {u"qest’"_s, u"delll'"_s}) {
            QVERIFY(elisa.avanza());
            QCOMPARE(elisa.parola(), pezzo);
            QVERIFY(!elisa.suggerimenti().isEmpty());
            elisa.cambia(elisa.suggerimenti().constFirst(), false);
        }
        QVERIFY(!elisa.avanza());
        QCOMPARE(elisa.testo(), u"quest’anno di dell'uomo"_s);

        Correttore senzaMaiuscole(u"ANNNO annno annno"_s, italiano, true);
        QVERIFY(senzaMaiuscole.avanza());
        QCOMPARE(senzaMaiuscole.parola(), u"annno"_s);
        senzaMaiuscole.ignora(true);
        QVERIFY(!senzaMaiuscole.avanza());
    }

    void finestra()
    {
        const QString atto =
            u"Addì 3 marzo 1750\n\nGiovani figlio di Pietro è stato battezato oggi."
            "\nPadrino fu Antonnio, battezato dall'arcipretee medesimo.\n"_s;
        QPlainTextEdit testo(atto);
        QStringList viste;
        poi([&viste](QWidget *finestra) {
            auto *nuova = parte<QLineEdit>(finestra, u"Nuova"_s);
            auto *suggerimenti = parte<QListWidget>(finestra, u"Suggerimenti"_s);
            viste << parte<QPlainTextEdit>(finestra, u"Frase"_s)->toPlainText();
            // "battezato": il primo suggerimento, dappertutto.
            QCOMPARE(nuova->text(), u"battezzato"_s);
            QTest::keyClick(nuova, Qt::Key_T, Qt::AltModifier);
            // Il bottone scelto da tastiera si abbassa per un attimo prima di agire.
            QTRY_COMPARE(nuova->text(), u"Antonino"_s);
            viste << parte<QPlainTextEdit>(finestra, u"Frase"_s)->toPlainText();
            // "Antonnio" si scrive a mano, e Invio cambia.
            QTest::keyClicks(nuova, u"Antonio"_s);
            QTest::keyClick(nuova, Qt::Key_Return);
            // "arcipretee": si sceglie dall'elenco.
            const auto giusto = suggerimenti->findItems(u"arciprete"_s, Qt::MatchExactly);
            QVERIFY(!giusto.isEmpty());
            suggerimenti->setCurrentItem(giusto.constFirst());
            QTest::keyClick(suggerimenti, Qt::Key_Return);
        });
        ControlloOrtografico(testo);
        QCOMPARE(viste,
                 (QStringList{u"Giovani figlio di Pietro è stato battezato oggi."_s,
                              u"Padrino fu Antonnio, battezzato dall'arcipretee medesimo."_s}));
        QCOMPARE(testo.toPlainText(),
                 u"Addì 3 marzo 1750\n\nGiovani figlio di Pietro è stato battezzato oggi.\n"
                 "Padrino fu Antonio, battezzato dall'arciprete medesimo.\n"_s);
        testo.undo();
        QCOMPARE(testo.toPlainText(), atto);
    }

    // Chi smette a metà tiene i cambi già fatti.
    void chiusaAMeta()
    {
        QPlainTextEdit testo(u"battezato annno"_s);
        poi([](QWidget *finestra) {
            preme(finestra, u"Cambia"_s);
            QTest::keyClick(finestra, Qt::Key_Escape);
        });
        ControlloOrtografico(testo);
        QCOMPARE(testo.toPlainText(), u"battezzato annno"_s);
    }

    void nienteDaCorreggere()
    {
        QPlainTextEdit testo(u"Tutto bene."_s);
        const QSignalSpy modificato(&testo, &QPlainTextEdit::textChanged);
        persona->avviso(u"Non sono state trovate parole sbagliate"_s);
        ControlloOrtografico(testo);
        QCOMPARE(modificato.count(), 0);
    }

    void paroleAggiunte()
    {
        QPlainTextEdit testo(u"annno Annno"_s);
        poi([](QWidget *finestra) { preme(finestra, u"Aggiungi"_s); });
        ControlloOrtografico(testo);
        QCOMPARE(testo.toPlainText(), u"annno Annno"_s);
        QCOMPARE(byteDi(dizionario::fileParole()), "annno\n"_ba);
        const dizionario::Dizionario dopo;
        QVERIFY(dopo.corretta(u"ANNNO"_s));
    }

    void finestraPrincipale()
    {
        QMainWindow principale;
        principale.showMaximized();
        contesto().TestoCampoLungo = u"annno"_s;
        fmTxtL testi(&principale);
        testi.Form_Load({});
        testi.show();
        bool ridotta = false;
        poi([&](QWidget *finestra) {
            ridotta = principale.windowState().testFlag(Qt::WindowMinimized);
            QVERIFY(!testi.isEnabled());
            preme(finestra, u"Ignora"_s);
        });
        preme(&testi, u"Command2"_s);
        QVERIFY(ridotta);
        QCOMPARE(principale.windowState() & ~Qt::WindowActive, Qt::WindowMaximized);
        QVERIFY(testi.isEnabled());
        QVERIFY(!contesto().TestoModificato);

        // Quando manca lo si dice prima di ridurre la finestra principale.
        registro::scrivi(Radice::HKEY_CLASSES_ROOT, u".doc"_s, u"Altra"_s);
        persona->poi([&](QWidget *scatola) {
            QCOMPARE(qobject_cast<QMessageBox *>(scatola)->text(), u"Impossibile trovare Word"_s);
            ridotta = principale.windowState().testFlag(Qt::WindowMinimized);
            scatola->close();
        });
        preme(&testi, u"Command2"_s);
        registro::togli(Radice::HKEY_CLASSES_ROOT, u".doc"_s);
        QVERIFY(!ridotta);
    }

    void solaLettura()
    {
        fmTxtL testi(nullptr);
        testi.TipoLock = 1;
        testi.Form_Load(u"V1"_s);
        QVERIFY(!acceso(&testi, u"Command1"_s));
        QVERIFY(!acceso(&testi, u"Command2"_s));
        auto *punti = parte<QScrollBar>(&testi, u"HScroll1"_s);
        for (const auto &[chiesti, dati] :
             {std::pair{1, 6}, std::pair{13, 14}, std::pair{99, 20}}) {
            punti->setValue(chiesti);
            QCOMPARE(punti->value(), dati);
            QCOMPARE(parte<QPlainTextEdit>(&testi, u"Text1"_s)->font().pointSize(), dati);
        }
    }
};

PROVA_CON_FINESTRE(TstOrtografia)

#include "tst_ortografia.moc"
