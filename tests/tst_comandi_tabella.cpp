#include "contesto/finestre.h"
#include "prova_elenchi.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>

namespace
{

const QString sparita =
    u"Operazione non riuscita:\nla riga non si legge più: aggiornare l'elenco"_s;

QString avvertimentoPer(const QString &file)
{
    return u"Attenzione! Eliminando questa voce saranno, anche, \n"
           "eliminate TUTTE le voci ad essa collegate. Procedere?\n"
           "Si consiglia di annullare l'operazione e di effettuare, prima,\n"
           "un back-up dell'archivio\n"_s +
           file;
}

} // namespace

class TstComandiTabella : public QObject, private ProvaElenchi
{
    Q_OBJECT

private slots:
    void init()
    {
        comincia();
        QDir(shell::cartellaApplicazione() + u"/File"_s).removeRecursively();
    }
    void cleanup() { finisce(); }

    void apreUnDipendente_data()
    {
        QTest::addColumn<QString>("finestra");
        QTest::addColumn<QString>("titolo");
        QTest::addColumn<QString>("codici");
        QTest::newRow("Individui") << u"fmIndividuo"_s << u"Individuo"_s << u"I1|||V1|0|3"_s;
        QTest::newRow("Famiglie") << u"fmFamiglia"_s << u"Famiglia"_s << u"|F1||V1|0|3"_s;
        QTest::newRow("Eventi") << u"fmEvento"_s << u"Sepoltura"_s << u"||E1|V1|27|3"_s;
    }
    void apreUnDipendente()
    {
        QFETCH(QString, finestra);
        esempio();
        const QString tabella = QString::fromUtf8(QTest::currentDataTag());
        fmTabella *tutti = elenco(tabella);
        tutti->proprieta.ConOperatore = u"O7"_s;
        const QString prima = correnti();
        persona->poi([&](QWidget *aperta) {
            QCOMPARE(aperta->objectName(), finestra);
            QTEST(aperta->windowTitle(), "titolo");
            const auto *editore = qobject_cast<FinestraEditor *>(aperta);
            QVERIFY(FinestreAperte() == std::vector{const_cast<FinestraEditor *>(editore)});
            const ProprietaFinestra &sue = editore->proprieta;
            QTEST((QStringList{sue.IndividuoLocale, sue.FamigliaLocale, sue.EventoLocale,
                               sue.VoceLocale, QString::number(sue.EventoLocaleTipo),
                               QString::number(sue.TipoLock)}
                       .join(u'|')),
                  "codici");
            QCOMPARE(sue.ConOperatore, u"O7"_s);
            QCOMPARE(sue.Percorso, tutti->proprieta.Percorso);
            if (tabella == u"Eventi") {
                QCOMPARE(parte<QLabel>(aperta, u"Label2"_s)->text(), u"Sepoltura"_s);
                QCOMPARE(contesto().EventoCorrente, u"E1"_s);
            }
            aperta->close();
        });
        comando(tutti, 2);
        QVERIFY(FinestreAperte().empty());
        QCOMPARE(correnti(), prima);
    }

