#include "comune.h"
#include "db/atto/abbreviazioni.h"
#include "db/schema/schema.h"
#include "programma.h"
#include "texts/testo_proposto.h"

#include <QAccessible>
#include <QAction>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextLayout>
#include <QVBoxLayout>

using modTarvola::formule::Seguito;

// Il testo che mostra come potrebbe continuare: che cosa è nel testo, e che cosa si vede soltanto.
class TestSeguito : public QObject
{
    Q_OBJECT

private:
    const QString formula = u"Addì undici Gennaio fu battezzato. Furono padrini due."_s;
    std::unique_ptr<QWidget> finestra;
    TestoProposto *testo = nullptr;

    // Propone la formula finché ciò che è scritto ne è l'inizio.
    Seguito continua(const QString &prima) const
    {
        if (!formula.startsWith(prima))
            return {};
        const QString resto = formula.mid(prima.size());
        const auto fino = [&](QChar segno) {
            const auto dove = resto.indexOf(segno, 1);
            return dove < 0 ? resto.size() : dove;
        };
        return {resto, fino(u' '), fino(u'.')};
    }
    static void batte(Qt::Key tasto, Qt::KeyboardModifiers modi = {})
    {
        QTest::keyClick(QApplication::focusWidget(), tasto, modi);
    }
    void scrive(const QString &lettere) const
    {
        for (const QChar lettera : lettere)
            QTest::sendKeyEvent(QTest::Click, testo, Qt::Key_unknown, lettera, {});
    }
    QString visto() const { return testo->property("proposta").toString(); }

private slots:
    void init()
    {
        finestra = std::make_unique<QWidget>();
        auto *colonna = new QVBoxLayout(finestra.get());
        testo = new TestoProposto(finestra.get());
        colonna->addWidget(testo);
        finestra->resize(200, 300);
        finestra->show();
        QVERIFY(QTest::qWaitForWindowActive(finestra.get()));
        testo->continua([this](const QString &prima) { return continua(prima); });
        testo->setFocus();
    }

    void quelloCheSiVedeStaFuoriDalTesto()
    {
        const QSignalSpy cambiato(testo, &QPlainTextEdit::textChanged);
        QCOMPARE(visto(), formula);
        // Sta nella disposizione, e la riga va a capo con lei.
        QTRY_VERIFY(testo->document()->firstBlock().layout()->lineCount() > 1);
        QCOMPARE(testo->toPlainText(), QString());
        QCOMPARE(cambiato.count(), 0);
        QVERIFY(!testo->document()->isModified() && !testo->document()->isUndoAvailable());
        QCOMPARE(QAccessible::queryAccessibleInterface(testo)->textInterface()->characterCount(),
                 0);
        QVERIFY(testo->accessibleDescription().contains(formula));
        testo->selectAll();
        testo->copy();
        QCOMPARE(visto(), formula);
        testo->clearFocus();
        QCOMPARE(visto(), QString());
        QCOMPARE(testo->document()->firstBlock().layout()->preeditAreaText(), QString());
        QCOMPARE(testo->accessibleDescription(), QString());
    }

    void leLettereUgualiViPassanoAttraverso()
    {
        scrive(u"Addì un"_s);
        QCOMPARE(visto(), formula.mid(7));
        scrive(u"o"_s);
        QCOMPARE(visto(), QString());
        batte(Qt::Key_Backspace);
        QCOMPARE(visto(), formula.mid(7));
        batte(Qt::Key_Home);
        QCOMPARE(visto(), QString()); // in mezzo a un testo non si propone
        batte(Qt::Key_End);
        QCOMPARE(visto(), formula.mid(7)); // dove non si propone nulla i tasti sono i soliti
        QCOMPARE(testo->toPlainText(), u"Addì un"_s);
    }

    void siPrendeAPezziESiAnnullaIntero()
    {
        scrive(u"Ad"_s);
        batte(Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(testo->toPlainText(), u"Addì"_s);
        batte(Qt::Key_Right);
        QCOMPARE(testo->toPlainText(), u"Addì undici Gennaio fu battezzato"_s);
        batte(Qt::Key_End);
        QCOMPARE(testo->toPlainText(), formula);
        QCOMPARE(visto(), QString());
        for (const QString &prima : {u"Addì undici Gennaio fu battezzato"_s, u"Addì"_s, u"Ad"_s}) {
            batte(Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(testo->toPlainText(), prima);
        }
        scrive(u"dì."_s);
        batte(Qt::Key_Left);
        QCOMPARE(visto(), formula.mid(4).chopped(1)); // il punto che c'è già non si ripete
    }

    void taceSeSiVuole()
    {
        const QSignalSpy taciuto(testo, &TestoProposto::taciuta);
        batte(Qt::Key_Escape);
        scrive(u"Addì"_s);
        QCOMPARE(visto(), QString());
        QCOMPARE(taciuto.count(), 1);
        testo->comandi().at(3)->trigger();
        QCOMPARE(visto(), formula.mid(4));
        testo->setReadOnly(true);
        QCOMPARE(visto(), QString());
    }

    void unAbbreviazioneSiDistendeConUnTasto()
    {
        ArchivioDiProva archivio;
        QCOMPARE(abbreviazioni(connessione()).size(), 0);
        const QList<Abbreviazione> mie{{u"bap"_s, u"fu battezzato da me"_s}};
        scriveAbbreviazioni(connessione(), mie);
        const Aparte riaperto(archivio.percorso()); // il file con la tabella nostra si riapre
        verificaSchema(connessione());
        testo->abbrevia([tutte = abbreviazioni(connessione())](const QString &parola) {
            return distesa(tutte, parola);
        });
        scrive(u"egli Bap "_s);
        QCOMPARE(testo->toPlainText(), u"egli Bap "_s); // lo spazio non distende mai
        batte(Qt::Key_Backspace);
        batte(Qt::Key_F12);
        QCOMPARE(testo->toPlainText(), u"egli Fu battezzato da me"_s);
        batte(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(testo->toPlainText(), u"egli Bap"_s);
        qsizetype quale = 0;
        QVERIFY(rifiutoDi(mie, quale).isEmpty());
        QVERIFY(!rifiutoDi(mie + QList<Abbreviazione>{{u"BAP"_s, u"altro"_s}}, quale).isEmpty());
        QCOMPARE(quale, 1);
    }

    // Il programma cambia il testo sotto la proposta: nessuna riga resta disposta come se ci fosse.
    void ilTestoCambiatoDaAltriNonNeConservaNulla()
    {
        scrive(u"Addì"_s);
        testo->setPlainText(u"A\nB"_s);
        for (QTextBlock riga = testo->document()->begin(); riga.isValid(); riga = riga.next())
            QCOMPARE(riga.layout()->preeditAreaText(), QString());
        QCOMPARE(testo->toPlainText(), u"A\nB"_s);
    }
};

PROVA_CON_FINESTRE(TestSeguito)
#include "tst_seguito.moc"
