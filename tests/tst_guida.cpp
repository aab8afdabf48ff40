#include "app/fmChiudi.h"
#include "app/fmGuida.h"
#include "comune.h"
#include "platform/disco/shell.h"
#include "platform/finestre/avanzamento.h"
#include "programma.h"

#include <QAction>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QRegularExpression>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace
{

const QString cartella = QStringLiteral(CARTELLA_GUIDA);

QString contenuto(const QString &pagina)
{
    return QString::fromUtf8(byteDi(cartella + u'/' + pagina));
}

QStringList pagineNellIndice()
{
    const GuidaPagine guida(cartella);
    QStringList tutte;
    for (const auto &pagina : guida.pagine())
        tutte.append(pagina.file);
    return tutte;
}

QStringList trovate(const QString &parole)
{
    const GuidaPagine guida(cartella);
    QStringList file;
    for (const size_t posto : guida.cerca(parole))
        file.append(guida.pagine().at(posto).file);
    return file;
}

// Dove si inserisce un genere, dalle sue categorie, con le parole della guida.
QString categorie(int tipo)
{
    const std::pair<int, QString> nomi[] = {
        {1, u"archivio"_s},     {2, u"registro"_s},
        {4, u"battesimo"_s},    {8, u"matrimonio"_s},
        {16, u"morte"_s},       {256, u"individuo"_s},
        {512, u"famiglia"_s},   {1024, u"evento"_s},
        {2048, u"operatore"_s}, {4096, u"indirizzo e recapito"_s}};
    QStringList sue;
    for (const auto &[valore, nome] : nomi) {
        if (tipo / valore % 2 == 1)
            sue.append(nome);
    }
    if (sue.isEmpty())
        return tipo == 0 ? u"tipo di registro"_s : u"si vede soltanto"_s;
    return sue.size() == std::ssize(nomi) ? u"ogni finestra"_s : sue.join(u", "_s);
}

VistaGuida *vista(const QWidget *guida)
{
    return guida->findChild<VistaGuida *>();
}

QString paginaVista(const QWidget *guida)
{
    return vista(guida)->source().toLocalFile().mid(cartella.size() + 1);
}

void preme(const QWidget *guida, const QString &comando)
{
    auto *azione = guida->findChild<QAction *>(comando);
    QVERIFY(azione != nullptr && azione->isEnabled());
    azione->trigger();
}

fmGuida *guidaAperta()
{
    for (QWidget *una : QApplication::topLevelWidgets()) {
        if (auto *guida = qobject_cast<fmGuida *>(una); guida != nullptr && guida->isVisible())
            return guida;
    }
    return nullptr;
}

} // namespace

class TestGuida : public QObject
{
    Q_OBJECT

private slots:
    void lindiceElencaOgniPaginaUnaVolta()
    {
        QStringList file;
        QDirIterator cerca(cartella + u"/htm"_s, {u"*.htm"_s});
        while (cerca.hasNext())
            file.append(cerca.next().mid(cartella.size() + 1));
        QStringList elencate = pagineNellIndice();
        elencate.sort();
        file.sort();
        QCOMPARE(elencate, file);
    }

    void ogniPaginaHaTitoloECollegamentiBuoni()
    {
        static const QRegularExpression collegamento(u"(?:href|src)=\"([^\"#]+)"_s);
        const GuidaPagine guida(cartella);
        for (const auto &pagina : guida.pagine()) {
            QVERIFY2(!pagina.titolo.isEmpty(), qUtf8Printable(pagina.file));
            auto tutti = collegamento.globalMatch(contenuto(pagina.file));
            while (tutti.hasNext()) {
                const QString verso = tutti.next().captured(1);
                if (verso.endsWith(u".png"))
                    continue;
                QVERIFY2(QFile::exists(cartella + u"/htm/"_s + verso),
                         qUtf8Printable(pagina.file + u" -> "_s + verso));
            }
        }
    }

    void ogniFinestraHaLaSuaPagina()
    {
        for (const char *finestra :
             {"MDITras", "fmTabella", "fmVisualizza", "fmChiudi", "fmLogin", "fmTxtL", "fmGuida",
              "fmArchivio", "fmRegistro", "fmVoce", "fmIndividuo", "fmFamiglia", "fmEvento",
              "fmLuogo", "fmRecapito", "fmOperatore", "FinestraOrtografia"})
            QVERIFY2(pagineNellIndice().contains(u"htm/%1.htm"_s.arg(QLatin1String(finestra))),
                     finestra);
    }

    // La tavola dei generi è quella del modello: codici, etichette e finestre.
    void iGeneriSonoQuelliDelModello()
    {
        const ArchivioDiProva archivio;
        const QString pagina = contenuto(u"htm/generi.htm"_s);
        int quanti = 0;
        modTarvola::connessione().leggi(
            {u"SELECT Codice, L1, Tipo FROM Traduzioni"_s, {}, {}}, [&](const ado::Riga &riga) {
                const QString attesa = u"<tr><td>%1</td><td>%2</td><td>%3</td></tr>"_s.arg(
                    riga.testo(0), riga.testo(1), categorie(riga.testo(2).toInt()));
                if (!pagina.contains(attesa))
                    QTest::qFail(qUtf8Printable(attesa), __FILE__, __LINE__);
                ++quanti;
                return true;
            });
        QCOMPARE(pagina.count(u"<tr><td>"_s), quanti);
    }

