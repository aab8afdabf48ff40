#include "db/lavoro/lavoro.h"
#include "prova_elenchi.h"

#include <QComboBox>

class TstTabella : public QObject, private ProvaPrincipale
{
    Q_OBJECT

    // Anche dopo Ctrl e un clic la riga su cui si agisce è quella che si vede scelta.
    static void resiste(const fmTabella *elenco)
    {
        QTableView *righe = griglia(elenco);
        QTest::mouseClick(righe->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          righe->visualRect(righe->currentIndex()).center());
        QVERIFY(righe->selectionModel()->isSelected(righe->currentIndex()));
    }
    // Un comando che gli elenchi di voci hanno in più: dice su quale riga, e rilegge.
    static ServiziTabella conUnComandoInPiu(QString &visto)
    {
        return {{}, [&visto](const GenereElenco &genere) {
                    std::vector<ComandoElenco> suoi;
                    if (genere.livello == Livello::Voce)
                        suoi = {{u"Scheda"_s,
                                 {},
                                 Qt::Key_F6,
                                 true,
                                 [&visto](fmTabella &elenco) {
                                     visto += elenco.codiceCorrente();
                                     elenco.mostraCambiamenti(true);
                                 },
                                 [](const fmTabella &elenco) { return !elenco.vuota(); }}};
                    return suoi;
                }};
    }

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void dagliArchiviAlleVoci()
    {
        const QString suo = percorso(u"esempio.tvd"_s);
        const fmTabella *archiviAperti = apreEsempio();
        QCOMPARE(corrente(archiviAperti), u"A1"_s);
        va(archiviAperti, 1);
        QCOMPARE(contesto().ArchivioCorrente, u"A1"_s);
        resiste(archiviAperti);
        comando(archiviAperti, 1);

        fmTabella *registri = ultimo();
        QCOMPARE(contesto().ArchivioCorrente, u"A2"_s);
        QCOMPARE(registri->proprieta.VoceLocaleTabella, u"A2"_s);
        QCOMPARE(registri->windowTitle(), u"Registri File "_s + suo + u" Archivio A2"_s);
        QCOMPARE(griglia(registri)->model()->rowCount(), 2);
        QCOMPARE(contesto().RegistroCorrente, u"R2"_s);
        QCOMPARE(contesto().TipoRegistroCorrente, 10);
        // Dodici colonne: il clic sulla testata non fa nulla.
        ordina(registri, 0);
        QVERIFY(!griglia(registri)->horizontalHeader()->isSortIndicatorShown());
        comando(registri, 1);

        fmTabella *voci = ultimo();
        QCOMPARE(voci->windowTitle(), u"Voci File "_s + suo + u" Archivio A2 Registro R2"_s);
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
        QCOMPARE(cella(voci, 0, 3), u"04/03/1750"_s);
        va(voci, 1);
        QCOMPARE(voci->proprieta.VoceLocale, u"V2"_s);
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
        // Attivare un'altra finestra rende corrente la sua riga, e non tocca la voce.
        va(registri, 1);
        area()->setActiveSubWindow(cornice(registri));
        QCOMPARE(contesto().RegistroCorrente, u"R3"_s);
        QCOMPARE(contesto().TipoRegistroCorrente, 11);
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
        comando(registri, 1);
        QCOMPARE(ultimo()->windowTitle(), u"Voci File "_s + suo + u" Archivio A2 Registro R3"_s);
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
        // Senza una riga i comandi che ne vogliono una non fanno nulla.
        for (const QString &vuoto : {u"Seleziona"_s, u"Apri"_s, u"Elimina"_s})
            sceglie(u"&Voci"_s, vuoto);
    }

