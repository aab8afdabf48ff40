#include "app/area.h"
#include "app/fmBozze.h"
#include "app/fmChiudi.h"
#include "app/fmGuida.h"
#include "app/fmLogin.h"
#include "app/MDITras.h"
#include "atti/fmCampi.h"
#include "atti/fmScheda.h"
#include "atti/fmTasti.h"
#include "browser/fmVisualizza.h"
#include "comune.h"
#include "contesto/finestre.h"
#include "editors/pannello.h"
#include "platform/elaboratore/finestra_ortografia.h"
#include "platform/finestre/avanzamento.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/tasti.h"
#include "programma.h"
#include "texts/fmTxtL.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QToolTip>
#include <QTreeWidget>

namespace
{

using Finestra = std::shared_ptr<QWidget>;

// Ciò che in un archivio fingerebbe d'essere testo formattato.
const QString ostile = u"<img src=\"file:///dev/null\"><b>x</b> & [*]"_s;

const QStringList editori{u"fmArchivio"_s,  u"fmRegistro"_s, u"fmVoce"_s,
                          u"fmIndividuo"_s, u"fmFamiglia"_s, u"fmEvento"_s,
                          u"fmLuogo"_s,     u"fmRecapito"_s, u"fmOperatore"_s};
const QStringList conCaselle = editori + QStringList{u"fmTxtL"_s, u"fmLogin"_s};
const QStringList dialoghi = conCaselle + QStringList{u"fmVisualizza"_s, u"fmChiudi"_s,
                                                      u"fmGuida"_s,      u"FinestraOrtografia"_s,
                                                      u"fmScheda"_s,     u"fmCampi"_s,
                                                      u"fmTasti"_s,      u"fmBozze"_s};
const QStringList tabelle{u"Archivi"_s,  u"Registri"_s, u"Voci"_s,  u"Individui"_s,
                          u"Famiglie"_s, u"Eventi"_s,   u"Binari"_s};

Finestra editore(const QString &nome)
{
    auto finestra = NuovaFinestra(nome, nullptr);
    if (finestra == nullptr)
        return {};
    finestra->proprieta.TipoLock = 3;
    finestra->proprieta.VoceLocaleTipo = 9;
    finestra->Label2 = {u"<b>Nascita</b>"_s, 20};
    finestra->Form_Load();
    return finestra;
}

Finestra principale(const QString &percorso)
{
    auto finestra = std::make_unique<MDITras>();
    ApriArchivio(percorso);
    for (const QString &tabella : tabelle) {
        ProprietaTabella proprieta;
        proprieta.TipoTabella = tabella;
        proprieta.Percorso = percorso;
        finestra->apre(proprieta);
    }
    return finestra;
}

Finestra ortografia()
{
    struct Correzione {
        dizionario::Dizionario parole;
        Correttore correttore{u"nacqe a Pisa"_s, parole, false};
        std::unique_ptr<FinestraOrtografia> finestra;
    };
    const auto correzione = std::make_shared<Correzione>();
    if (!correzione->correttore.avanza())
        return {};
    correzione->finestra =
        std::make_unique<FinestraOrtografia>(correzione->correttore, correzione->parole);
    return {correzione, correzione->finestra.get()};
}

// La pagina di un atto nuovo, in un registro col titolo ostile.
Finestra scheda(const QString &percorso)
{
    esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')"_s);
    esegui(u"INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) VALUES ('R1', 'A1', 9, ?)"_s,
           {ostile});
    ProprietaScheda sue;
    sue.Percorso = percorso;
    sue.RegistroLocale = u"R1"_s;
    auto pagina = std::make_unique<fmScheda>(sue, nullptr);
    pagina->Form_Load();
    return pagina;
}

QList<bozze::Bozza> bozza()
{
    bozze::Finestra finestra{u"fmVoce"_s, ostile, {}, {}, {}, {{u"Volume"_s, ostile, ostile, {}}}};
    return {{QDateTime::currentDateTime(), {finestra}}};
}

// Ogni finestra del programma, per nome; nulla se non si può costruire.
Finestra finestra(const QString &nome, const ArchivioDiProva &archivio)
{
    if (editori.contains(nome))
        return editore(nome);
    if (nome == u"MDITras")
        return principale(archivio.percorso());
    if (nome == u"MDITras vuota")
        return std::make_unique<MDITras>();
    if (nome == u"fmVisualizza")
        return std::make_unique<fmVisualizza>(nullptr);
    if (nome == u"fmChiudi")
        return std::make_unique<fmChiudi>(nullptr);
    if (nome == u"fmLogin")
        return std::make_unique<fmLogin>(nullptr);
    if (nome == u"fmGuida")
        return std::make_unique<fmGuida>(QStringLiteral(CARTELLA_GUIDA), nullptr);
    if (nome == u"FinestraOrtografia")
        return ortografia();
    if (nome == u"fmScheda")
        return scheda(archivio.percorso());
    if (nome == u"fmCampi")
        return std::make_unique<fmCampi>(*scheda::diTipo(9), scheda::Scelte{}, ostile, nullptr);
    if (nome == u"fmTasti")
        return std::make_unique<fmTasti>(nullptr);
    if (nome == u"fmBozze")
        return std::make_unique<fmBozze>(nullptr, u"Ultime bozze"_s, ostile, bozza(), 1);
    auto testo = std::make_unique<fmTxtL>(nullptr);
    testo->setWindowTitle(u"Nota"_s);
    testo->Form_Load(u"V1"_s);
    return testo;
}

bool vuoleNome(QAccessible::Role ruolo)
{
    using enum QAccessible::Role;
    const QList<QAccessible::Role> ruoli{
        PushButton, ButtonMenu, RadioButton, CheckBox, EditableText, ComboBox, List,
        Tree,       Table,      ToolBar,     MenuItem, Dialog,       Window};
    return ruoli.contains(ruolo);
}

QString dove(QAccessibleInterface *oggetto)
{
    QStringList nomi;
    for (QObject *o = oggetto->object(); o != nullptr; o = o->parent())
        nomi.prepend(QString::fromLatin1(o->metaObject()->className()) + u' ' + o->objectName());
    return nomi.join(u" > "_s);
}

// Il nome di un combo sparisce dietro alla voce scelta: lo dicono un'etichetta o la sua cornice.
bool comboChiamato(const QWidget *combo)
{
    const auto etichette = combo->window()->findChildren<QLabel *>();
    if (std::any_of(etichette.begin(), etichette.end(),
                    [combo](const QLabel *una) { return una->buddy() == combo; }))
        return true;
    const auto *cornice = qobject_cast<QGroupBox *>(combo->parentWidget());
    return cornice != nullptr && !cornice->title().isEmpty() &&
           cornice->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).size() == 1;
}

