#include "prova_principale.h"

#include <QMenu>
#include <QPlainTextEdit>

// I comandi dei visualizzatori, su elenchi di ogni tabella.
class TstComandiTabella : public QObject, private ProvaPrincipale
{
    Q_OBJECT

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void statoDiOgniElenco_data()
    {
        QTest::addColumn<QString>("tabella");
        QTest::addColumn<QString>("piena");
        QTest::addColumn<QString>("vuota");
        QTest::addColumn<QString>("titolo");
        QTest::newRow("registri") << u"Registri"_s << u"SANGE"_s << u"saNge"_s << u" Archivio A1"_s;
        QTest::newRow("voci") << u"Voci"_s << u"sANGE"_s << u"saNge"_s
                              << u" Archivio A1 Registro R1"_s;
        const QString dipendente = u" Archivio A1 Registro R1 Voce V3"_s;
        for (const QString &tabella : {u"Individui"_s, u"Famiglie"_s, u"Eventi"_s, u"Binari"_s})
            QTest::newRow(qUtf8Printable(tabella))
                << tabella << u"sAnGE"_s << u"sange"_s << dipendente;
    }
    void statoDiOgniElenco()
    {
        QFETCH(QString, tabella);
        riempie();
        contesto().ArchivioCorrente = u"A1"_s;
        contesto().RegistroCorrente = u"R1"_s;
        contesto().VoceCorrente = u"V3"_s;
        const fmTabella *elenco = apre(tabella);
        QTEST(barra(elenco), "piena");
        QTEST(
            elenco->windowTitle().mid((tabella + u" File "_s + elenco->proprieta.Percorso).size()),
            "titolo");
        esegui(u"DELETE FROM "_s + tabella);
        comando(elenco, 4);
        QTEST(barra(elenco), "vuota");
        // Senza righe i comandi di riga, dal menu, non fanno nulla.
        for (const QString &comando : {u"Seleziona"_s, u"Apri"_s, u"Elimina"_s})
            azione(elenco, comando)->trigger();
        QCOMPARE(ultimo(), elenco);
    }

    void apreIDipendenti_data()
    {
        QTest::addColumn<QString>("tabella");
        QTest::addColumn<QString>("finestra");
        QTest::addColumn<QString>("titolo");
        QTest::newRow("individuo") << u"Individui"_s << u"fmIndividuo"_s << u"Individuo"_s;
        QTest::newRow("famiglia") << u"Famiglie"_s << u"fmFamiglia"_s << u"Famiglia"_s;
        QTest::newRow("evento") << u"Eventi"_s << u"fmEvento"_s << u"Nascita"_s;
        QTest::newRow("testo") << u"Binari"_s << u"fmTxtL"_s << u"Testo riportato"_s;
    }
    void apreIDipendenti()
    {
        QFETCH(QString, tabella);
        riempie();
        const fmTabella *elenco = apre(tabella);
        QString nome;
        QString titolo;
        persona->poi([&](QWidget *finestra) {
            nome = finestra->objectName();
            titolo = finestra->windowTitle();
            finestra->close();
        });
        comando(elenco, 2);
        QTEST(nome, "finestra");
        QTEST(titolo, "titolo");
    }

    void testoDallElenco()
    {
        riempie();
        const fmTabella *elenco = apre(u"Binari"_s);
        const auto scrive = [this](const QString &testo) {
            persona->poi([testo](QWidget *finestra) {
                parte<QPlainTextEdit>(finestra, u"Text1"_s)->setPlainText(testo);
                preme(finestra, u"Command1"_s);
                preme(finestra, u"Command4"_s);
            });
        };
        scrive(u"Nacque perché"_s);
        comando(elenco, 2);
        QCOMPARE(legge(u"SELECT Campolungo FROM Binari WHERE Codice = 'B1'"_s).toString(),
                 u"Nacque perché"_s);
        scrive(u"  "_s);
        persona->avviso(u"Impossibile salvare un testo vuoto"_s);
        comando(elenco, 2);
        QCOMPARE(legge(u"SELECT Campolungo FROM Binari WHERE Codice = 'B1'"_s).toString(),
                 u"Nacque perché"_s);
    }