    // Un altro piano aggiunge i suoi comandi in fondo, dove valgono e per gli elenchi che vuole.
    void comandiAggiunti()
    {
        apreEsempio();
        QString visto;
        const ServiziTabella servizi = conUnComandoInPiu(visto);
        for (const auto &[tabella, voci] : {std::pair{u"Voci"_s, 7}, {u"Registri"_s, 5}}) {
            ProprietaTabella tutta;
            tutta.TipoTabella = tabella;
            tutta.Percorso = percorso(u"esempio.tvd"_s);
            tutta.Ordinamento = 7;
            fmTabella elenco(tutta, servizi, nullptr);
            elenco.Form_Load();
            elenco.Form_Activate();
            const auto azioni = elenco.menu().constFirst()->actions();
            QCOMPARE(azioni.size(), voci);
            if (voci == 5)
                continue;
            QVERIFY(azioni.at(5)->isSeparator());
            azioni.constLast()->trigger();
            QCOMPARE(visto, u"V1"_s);
            contesto().VoceCorrente.clear();
            persona->avviso(
                u"Operazione non riuscita:\nla riga non si legge più: aggiornare l'elenco"_s);
            esegui(u"DELETE FROM Voci"_s);
            azioni.constLast()->trigger();
            elenco.mostraCambiamenti(true);
            QVERIFY(!azioni.constLast()->isEnabled());
            QCOMPARE(visto + contesto().VoceCorrente, u"V1"_s);
        }
    }

    // Ciò che si scrive altrove compare da sé, e la riga corrente resta quella.
    void cambiamentiDaSe()
    {
        const fmTabella *tabella = apreEsempio();
        const QString prima = codici(tabella);
        griglia(tabella)->setCurrentIndex(griglia(tabella)->model()->index(1, 0));
        const QString corrente = tabella->codiceCorrente();
        const auto lavora = [](const std::function<void(Lavoro &)> &che) {
            Lavoro lavoro(connessione());
            che(lavoro);
            lavoro.conferma();
        };
        QString nuovo;
        lavora([&](Lavoro &lavoro) {
            lavoro.scrive({u"Archivi"_s, corrente, {{u"Nome"_s, u"Cambiato"_s}}});
            nuovo = lavoro.scrive({u"Archivi"_s, {}, {{u"Nome"_s, u"Nato"_s}}}).codice;
        });
        QTRY_VERIFY(codici(tabella) != prima);
        QVERIFY(codici(tabella).endsWith(nuovo));
        QCOMPARE(tabella->campoCorrente(u"Nome"_s), u"Cambiato"_s);
        lavora([&](Lavoro &lavoro) { lavoro.elimina(nuovo); });
        QTRY_COMPARE(codici(tabella), prima);
        QCOMPARE(tabella->codiceCorrente(), corrente);
    }

    void nuovoEdOrdine()
    {
        const fmTabella *tabella = apreEsempio();
        ordina(tabella, 1);
        QCOMPARE(corrente(tabella), u"A1"_s);
        QCOMPARE(cella(tabella, 0, 0) + cella(tabella, 1, 0), u"A2A1"_s);
        persona->poi([](QWidget *editore) {
            QCOMPARE(editore->windowTitle(), u"Archivio"_s);
            QCOMPARE(contesto().ArchivioCorrente, QString());
            compila(editore, u"Text1_0"_s, u"Èlia"_s);
            compila(editore, u"Text1_2"_s, u"d'Òrsi"_s);
            preme(editore, u"Command1"_s);
        });
        comando(tabella, 3);
        QCOMPARE(corrente(tabella), u"A3"_s);
        QCOMPARE(contesto().ArchivioCorrente, u"A3"_s);
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A9', 'dorotea')"_s);
        comando(tabella, 4);
        QCOMPARE(corrente(tabella), u"A3"_s);
        QString nomi;
        for (int i = 0; i < 4; ++i)
            nomi += cella(tabella, i, 1) + u' ';
        QCOMPARE(nomi, u"Anna dorotea Duomo Èlia "_s);
        // Chi rinuncia ritrova il record di prima.
        persona->poi([](QWidget *editore) { editore->close(); });
        comando(tabella, 3);
        QCOMPARE(contesto().ArchivioCorrente, u"A3"_s);
    }

