#include "app/ultimi.h"
#include "atti/fmScheda.h"
#include "platform/finestre/memoria_finestre.h"
#include "prova_principale.h"

using namespace Qt::StringLiterals;
using namespace modTarvola;

class TstContinua : public QObject, private ProvaPrincipale
{
    Q_OBJECT

private slots:
    void init()
    {
        impostazioni = std::make_unique<QTemporaryDir>();
        memoria::usaFile(impostazioni->filePath(u"prova.ini"_s));
        comincia();
    }
    void cleanup()
    {
        finisce();
        memoria::usaFile({});
    }

    // Il giorno dopo: chi era entrato scrive la password ed è su un atto nuovo del suo registro.
    void riprendeDaDoveEra()
    {
        lavora();
        QCOMPARE(ultimi::posto(), (ultimi::Posto{percorso(u"pieve.tvd"_s), u"R2"_s, u"O1"_s}));
        riavvia();
        persona->entra = true;
        persona->poi([](QWidget *finestra) {
            QCOMPARE(parte<QLineEdit>(finestra, u"txtUserName"_s)->text(), u"Agnese"_s);
            QCOMPARE(finestra->focusWidget()->objectName(), u"txtPassword"_s);
            QTest::keyClicks(finestra->focusWidget(), u"pieve"_s);
            QTest::keyClick(finestra->focusWidget(), Qt::Key_Return);
        });
        sceglie(u"&File"_s, u"&Continua"_s);
        const fmScheda *pagina = scheda();
        QVERIFY(pagina != nullptr);
        QCOMPARE(pagina->proprieta.RegistroLocale, u"R2"_s);
        QCOMPARE(pagina->proprieta.VoceLocale, QString());
        QCOMPARE(pagina->proprieta.ConOperatore, u"O1"_s);
        QCOMPARE(ultimo()->windowTitle(),
                 u"Voci File %1 Archivio A2 Registro R2"_s.arg(percorso(u"pieve.tvd"_s)));
        // La seconda volta la pagina c'è già, e non si chiede nulla.
        sceglie(u"&File"_s, u"&Continua"_s);
        QCOMPARE(principale->findChildren<fmScheda *>().size(), 1);
    }

    void ilRegistroNonCePiu()
    {
        lavora();
        riavvia();
        Aparte(percorso(u"pieve.tvd"_s)).esegui(u"DELETE FROM Registri WHERE Codice = 'R2'"_s);
        persona->avviso(u"Il registro in cui si è scritto per ultimo non c'è più"_s);
        sceglie(u"&File"_s, u"&Continua"_s);
        QVERIFY(scheda() == nullptr);
        QCOMPARE(ultimo()->proprieta.TipoTabella, u"Archivi"_s);
    }

    void ilFileNonSiTrova()
    {
        lavora();
        riavvia();
        const QString file = percorso(u"pieve.tvd"_s);
        QVERIFY(QFile::rename(file, file + u"x"_s));
        const QString domanda =
            u"Il file\n%1\nnon si trova: è stato spostato o eliminato, o il disco in cui sta non è "
            "collegato.\nToglierlo dagli ultimi file?"_s.arg(file);
        persona->domanda(domanda, false, QMessageBox::NoIcon, QMessageBox::No);
        sceglie(u"&File"_s, u"&Continua"_s);
        emit menu(u"&File"_s)->aboutToShow();
        QCOMPARE(didascalie(menu(u"&File"_s)->actions()).constLast(), u"&1 pieve.tvd"_s);
        persona->domanda(domanda, true, QMessageBox::NoIcon, QMessageBox::No);
        sceglie(u"&File"_s, u"&1 pieve.tvd"_s);
        emit menu(u"&File"_s)->aboutToShow();
        QCOMPARE(didascalie(menu(u"&File"_s)->actions()).constLast(), u"&Continua"_s);
        QVERIFY(!menu(u"&File"_s)->actions().constLast()->isEnabled());
    }

    void nomiDegliUltimi()
    {
        QCOMPARE(ultimi::nomi({u"/a/b/c.tvd"_s, u"/a/x/d.tvd"_s}),
                 QStringList({u"c.tvd"_s, u"d.tvd"_s}));
        QCOMPARE(ultimi::nomi({u"/a/b/c.tvd"_s, u"/z/b/c.tvd"_s, u"/z/y/c.tvd"_s}),
                 QStringList({u"c.tvd – a/b"_s, u"c.tvd – z/b"_s, u"c.tvd – y"_s}));
        // Lo stesso posto scritto in due modi, e nomi che nel menu avrebbero segni loro.
        QCOMPARE(ultimi::nomi({u"/a//c.tvd"_s, u"/a/c.tvd"_s}).size(), 2);
        for (int i = 0; i < 9; ++i)
            ultimi::aggiunge(u"/n/R&S, %1 <b>.tvd"_s.arg(i));
        ultimi::aggiunge(u"/n/R&S, 5 <b>.tvd"_s);
        emit menu(u"&File"_s)->aboutToShow();
        const auto voci = menu(u"&File"_s)->actions();
        QCOMPARE(ultimi::file().size(), ultimi::quanti);
        QCOMPARE(voci.constLast()->text(), u"&6 R&&S, 3 <b>.tvd"_s);
        QCOMPARE(voci.at(voci.size() - 6)->toolTip(), u"/n/R&S, 5 <b>.tvd"_s);
    }

private:
    // Un file con una trascrittrice, che vi registra qualcosa in un registro.
    void lavora()
    {
        apreEsempio(u"pieve.tvd"_s);
        esegui(u"INSERT INTO Operatori (Codice, Nome, Cognome, Password, Tipo) VALUES "
               "('O1', 'Agnese', 'Riva', 'pieve', 42)"_s);
        contesto().OperatoreCorrente = u"O1"_s;
        emit annunci().avvenuto({u"Salva"_s,
                                 percorso(u"pieve.tvd"_s),
                                 &connessione(),
                                 {{u"Eventi"_s, u"E77"_s, Cambiamento::Cambiato},
                                  {u"Voci"_s, u"V1"_s, Cambiamento::Cambiato}}});
        QCoreApplication::processEvents();
    }
    void riavvia()
    {
        principale.reset();
        avviaContesto();
        principale = std::make_unique<MDITras>();
        principale->show();
        attiva();
    }
    fmScheda *scheda() const { return principale->findChild<fmScheda *>(); }

    std::unique_ptr<QTemporaryDir> impostazioni;
};

PROVA_CON_FINESTRE(TstContinua)

#include "tst_continua.moc"
