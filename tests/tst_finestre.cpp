#include "db/lavoro/lavoro.h"
#include "prova_principale.h"

#include <QTreeWidget>

class TstFinestre : public QObject, private ProvaPrincipale
{
    Q_OBJECT

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void menuDellaFinestra()
    {
        const auto titoli = [&] { return didascalie(principale->menuBar()->actions()); };
        const QStringList file{
            u"Apri"_s,     u"Nuovo"_s, u"Compatta e ripristina"_s,     u"Back up"_s,
            u"Recupera"_s, {},         u"Riapri gli elenchi chiusi"_s, u"Ultime bozze…"_s,
            u"&Continua"_s};
        const QStringList aiuto{u"Manuale"_s, u"Home page"_s, u"Scrivi a Tarvola"_s};
        QCOMPARE(principale->windowTitle(), u"Tarvola"_s);
        QVERIFY(!principale->windowIcon().pixmap(32).isNull());
        QCOMPARE(titoli(), QStringList({u"&File"_s, u"&Aiuto"_s}));
        fmTabella *tabella = apreEsempio();
        QCOMPARE(titoli(), QStringList({u"&File"_s, u"&Archivi"_s, u"&Tabelle"_s, u"&Finestre"_s,
                                        u"&Aiuto"_s, u"&Modifica"_s}));
        QCOMPARE(didascalie(menu(u"&File"_s)->actions()), file);
        QCOMPARE(didascalie(menu(u"&Aiuto"_s)->actions()), aiuto);
        QCOMPARE(didascalie(menu(u"&Tabelle"_s)->actions()),
                 QStringList({u"Archivi"_s, u"Registri"_s, u"Voci"_s, u"Individui"_s, u"Famiglie"_s,
                              u"Eventi"_s, u"Testi e Oggetti"_s}));
        cornice(tabella)->close();
        QTRY_COMPARE(titoli(), QStringList({u"&File"_s, u"&Aiuto"_s}));
    }

    // Ciò che torna è al suo posto, scelto; la storia rifà ciò che si era annullato.
    void annullaEStoria()
    {
        fmTabella *tabella = apreEsempio();
        const auto quante = [&] { return griglia(tabella)->model()->rowCount(); };
        const int righe = quante();
        const QString primo = cella(tabella, 0, 0);
        {
            Lavoro lavoro(connessione());
            lavoro.elimina(primo);
            lavoro.conferma();
        }
        QTRY_COMPARE(quante(), righe - 1);
        const QMenu *modifica = menu(u"&Modifica"_s);
        emit const_cast<QMenu *>(modifica)->aboutToShow();
        QVERIFY(modifica->actions().at(0)->text().startsWith(u"&Annulla: Eliminato l'archivio"_s));
        modifica->actions().at(0)->trigger();
        QTRY_COMPARE(quante(), righe);
        QCOMPARE(cella(tabella, 0, 0), primo);
        QTRY_COMPARE(corrente(tabella), primo);
        persona->poi([&](QWidget *finestra) {
            auto *passi = parte<QTreeWidget>(finestra, u"Passi"_s);
            QCOMPARE(passi->topLevelItemCount(), 1);
            QCOMPARE(passi->topLevelItem(0)->text(2), u"annullato"_s);
            QTest::keyClick(passi, Qt::Key_Return);
            QCOMPARE(passi->topLevelItem(0)->text(2), QString());
            finestra->close();
        });
        modifica->actions().at(3)->trigger();
        QTRY_COMPARE(quante(), righe - 1);
    }