    void didascaliaDellaVoce_data()
    {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("esistente");
        QTest::addColumn<QString>("nuova");
        QTest::newRow("battesimi") << 9 << u"Battesimo"_s << u"Nuovo Battesimo"_s;
        QTest::newRow("matrimoni") << 10 << u"Matrimonio"_s << u"Nuovo Matrimonio"_s;
        QTest::newRow("morti") << 11 << u"Morte"_s << u"Nuova Morte"_s;
        QTest::newRow("altro") << 12 << QString() << QString();
    }
    void didascaliaDellaVoce()
    {
        QFETCH(int, tipo);
        const fmTabella *tabella = apreEsempio();
        esegui(u"UPDATE Registri SET Tipo = ?"_s, {tipo});
        va(tabella, 1);
        comando(tabella, 1);
        comando(ultimo(), 1);
        const auto titolo = [&](int numero) {
            QString visto;
            if (tipo != 12)
                persona->poi([&visto](QWidget *editore) {
                    visto = editore->windowTitle();
                    editore->close();
                });
            comando(ultimo(), numero);
            return visto;
        };
        QTEST(titolo(2), "esistente");
        QTEST(titolo(3), "nuova");
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
    }

    void archivioDiUnRegistroNuovo_data()
    {
        QTest::addColumn<QString>("padre");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("atteso");
        QTest::newRow("dalla selezione") << u"A2"_s << u"A1"_s << u"A2"_s;
        QTest::newRow("dal menu Tabelle") << u"V1"_s << u"A1"_s << u"A1"_s;
        QTest::newRow("nessuno") << u"V1"_s << QString() << QString();
    }
    void archivioDiUnRegistroNuovo()
    {
        QFETCH(QString, padre);
        QFETCH(QString, locale);
        QFETCH(QString, atteso);
        comando(apreEsempio(), 1);
        fmTabella *registri = ultimo();
        registri->proprieta.VoceLocaleTabella = padre;
        registri->proprieta.ArchivioLocale = locale;
        if (atteso.isEmpty())
            persona->avviso(u"Un registro sta in un archivio: scegliere prima l'archivio nel suo "
                            "elenco"_s);
        else
            persona->poi([](QWidget *editore) {
                compila(editore, u"Text1_0"_s, u"Libro"_s);
                parte<QComboBox>(editore, u"ImageCombo2"_s)->setCurrentText(u"Morti"_s);
                preme(editore, u"Command1"_s);
            });
        comando(registri, 3);
        QCOMPARE(colonna(u"SELECT Archivio FROM Registri WHERE Codice = 'R4'"_s).join(u' '),
                 atteso);
    }

    void moltissimeRighe()
    {
        const fmTabella *tabella = apreEsempio();
        esegui(u"WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 2509) "
               "INSERT INTO Registri (Codice, Archivio) SELECT 'R' || i, 'A1' FROM n"_s);
        comando(tabella, 1);
        const fmTabella *registri = ultimo();
        QTRY_COMPARE(griglia(registri)->model()->rowCount(), 2501);
        QCOMPARE(cella(registri, 2500, 0), u"R2509"_s);
        QCOMPARE(corrente(registri), u"R1"_s);
    }

    void istruzioneCheFallisce()
    {
        const fmTabella *tabella = apreEsempio();
        comando(tabella, 1);
        const fmTabella *registri = ultimo();
        esegui(u"DROP TABLE Registri"_s);
        const QString guasto = u"Operazione non riuscita:\nno such table: Registri"_s;
        persona->avviso(guasto);
        comando(registri, 4);
        QCOMPARE(griglia(registri)->model()->rowCount(), 0);
        persona->avviso(guasto);
        comando(tabella, 1);
        QCOMPARE(principale->visualizzatori().size(), 2);
        persona->avviso(guasto);
        comando(registri, 4);
        comando(tabella, 4);
        QCOMPARE(griglia(tabella)->model()->rowCount(), 2);
    }
};

PROVA_CON_FINESTRE(TstTabella)

#include "tst_tabella.moc"