void cercaSenzaNome(QAccessibleInterface *oggetto, QStringList &senza)
{
    if (oggetto == nullptr || oggetto->state().invisible)
        return;
    const QString nome = oggetto->text(QAccessible::Name).trimmed();
    const bool combo = oggetto->role() == QAccessible::ComboBox;
    const bool chiamato =
        combo ? comboChiamato(qobject_cast<QWidget *>(oggetto->object())) : !nome.isEmpty();
    if (vuoleNome(oggetto->role()) && !chiamato)
        senza.append(dove(oggetto));
    // Dentro un combo c'è il suo elenco, che ha il nome del combo.
    for (int i = 0; i < oggetto->childCount() && !combo; ++i)
        cercaSenzaNome(oggetto->child(i), senza);
}

bool siTabula(const QWidget *uno)
{
    return (uno->focusPolicy() & Qt::TabFocus) != 0 && uno->isVisible() && uno->isEnabled() &&
           uno->focusProxy() == nullptr;
}

// Si legge da sinistra a destra, poi dall'alto in basso.
bool vieneDopo(const QRect &primo, const QRect &secondo)
{
    const bool sotto = secondo.top() >= primo.bottom() ||
                       (secondo.top() > primo.top() && secondo.left() >= primo.left());
    const bool accanto = secondo.left() >= primo.right() && secondo.bottom() > primo.top();
    return sotto || accanto;
}

QRect posto(const QWidget *uno)
{
    return {uno->mapTo(uno->window(), QPoint()), uno->size()};
}

QString mnemonica(const QString &testo)
{
    return QKeySequence::mnemonic(testo).toString();
}

} // namespace

