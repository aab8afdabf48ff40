#include "app/MDITras.h"
#include "db/archivio/custodia.h"
#include "db/schema/versioni.h"
#include "platform/finestre/a_parte.h"
#include "prova_principale.h"

#include <QProgressDialog>
#include <QThread>

// I tre comandi che mettono al sicuro un archivio, dal menu e con le scatole vere.
class TstComandiFile : public QObject, ProvaPrincipale
{
    Q_OBJECT

    QString nellaCartella(const QString &nome) const
    {
        return shell::cartellaApplicazione() + u'/' + nome;
    }
    void scegliCartella(const QString &scelta)
    {
        persona->poi([=](QWidget *finestra) {
            auto *dialogo = qobject_cast<QFileDialog *>(finestra);
            QVERIFY(dialogo != nullptr);
            QCOMPARE(dialogo->windowTitle(), u"Selezionare dove salvare l'archivio"_s);
            batteNome(dialogo, scelta);
        });
    }
    void sovrascrive(bool si)
    {
        persona->domanda(u"un file con questo nome è già presente, si desidera sovrascriverlo?"_s,
                         si);
    }
    // Una scatola il cui testo comincia così; il seguito dice il motivo.
    void nonRiuscito(const QString &inizio)
    {
        persona->poi([=](QWidget *finestra) {
            auto *scatola = qobject_cast<QMessageBox *>(finestra);
            QVERIFY(scatola != nullptr);
            QVERIFY2(scatola->text().startsWith(inizio + u'\n') &&
                         scatola->text().size() > inizio.size() + 5,
                     qPrintable(scatola->text()));
            QTest::mouseClick(scatola->button(QMessageBox::Ok), Qt::LeftButton);
        });
    }

    QStringList comeSono() const
    {
        QStringList visti;
        for (const fmTabella *uno : principale->visualizzatori())
            visti.append(uno->windowTitle() + u' ' + cella(uno, 0, 0) + corrente(uno) +
                         QString::number(griglia(uno)->model()->columnCount()));
        return visti;
    }
    // Tre back-up sullo stesso nome: il primo lo trova libero, poi si dice di no, poi di sì.
    void sovrascriveLaCopia(const QString &file, const QString &copia)
    {
        for (const bool si : {true, false, true}) {
            const bool esiste = QFileInfo::exists(copia);
            batteFile(u"Back-up"_s, file);
            inUso(file, true);
            scegliCartella(percorso(u"copie"_s));
            if (esiste)
                sovrascrive(si);
            persona->avviso(si ? u"Back-up riuscito"_s : u"Back-up annullato"_s);
            if (esiste)
                scrive(copia, "vecchia");
            sceglie(u"&File"_s, u"Back up"_s);
            QCOMPARE(QFileInfo(copia).size() > 100, si);
        }
    }

private slots:
    void init()
    {
        comincia();
        for (const QString &nome : {u"esempio.tvd"_s, u"altro.tvd"_s})
            QFile::remove(nellaCartella(nome));
    }
    void cleanup() { finisce(); }

    void compattaUnFileAperto()
    {
        apreEsempio();
        const QString file = percorso(u"esempio.tvd"_s);
        const QString altro = percorso(u"altro.tvd"_s);
        creaModello(altro);
        apriFile(altro);
        QCOMPARE(principale->visualizzatori().size(), 2);
        batteFile(u"Compatta/ripara un file"_s, file);
        avvertimentoSpostamento(file, true);
        inUso(file, true);
        rinominato(file, cestino(u"esempio.tvd"_s));
        persona->avviso(u"Compressione/riparazione riuscita"_s);
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        // Se ne va il visualizzatore del file, resta quello dell'altro.
        QCOMPARE(principale->visualizzatori().size(), 1);
        QCOMPARE(archiviIn(cestino(u"esempio.tvd"_s)), 2);
        QCOMPARE(archiviIn(file), 2);
        // Il file non si riapre da sé, ma chi vuole ne ritrova gli elenchi.
        sceglie(u"&File"_s, u"Riapri gli elenchi chiusi"_s);
        QCOMPARE(ultimo()->windowTitle(), u"Archivi File "_s + file);
        sceglie(u"&File"_s, u"Riapri gli elenchi chiusi"_s);
        QCOMPARE(principale->visualizzatori().size(), 2);
    }

