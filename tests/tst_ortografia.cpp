#include "app/avvio.h"
#include "app/contesto.h"
#include "platform/correttore.h"
#include "platform/dizionario.h"
#include "platform/elaboratore.h"
#include "platform/parole.h"
#include "platform/registro.h"
#include "texts/fmTxtL.h"
#include "texts/ortografia.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace modTarvola;
using registro::Radice;

namespace
{

// Fa ciò che farebbe una persona davanti alla prossima finestra modale che si apre.
template <class Finestra>
void davantiA(const std::function<void(Finestra *)> &gesto)
{
    QTimer::singleShot(0, qApp, [gesto] {
        auto *finestra = qobject_cast<Finestra *>(QApplication::activeModalWidget());
        if (finestra == nullptr) {
            davantiA<Finestra>(gesto);
            return;
        }
        // Senza gestore di finestre nessuno attiva quella che si apre, e i tasti vogliono che lo
        // sia.
        QApplication::setActiveWindow(finestra);
        gesto(finestra);
        // Una verifica fallita non lascia la prova ferma davanti alla finestra.
        if (finestra->isVisible())
            finestra->reject();
    });
}

void preme(QWidget *finestra, const QString &nome)
{
    QTest::mouseClick(finestra->findChild<QPushButton *>(nome), Qt::LeftButton);
}

QString titoloDi(const QString &testo)
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

class TstOrtografia : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init()
    {
        qunsetenv("DICPATH");
        QFile::remove(dizionario::fileParole());
        avviaContesto();
    }
    void cleanupTestCase() { QFile::remove(dizionario::fileParole()); }

    void divide_data()
    {
        QTest::addColumn<QString>("testo");
        QTest::addColumn<QString>("parole");
        QTest::newRow("niente") << u""_s << u""_s;
        QTest::newRow("segni") << u" , ; -- 12 "_s << u""_s;
        QTest::newRow("elisione") << u"nell'anno dell’Incarnazione"_s
                                  << u"nell'anno|dell’Incarnazione"_s;
        QTest::newRow("troncamento") << u"un po' de' fedeli"_s << u"un|po'|de'|fedeli"_s;
        QTest::newRow("accenti") << u"Così è, perché più"_s << u"Così|perché|più"_s;
        QTest::newRow("accento scomposto") << u"perche\u0301 no"_s << u"perche\u0301|no"_s;
        QTest::newRow("virgolette") << u"disse 'parola' e ‘altra’"_s << u"disse|parola|altra"_s;
        QTest::newRow("numeri") << u"addì 3 marzo 1750, n.12bis, 2a"_s << u"addì|marzo"_s;
        QTest::newRow("romani") << u"Pio VI nel MDCCLXXXII"_s << u"Pio|nel"_s;
        QTest::newRow("maiuscole") << u"DELL'ANNO CIVILE"_s << u"DELL'ANNO|CIVILE"_s;
        QTest::newRow("trattino") << u"nord-est"_s << u"nord|est"_s;
        QTest::newRow("righe") << u"fine\nriga"_s << u"fine|riga"_s;
        QTest::newRow("fuori dal piano")
            << u"\U00010300\U00010301 qui"_s << u"\U00010300\U00010301|qui"_s;
    }
    void divide()
    {
        QFETCH(QString, testo);
        QFETCH(QString, parole);
        QCOMPARE(titoloDi(testo), parole);
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
        const auto scrive = [&](const QString &nome, const QByteArray &byte) {
            QFile file(cartella.filePath(nome));
            return file.open(QIODevice::WriteOnly) && file.write(byte) == byte.size();
        };
        QVERIFY(scrive(u"it_IT.aff"_s, "SET ISO8859-15\nTRY aeiou\xE8\n"));
        QVERIFY(scrive(u"it_IT.dic"_s, "2\ncaff\xE8\nf\xBDtale\n"));
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
        QTest::addColumn<QString>("classe");
        QTest::addColumn<QString>("comando");
        QTest::addColumn<QString>("atteso");
        QTest::newRow("virgolette e argomenti")
            << u"Prova.1"_s << u"\"C:\\Word\\WINWORD.EXE\" /n \"%1\""_s
            << u"C:\\Word\\WINWORD.EXE"_s;
        QTest::newRow("senza virgolette")
            << u"Prova.1"_s << u"C:\\Word\\winword.exe %1"_s << u"C:\\Word\\winword.exe"_s;
        QTest::newRow("non è un eseguibile") << u"Prova.1"_s << u"\"apri\" %1"_s << u"apri\" %1"_s;
        QTest::newRow("comando vuoto") << u"Prova.1"_s << u""_s << u""_s;
        QTest::newRow("troppo lungo") << u"Prova.1"_s << u"x"_s.repeated(512) << u""_s;
        QTest::newRow("al limite") << u"Prova.1"_s << u"x"_s.repeated(511) << u"x"_s.repeated(511);
        QTest::newRow("classe senza comando") << u"Altra"_s << u"x.exe"_s << u""_s;
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

    void finestra();
    void chiusaAMeta();
    void nienteDaCorreggere();
    void paroleAggiunte();
    void finestraPrincipale();
    void solaLettura();
};

void TstOrtografia::finestra()
{
    const QString atto = u"Addì 3 marzo 1750\n\nGiovani figlio di Pietro è stato battezato oggi.\n"
                         u"Padrino fu Antonnio, battezato dall'arcipretee medesimo.\n"_s;
    QPlainTextEdit casella(atto);
    QStringList viste;
    const std::function<void(QDialog *)> gesto = [&](QDialog *finestra) {
        auto *nuova = finestra->findChild<QLineEdit *>(u"Nuova"_s);
        auto *suggerimenti = finestra->findChild<QListWidget *>(u"Suggerimenti"_s);
        viste << finestra->findChild<QPlainTextEdit *>(u"Frase"_s)->toPlainText();
        // "battezato": il primo suggerimento, dappertutto.
        QCOMPARE(nuova->text(), u"battezzato"_s);
        QTest::keyClick(nuova, Qt::Key_T, Qt::AltModifier);
        // Il bottone scelto da tastiera si abbassa per un attimo prima di agire.
        QTRY_COMPARE(nuova->text(), u"Antonino"_s);
        viste << finestra->findChild<QPlainTextEdit *>(u"Frase"_s)->toPlainText();
        // "Antonnio" si scrive a mano, e Invio cambia.
        QTest::keyClicks(nuova, u"Antonio"_s);
        QTest::keyClick(nuova, Qt::Key_Return);
        // "arcipretee": si sceglie dall'elenco.
        const auto giusto = suggerimenti->findItems(u"arciprete"_s, Qt::MatchExactly);
        QVERIFY(!giusto.isEmpty());
        suggerimenti->setCurrentItem(giusto.constFirst());
        QTest::keyClick(suggerimenti, Qt::Key_Return);
    };
    davantiA<QDialog>(gesto);
    ControlloOrtografico(casella);
    QCOMPARE(viste, (QStringList{u"Giovani figlio di Pietro è stato battezato oggi."_s,
                                 u"Padrino fu Antonnio, battezzato dall'arcipretee medesimo."_s}));
    QCOMPARE(casella.toPlainText(),
             u"Addì 3 marzo 1750\n\nGiovani figlio di Pietro è stato battezzato oggi.\n"
             u"Padrino fu Antonio, battezzato dall'arciprete medesimo.\n"_s);
    casella.undo();
    QCOMPARE(casella.toPlainText(), atto);
}

// Chi smette a metà tiene i cambi già fatti.
void TstOrtografia::chiusaAMeta()
{
    QPlainTextEdit casella(u"battezato annno"_s);
    davantiA<QDialog>([](QDialog *finestra) {
        preme(finestra, u"Cambia"_s);
        QTest::keyClick(finestra, Qt::Key_Escape);
    });
    ControlloOrtografico(casella);
    QCOMPARE(casella.toPlainText(), u"battezzato annno"_s);
}

void TstOrtografia::nienteDaCorreggere()
{
    QPlainTextEdit casella(u"Tutto bene."_s);
    const QSignalSpy modificata(&casella, &QPlainTextEdit::textChanged);
    QString detto;
    davantiA<QMessageBox>([&](QMessageBox *scatola) {
        detto = scatola->text();
        scatola->accept();
    });
    ControlloOrtografico(casella);
    QCOMPARE(detto, u"Non sono state trovate parole sbagliate"_s);
    QCOMPARE(modificata.count(), 0);
}

void TstOrtografia::paroleAggiunte()
{
    QPlainTextEdit casella(u"annno Annno"_s);
    davantiA<QDialog>([](QDialog *finestra) { preme(finestra, u"Aggiungi"_s); });
    ControlloOrtografico(casella);
    QCOMPARE(casella.toPlainText(), u"annno Annno"_s);
    QFile file(dizionario::fileParole());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "annno\n"_ba);
    const dizionario::Dizionario dopo;
    QVERIFY(dopo.corretta(u"ANNNO"_s));
}