class TestAccessibilita : public QObject
{
    Q_OBJECT

private slots:
    void init() { archivio = std::make_unique<ArchivioDiProva>(); }
    void cleanup() { archivio.reset(); }

    void tuttoHaUnNome_data()
    {
        finestre(dialoghi + QStringList{u"MDITras vuota"_s, u"MDITras"_s});
    }
    void tuttoHaUnNome()
    {
        QFETCH(QString, nome);
        const Finestra aperta = mostrata(nome, *archivio);
        QVERIFY(aperta != nullptr);
        QStringList senza;
        for (QWidget *una : QApplication::topLevelWidgets()) {
            if (una->isVisible())
                cercaSenzaNome(QAccessible::queryAccessibleInterface(una), senza);
        }
        QVERIFY2(senza.isEmpty(), qUtf8Printable(senza.join(u'\n')));
    }

    void siTabulaComeSiLegge_data() { finestre(conCaselle); }
    void siTabulaComeSiLegge()
    {
        QFETCH(QString, nome);
        const Finestra aperta = mostrata(nome, *archivio);
        QVERIFY(aperta != nullptr);
        QList<QWidget *> giro;
        for (QWidget *uno = aperta->nextInFocusChain(); uno != aperta.get();
             uno = uno->nextInFocusChain()) {
            if (siTabula(uno) && uno->window() == aperta.get())
                giro.append(uno);
        }
        QVERIFY(giro.size() > 1);
        // Il giro non ha principio: si comincia da dove il fuoco arriva per primo.
        const auto primo = std::min_element(giro.begin(), giro.end(), [](QWidget *a, QWidget *b) {
            const QPoint pa = posto(a).topLeft();
            const QPoint pb = posto(b).topLeft();
            return std::pair(pa.y(), pa.x()) < std::pair(pb.y(), pb.x());
        });
        std::rotate(giro.begin(), primo, giro.end());
        for (qsizetype i = 1; i < giro.size(); ++i)
            QVERIFY2(vieneDopo(posto(giro[i - 1]), posto(giro[i])),
                     qUtf8Printable(giro[i - 1]->objectName() + u" -> "_s + giro[i]->objectName()));
    }

    void ogniCasellaHaLaSuaEtichetta_data() { finestre(conCaselle); }
    void ogniCasellaHaLaSuaEtichetta()
    {
        QFETCH(QString, nome);
        const Finestra aperta = finestra(nome, *archivio);
        QVERIFY(aperta != nullptr);
        QSet<const QWidget *> chiamate;
        for (const QLabel *una : aperta->findChildren<QLabel *>()) {
            if (!una->text().isEmpty())
                chiamate.insert(una->buddy());
        }
        for (const QLineEdit *casella : aperta->findChildren<QLineEdit *>())
            QVERIFY2(chiamate.contains(casella), qUtf8Printable(casella->objectName()));
    }

    void leMnemonicheNonSiConfondono_data() { finestre(dialoghi); }
    void leMnemonicheNonSiConfondono()
    {
        QFETCH(QString, nome);
        const Finestra aperta = finestra(nome, *archivio);
        QVERIFY(aperta != nullptr);
        QStringList usate;
        for (const auto *bottone : aperta->findChildren<QAbstractButton *>())
            usate.append(mnemonica(bottone->text()));
        for (const auto *etichetta : aperta->findChildren<QLabel *>()) {
            if (etichetta->buddy() != nullptr)
                usate.append(mnemonica(etichetta->text()));
        }
        for (const auto *cornice : aperta->findChildren<QGroupBox *>())
            usate.append(mnemonica(cornice->title()));
        usate.removeAll(QString());
        // "&Controlla" e "&Chiudi", "&Nome utente:" e "&Nuova" sono didascalie date: lì il tasto
        // passa dall'una all'altra.
        if (nome == u"fmTxtL")
            usate.removeOne(u"Alt+C"_s);
        if (nome == u"fmLogin")
            usate.removeOne(u"Alt+N"_s);
        usate.sort();
        QStringList diverse = usate;
        diverse.removeDuplicates();
        QCOMPARE(usate, diverse);
    }