    void siCercaSenzaMaiuscoleNeAccenti()
    {
        QCOMPARE(trovate(u"FRASE suggerimenti"_s), QStringList(u"htm/FinestraOrtografia.htm"_s));
        QCOMPARE(trovate(u"transatlantico"_s), QStringList());
        QCOMPARE(trovate(u"gia nato"_s), trovate(u"GIÀ nato"_s));
        QVERIFY(!trovate(u"gia nato"_s).isEmpty());
        QCOMPARE(trovate(u" , "_s), QStringList());
        // Chi l'ha nel titolo viene prima, anche se nell'indice viene dopo.
        QCOMPARE(trovate(u"ortografia"_s).constFirst(), u"htm/FinestraOrtografia.htm"_s);
        QCOMPARE(trovate(u"ortografia"_s).size(), 2);
    }

    void unaFiguraCheMancaNonSiVede()
    {
        QTemporaryDir posto;
        QFile file(posto.filePath(u"una.png"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QString figura = u"<p class=\"figura\"><img src=\"%1.png\" alt=\"\"><br>\n%1</p>"_s;
        const QString pagina =
            u"<p>A</p>"_s + figura.arg(u"una"_s) + u"<p>B</p>"_s + figura.arg(u"altra"_s);
        QCOMPARE(senzaFigureMancanti(pagina, posto.path()),
                 u"<p>A</p>"_s + figura.arg(u"una"_s) + u"<p>B</p>"_s);
    }

    void siVaAvantiEIndietro()
    {
        auto *guida = new fmGuida(cartella, nullptr);
        const auto *contenuti = guida->findChild<QTreeWidget *>(u"Contenuti"_s);
        guida->vai(u"htm/date.htm"_s);
        QCOMPARE(contenuti->currentItem()->text(0), u"Date, ore e numeri"_s);
        guida->vai(u"htm/non-c-e.htm"_s);
        QCOMPARE(paginaVista(guida), u"htm/inizio.htm"_s);
        preme(guida, u"Indietro"_s);
        QCOMPARE(paginaVista(guida), u"htm/date.htm"_s);
        QCOMPARE(contenuti->currentItem()->text(0), u"Date, ore e numeri"_s);
        preme(guida, u"Avanti"_s);
        QCOMPARE(paginaVista(guida), u"htm/inizio.htm"_s);
        delete guida;
    }

    void laRicercaApreEdEvidenzia()
    {
        auto *guida = new fmGuida(cartella, nullptr);
        guida->vai(u"htm/inizio.htm"_s);
        guida->show();
        QVERIFY(QTest::qWaitForWindowActive(guida));
        QTest::keyClick(guida, Qt::Key_F, Qt::ControlModifier);
        auto *casella = guida->findChild<QLineEdit *>(u"Cerca"_s);
        QVERIFY(casella->hasFocus());
        // Senza accenti si trova, e si evidenzia, ciò che ne ha.
        QTest::keyClicks(casella, u"cio suggerimenti"_s);
        auto *elenco = guida->findChild<QListWidget *>(u"Trovate"_s);
        auto *nessuna = guida->findChild<QLabel *>(u"Nessuna"_s);
        QVERIFY(!nessuna->isVisible());
        QCOMPARE(elenco->count(), 1);
        QTest::keyClick(casella, Qt::Key_Return);
        QCOMPARE(paginaVista(guida), u"htm/FinestraOrtografia.htm"_s);
        QStringList evidenti;
        for (const auto &evidenza : vista(guida)->extraSelections())
            evidenti << evidenza.cursor.selectedText();
        QVERIFY(evidenti.contains(u"ciò"_s));
        QTest::keyClicks(casella, u"zz"_s);
        QVERIFY(nessuna->isVisible());
        const QPointer<fmGuida> viva(guida);
        QTest::keyClick(casella, Qt::Key_Escape);
        QTRY_VERIFY(viva.isNull());
    }

    // F1 in un dialogo apre la sua pagina, che risponde e resta quando il dialogo si chiude.
    void f1DentroUnaFinestraModale()
    {
        QVERIFY(QDir().mkpath(shell::cartellaApplicazione()));
        const QString accanto = shell::cartellaApplicazione() + u"/guida"_s;
        QFile::remove(accanto);
        {
            fmChiudi senza(nullptr);
            senza.show();
            QTest::keyClick(&senza, Qt::Key_F1);
            QVERIFY(guidaAperta() == nullptr);
        }
        QVERIFY(QFile::link(cartella, accanto));
        QWidget sotto;
        sotto.show();
        {
            fmChiudi dialogo(&sotto);
            dialogo.open();
            QVERIFY(QTest::qWaitForWindowActive(&dialogo));
            QTest::keyClick(&dialogo, Qt::Key_F1);
            QVERIFY(guidaAperta() != nullptr);
            QVERIFY(vista(guidaAperta())->source().toLocalFile().endsWith(u"htm/fmChiudi.htm"));
            QCOMPARE(guidaAperta()->parentWidget(), &dialogo);
            dialogo.reject();
        }
        QVERIFY(guidaAperta() != nullptr);
        QCOMPARE(guidaAperta()->parentWidget(), &sotto);
        // Anche sopra un lavoro lungo, che se ne va senza che nessuno lo chiuda.
        avanzamento::compie(
            &sotto, u"Lavoro"_s,
            [](const avanzamento::Passo &) {
                QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_F1);
            },
            avanzamento::Compare::Subito);
        QVERIFY(guidaAperta() != nullptr);
        QCOMPARE(guidaAperta()->parentWidget(), &sotto);
        guidaAperta()->close();
        QFile::remove(accanto);
    }
};

PROVA_CON_FINESTRE(TestGuida)

#include "tst_guida.moc"