    void nomiNuovi_data()
    {
        QTest::addColumn<QString>("battuto");
        QTest::addColumn<QString>("creato");
        QTest::newRow("semplice") << u"prova"_s << u"prova.tvd"_s;
        QTest::newRow("con un punto") << u"S.Rocco 1845"_s << u"S.Rocco 1845.tvd"_s;
        QTest::newRow("con estensione") << u"Duomo.TVD"_s << u"Duomo.TVD"_s;
        QTest::newRow("accenti") << u"d'Òrsi; è"_s << u"d'Òrsi; è.tvd"_s;
    }
    void nomiNuovi()
    {
        QFETCH(QString, battuto);
        QFETCH(QString, creato);
        preparaNuovo(percorso(battuto));
        sceglie(u"&File"_s, u"Nuovo"_s);
        QCOMPARE(QDir(cartella->path()).entryList(QDir::Files), QStringList(creato));
        // Il modello è di sola lettura; l'archivio nuovo no.
        QVERIFY(QFile::permissions(percorso(creato)) & QFile::WriteOwner);
        QCOMPARE(contesto().PercorsoCorrente, percorso(creato));
        QCOMPARE(principale->visualizzatori().size(), 1);
        QCOMPARE(ultimo()->windowTitle(), u"Archivi File "_s + percorso(creato));
        apriFile(percorso(creato));
        QCOMPARE(principale->visualizzatori().size(), 2);
        QCOMPARE(archivi().Connessioni.size(), size_t{1});
    }

    void rinunce()
    {
        apriFile({});
        preparaNuovo({});
        sceglie(u"&File"_s, u"Nuovo"_s);
        QVERIFY(QFile::remove(modello()));
        persona->avviso(u"Il file tarvola.mod non esiste nella catella\n"_s +
                        shell::cartellaApplicazione());
        sceglie(u"&File"_s, u"Nuovo"_s);
        QCOMPARE(principale->visualizzatori().size(), 0);
        QCOMPARE(contesto().PercorsoCorrente, QString());
    }

    void fileCheNonSiApre()
    {
        apreEsempio();
        scrive(percorso(u"testo.tvd"_s), QByteArray("Non è un archivio").repeated(99));
        batteFile(u"Apri un file"_s, percorso(u"testo.tvd"_s));
        persona->avviso(u"Operazione non riuscita:\n"_s + percorso(u"testo.tvd"_s) +
                        u"\nnon è un file di archivi di Tarvola (file is not a database)"_s);
        sceglie(u"&File"_s, u"Apri"_s);
        QCOMPARE(principale->visualizzatori().size(), 1);
        QCOMPARE(contesto().PercorsoCorrente, percorso(u"esempio.tvd"_s));
        QCOMPARE(righe(u"Archivi"_s), 2);
    }

    void fileEsistente_data()
    {
        QTest::addColumn<int>("risposte");
        QTest::newRow("non cancellare") << 0;
        QTest::newRow("annulla") << 1;
        QTest::newRow("resta aperto") << 2;
        QTest::newRow("spostato") << 3;
    }
    void fileEsistente()
    {
        QFETCH(int, risposte);
        const QString suo = percorso(u"esempio.tvd"_s);
        const QPointer<fmTabella> vecchio = apreEsempio();
        const QPointer<fmTabella> altro = apreEsempio(u"altro.tvd"_s);
        preparaNuovo(percorso(u"esempio"_s));
        persona->domanda(u"Il file esiste, cancellare il vecchio file?"_s, risposte > 0,
                         QMessageBox::Question);
        if (risposte > 0)
            avvertimentoSpostamento(suo, risposte > 1);
        if (risposte > 1)
            inUso(suo, risposte > 2);
        if (risposte == 2)
            persona->avviso(u"Errore nella chiusura del database"_s);
        if (risposte == 3)
            rinominato(suo, cestino(u"esempio.tvd"_s));
        sceglie(u"&File"_s, u"Nuovo"_s);
        const bool spostato = risposte == 3;
        QCOMPARE(vecchio.isNull(), spostato);
        QVERIFY(!altro.isNull());
        QCOMPARE(principale->visualizzatori().size(), 2);
        QCOMPARE(contesto().PercorsoCorrente, spostato ? suo : percorso(u"altro.tvd"_s));
        QCOMPARE(archiviIn(suo), spostato ? 0 : 2);
        QCOMPARE(QFileInfo::exists(cestino(u"esempio.tvd"_s)), spostato);
        if (spostato)
            QCOMPARE(archiviIn(cestino(u"esempio.tvd"_s)), 2);
    }

