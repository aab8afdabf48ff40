#include "prova_editori.h"

#include <QLabel>
#include <QScreen>

namespace
{

const QString testoVuoto = u"Impossibile salvare un testo vuoto"_s;

} // namespace

class TstCollegamenti : public QObject, private ProvaEditori
{
    Q_OBJECT

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void primoCollegamento()
    {
        apre(u"fmArchivio"_s, {}, [&](QWidget *finestra) {
            QCOMPARE(comandi(finestra), u"Nea"_s);
            QCOMPARE(parte<QComboBox>(finestra, u"ImageCombo1"_s)->currentIndex(), -1);
            riempie(finestra, u"0=Pieve|L=Testo riportato"_s);
            scriveTesto(u"Perché"_s, u"L'anno\u00a01750\n"_s, true);
            preme(finestra, u"Command3_0"_s);
            QCOMPARE(collegati(finestra), u"B1 Testo riportato, O1 Trascrittore"_s);
            QCOMPARE(comandi(finestra), u"NEA"_s);
            esegui(u"UPDATE Archivi SET Modifica = 'mai'"_s);
            riempie(finestra, u"L=Nota"_s);
            scriveTesto({}, u"a voce"_s, true);
            preme(finestra, u"Command3_0"_s);
            scriveTesto(u"titolo"_s, u"  "_s, true);
            preme(finestra, u"Command3_0"_s);
            scriveTesto(u"titolo"_s, u"perduto"_s, false);
            preme(finestra, u"Command3_0"_s);
            QCOMPARE(collegati(finestra), u"B1 Testo riportato, B2 Nota, O1 Trascrittore"_s);
            // Chi ha appena scritto la nota la trova scelta.
            QCOMPARE(parte<QTreeWidget>(finestra, u"ListView1"_s)->currentItem()->text(0),
                     u"Nota"_s);
        });
        QCOMPARE(colonna(u"SELECT Modifica FROM Archivi"_s), QStringList({u"mai"_s, u"mai"_s}));
        QCOMPARE(colonna(u"SELECT Tipo||IdProprietario||coalesce(Nome, '-')||Campolungo "
                         "FROM Binari"_s),
                 QStringList({u"13A2PerchéL'anno\u00a01750\n"_s, u"12A2-a voce"_s}));
    }

