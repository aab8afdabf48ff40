#include "app/avvio.h"
#include "app/contesto.h"
#include "app/MDITras.h"
#include "comune.h"
#include "persona.h"
#include "platform/shell.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTableView>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace modTarvola;

namespace
{

QString modello()
{
    return shell::cartellaApplicazione() + u"/tarvola.mod"_s;
}

QString cestino(const QString &nome)
{
    return shell::cartellaApplicazione() + u"/Cestino/"_s + nome;
}

void scriveFile(const QString &percorso, const QByteArray &contenuto)
{
    QFile file(percorso);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contenuto);
}

QStringList didascalie(const QList<QAction *> &azioni)
{
    QStringList testi;
    for (const QAction *azione : azioni)
        testi.append(azione->text());
    return testi;
}

QTableView *griglia(const fmTabella *tabella)
{
    return parte<QTableView>(tabella, u"DataGrid1"_s);
}

QString cella(const fmTabella *tabella, int riga, int colonna)
{
    return griglia(tabella)->model()->index(riga, colonna).data().toString();
}

QString corrente(const fmTabella *tabella)
{
    return cella(tabella, griglia(tabella)->currentIndex().row(), 0);
}

void va(const fmTabella *tabella, int riga)
{
    QTest::mouseClick(
        griglia(tabella)->viewport(), Qt::LeftButton, {},
        griglia(tabella)->visualRect(griglia(tabella)->model()->index(riga, 0)).center());
    QCOMPARE(griglia(tabella)->currentIndex().row(), riga);
}

void ordina(const fmTabella *tabella, int colonna)
{
    QHeaderView *testata = griglia(tabella)->horizontalHeader();
    QTest::mouseClick(testata->viewport(), Qt::LeftButton, {},
                      {testata->sectionViewportPosition(colonna) + 10, testata->height() / 2});
}

// "sanAe": i cinque comandi, Seleziona Apri Nuovo Aggiorna Elimina, maiuscoli se abilitati.
QString barra(const fmTabella *tabella)
{
    QString stato;
    for (int i = 1; i <= 5; ++i) {
        const QString lettera = QStringLiteral("SANGE").mid(i - 1, 1);
        const bool si = parte<QAction>(tabella, u"Toolbar1_%1"_s.arg(i))->isEnabled();
        stato += si ? lettera : lettera.toLower();
    }
    return stato;
}

} // namespace

class TstFinestre : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> cartella;
    std::unique_ptr<MDITras> principale;
    std::unique_ptr<Persona> persona;

    QString percorso(const QString &nome) const { return cartella->filePath(nome); }

    QMenu *menu(const QString &titolo) const
    {
        for (QAction *azione : principale->menuBar()->actions()) {
            if (azione->text() == titolo)
                return azione->menu();
        }
        qFatal("manca il menu %s", qPrintable(titolo));
    }

    // Sceglie dalla barra dei menu, e aspetta che il comando e le sue finestre siano finiti.
    void sceglie(const QString &titolo, const QString &voce)
    {
        const auto azioni = menu(titolo)->actions();
        const auto azione = std::find_if(azioni.begin(), azioni.end(),
                                         [&](QAction *una) { return una->text() == voce; });
        QVERIFY(azione != azioni.end());
        (*azione)->trigger();
        QCoreApplication::processEvents();
        QTRY_VERIFY(persona->finita() && QApplication::activeModalWidget() == nullptr);
    }

    void comando(const fmTabella *tabella, int numero)
    {
        parte<QAction>(tabella, u"Toolbar1_%1"_s.arg(numero))->trigger();
        QVERIFY(persona->finita());
    }

    // Nella finestra dei file batte il percorso e preme Invio; vuoto: annulla.
    void batteFile(const QString &titolo, const QString &scelto)
    {
        persona->poi([=](QWidget *finestra) {
            auto *dialogo = qobject_cast<QFileDialog *>(finestra);
            QVERIFY(dialogo != nullptr);
            QCOMPARE(dialogo->windowTitle(), titolo);
            QCOMPARE(dialogo->nameFilters(), QStringList(u"File Tarvola (*.tvd)"_s));
            QCOMPARE(dialogo->directory(), QDir(shell::cartellaApplicazione()));
            if (scelto.isEmpty())
                return dialogo->reject();
            auto *nome = parte<QLineEdit>(dialogo, u"fileNameEdit"_s);
            nome->setText(scelto);
            QTest::keyClick(nome, Qt::Key_Return);
        });
    }
    void apriFile(const QString &scelto)
    {
        batteFile(u"Apri un file"_s, scelto);
        sceglie(u"&File"_s, u"Apri"_s);
    }
    void preparaNuovo(const QString &scelto)
    {
        batteFile(u"Crea un nuovo file (nome senza estensione)"_s, scelto);
    }

    // Un archivio con due archivi, tre registri e tre voci, aperto dal menu.
    fmTabella *apreEsempio(const QString &nome = u"esempio.tvd"_s)
    {
        creaModello(percorso(nome));
        apriFile(percorso(nome));
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo'), ('A2', 'Anna')"_s);
        esegui(u"INSERT INTO Registri (Codice, Archivio, Tipo) VALUES ('R1', 'A1', 9), "
               "('R2', 'A2', 10), ('R3', 'A2', 11)"_s);
        esegui(u"INSERT INTO Voci (Codice, Registro, Volume, Data) VALUES "
               "('V1', 'R2', 'I', '1750-03-04'), ('V2', 'R2', 'II', NULL), "
               "('V3', 'R1', 'III', NULL)"_s);
        fmTabella *tabella = ultimo();
        // In un elenco vuoto "Aggiorna" resta nel menu.
        sceglie(u"&Archivi"_s, u"Aggiorna"_s);
        return tabella;
    }
    fmTabella *ultimo() const { return principale->visualizzatori().constLast(); }
    static QMdiSubWindow *cornice(const fmTabella *tabella)
    {
        return qobject_cast<QMdiSubWindow *>(tabella->parentWidget());
    }