    void compattaSiFermaAOgniRisposta()
    {
        apreEsempio();
        const QString file = percorso(u"esempio.tvd"_s);
        batteFile(u"Compatta/ripara un file"_s, {});
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        // Il nome si può battere senza estensione.
        batteFile(u"Compatta/ripara un file"_s, percorso(u"esempio"_s));
        avvertimentoSpostamento(file, false);
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        batteFile(u"Compatta/ripara un file"_s, file);
        avvertimentoSpostamento(file, true);
        inUso(file, false);
        persona->avviso(u"Errore nella chiusura del database"_s);
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        QCOMPARE(principale->visualizzatori().size(), 1);
        QVERIFY(!QFileInfo::exists(cestino(u"esempio.tvd"_s)));
    }

    void compattaDiceCheCosaNonVa()
    {
        const QString file = percorso(u"rotto.tvd"_s);
        scrive(file, "nulla che si legga");
        batteFile(u"Compatta/ripara un file"_s, file);
        avvertimentoSpostamento(file, true);
        nonRiuscito(u"Compressione/riparazione non riuscita"_s);
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        QVERIFY(!QFileInfo::exists(cestino(u"rotto.tvd"_s)));
        // Un file che nel frattempo ha perduto il nome lo riprende quando lo si cerca.
        const QString senzaNome = nellaCartella(u".altro.tvd.scambio-999999999-0"_s);
        creaModello(senzaNome);
        batteFile(u"Compatta/ripara un file"_s, {});
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        QCOMPARE(archiviIn(nellaCartella(u"altro.tvd"_s)), 0);
        QVERIFY(!QFileInfo::exists(senzaNome));
        // Una cartella che non si può fare.
        QDir().rmdir(cestino({}));
        scrive(shell::cartellaApplicazione() + u"/Cestino"_s, {});
        creaModello(percorso(u"sano.tvd"_s));
        batteFile(u"Compatta/ripara un file"_s, percorso(u"sano.tvd"_s));
        avvertimentoSpostamento(percorso(u"sano.tvd"_s), true);
        persona->avviso(u"Trasferimeto fallito del file"_s + percorso(u"sano.tvd"_s));
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        QFile::remove(shell::cartellaApplicazione() + u"/Cestino"_s);
        QCOMPARE(archiviIn(percorso(u"sano.tvd"_s)), 0);
    }

    void compattaDiceLePerdite()
    {
        apreEsempio();
        const QString file = percorso(u"esempio.tvd"_s);
        const qint64 pagina =
            legge(u"SELECT rootpage FROM sqlite_schema WHERE name = 'Voci'"_s).toLongLong();
        connessione().Close();
        QFile rotto(file);
        QVERIFY(rotto.open(QIODevice::ReadWrite) && rotto.seek((pagina - 1) * 4096));
        rotto.write(QByteArray(4096, 'z'));
        rotto.close();
        batteFile(u"Compatta/ripara un file"_s, file);
        avvertimentoSpostamento(file, true);
        rinominato(file, cestino(u"esempio.tvd"_s));
        persona->avviso(u"Il file era danneggiato: è stato riparato, recuperando tutto "
                        "ciò che si leggeva ancora.\nRecord perduti:\nVoci: 3"_s);
        persona->avviso(u"Compressione/riparazione riuscita"_s);
        sceglie(u"&File"_s, u"Compatta e ripristina"_s);
        QCOMPARE(archiviIn(file), 2);
    }

    void backUp()
    {
        const fmTabella *primo = apreEsempio();
        ordina(primo, 1);
        va(primo, 1);
        comando(primo, 1);
        ProprietaTabella tutti;
        tutti.TipoTabella = u"Individui"_s;
        tutti.Percorso = primo->proprieta.Percorso;
        tutti.Ordinamento = 15;
        principale->apre(tutti);
        cornice(ultimo())->setGeometry(40, 50, 400, 300);
        const QStringList prima = comeSono();
        QCOMPARE(prima.size(), 3);
        const QString file = percorso(u"esempio.tvd"_s);
        const QString copia = percorso(u"copie/esempio.tvd"_s);
        QVERIFY(QDir().mkdir(percorso(u"copie"_s)));
        batteFile(u"Back-up"_s, file);
        inUso(file, true);
        scegliCartella({});
        sceglie(u"&File"_s, u"Back up"_s);
        // Ciò che si è chiuso torna com'era: ambito, ordine, riga, posto.
        QCOMPARE(comeSono(), prima);
        QCOMPARE(cornice(ultimo())->geometry(), QRect(40, 50, 400, 300));
        QCOMPARE(area()->activeSubWindow(), cornice(ultimo()));
        sovrascriveLaCopia(file, copia);
    }

