#pragma once

#include "app/MDITras.h"
#include "comune.h"
#include "contesto/contesto.h"
#include "persona.h"
#include "platform/disco/shell.h"
#include "programma.h"

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

inline QString modello()
{
    return shell::cartellaApplicazione() + u"/tarvola.mod"_s;
}

inline QString cestino(const QString &nome)
{
    return shell::cartellaApplicazione() + u"/Cestino/"_s + nome;
}

// Quanti archivi ha un file, aperto a parte.
inline int archiviIn(const QString &file)
{
    return Aparte(file).legge(u"SELECT count(*) FROM Archivi"_s).toInt();
}

inline QStringList didascalie(const QList<QAction *> &azioni)
{
    QStringList testi;
    for (const QAction *azione : azioni)
        testi.append(azione->text());
    return testi;
}

inline QTableView *griglia(const fmTabella *tabella)
{
    return parte<QTableView>(tabella, u"DataGrid1"_s);
}

inline QString cella(const fmTabella *tabella, int riga, int colonna)
{
    return griglia(tabella)->model()->index(riga, colonna).data().toString();
}

inline QString corrente(const fmTabella *tabella)
{
    return cella(tabella, griglia(tabella)->currentIndex().row(), 0);
}

inline void va(const fmTabella *tabella, int riga)
{
    QTest::mouseClick(
        griglia(tabella)->viewport(), Qt::LeftButton, {},
        griglia(tabella)->visualRect(griglia(tabella)->model()->index(riga, 0)).center());
    QCOMPARE(griglia(tabella)->currentIndex().row(), riga);
}

inline void ordina(const fmTabella *tabella, int colonna)
{
    QHeaderView *testata = griglia(tabella)->horizontalHeader();
    QTest::mouseClick(testata->viewport(), Qt::LeftButton, {},
                      {testata->sectionViewportPosition(colonna) + 10, testata->height() / 2});
}

// "sanAe": i cinque comandi, Seleziona Apri Nuovo Aggiorna Elimina, maiuscoli se abilitati.
inline QString barra(const fmTabella *tabella)
{
    QString stato;
    for (int i = 1; i <= 5; ++i) {
        const QString lettera = QStringLiteral("SANGE").mid(i - 1, 1);
        const bool si = parte<QAction>(tabella, u"Toolbar1_%1"_s.arg(i))->isEnabled();
        stato += si ? lettera : lettera.toLower();
    }
    return stato;
}

// La finestra principale, su una cartella di archivi sua e un modello appena fatto.
class ProvaPrincipale
{
protected:
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

    // Chiuso un dialogo può non essere attiva nessuna finestra, e i tasti non vanno a nulla.
    void attiva() const
    {
        principale->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(principale.get()));
    }

    void comando(const fmTabella *tabella, int numero)
    {
        parte<QAction>(tabella, u"Toolbar1_%1"_s.arg(numero))->trigger();
        QVERIFY(persona->finita());
    }

    // In una finestra dei file batte il nome e preme Invio; vuoto: annulla.
    static void batteNome(QFileDialog *dialogo, const QString &scelto)
    {
        if (scelto.isEmpty())
            return dialogo->reject();
        auto *nome = parte<QLineEdit>(dialogo, u"fileNameEdit"_s);
        nome->setText(scelto);
        QTest::keyClick(nome, Qt::Key_Return);
    }
    void batteFile(const QString &titolo, const QString &scelto)
    {
        persona->poi([=](QWidget *finestra) {
            auto *dialogo = qobject_cast<QFileDialog *>(finestra);
            QVERIFY(dialogo != nullptr);
            QCOMPARE(dialogo->windowTitle(), titolo);
            QCOMPARE(dialogo->nameFilters(), QStringList(u"File Tarvola (*.tvd)"_s));
            QCOMPARE(dialogo->directory(), QDir(shell::cartellaApplicazione()));
            batteNome(dialogo, scelto);
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

    void avvertimentoSpostamento(const QString &file, bool procede)
    {
        persona->avvertimento(u"Attenzione! Il vecchio file\n"_s + file +
                                  u"\nsarà spostato nella cartella 'Cestino'"_s,
                              procede);
    }
    void inUso(const QString &file, bool chiude)
    {
        persona->domanda(file + u"\nè attualmente in uso, se si procede sarà chiuso"
                                "\ncon tutte le finestre ad esso collegate"_s,
                         chiude);
    }
    void rinominato(const QString &file, const QString &dove)
    {
        persona->avviso(u"Il file\n"_s + file + u"\nè stato rinominato\n"_s + dove);
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
    QMdiArea *area() const { return principale->findChild<QMdiArea *>(); }
    fmTabella *ultimo() const { return principale->visualizzatori().constLast(); }
    static QMdiSubWindow *cornice(const fmTabella *tabella)
    {
        return qobject_cast<QMdiSubWindow *>(tabella->parentWidget());
    }

    void comincia()
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

    void finisce()
    {
        QCOMPARE(persona->inattese(), QStringList());
        principale.reset();
    }
};