    void apreUnTesto_data()
    {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("didascalia");
        QTest::addColumn<QString>("battuto");
        QTest::addColumn<QString>("conservato");
        QTest::addColumn<QString>("mostrato");
        QTest::newRow("nota") << 12 << u"Nota"_s << u"È nato\nieri"_s << u"È nato\nieri|sua"_s
                              << u"È nato|sua"_s;
        QTest::newRow("solo spazi")
            << 13 << u"Testo riportato"_s << u"  "_s << u"antico|titolo"_s << u"antico|titolo"_s;
    }
    void apreUnTesto()
    {
        QFETCH(int, tipo);
        QFETCH(QString, battuto);
        esempio();
        esegui(u"UPDATE Binari SET Tipo = ? WHERE Codice = 'B1'"_s, {tipo});
        const fmTabella *testi = elenco(u"Binari"_s);
        persona->poi([&](QWidget *finestra) {
            QTEST(finestra->windowTitle(), "didascalia");
            auto *testo = parte<QPlainTextEdit>(finestra, u"Text1"_s);
            QCOMPARE(testo->toPlainText(), u"antico"_s);
            testo->selectAll();
            QTest::keyClick(testo, Qt::Key_Delete);
            batte(testo, battuto);
            compila(finestra, u"Text2"_s, u"sua"_s);
            preme(finestra, u"Command1"_s);
            preme(finestra, u"Command4"_s);
        });
        if (battuto.trimmed().isEmpty())
            persona->avviso(u"Impossibile salvare un testo vuoto"_s);
        comando(testi, 2);
        QTEST(
            legge(u"SELECT Campolungo || '|' || Nome FROM Binari WHERE Codice = 'B1'"_s).toString(),
            "conservato");
        // L'elenco è già riletto.
        QTEST(cella(testi, 0, 4) + u'|' + cella(testi, 0, 3), "mostrato");
    }

    // Una copia sta nella cartella dei file aperti, mai accanto al programma.
    void apreUnFile()
    {
        esempio();
        esegui(u"UPDATE Binari SET Nome = 'qt.conf' WHERE Codice = 'B2'"_s);
        const fmTabella *oggetti = elenco(u"Binari"_s);
        va(oggetti, 1);
        comando(oggetti, 2);
        const QString qui = shell::cartellaApplicazione();
        QVERIFY(!QFile::exists(qui + u"/qt.conf"_s));
        QCOMPARE(byteDi(qui + u"/File/qt.conf.allegato"_s), "\x01\x02"_ba);
    }

    void elimina_data()
    {
        // I codici che restano, tolto il primo.
        QTest::addColumn<QString>("rimasti");
        QTest::newRow("Archivi") << u"A2"_s;
        QTest::newRow("Registri") << u"R2 R3"_s;
        QTest::newRow("Voci") << u"V2 V3"_s;
        QTest::newRow("Individui") << u"I2"_s;
        QTest::newRow("Famiglie") << u"F2"_s;
        QTest::newRow("Eventi") << u"E2"_s;
        QTest::newRow("Binari") << u"B2"_s;
    }
    // Un altro elenco lo mostra da sé; una riga tolta da un altro programma si vede ancora, ma non
    // si usa più.
    void elimina()
    {
        QFETCH(QString, rimasti);
        esempio();
        const QString tabella = QString::fromUtf8(QTest::currentDataTag());
        const fmTabella *vecchio = elenco(tabella);
        const fmTabella *tutti = elenco(tabella);
        const QString prima = codici(tutti);
        const QString avvertimento = avvertimentoPer(percorso(u"esempio.tvd"_s));
        for (const bool procede : {false, true}) {
            persona->avvertimento(avvertimento, procede);
            comando(tutti, 5);
            QCOMPARE(codici(tutti), procede ? rimasti : prima);
            QCOMPARE(colonna(u"SELECT Codice FROM "_s + tabella).join(u' '), codici(tutti));
        }
        QCOMPARE(griglia(tutti)->currentIndex().row(), 0);
        QTRY_COMPARE(codici(vecchio), rimasti);
        esegui(u"DELETE FROM %1 WHERE Codice = ?"_s.arg(tabella), {rimasti.section(u' ', 0, 0)});
        const auto finestre = principale->visualizzatori().size();
        lavoraSu(u"A8"_s, u"R8"_s, u"V8"_s);
        contesto().EventoCorrente = u"E8"_s;
        const bool siSeleziona = tabella == u"Archivi" || tabella == u"Registri";
        for (const int numero : siSeleziona ? QList{1, 2, 5} : QList{2, 5}) {
            persona->avviso(sparita);
            comando(vecchio, numero);
        }
        QCOMPARE(principale->visualizzatori().size(), finestre);
        QCOMPARE(correnti() + contesto().EventoCorrente, u"A8 R8 V8E8"_s);
        comando(vecchio, 4);
        QCOMPARE(codici(vecchio), rimasti.section(u' ', 1));
    }