    // Chi è stato eliminato da un'altra finestra non riceve più nulla.
    void recordSparito()
    {
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *finestra) {
            esegui(u"DELETE FROM Voci WHERE Codice = 'V1'"_s);
            riempie(finestra, u"L=Nota"_s);
            persona->avviso(u"Operazione non riuscita:\nil record V1 non esiste più"_s);
            preme(finestra, u"Command3_0"_s);
            QVERIFY(persona->finita());
        });
        QCOMPARE(righe(u"Binari"_s), 0);
    }

    void testiEsistenti_data()
    {
        QTest::addColumn<QString>("titolo");
        QTest::addColumn<QString>("testo");
        QTest::addColumn<bool>("salva");
        QTest::addColumn<QString>("atteso");
        QTest::newRow("cambiati") << u"Città"_s << u"nuovo"_s << true << u"Città nuovo"_s;
        QTest::newRow("senza salvare") << u"Città"_s << u"nuovo"_s << false << u"T testo"_s;
        QTest::newRow("solo il titolo") << u"Città"_s << u"testo"_s << true << u"Città testo"_s;
        QTest::newRow("svuotato") << u"Città"_s << u" "_s << true << u"T testo"_s;
        QTest::newRow("svuotato senza salvare") << u"T"_s << u""_s << false << u"T testo"_s;
    }
    void testiEsistenti()
    {
        QFETCH(QString, titolo);
        QFETCH(QString, testo);
        QFETCH(bool, salva);
        esegui(u"INSERT INTO Binari VALUES ('B1', 12, 'V1', 'T', 'testo')"_s);
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *finestra) {
            scriveTesto(titolo, testo, salva);
            if (salva && testo.trimmed().isEmpty())
                persona->avviso(testoVuoto);
            preme(finestra, u"Command3_2"_s);
            QVERIFY(persona->finita());
        });
        QTEST(legge(u"SELECT Nome || ' ' || Campolungo FROM Binari"_s).toString(), "atteso");
    }

    void solaLettura()
    {
        esegui(u"INSERT INTO Binari VALUES ('B1', 12, 'I1', 'T', 'testo')"_s);
        esegui(u"UPDATE Individui SET Nome = NULL"_s);
        const auto passo = [&](QWidget *finestra) {
            QCOMPARE(comandi(finestra), u"neA"_s);
            QVERIFY(!acceso(finestra, u"Frame3_1"_s));
            persona->poi([](QWidget *testo) {
                QVERIFY(!acceso(testo, u"Command1"_s));
                batte(parte<QPlainTextEdit>(testo, u"Text1"_s), u"altro"_s);
                preme(testo, u"Command4"_s);
            });
            preme(finestra, u"Command3_2"_s);
            QCOMPARE(comandi(finestra), u"neA"_s);
            batte(parte<QLineEdit>(finestra, u"Text1_1"_s), u"altro"_s);
            preme(finestra, u"Command1"_s);
            QVERIFY(!finestra->isVisible());
        };
        apre(u"fmIndividuo"_s, u"I1"_s, passo, 1);
        QCOMPARE(valori(u"Individui"_s, u"Nome Modifica"_s) + valori(u"Binari"_s, u"Campolungo"_s),
                 QStringList({u"(Null)"_s, u"(Null)"_s, u"testo"_s}));
        QCOMPARE(righe(u"OperatoriContesti"_s), 0);
    }

    void pilaDelleFinestre()
    {
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *voce) {
            QVERIFY(!FinestraGiaAperta(u"fmIndividuo"_s, u"I1"_s));
            persona->poi([&](QWidget *individuo) {
                QCOMPARE(individuo->windowTitle(), u"Battezzato/a"_s);
                persona->avviso(u"La finestra richiesta è già aperta"_s);
                QVERIFY(FinestraGiaAperta(u"FMINDIVIDUO"_s, u"i1"_s));
                QVERIFY(!FinestraGiaAperta(u"fmIndividuo"_s, u"I2"_s));
                persona->poi([&](QWidget *evento) {
                    QCOMPARE(evento->windowTitle(), u"Evento"_s);
                    QCOMPARE(parte<QLabel>(evento, u"Label2"_s)->text(), u"Morte"_s);
                    QCOMPARE(contesto().EventoCorrente, QString());
                    const auto &pila = FinestreAperte();
                    QCOMPARE(pila.size(), size_t{3});
                    const double passo = (static_cast<double>(AltezzaTitolo(4)) + 40) *
                                         evento->screen()->logicalDotsPerInchY() / 1440;
                    const QRect schermo = evento->screen()->availableGeometry();
                    int fondo = 0;
                    for (const FinestraEditor *finestra : pila)
                        fondo = qMax(fondo, finestra->y() + finestra->frameGeometry().height());
                    QVERIFY(qAbs(pila[1]->y() - pila[0]->y() - passo) <= 1);
                    QVERIFY(qAbs(pila[2]->y() - pila[1]->y() - passo) <= 1);
                    // Sopra la prima, oltre il suo passo, c'è lo spazio che avanza sotto.
                    const double sopra = pila[0]->y() - schermo.top() - passo;
                    QVERIFY(qAbs(sopra - qMax(0, schermo.bottom() + 1 - fondo)) <= 2);
                    preme(evento, u"Command1"_s);
                });
                riempie(individuo, u"L=Morte"_s);
                preme(individuo, u"Command3_0"_s);
                QCOMPARE(contesto().EventoCorrente, u"E1"_s);
                QCOMPARE(collegati(individuo), u"E1 Morte"_s);
                individuo->close();
            });
            QCOMPARE(collegati(voce), u"I1 Battezzato/a"_s);
            preme(voce, u"Command3_2"_s);
            QCOMPARE(FinestreAperte().size(), size_t{1});
        });
        QCOMPARE(valori(u"Eventi"_s, u"IdProprietario Tipo"_s), QStringList({u"I1"_s, u"26"_s}));
    }

    void generiDellaVoce_data()
    {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("primo");
        QTest::addColumn<int>("quanti");
        QTest::newRow("battesimi") << 9 << u"Battezzato/a"_s << 9;
        QTest::newRow("matrimoni") << 10 << u"Sposa"_s << 9;
        QTest::newRow("morti") << 11 << u"Defunto/a"_s << 8;
        QTest::newRow("altro") << 12 << QString() << 0;
    }
    void generiDellaVoce()
    {
        QFETCH(int, tipo);
        QFETCH(QString, primo);
        const auto finestra = NuovaFinestra(u"fmVoce"_s, nullptr);
        finestra->proprieta.TipoLock = 3;
        finestra->proprieta.VoceLocaleTipo = tipo;
        finestra->Form_Load();
        const auto *generi = parte<QComboBox>(finestra.get(), u"ImageCombo1"_s);
        QTEST(generi->count(), "quanti");
        QVERIFY(primo.isEmpty() || generi->findText(primo) >= 0);
        QCOMPARE(generi->currentIndex(), -1);
    }
};

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstCollegamenti prove;
    return QTest::qExec(&prove, argc, argv);
}

#include "tst_collegamenti.moc"
