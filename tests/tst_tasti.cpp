#include "atti/fmTasti.h"
#include "comune.h"
#include "persona.h"
#include "platform/finestre/memoria_finestre.h"
#include "programma.h"

#include <QAction>
#include <QLabel>
#include <QTreeWidget>

#include <memory>

using namespace Qt::StringLiterals;
using comandi::catalogo;
using comandi::Tasti;

namespace
{

const QString salva = u"scheda.salva"_s;
const QString nuovo = u"scheda.nuovo"_s;

void sceltoPer(const QString &id, const QString &tasto)
{
    memoria::ricorda(u"tasti/"_s + id, tasto);
}

} // namespace

class TstTasti : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        cartella = std::make_unique<QTemporaryDir>();
        memoria::usaFile(cartella->filePath(u"prova.ini"_s));
        comandi::riprende();
    }
    void cleanup() { memoria::usaFile({}); }

    // Chi aggiunge un comando vede qui se il suo tasto è già preso, o manca nel manuale.
    void catalogoSenzaConflitti()
    {
        const QString pagina =
            QString::fromUtf8(byteDi(QStringLiteral(CARTELLA_GUIDA "/htm/tasti.htm")));
        const Tasti primi;
        QStringList id;
        for (const comandi::Comando &uno : catalogo()) {
            QVERIFY2(!id.contains(uno.id), qPrintable(uno.id));
            id.append(uno.id);
            if (uno.primo.isEmpty())
                continue;
            const auto *altro = primi.conflitto(uno.id, uno.primo);
            QVERIFY2(altro == nullptr, qPrintable(uno.id + u" e "_s + (altro ? altro->id : id[0])));
            const QString motivo = comandi::impedimento(uno.primo, uno.dove);
            QVERIFY2(motivo.isEmpty(), qPrintable(uno.id + u' ' + motivo));
            const QString riga = u"<tr><td>%1</td><td>%2*"_s.arg(
                uno.primo.toString(QKeySequence::NativeText), uno.piano());
            QVERIFY2(pagina.contains(riga), qPrintable(riga));
        }
    }

    void impedimenti_data()
    {
        QTest::addColumn<QString>("tasto");
        QTest::addColumn<unsigned>("dove");
        QTest::addColumn<bool>("libero");
        const auto riga = [](const char *tasto, unsigned dove, bool libero) {
            QTest::addRow("%s in %u", tasto, dove) << QString::fromLatin1(tasto) << dove << libero;
        };
        for (const char *tasto : {"A", "Shift+A", "Alt+F", "Esc", "Ctrl+O", "F1", "Ctrl+K, Ctrl+L",
                                  "Ctrl+C", "Ctrl+Left", "Ctrl+Shift+Tab", "Up", "Return", "Del"})
            riga(tasto, comandi::Scheda, false);
        riga("Ctrl+Return", comandi::Voci, false);
        riga("Ctrl+Return", comandi::Scheda, true);
        riga("F7", comandi::Testo, false);
        riga("Ctrl+Alt+F", comandi::Scheda, true);
        riga("Ctrl+Z", comandi::Voci, true);
        riga("Ctrl+Z", comandi::Scheda, false);
    }
    void impedimenti()
    {
        QFETCH(QString, tasto);
        QFETCH(unsigned, dove);
        QFETCH(bool, libero);
        QCOMPARE(comandi::impedimento(QKeySequence(tasto), dove).isEmpty(), libero);
    }

    // Impostazioni scritte a mano, guaste, o di un programma con altri comandi.
    void impostazioniStorte()
    {
        sceltoPer(salva, u"Frullatore+Q"_s);
        sceltoPer(nuovo, u"Ctrl+C"_s);
        sceltoPer(u"scheda.precedente"_s, u"F8"_s);
        sceltoPer(u"scheda.altraPersona"_s, u"Ctrl+K"_s);
        sceltoPer(u"scheda.togliPersona"_s, u"F12"_s);
        sceltoPer(u"scheda.comePrimaCasella"_s, u"F12"_s);
        sceltoPer(u"elenco.scheda"_s, {});
        const Tasti letti = Tasti::ricordati();
        QCOMPARE(letti.di(salva), QKeySequence(u"Ctrl+S"_s));
        QCOMPARE(letti.di(nuovo), QKeySequence(u"Shift+F4"_s));
        // Il tasto scelto vale più del primo di un altro.
        QCOMPARE(letti.di(u"scheda.precedente"_s), QKeySequence(u"F8"_s));
        QCOMPARE(letti.di(u"scheda.successivo"_s), QKeySequence());
        QVERIFY(letti.di(u"elenco.scheda"_s).isEmpty());
        for (const comandi::Comando &uno : catalogo())
            QVERIFY2(letti.conflitto(uno.id, letti.di(uno.id)) == nullptr, qPrintable(uno.id));
    }

    void siCambianoESiRimettono()
    {
        QAction azioneSalva;
        QAction azioneNuovo;
        comandi::lega(&azioneSalva, salva);
        comandi::lega(&azioneNuovo, nuovo);
        {
            fmTasti finestra(nullptr);
            sceglie(finestra, salva);
            // Una lettera e un tasto delle caselle non si danno.
            preme(finestra, Qt::Key_C, Qt::ControlModifier);
            QVERIFY(!bottone(finestra, u"Assegna"_s)->isEnabled());
            QVERIFY(nota(finestra).contains(u"caselle di testo"_s));
            preme(finestra, Qt::Key_F4, Qt::ShiftModifier);
            QVERIFY(nota(finestra).contains(u"«Nuovo atto» (Scheda)"_s));
            preme(finestra, Qt::Key_Return);
            QCOMPARE(azioneSalva.shortcut(), QKeySequence(u"Ctrl+S"_s));
            bottone(finestra, u"OK"_s)->click();
        }
        QCOMPARE(azioneSalva.shortcut(), QKeySequence(u"Shift+F4"_s));
        QCOMPARE(azioneSalva.toolTip(), u"Salva (Maiusc+F4)"_s);
        QCOMPARE(azioneNuovo.toolTip(), u"Nuovo atto"_s);
        comandi::riprende();
        QCOMPARE(azioneSalva.shortcut(), QKeySequence(u"Shift+F4"_s));

        fmTasti finestra(nullptr);
        sceglie(finestra, nuovo);
        bottone(finestra, u"Rimetti"_s)->click();
        bottone(finestra, u"OK"_s)->click();
        QCOMPARE(azioneNuovo.shortcut(), QKeySequence(u"Shift+F4"_s));
        QVERIFY(azioneSalva.shortcut().isEmpty());
        fmTasti rinuncia(nullptr);
        bottone(rinuncia, u"RimettiTutti"_s)->click();
        rinuncia.reject();
        QVERIFY(azioneSalva.shortcut().isEmpty());
        fmTasti tutti(nullptr);
        bottone(tutti, u"RimettiTutti"_s)->click();
        bottone(tutti, u"OK"_s)->click();
        QCOMPARE(comandi::inVigore(), Tasti());
        QVERIFY(!memoria::valore(u"tasti/"_s + salva).isValid());
    }

private:
    static QPushButton *bottone(const fmTasti &finestra, const QString &nome)
    {
        return parte<QPushButton>(&finestra, nome);
    }
    static QString nota(const fmTasti &finestra)
    {
        return parte<QLabel>(&finestra, u"Nota"_s)->text();
    }
    static void preme(const fmTasti &finestra, Qt::Key tasto, Qt::KeyboardModifiers modi = {})
    {
        QTest::keyClick(parte<CasellaTasto>(&finestra, u"NuovoTasto"_s), tasto, modi);
    }
    static void sceglie(const fmTasti &finestra, const QString &id)
    {
        auto *elenco = parte<QTreeWidget>(&finestra, u"Comandi"_s);
        elenco->setCurrentItem(
            elenco->findItems(comandi::comando(id).piano(), Qt::MatchExactly).constFirst());
    }

    std::unique_ptr<QTemporaryDir> cartella;
};

PROVA_CON_FINESTRE(TstTasti)

#include "tst_tasti.moc"