    void iTastiDelPannello()
    {
        PannelloCollegamenti pannello(nullptr);
        pannello.aggiunge({u"B1"_s, u"Nota"_s, 12});
        pannello.sceglie({});
        pannello.abilita(false);
        pannello.show();
        auto *elenco = pannello.findChild<QTreeWidget *>(u"ListView1"_s);
        auto *combo = pannello.findChild<QComboBox *>(u"ImageCombo1"_s);
        QVERIFY(QTest::qWaitForWindowActive(&pannello));
        QSignalSpy nuovo(&pannello, &PannelloCollegamenti::nuovo);
        QSignalSpy elimina(&pannello, &PannelloCollegamenti::elimina);
        QSignalSpy apri(&pannello, &PannelloCollegamenti::apri);
        QSignalSpy aggiorna(&pannello, &PannelloCollegamenti::aggiorna);
        const auto conti = [&] {
            return QList<qsizetype>{nuovo.size(), elimina.size(), apri.size(), aggiorna.size()};
        };
        const auto tutti = [](QWidget *fuoco) {
            fuoco->setFocus();
            for (const Qt::Key tasto : {Qt::Key_Insert, Qt::Key_Delete, Qt::Key_Return, Qt::Key_F5})
                QTest::keyClick(fuoco, tasto);
        };
        tutti(elenco);
        QCOMPARE(conti(), QList<qsizetype>({1, 1, 1, 1}));
        tutti(combo);
        QCOMPARE(conti(), QList<qsizetype>({2, 1, 1, 2}));
        pannello.abilita(true);
        tutti(elenco);
        QCOMPARE(conti(), QList<qsizetype>({2, 1, 2, 3}));
    }

    void senzaFormato_data() { finestre(dialoghi + QStringList{u"MDITras"_s}); }
    // Ciò che viene da un archivio non è mai letto come testo formattato: né nelle etichette, né
    // nei suggerimenti, che sono etichette del toolkit.
    void senzaFormato()
    {
        QFETCH(QString, nome);
        esegui(u"UPDATE Traduzioni SET L1 = ?"_s, {ostile});
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('<b>A1</b>', ?)"_s, {ostile});
        const Finestra aperta = mostrata(nome, *archivio);
        QVERIFY(aperta != nullptr);
        for (auto *griglia : aperta->findChildren<QTableView *>()) {
            const QPoint dove = griglia->visualRect(griglia->model()->index(0, 1)).center();
            QHelpEvent passa(QEvent::ToolTip, dove, griglia->viewport()->mapToGlobal(dove));
            QApplication::sendEvent(griglia->viewport(), &passa);
            if (griglia->accessibleName() == u"Archivi") {
                QCOMPARE(QToolTip::text(), ostile);
                QCOMPARE(formattate(), QStringList());
            }
        }
        QCOMPARE(formattate(), QStringList());
    }

    void messaggiSenzaFormato()
    {
        QTimer::singleShot(0, this, [this] {
            QCOMPARE(formattate(), QStringList());
            qobject_cast<QDialog *>(QApplication::activeModalWidget())->reject();
        });
        messaggi::avvisa(nullptr, ostile);
        avanzamento::compie(
            nullptr, ostile,
            [&](const avanzamento::Passo & /*passo*/) { QCOMPARE(formattate(), QStringList()); },
            avanzamento::Compare::Subito);
    }

    // Il bottone del resto di una barra c'è, per chi legge lo schermo, solo finché si vede.
    void ilRestoDellaBarra()
    {
        QWidget finestra;
        QToolBar barra(&finestra);
        for (const QString &nome : {u"Seleziona"_s, u"Apri"_s, u"Nuovo"_s})
            barra.addAction(nome);
        tasti::chiama(&barra, u"Comandi"_s);
        finestra.show();
        for (const int larga : {600, 60, 600}) {
            barra.resize(larga, 40);
            const auto *letta = QAccessible::queryAccessibleInterface(&barra);
            QStringList nomi;
            for (int i = 0; i < letta->childCount(); ++i) {
                nomi.append(letta->child(i)->text(QAccessible::Name));
                QCOMPARE(letta->indexOfChild(letta->child(i)), i);
            }
            QCOMPARE(nomi.contains(u"Altri comandi"_s), larga == 60);
            QVERIFY(nomi.contains(u"Apri"_s));
        }
    }