void TstOrtografia::finestraPrincipale()
{
    QMainWindow principale;
    principale.showMaximized();
    contesto().TestoCampoLungo = u"annno"_s;
    fmTxtL testi(&principale);
    testi.Form_Load({});
    testi.show();
    bool ridotta = false;
    bool disabilitata = false;
    davantiA<QDialog>([&](QDialog *finestra) {
        ridotta = principale.windowState().testFlag(Qt::WindowMinimized);
        disabilitata = !testi.isEnabled();
        preme(finestra, u"Ignora"_s);
    });
    preme(&testi, u"Command2"_s);
    QVERIFY(ridotta);
    QVERIFY(disabilitata);
    QCOMPARE(principale.windowState() & ~Qt::WindowActive, Qt::WindowMaximized);
    QVERIFY(testi.isEnabled());
    QVERIFY(!contesto().TestoModificato);

    // Quando manca lo si dice prima di ridurre la finestra principale.
    registro::scrivi(Radice::HKEY_CLASSES_ROOT, u".doc"_s, u"Altra"_s);
    QString detto;
    davantiA<QMessageBox>([&](QMessageBox *scatola) {
        detto = scatola->text();
        ridotta = principale.windowState().testFlag(Qt::WindowMinimized);
        scatola->accept();
    });
    preme(&testi, u"Command2"_s);
    registro::togli(Radice::HKEY_CLASSES_ROOT, u".doc"_s);
    QCOMPARE(detto, u"Impossibile trovare Word"_s);
    QVERIFY(!ridotta);
}

void TstOrtografia::solaLettura()
{
    fmTxtL testi(nullptr);
    testi.TipoLock = 1;
    testi.Form_Load(u"V1"_s);
    QVERIFY(!testi.findChild<QPushButton *>(u"Command1"_s)->isEnabled());
    QVERIFY(!testi.findChild<QPushButton *>(u"Command2"_s)->isEnabled());
    auto *punti = testi.findChild<QScrollBar *>(u"HScroll1"_s);
    QCOMPARE(punti->minimum(), 6);
    QCOMPARE(punti->maximum(), 20);
    punti->setValue(13);
    QCOMPARE(punti->value(), 14);
    QCOMPARE(testi.findChild<QPlainTextEdit *>(u"Text1"_s)->font().pointSize(), 14);
}

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstOrtografia prova;
    return QTest::qExec(&prova, argc, argv);
}

#include "tst_ortografia.moc"