    void backUpDiceCheCosaNonVaELasciaRiprovare()
    {
        const QString file = percorso(u"esempio.tvd"_s);
        creaModello(file);
        QVERIFY(QDir().mkpath(percorso(u"copie"_s)));
        auto altro = std::make_unique<Aparte>(file);
        altro->esegui(u"BEGIN IMMEDIATE"_s);
        batteFile(u"Back-up"_s, file);
        scegliCartella(percorso(u"copie"_s));
        // Prima di arrendersi aspetta più di un momento, e lo mostra.
        persona->lasciaLavorare = false;
        persona->poi([this](QWidget *finestra) {
            QCOMPARE(finestra->objectName(), u"Avanzamento"_s);
            finestra->hide();
            persona->lasciaLavorare = true;
        });
        persona->poi([&](QWidget *finestra) {
            auto *scatola = qobject_cast<QMessageBox *>(finestra);
            if (scatola == nullptr)
                QFAIL(qPrintable(finestra->objectName()));
            QVERIFY(scatola->text().startsWith(
                u"Back-up non riuscito\nil file è bloccato da un altro programma"_s));
            altro.reset();
            QTest::mouseClick(scatola->button(QMessageBox::Retry), Qt::LeftButton);
        });
        persona->avviso(u"Back-up riuscito"_s);
        sceglie(u"&File"_s, u"Back up"_s);
        QCOMPARE(archiviIn(percorso(u"copie/esempio.tvd"_s)), 0);
    }

    void recupera()
    {
        apreEsempio();
        const QString scelto = percorso(u"esempio.tvd"_s);
        const QString arrivo = nellaCartella(u"esempio.tvd"_s);
        batteFile(u"Recupera"_s, scelto);
        inUso(scelto, true);
        persona->avviso(u"Recupero riuscito"_s);
        sceglie(u"&File"_s, u"Recupera"_s);
        QCOMPARE(archiviIn(arrivo), 2);
        // Il file che sta al suo posto è aperto: si chiede di chiudere anche lui.
        apriFile(arrivo);
        esegui(u"DELETE FROM Archivi"_s);
        batteFile(u"Recupera"_s, scelto);
        sovrascrive(false);
        persona->avviso(u"Recupero annullato"_s);
        sceglie(u"&File"_s, u"Recupera"_s);
        batteFile(u"Recupera"_s, scelto);
        sovrascrive(true);
        inUso(arrivo, true);
        persona->avviso(u"Recupero riuscito"_s);
        sceglie(u"&File"_s, u"Recupera"_s);
        QVERIFY(principale->visualizzatori().isEmpty());
        QCOMPARE(archiviIn(arrivo), 2);
        // Sé stesso: non c'è nulla da copiare, e nulla cambia.
        const QDateTime prima = QFileInfo(arrivo).lastModified();
        batteFile(u"Recupera"_s, arrivo);
        sovrascrive(true);
        persona->avviso(u"Recupero riuscito"_s);
        sceglie(u"&File"_s, u"Recupera"_s);
        QCOMPARE(QFileInfo(arrivo).lastModified(), prima);
        QCOMPARE(archiviIn(arrivo), 2);
        // Un file che non è un archivio non prende il posto di uno buono.
        scrive(percorso(u"esempio.tvd"_s), QByteArray(9000, 'k'));
        batteFile(u"Recupera"_s, scelto);
        sovrascrive(true);
        nonRiuscito(u"Recupero non riuscito"_s);
        sceglie(u"&File"_s, u"Recupera"_s);
        QCOMPARE(archiviIn(arrivo), 2);
    }

    // La finestra d'avanzamento compare solo dopo un momento, è viva, e chi la annulla è ascoltato.
    void unLavoroLungoSiVedeESiFerma()
    {
        int giri = 0;
        QTimer orologio;
        connect(&orologio, &QTimer::timeout, this, [&giri] { ++giri; });
        orologio.start(10);
        avanzamento::compieAParte(principale.get(), u"breve"_s, [](const avanzamento::Passo &) {});
        persona->lasciaLavorare = false;
        persona->poi([](QWidget *finestra) {
            auto *dialogo = qobject_cast<QProgressDialog *>(finestra);
            QVERIFY(dialogo != nullptr);
            QTRY_VERIFY(dialogo->value() > 0);
            QTest::mouseClick(dialogo->findChild<QPushButton *>(), Qt::LeftButton);
        });
        const auto lungo = [](const avanzamento::Passo &passo) {
            for (qint64 fatto = 0;; ++fatto) {
                provvisorio::avanza(passo, fatto, 10000);
                QThread::msleep(2);
            }
        };
        const ado::Errore fermato =
            errore([&] { avanzamento::compieAParte(principale.get(), u"lungo"_s, lungo); });
        QCOMPARE(fermato.causa(), ado::Causa::Interrotto);
        QVERIFY(persona->finita());
        QVERIFY(giri > 0);
    }
};

PROVA_CON_FINESTRE(TstComandiFile)

#include "tst_comandi_file.moc"
