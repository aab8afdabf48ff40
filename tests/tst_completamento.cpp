#include "atti/completamento.h"
#include "atti/fmScheda.h"
#include "atti/pagina.h"
#include "atti/repertorio.h"
#include "comune.h"
#include "db/archivio/custodia.h"
#include "db/archivio/salvati.h"
#include "persona.h"
#include "programma.h"

#include <QListWidget>

using scheda::SchedaAtto;

// Ciò che la pagina propone: da dove viene, in che ordine, e che non scrive mai da sé.
class TestCompletamento : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ArchivioDiProva> archivio;
    std::unique_ptr<Persona> persona;
    std::unique_ptr<fmScheda> scheda;
    using Valori = QList<std::pair<scheda::Indirizzo, QVariant>>;

    static scheda::Indirizzo di(const QString &posto, const QString &campo, int evento = 0)
    {
        return {posto, 0, evento, campo};
    }
    static void scrive(int tipo, const QString &registro, const Valori &valori)
    {
        const Atto prima = nuovoAtto(connessione(), registro);
        SchedaAtto nuovo(*scheda::diTipo(tipo), prima);
        nuovo.assegna(di(u"voce"_s, u"CodiceVoce"_s), u"1"_s);
        for (const auto &[dove, valore] : valori)
            nuovo.assegna(dove, valore);
        Atto atto = nuovo.pronto().atto;
        QCOMPARE(scriveAtto(connessione(), {}, prima, atto).che, EsitoAtto::Scritto);
    }
    static void battezza(const QString &registro, const QStringList &nomi)
    {
        for (const QString &nome : nomi)
            scrive(9, registro, {{di(u"battezzato"_s, u"Nome"_s), nome}});
    }
    void apre(const QString &registro)
    {
        ProprietaScheda sue;
        sue.Percorso = archivio->percorso();
        sue.RegistroLocale = registro;
        scheda = std::make_unique<fmScheda>(sue, nullptr);
        scheda->Form_Load();
        scheda->resize(1200, 700);
        scheda->show();
        QVERIFY(QTest::qWaitForWindowActive(scheda.get()));
    }
    void aspetta() const { QTRY_VERIFY(scheda->repertorio()->compiuto()); }
    Campo *casella(const QString &posto, const QString &campo, int evento = 0) const
    {
        return scheda->pagina()->campo(di(posto, campo, evento));
    }
    // Batte il testo nella casella, lettera per lettera, e rende ciò che le si propone.
    QStringList batte(const Campo *campo, const QString &testo) const
    {
        campo->fuoco()->setFocus();
        for (const QChar lettera : testo)
            QTest::sendKeyEvent(QTest::Click, campo->fuoco(), Qt::Key_unknown, lettera, {});
        QStringList voci;
        const auto *elenco = popup()->findChild<QListWidget *>();
        for (int i = 0; popup()->isVisible() && i < elenco->count(); ++i)
            voci.append(elenco->item(i)->text());
        return voci;
    }
    Completamento *popup() const { return scheda->findChild<Completamento *>(); }
    static void tasto(Qt::Key tasto, Qt::KeyboardModifiers modi = {})
    {
        QTest::keyClick(QApplication::focusWidget(), tasto, modi);
    }