    // Un file va nella cartella dell'applicazione; i nomi che il programma usa non vi si scrivono.
    void fileDallElenco_data()
    {
        QTest::addColumn<QString>("nome");
        QTest::addColumn<bool>("rifiutato");
        QTest::newRow("scansione") << u"carta è.bin"_s << false;
        QTest::newRow("modello") << u"Tarvola.mod"_s << true;
        QTest::newRow("giornale") << u"esempio.tvd-journal"_s << true;
    }
    void fileDallElenco()
    {
        QFETCH(QString, nome);
        QFETCH(bool, rifiutato);
        riempie();
        esegui(u"UPDATE Binari SET Tipo = 14, Nome = ?, Campolungo = x'00ff'"_s, {nome});
        const fmTabella *elenco = apre(u"Binari"_s);
        const QString suo = shell::cartellaApplicazione() + u'/' + nome;
        QFile::remove(suo);
        if (rifiutato)
            persona->avviso(u"Operazione non riuscita:\nil file "_s + suo +
                            u" non va sostituito con un allegato"_s);
        comando(elenco, 2);
        QCOMPARE(QFile::exists(suo), !rifiutato);
        if (rifiutato)
            return;
        scriveFile(suo, "altro");
        for (const bool si : {false, true}) {
            persona->domanda(u"Il file "_s + nome + u"\nè già presente nella cartella "_s +
                                 shell::cartellaApplicazione() +
                                 u"\nSi per sovrascriverlo No per aprire il file esistente"_s,
                             si);
            comando(elenco, 2);
            QCOMPARE(QFileInfo(suo).size(), si ? 2 : 5);
        }
        QFile::remove(suo);
    }

    // Chi lavora in quell'archivio resta, anche se non ha legami e altrove lavora un altro.
    void eliminaDallElenco()
    {
        fmTabella *elenco = apreEsempio();
        esegui(u"INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O1', 'Ada', 42), "
               "('O2', 'Ugo', 42)"_s);
        elenco->proprieta.ConOperatore = u"O1"_s;
        apreEsempio(u"altro.tvd"_s);
        contesto().OperatoreCorrente = u"O2"_s;
        principale->findChild<QMdiArea *>()->setActiveSubWindow(cornice(elenco));
        va(elenco, 1);
        const QString avvertimento =
            u"Attenzione! Eliminando questa voce saranno, anche, \n"
            "eliminate TUTTE le voci ad essa collegate. Procedere?\n"
            "Si consiglia di annullare l'operazione e di effettuare, prima,\n"
            "un back-up dell'archivio\n"_s +
            contesto().PercorsoCorrente;
        for (const bool riprova : {false, true}) {
            persona->avvertimento(avvertimento, riprova);
            comando(elenco, 5);
            QCOMPARE(righe(u"Archivi"_s), riprova ? 1 : 2);
        }
        QCOMPARE(griglia(elenco)->model()->rowCount(), 1);
        QCOMPARE(colonna(u"SELECT Codice FROM Registri"_s), QStringList(u"R1"_s));
        QCOMPARE(colonna(u"SELECT Codice FROM Operatori"_s), QStringList(u"O1"_s));
    }

    // Una riga eliminata da un'altra finestra non apre un record nuovo.
    void rigaSparita()
    {
        const fmTabella *elenco = apreEsempio();
        esegui(u"DELETE FROM Archivi WHERE Codice = 'A2'"_s);
        contesto().ArchivioCorrente = u"A1"_s;
        griglia(elenco)->setCurrentIndex(griglia(elenco)->model()->index(1, 0));
        for (const int numero : {1, 2, 5}) {
            persona->avviso(
                u"Operazione non riuscita:\nla riga non si legge più: aggiornare l'elenco"_s);
            comando(elenco, numero);
        }
        QCOMPARE(contesto().ArchivioCorrente, u"A1"_s);
        QCOMPARE(ultimo(), elenco);
        comando(elenco, 4);
        QCOMPARE(griglia(elenco)->model()->rowCount(), 1);
    }