    // Si lavora nel file dell'elenco, con chi è entrato in quello, non nell'ultimo aperto.
    void fileEOperatoreDellElenco()
    {
        fmTabella *primo = apreEsempio();
        esegui(u"INSERT INTO Operatori (Codice) VALUES ('O1'), ('O2')"_s);
        primo->proprieta.ConOperatore = u"O2"_s;
        apreEsempio(u"altro.tvd"_s);
        esegui(u"INSERT INTO Operatori (Codice) VALUES ('O1'), ('O2')"_s);
        contesto().OperatoreCorrente = u"O1"_s;
        comando(primo, 1);
        persona->avvertimento(avvertimentoPer(percorso(u"altro.tvd"_s)), true);
        comando(ultimo(), 5);
        QCOMPARE(colonna(u"SELECT Codice FROM Operatori"_s), QStringList(u"O2"_s));
        QCOMPARE(righe(u"Registri"_s), 2);
        ApriArchivio(percorso(u"altro.tvd"_s));
        QCOMPARE(righe(u"Operatori"_s), 2);
        QCOMPARE(righe(u"Registri"_s), 3);
        persona->poi([](QWidget *editore) {
            compila(editore, u"Text1_0"_s, u"Pieve"_s);
            preme(editore, u"Command1"_s);
        });
        comando(primo, 3);
        QCOMPARE(codici(primo), u"A1 A2 A3"_s);
        QCOMPARE(archiviIn(percorso(u"altro.tvd"_s)), 2);
    }

    // Un record nuovo può prendere il posto di uno eliminato: il comando non tocca lui.
    void postoDiUnAltro()
    {
        esempio();
        const fmTabella *vecchio = elenco(u"Registri"_s);
        va(vecchio, 2);
        const int chiave = legge(u"SELECT rowid FROM Registri WHERE Codice = 'R3'"_s).toInt();
        esegui(u"DELETE FROM Registri WHERE Codice = 'R3'"_s);
        esegui(u"INSERT INTO Registri (Codice, Archivio) VALUES ('R4', 'A1')"_s);
        QCOMPARE(legge(u"SELECT rowid FROM Registri WHERE Codice = 'R4'"_s).toInt(), chiave);
        persona->avviso(sparita);
        comando(vecchio, 5);
        QCOMPARE(righe(u"Registri"_s), 3);
        QCOMPARE(cella(vecchio, 2, 0), u"R4"_s);
    }

    void registroDiUnaVoceNuova()
    {
        fmTabella *archiviAperti = apreEsempio();
        persona->poi([](QWidget *finestra) {
            parte<QRadioButton>(finestra, u"Option1_1"_s)->click();
            preme(finestra, u"Command1"_s);
        });
        tabelle(archiviAperti, 3);
        const fmTabella *voci = ultimo();
        va(voci, 2);
        // Il registro guardato per ultimo non conta.
        contesto().RegistroCorrente = u"R3"_s;
        contesto().TipoRegistroCorrente = 11;
        persona->poi([&](QWidget *finestra) {
            const auto &sue = qobject_cast<FinestraEditor *>(finestra)->proprieta;
            QCOMPARE(finestra->windowTitle(), u"Nuovo Battesimo"_s);
            QCOMPARE(sue.RegistroLocale, u"R1"_s);
            QCOMPARE(sue.VoceLocaleTipo, 9);
            finestra->close();
        });
        comando(voci, 3);
        // Senza righe non c'è un registro cui darla.
        esegui(u"DELETE FROM Voci"_s);
        comando(voci, 4);
        contesto().VoceCorrente = u"V8"_s;
        persona->avviso(u"Una voce sta in un registro: scegliere prima il registro nel suo "
                        "elenco"_s);
        comando(voci, 3);
        QCOMPARE(contesto().VoceCorrente, u"V8"_s);
    }
};

PROVA_CON_FINESTRE(TstComandiTabella)

#include "tst_comandi_tabella.moc"