private slots:
    void init()
    {
        QDir(cestino({})).removeRecursively();
        QFile::remove(modello());
        creaModello(modello());
        QVERIFY(QFile::setPermissions(modello(), QFile::ReadOwner));
        cartella = std::make_unique<QTemporaryDir>();
        principale = std::make_unique<MDITras>();
        persona = std::make_unique<Persona>();
        principale->resize(900, 700);
        principale->show();
        QVERIFY(QTest::qWaitForWindowActive(principale.get()));
    }
    void cleanup()
    {
        QCOMPARE(persona->inattese(), QStringList());
        principale.reset();
    }

    void menuDellaFinestra()
    {
        const auto titoli = [&] { return didascalie(principale->menuBar()->actions()); };
        const QStringList file{u"Apri"_s, u"Nuovo"_s, u"Compatta e ripristina"_s, u"Back up"_s,
                               u"Recupera"_s};
        const QStringList aiuto{u"Manuale"_s, u"Home page"_s, u"Scrivi a Tarvola"_s};
        QCOMPARE(principale->windowTitle(), u"Tarvola"_s);
        QVERIFY(!principale->windowIcon().pixmap(32).isNull());
        QCOMPARE(titoli(), QStringList({u"&File"_s, u"&Aiuto"_s}));
        QCOMPARE(didascalie(menu(u"&File"_s)->actions()), file);
        fmTabella *tabella = apreEsempio();
        QCOMPARE(titoli(), QStringList({u"&File"_s, u"&Archivi"_s, u"&Tabelle"_s, u"&Finestre"_s,
                                        u"&Aiuto"_s}));
        QCOMPARE(didascalie(menu(u"&File"_s)->actions()), file);
        QCOMPARE(didascalie(menu(u"&Aiuto"_s)->actions()), aiuto);
        QCOMPARE(didascalie(menu(u"&Archivi"_s)->actions()),
                 QStringList({u"Seleziona"_s, u"Apri"_s, u"Nuovo"_s, u"Aggiorna"_s, u"Elimina"_s}));
        QCOMPARE(didascalie(menu(u"&Tabelle"_s)->actions()),
                 QStringList({u"Archivi"_s, u"Registri"_s, u"Voci"_s, u"Individui"_s, u"Famiglie"_s,
                              u"Eventi"_s, u"Testi e Oggetti"_s}));
        QCOMPARE(didascalie(menu(u"&Finestre"_s)->actions()),
                 QStringList({u"Affianca in verticale"_s, u"Affianca in orizzontale"_s,
                              u"Cascata"_s, u"Mostra"_s}));
        cornice(tabella)->close();
        QTRY_COMPARE(titoli(), QStringList({u"&File"_s, u"&Aiuto"_s}));
        QCOMPARE(didascalie(menu(u"&Aiuto"_s)->actions()), aiuto);
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
        QCOMPARE(barra(ultimo()), u"saNge"_s);
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
        scriveFile(percorso(u"testo.tvd"_s), QByteArray("Non è un archivio").repeated(99));
        batteFile(u"Apri un file"_s, percorso(u"testo.tvd"_s));
        persona->avviso(u"Operazione non riuscita:\n"_s + percorso(u"testo.tvd"_s) +
                        u"\nil file non è un archivio di Tarvola (file is not a database)"_s);
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
        for (int volta = 1; volta <= (risposte == 3 ? 2 : 1); ++volta) {
            preparaNuovo(percorso(u"esempio"_s));
            persona->domanda(u"Il file esiste, cancellare il vecchio file?"_s, risposte > 0,
                             QMessageBox::Question);
            if (risposte > 0)
                persona->avvertimento(u"Attenzione! Il vecchio file\n"_s + suo +
                                          u"\nsarà spostato nella cartella 'Cestino'"_s,
                                      risposte > 1);
            if (risposte > 1)
                persona->domanda(suo + u"\nè attualmente in uso, se si procede sarà chiuso"
                                       "\ncon tutte le finestre ad esso collegate"_s,
                                 risposte > 2);
            if (risposte == 2)
                persona->avviso(u"Errore nella chiusura del database"_s);
            if (risposte == 3)
                persona->avviso(u"Il file\n"_s + suo + u"\nè stato rinominato\n"_s +
                                cestino(volta == 1 ? u"esempio.tvd"_s : u"esempio (2).tvd"_s));
            sceglie(u"&File"_s, u"Nuovo"_s);
        }
        const bool spostato = risposte == 3;
        QCOMPARE(vecchio.isNull(), spostato);
        QVERIFY(!altro.isNull());
        QCOMPARE(principale->visualizzatori().size(), 2);
        QCOMPARE(QDir(cestino({})).entryList(QDir::Files),
                 spostato ? QStringList({u"esempio (2).tvd"_s, u"esempio.tvd"_s}) : QStringList());
        QCOMPARE(contesto().PercorsoCorrente, spostato ? suo : percorso(u"altro.tvd"_s));
        ApriArchivio(suo);
        QCOMPARE(archivi().ConnessioneCorrente, 0);
        QCOMPARE(righe(u"Archivi"_s), spostato ? 0 : 2);
        if (spostato) {
            ApriArchivio(cestino(u"esempio.tvd"_s));
            QCOMPARE(righe(u"Archivi"_s), 2);
        }
    }

    void chiusura_data()
    {
        QTest::addColumn<QString>("bottoni");
        QTest::addColumn<bool>("chiusa");
        QTest::newRow("chiudi") << u"0"_s << true;
        QTest::newRow("annulla") << u"2"_s << false;
        QTest::newRow("dalla cornice") << u"x"_s << false;
        QTest::newRow("back-up, poi annulla") << u"12"_s << false;
        QTest::newRow("back-up, poi dalla cornice") << u"1x"_s << false;
        QTest::newRow("back-up due volte, poi chiudi") << u"110"_s << true;
    }
    void chiusura()
    {
        QFETCH(QString, bottoni);
        for (const QChar bottone : bottoni) {
            persona->poi([bottone](QWidget *finestra) {
                QCOMPARE(finestra->windowTitle(), u"Chiudi Tarvola"_s);
                QCOMPARE(parte<QAbstractButton>(finestra, u"Command1_0"_s)->text(), u"&Chiudi"_s);
                QCOMPARE(parte<QAbstractButton>(finestra, u"Command1_1"_s)->text(), u"&Back-up"_s);
                QCOMPARE(parte<QAbstractButton>(finestra, u"Command1_2"_s)->text(),
                         u"&Annulla chiudi"_s);
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

    void dagliArchiviAlleVoci()
    {
        const QString suo = percorso(u"esempio.tvd"_s);
        const fmTabella *archiviAperti = apreEsempio();
        QCOMPARE(archiviAperti->windowTitle(), u"Archivi File "_s + suo);
        QCOMPARE(barra(archiviAperti), u"SANGE"_s);
        QCOMPARE(corrente(archiviAperti), u"A1"_s);
        QCOMPARE(contesto().ArchivioCorrente, u"A1"_s);
        va(archiviAperti, 1);
        QCOMPARE(contesto().ArchivioCorrente, u"A1"_s);
        comando(archiviAperti, 1);

        fmTabella *registri = ultimo();
        QCOMPARE(contesto().ArchivioCorrente, u"A2"_s);
        QCOMPARE(registri->proprieta.VoceLocaleTabella, u"A2"_s);
        QCOMPARE(registri->windowTitle(), u"Registri File "_s + suo + u" Archivio A2"_s);
        QCOMPARE(griglia(registri)->model()->rowCount(), 2);
        QCOMPARE(barra(registri), u"SANGE"_s);
        QCOMPARE(contesto().RegistroCorrente, u"R2"_s);
        QCOMPARE(contesto().TipoRegistroCorrente, 10);
        // Dodici colonne: il clic sulla testata non fa nulla.
        ordina(registri, 0);
        QVERIFY(!griglia(registri)->horizontalHeader()->isSortIndicatorShown());
        comando(registri, 1);

        fmTabella *voci = ultimo();
        QCOMPARE(voci->windowTitle(), u"Voci File "_s + suo + u" Archivio A2 Registro R2"_s);
        QCOMPARE(barra(voci), u"sANGE"_s);
        QVERIFY(!menu(u"&Voci"_s)->actions().constFirst()->isEnabled());
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
        QCOMPARE(cella(voci, 0, 3), u"04/03/1750"_s);
        va(voci, 1);
        QCOMPARE(voci->proprieta.VoceLocale, u"V2"_s);
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);

        // Attivare un'altra finestra rende corrente la sua riga, e non tocca la voce.
        va(registri, 1);
        principale->findChild<QMdiArea *>()->setActiveSubWindow(cornice(registri));
        QCOMPARE(contesto().RegistroCorrente, u"R3"_s);
        QCOMPARE(contesto().TipoRegistroCorrente, 11);
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
        comando(registri, 1);
        QCOMPARE(ultimo()->windowTitle(), u"Voci File "_s + suo + u" Archivio A2 Registro R3"_s);
        QCOMPARE(barra(ultimo()), u"saNge"_s);
        QCOMPARE(contesto().VoceCorrente, u"V1"_s);
        contesto().RegistroCorrente.clear();
        ultimo()->Form_Activate();
        QCOMPARE(ultimo()->windowTitle(), u"Voci File "_s + suo + u" Archivio A2"_s);
        // Senza una riga i comandi che ne vogliono una non fanno nulla.
        for (const QString &vuoto : {u"Seleziona"_s, u"Apri"_s, u"Elimina"_s})
            sceglie(u"&Voci"_s, vuoto);
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

    void dueFile()
    {
        const fmTabella *primo = apreEsempio();
        const fmTabella *secondo = apreEsempio(u"altro.tvd"_s);
        for (const fmTabella *tabella : {primo, secondo, primo}) {
            persona->poi([](QWidget *editore) {
                compila(editore, u"Text1_0"_s, u"Pieve"_s);
                preme(editore, u"Command1"_s);
            });
            comando(tabella, 3);
        }
        QCOMPARE(griglia(primo)->model()->rowCount(), 4);
        QCOMPARE(griglia(secondo)->model()->rowCount(), 3);
        ApriArchivio(percorso(u"altro.tvd"_s));
        QCOMPARE(righe(u"Archivi"_s), 3);
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

    void affiancate()
    {
        QList<QMdiSubWindow *> cornici{cornice(apreEsempio())};
        for (int i = 0; i < 2; ++i) {
            apriFile(percorso(u"esempio.tvd"_s));
            cornici.append(cornice(ultimo()));
        }
        for (const bool colonne : {true, false}) {
            sceglie(u"&Finestre"_s,
                    colonne ? u"Affianca in verticale"_s : u"Affianca in orizzontale"_s);
            // Affiancate, non avanza nulla da scorrere.
            const auto *tutta = principale->findChild<QMdiArea *>();
            QTRY_COMPARE(tutta->viewport()->size(), tutta->maximumViewportSize());
            const QSize area = tutta->viewport()->size();
            std::sort(cornici.begin(), cornici.end(), [&](auto *una, auto *altra) {
                return colonne ? una->x() < altra->x() : una->y() < altra->y();
            });
            for (int i = 0; i < 3; ++i) {
                const QRect atteso =
                    colonne ? QRect(area.width() * i / 3, 0, area.width() / 3, area.height())
                            : QRect(0, area.height() * i / 3, area.width(), area.height() / 3);
                QCOMPARE(cornici.at(i)->geometry(), atteso);
            }
        }
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

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstFinestre prove;
    return QTest::qExec(&prove, argc, argv);
}

#include "tst_finestre.moc"