    // Senza un registro suo l'elenco delle voci usa quello della riga, mai quello di altri file.
    void voceNuovaSenzaRegistro()
    {
        apreEsempio();
        contesto().RegistroCorrente = u"R3"_s;
        const fmTabella *voci = apre(u"Voci"_s, {});
        va(voci, 2);
        persona->poi([](QWidget *editore) {
            QCOMPARE(editore->windowTitle(), u"Nuovo Battesimo"_s);
            compila(editore, u"Text1_0"_s, u"IV"_s);
            preme(editore, u"Command1"_s);
        });
        comando(voci, 3);
        QCOMPARE(legge(u"SELECT Registro FROM Voci WHERE Volume = 'IV'"_s).toString(), u"R1"_s);
        esegui(u"DELETE FROM Voci"_s);
        comando(voci, 4);
        persona->avviso(u"Una voce sta in un registro: scegliere prima il registro nel suo "
                        "elenco"_s);
        comando(voci, 3);
    }

    void mostraECascata()
    {
        const fmTabella *primo = apreEsempio(u"a&b.tvd"_s);
        apriFile(percorso(u"a&b.tvd"_s));
        QStringList nomi;
        QTimer::singleShot(100, principale.get(), [&nomi] {
            auto *elenco = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(elenco != nullptr);
            nomi = didascalie(elenco->actions());
            elenco->setActiveAction(elenco->actions().constFirst());
            QTest::keyClick(elenco, Qt::Key_Return);
        });
        sceglie(u"&Finestre"_s, u"Mostra"_s);
        QTRY_COMPARE(principale->findChild<QMdiArea *>()->activeSubWindow(), cornice(primo));
        QCOMPARE(nomi, QStringList(2, u"Archivi File "_s + percorso(u"a&&b.tvd"_s)));
        sceglie(u"&Finestre"_s, u"Cascata"_s);
        QTRY_VERIFY(cornice(primo)->pos().x() > cornice(ultimo())->pos().x() &&
                    cornice(primo)->pos().y() > cornice(ultimo())->pos().y());
    }

    // "Campolungo" non si ordina: il segno resta dov'è.
    void segnoDellOrdine()
    {
        riempie();
        const fmTabella *elenco = apre(u"Binari"_s, {});
        const QHeaderView *testata = griglia(elenco)->horizontalHeader();
        ordina(elenco, 4);
        QVERIFY(!testata->isSortIndicatorShown());
        ordina(elenco, 3);
        ordina(elenco, 4);
        QCOMPARE(testata->sortIndicatorSection(), 3);
        QVERIFY(testata->isSortIndicatorShown());
    }

private:
    // All'esempio si aggiungono una persona con la nascita, la sua famiglia e un testo.
    void riempie()
    {
        apreEsempio();
        esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V3', 'Galileo', "
               "1)"_s);
        esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V3', 35)"_s);
        esegui(u"INSERT INTO FamiglieGenitori VALUES ('F1', 'I1')"_s);
        esegui(u"INSERT INTO Eventi (Codice, IdProprietario, Tipo) VALUES ('E1', 'I1', 20)"_s);
        esegui(u"INSERT INTO Binari VALUES ('B1', 13, 'V3', 'titolo', 'Nacque')"_s);
    }
    // Di un elenco chiesto dal menu Tabelle, in ambito 7 se il registro è vuoto.
    fmTabella *apre(const QString &tabella, const QString &registro = u"R1"_s)
    {
        ProprietaTabella proprieta;
        proprieta.TipoTabella = tabella;
        proprieta.Percorso = percorso(u"esempio.tvd"_s);
        proprieta.Ordinamento = registro.isEmpty() ? 7 : 0;
        proprieta.ArchivioLocale = u"A1"_s;
        proprieta.RegistroLocale = registro;
        proprieta.VoceLocale = u"V3"_s;
        proprieta.VoceLocaleTabella = u"A1"_s;
        principale->apre(proprieta);
        return ultimo();
    }
    static QAction *azione(const fmTabella *elenco, const QString &nome)
    {
        for (QAction *una : elenco->menu().at(1)->actions()) {
            if (una->text() == nome)
                return una;
        }
        qFatal("manca il comando %s", qPrintable(nome));
    }
};

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstComandiTabella prove;
    return QTest::qExec(&prove, argc, argv);
}

#include "tst_comandi_tabella.moc"