    void chiusura_data()
    {
        QTest::addColumn<QString>("bottoni");
        QTest::addColumn<bool>("chiusa");
        QTest::newRow("chiudi") << u"0"_s << true;
        QTest::newRow("annulla") << u"2"_s << false;
        QTest::newRow("dalla cornice") << u"x"_s << false;
        QTest::newRow("back-up, poi annulla") << u"12"_s << false;
        QTest::newRow("back-up due volte, poi chiudi") << u"110"_s << true;
    }
    void chiusura()
    {
        QFETCH(QString, bottoni);
        for (const QChar bottone : bottoni) {
            persona->poi([bottone](QWidget *finestra) {
                QCOMPARE(finestra->windowTitle(), u"Chiudi Tarvola"_s);
                if (bottone == u'x')
                    finestra->close();
                else
                    preme(finestra, u"Command1_"_s + bottone);
            });
            // Ciò che il back-up chiede si lascia perdere.
            if (bottone == u'1')
                persona->poi([](QWidget *finestra) {
                    QVERIFY(finestra->objectName() != u"fmChiudi");
                    finestra->close();
                });
        }
        QTEST(principale->close(), "chiusa");
        QVERIFY(persona->finita());
        QTEST(!principale->isVisible(), "chiusa");
    }

    // I tasti fanno il giro di tutte; chiusa una si torna a quella da cui si veniva.
    void daUnaFinestraAllAltra()
    {
        const QList<QMdiSubWindow *> cornici = treElenchi();
        attiva();
        // All'indietro, dove l'ordine d'uso tornerebbe sui suoi passi.
        for (const int attesa : {1, 0, 2, 1}) {
            QTest::keyClick(principale.get(), Qt::Key_Backtab,
                            Qt::ControlModifier | Qt::ShiftModifier);
            QTRY_COMPARE(area()->activeSubWindow(), cornici.at(attesa));
        }
        area()->setActiveSubWindow(cornici.at(2));
        area()->setActiveSubWindow(cornici.at(1));
        QTest::keyClick(principale.get(), Qt::Key_F4, Qt::ControlModifier);
        QTRY_COMPARE(area()->activeSubWindow(), cornici.at(2));
    }

    void affiancate()
    {
        QList<QMdiSubWindow *> cornici = treElenchi();
        for (const bool colonne : {true, false}) {
            sceglie(u"&Finestre"_s,
                    colonne ? u"Affianca in verticale"_s : u"Affianca in orizzontale"_s);
            // Affiancate, non avanza nulla da scorrere.
            QTRY_COMPARE(area()->viewport()->size(), area()->maximumViewportSize());
            const QSize tutta = area()->viewport()->size();
            std::sort(cornici.begin(), cornici.end(), [&](auto *una, auto *altra) {
                return colonne ? una->x() < altra->x() : una->y() < altra->y();
            });
            for (int i = 0; i < 3; ++i)
                QCOMPARE(cornici.at(i)->geometry(),
                         colonne
                             ? QRect(tutta.width() * i / 3, 0, tutta.width() / 3, tutta.height())
                             : QRect(0, tutta.height() * i / 3, tutta.width(), tutta.height() / 3));
        }
    }

    void cascata()
    {
        QList<QMdiSubWindow *> cornici = treElenchi();
        sceglie(u"&Finestre"_s, u"Affianca in verticale"_s);
        // La finestra in uso finisce davanti, più in basso di tutte.
        area()->setActiveSubWindow(cornici.at(0));
        cornici.append(cornici.takeFirst());
        sceglie(u"&Finestre"_s, u"Cascata"_s);
        QTRY_COMPARE(cornici.at(0)->pos(), QPoint());
        QCOMPARE(area()->subWindowList(QMdiArea::StackingOrder), cornici);
        const QPoint gradino = cornici.at(1)->pos();
        QVERIFY(gradino.x() > 0 && gradino.y() > 0);
        QCOMPARE(cornici.at(2)->pos(), gradino * 2);
        for (const QMdiSubWindow *una : cornici) {
            QCOMPARE(una->size(), cornici.at(0)->size());
            QVERIFY(area()->viewport()->rect().contains(una->geometry()));
        }
    }

private:
    QList<QMdiSubWindow *> treElenchi()
    {
        QList<QMdiSubWindow *> cornici{cornice(apreEsempio())};
        for (const int volta : {1, 2}) {
            apriFile(percorso(u"esempio.tvd"_s));
            cornici.append(cornice(principale->visualizzatori().at(volta)));
        }
        return cornici;
    }
};

PROVA_CON_FINESTRE(TstFinestre)

#include "tst_finestre.moc"