private slots:
    void init()
    {
        archivio = std::make_unique<ArchivioDiProva>();
        persona = std::make_unique<Persona>();
        esegui(u"INSERT INTO Registri (Codice, Tipo, Titolo) VALUES ('R1', 9, 'Battesimi'), "
               "('R2', 9, 'Altri'), ('R3', 11, 'Morti')"_s);
    }
    void cleanup()
    {
        scheda.reset();
        QCOMPARE(persona->inattese(), QStringList());
        QVERIFY(persona->finita());
    }

    // Prima gli ultimi atti, poi il registro, poi l'archivio, per quanto spesso vi siano; da ogni
    // parola, senza accenti né apostrofi.
    void ordine()
    {
        battezza(u"R2"_s, {u"Niccolò"_s, u"Niccolò"_s, u"Nicodemo"_s, u"Nicodemo"_s, u"Nicodemo"_s,
                           u"Maria dell'Orto"_s});
        battezza(u"R1"_s, {u"Nicola"_s});
        apre(u"R1"_s);
        aspetta();
        const Campo *nome = casella(u"battezzato"_s, u"Nome"_s);
        QCOMPARE(batte(nome, u"nic"_s), (QStringList{u"Nicola"_s, u"Nicodemo"_s, u"Niccolò"_s}));
        QCOMPARE(batte(nome, u"co"_s), QStringList{u"Niccolò"_s});
        const Campo *altro = casella(u"padre"_s, u"Nome"_s);
        QCOMPARE(batte(altro, u"dell o"_s), QStringList{u"Maria dell'Orto"_s});
        // Ciò che si salva da un'altra parte si propone subito.
        battezza(u"R2"_s, {u"Nicanore"_s});
        QApplication::processEvents();
        QCOMPARE(batte(casella(u"madre"_s, u"Nome"_s), u"nica"_s), QStringList{u"Nicanore"_s});
    }

    // Ciò che è scritto resta com'è finché non si prende una proposta con Invio o con la freccia.
    void nonRiscrive()
    {
        battezza(u"R1"_s, {u"Giuseppe"_s, u"Giuseppina"_s});
        apre(u"R1"_s);
        const Campo *nome = casella(u"battezzato"_s, u"Nome"_s);
        QCOMPARE(batte(nome, u"giu"_s).size(), 2);
        QCOMPARE(nome->testo(), u"giu"_s);
        tasto(Qt::Key_Down);
        tasto(Qt::Key_Tab);
        QVERIFY(!popup()->isVisible());
        QCOMPARE(nome->testo(), u"giu"_s);
        QVERIFY(!batte(nome, u"s"_s).isEmpty());
        tasto(Qt::Key_Escape);
        QVERIFY(!popup()->isVisible() && scheda->isVisible());
        QCOMPARE(nome->testo(), u"gius"_s);
        QVERIFY(!batte(nome, u"e"_s).isEmpty());
        tasto(Qt::Key_Return);
        QVERIFY(nome->testo().startsWith(u"Giusepp"_s) && nome->scritto());
        QVERIFY(!nome->fuoco()->hasFocus());
    }

    // Una proposta tolta non torna, nemmeno nell'archivio compattato o riparato, finché non la si
    // rimette; e una casella si può spegnere.
    void tolta()
    {
        battezza(u"R1"_s, {u"Carlo"_s, u"Carlotta"_s});
        apre(u"R1"_s);
        const Campo *nome = casella(u"battezzato"_s, u"Nome"_s);
        const QString via = batte(nome, u"car"_s).first();
        tasto(Qt::Key_Delete, Qt::ShiftModifier);
        QVERIFY(!batte(nome, u"l"_s).contains(via));
        QCOMPARE(nome->testo(), u"carl"_s);
        tasto(Qt::Key_F6);
        QVERIFY(batte(nome, u"o"_s).isEmpty());
        const auto tolte = scheda->repertorio()->tolte();
        QCOMPARE(tolte.size(), 2);
        scheda.reset();
        connessione().Close();
        const auto va = [](qint64, qint64) { return true; };
        const QString riparato = archivio->accanto(u"riparato.tvd"_s);
        salvaArchivio(archivio->percorso(), riparato, va);
        compattaArchivio(archivio->percorso(), archivio->accanto(u"Cestino"_s), va);
        for (const QString &file : {archivio->percorso(), riparato}) {
            Aparte aperto(file);
            const auto lette = proposteTolte(aperto);
            QCOMPARE(QSet<PropostaTolta>(lette.begin(), lette.end()), tolte);
        }
        ApriArchivio(archivio->percorso());
        apre(u"R1"_s);
        QVERIFY(batte(casella(u"battezzato"_s, u"Nome"_s), u"ca"_s).isEmpty());
        for (const PropostaTolta &una : tolte)
            scheda->repertorio()->rimette(una);
        QVERIFY(batte(casella(u"battezzato"_s, u"Nome"_s), u"r"_s).contains(via));
    }

    // Di un padre già noto, anche da un altro registro, si sa la moglie; corretto il nome, no. Ciò
    // che è scritto resta, e la moglie proposta si registra.
    void moglie()
    {
        scrive(9, u"R2"_s,
               {{di(u"battezzato"_s, u"Nome"_s), u"Anna"_s},
                {di(u"battezzato"_s, u"Luogo"_s, 20), u"Roncole"_s},
                {di(u"padre"_s, u"Nome"_s), u"Carlo"_s},
                {di(u"padre"_s, u"Cognome"_s), u"Verdi"_s},
                {di(u"madre"_s, u"Nome"_s), u"Luigia"_s},
                {di(u"madre"_s, u"Cognome"_s), u"Uttini"_s},
                {di(u"madre"_s, u"Precisazione"_s), u"filatrice"_s}});
        apre(u"R1"_s);
        aspetta();
        batte(casella(u"battezzato"_s, u"Nome"_s), u"Giosuè"_s);
        batte(casella(u"battezzato"_s, u"Cognome"_s), u"Verdi"_s);
        batte(casella(u"madre"_s, u"Precisazione"_s), u"x"_s);
        batte(casella(u"padre"_s, u"Nome"_s), u"Carlo"_s);
        const Campo *sua = casella(u"madre"_s, u"Cognome"_s);
        QVERIFY(sua->proposto() && sua->testo() == u"Uttini"_s);
        QCOMPARE(casella(u"madre"_s, u"Precisazione"_s)->testo(), u"x"_s);
        QCOMPARE(casella(u"battezzato"_s, u"Luogo"_s, 20)->testo(), u"Roncole"_s);
        batte(casella(u"padre"_s, u"Nome"_s), u"n"_s);
        QVERIFY(sua->vuoto());
        tasto(Qt::Key_Backspace);
        QVERIFY(sua->proposto());
        batte(casella(u"voce"_s, u"CodiceVoce"_s), u"2"_s);
        QVERIFY(scheda->salva());
        QCOMPARE(righe(u"FamiglieConiugi WHERE CodiceFamiglia = 'F2'"_s), 2);
        QCOMPARE(legge(u"SELECT Cognome FROM Individui WHERE Precisazione = 'x'"_s), u"Uttini"_s);
    }

    // La distanza fra le date si impara quando è quasi sempre la stessa.
    void date()
    {
        for (int giorno = 10; giorno < 17; ++giorno) {
            const auto il = [](int quale) { return u"1813-10-%1"_s.arg(quale); };
            scrive(11, u"R3"_s,
                   {{di(u"voce"_s, u"Data"_s), il(giorno + giorno % 3)},
                    {di(u"defunto"_s, u"Nome"_s), u"Anna"_s},
                    {di(u"defunto"_s, u"Data"_s, 26), il(giorno)},
                    {di(u"defunto"_s, u"Data"_s, 27), il(giorno + 1)}});
        }
        apre(u"R3"_s);
        batte(casella(u"voce"_s, u"Data"_s), u"20/10/1813"_s);
        QVERIFY(casella(u"defunto"_s, u"Data"_s, 26)->vuoto());
        batte(casella(u"defunto"_s, u"Data"_s, 26), u"31/10/1813"_s);
        QCOMPARE(casella(u"defunto"_s, u"Data"_s, 27)->valore(), u"1813-11-01"_s);
        QVERIFY(casella(u"defunto"_s, u"Data"_s, 27)->proposto());
    }

    // Chi legge l'archivio non impedisce di scrivere e non si fa aspettare, nemmeno mentre il file
    // è di un altro; poi riprende da dove era.
    void occupato()
    {
        battezza(u"R2"_s, QStringList(60, u"Nicodemo"_s));
        apre(u"R1"_s);
        {
            Aparte altro(archivio->percorso());
            altro.esegui(u"BEGIN EXCLUSIVE"_s);
            QTest::qWait(50);
            scheda->close();
            scheda.reset();
            altro.esegui(u"ROLLBACK"_s);
        }
        apre(u"R1"_s);
        battezza(u"R2"_s, QStringList(20, u"Nicola"_s));
        aspetta();
        QCOMPARE(scheda->repertorio()->motivo(), QString());
        QCOMPARE(batte(casella(u"battezzato"_s, u"Nome"_s), u"nico"_s).size(), 2);
    }

    // La memoria ha un limite: oltre, restano i testi scritti più spesso.
    void limite()
    {
        constexpr size_t limite = 100000;
        Lessico lessico(limite);
        for (int i = 0; i < 50000; ++i) {
            lessico.conta("Rossi");
            lessico.conta("Raro " + QByteArray::number(i));
        }
        lessico.chiude();
        QVERIFY(lessico.byte() < limite);
        QCOMPARE(lessico.cerca("ro", 1), QStringList{u"Rossi"_s});
        QVERIFY(lessico.quanti() > 100);
    }
};

PROVA_CON_FINESTRE(TestCompletamento)

#include "tst_completamento.moc"