    // Ciò che si può solo leggere ha il fondo della finestra, comunque lo diventi.
    void ilFondoDiCioCheSiLegge()
    {
        QLineEdit casella;
        QPlainTextEdit testo;
        for (QWidget *uno : {static_cast<QWidget *>(&casella), static_cast<QWidget *>(&testo)}) {
            for (const bool sola : {false, true, false}) {
                uno->setProperty("readOnly", sola);
                uno->resize(200, 60);
                const QColor fondo = uno->grab().toImage().pixelColor(150, 30);
                QCOMPARE(fondo, uno->palette().color(sola ? QPalette::Window : QPalette::Base));
            }
        }
    }

    void salvaConLaTastiera()
    {
        const Finestra aperta = mostrata(u"fmArchivio"_s, *archivio);
        QVERIFY(aperta != nullptr);
        auto *nome = aperta->findChild<QLineEdit *>(u"Text1_0"_s);
        nome->setText(u"Duomo"_s);
        QTest::keyClick(nome, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(colonna(u"SELECT Nome FROM Archivi"_s), QStringList(u"Duomo"_s));
        QVERIFY(!aperta->isVisible());
    }

    void iTastiDelleFinestre()
    {
        const Finestra aperta = mostrata(u"MDITras"_s, *archivio);
        QVERIFY(aperta != nullptr);
        auto *area = aperta->findChild<Area *>();
        const auto attiva = [area] {
            const auto *tabella = qobject_cast<fmTabella *>(area->currentSubWindow()->widget());
            return tabella->proprieta.TipoTabella;
        };
        const auto preme = [&](Qt::Key tasto, Qt::KeyboardModifiers modi) {
            QTest::keyClick(aperta.get(), tasto, modi);
        };
        QCOMPARE(attiva(), u"Binari"_s);
        preme(Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(attiva(), u"Archivi"_s);
        preme(Qt::Key_F6, Qt::ControlModifier);
        QCOMPARE(attiva(), u"Registri"_s);
        preme(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(attiva(), u"Archivi"_s);
        const auto quante = area->subWindowList().size();
        preme(Qt::Key_F4, Qt::ControlModifier);
        QTRY_COMPARE(area->subWindowList().size(), quante - 1);
    }

    // L'invito c'è finché non c'è una finestra, e torna quando si chiude l'ultima.
    void linvitoDellAreaVuota()
    {
        const Finestra aperta = mostrata(u"MDITras vuota"_s, *archivio);
        QVERIFY(aperta != nullptr);
        auto *area = aperta->findChild<Area *>();
        auto *invito = aperta->findChild<QLabel *>(u"Invito"_s);
        QVERIFY(invito->isVisible());
        QCOMPARE(QApplication::focusWidget(), area);
        const auto *letta = QAccessible::queryAccessibleInterface(area);
        QCOMPARE(letta->text(QAccessible::Description), invito->text());
        QCOMPARE(invito->size(), area->viewport()->size());
        area->colloca(area->addSubWindow(new QWidget), u"Archivi"_s);
        QVERIFY(!invito->isVisible());
        QCOMPARE(letta->text(QAccessible::Description), QString());
        delete area->subWindowList().constFirst();
        QTRY_VERIFY(invito->isVisible());
    }

private:
    // Le etichette che si vedono, in qualunque finestra, e che indovinano se sono formattate.
    static QStringList formattate()
    {
        QStringList trovate;
        for (QWidget *una : QApplication::allWidgets()) {
            const auto *etichetta = qobject_cast<QLabel *>(una);
            if (etichetta != nullptr && etichetta->isVisible() &&
                etichetta->textFormat() != Qt::PlainText)
                trovate.append(etichetta->text());
        }
        return trovate;
    }
    static void finestre(const QStringList &nomi)
    {
        QTest::addColumn<QString>("nome");
        for (const QString &nome : nomi)
            QTest::newRow(qUtf8Printable(nome)) << nome;
    }
    static Finestra mostrata(const QString &nome, const ArchivioDiProva &archivio)
    {
        const Finestra aperta = finestra(nome, archivio);
        if (aperta == nullptr)
            return {};
        aperta->show();
        return QTest::qWaitForWindowActive(aperta.get()) ? aperta : Finestra();
    }

    std::unique_ptr<ArchivioDiProva> archivio;
};

PROVA_CON_FINESTRE(TestAccessibilita)

#include "tst_accessibilita.moc"
