#include "prova_editori.h"

#include <QLabel>
#include <QScreen>

#include <algorithm>

namespace
{

const QString testoVuoto = u"Impossibile salvare un testo vuoto"_s;

} // namespace

class TstCollegamenti : public QObject, private ProvaEditori
{
    Q_OBJECT

    // Il passo per la finestra dei testi lunghi.
    void scriveTesto(const QString &titolo, const QString &testo, bool salva)
    {
        persona->poi([=](QWidget *finestra) {
            QCOMPARE(finestra->objectName(), u"fmTxtL"_s);
            QVERIFY(!finestra->windowTitle().contains(u"da salvare"_s));
            compila(finestra, u"Text2"_s, titolo);
            auto *casella = parte<QPlainTextEdit>(finestra, u"Text1"_s);
            casella->selectAll();
            QTest::keyClick(casella, Qt::Key_Delete);
            batte(casella, testo);
            if (salva)
                preme(finestra, u"Command1"_s);
            QTest::keyClick(casella, Qt::Key_Escape);
            QVERIFY(finestra->isVisible());
            preme(finestra, u"Command4"_s);
        });
    }

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
        QCOMPARE(lette(u"SELECT Modifica FROM Archivi"_s), u"mai|mai"_s);
        QCOMPARE(lette(u"SELECT Tipo, IdProprietario, Nome, Campolungo FROM Binari"_s),
                 u"13;A2;Perché;L'anno\u00a01750\n|12;A2;(Null);a voce"_s);
    }

    void testiEsistenti_data()
    {
        colonneDiTesto({"titolo", "testo", "salva", "atteso"});
        riga("cambiati", {"Città", "nuovo", "salva", "Città;nuovo"});
        riga("senza salvare", {"Città", "nuovo", "", "T;testo"});
        riga("solo il titolo", {"Città", "testo", "salva", "Città;testo"});
        riga("svuotato", {"Città", " ", "salva", "T;testo"});
    }
    void testiEsistenti()
    {
        QFETCH(QString, titolo);
        QFETCH(QString, testo);
        QFETCH(QString, salva);
        esegui(u"INSERT INTO Binari VALUES ('B1', 12, 'V1', 'T', 'testo')"_s);
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *finestra) {
            scriveTesto(titolo, testo, !salva.isEmpty());
            if (testo.trimmed().isEmpty())
                persona->avviso(testoVuoto);
            preme(finestra, u"Command3_2"_s);
            QVERIFY(persona->finita());
        });
        QTEST(lette(u"SELECT Nome, Campolungo FROM Binari"_s), "atteso");
    }

    // Due padrini hanno la stessa etichetta: il suggerimento, e il lettore di schermo, dicono chi.
    void chiSonoICollegati()
    {
        esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Cognome, Ruolo) VALUES "
               "('I2', 'V1', 'Èlia', 'Dal Bò', 34), ('I3', 'V1', NULL, NULL, 34)"_s);
        esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 35)"_s);
        esegui(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I2'), ('F1', 'I1')"_s);
        esegui(
            u"INSERT INTO Binari VALUES ('B1', 13, 'V1', 'Atto', 'Addì 4' || char(10) || 'marzo'), "
            "('B2', 14, 'V1', 'atto.png', x'00')"_s);
        esegui(u"INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Luogo) VALUES "
               "('E1', 'I1', 20, '1750-03-04', 'Pieve')"_s);
        const auto parole = [](const QWidget *finestra, int ruolo) {
            QStringList tutte;
            const auto *elenco = parte<QTreeWidget>(finestra, u"ListView1"_s);
            for (int i = 0; i < elenco->topLevelItemCount(); ++i)
                tutte.append(elenco->topLevelItem(i)->data(0, ruolo).toString());
            return tutte.join(u'|');
        };
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *voce) {
            QCOMPARE(parole(voce, Qt::ToolTipRole),
                     u"Atto, Addì 4 marzo (B1)|atto.png (B2)|Zoe (I1)|Èlia Dal Bò (I2)|I3|"
                     "Zoe e Èlia Dal Bò (F1)"_s);
        });
        apre(u"fmIndividuo"_s, u"I1"_s, [&](QWidget *individuo) {
            QCOMPARE(parole(individuo, Qt::AccessibleDescriptionRole).section(u'|', -1),
                     u"04/03/1750, Pieve (E1)"_s);
        });
    }

    // Ctrl e un clic tolgono la riga dalla scelta: nessun comando la tocca.
    void nulladiScelto()
    {
        esegui(u"INSERT INTO Binari VALUES ('B1', 12, 'V1', 'T', 'testo')"_s);
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *voce) {
            auto *elenco = parte<QTreeWidget>(voce, u"ListView1"_s);
            QTest::mouseClick(elenco->viewport(), Qt::LeftButton, Qt::ControlModifier,
                              elenco->visualItemRect(elenco->topLevelItem(0)).center());
            QVERIFY(elenco->selectedItems().isEmpty());
            for (const QString &bottone : {u"Command3_1"_s, u"Command3_2"_s})
                preme(voce, bottone);
            QCOMPARE(collegati(voce), u"B1 Nota, I1 Battezzato/a"_s);
        });
    }

    // La barra del titolo dice che cosa resta da fare, e chi salva un testo vuoto lo sa subito.
    void segniDelTesto()
    {
        esegui(u"INSERT INTO Binari VALUES ('B1', 12, 'V1', ?, 'testo')"_s, {QString(70, u't')});
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *finestra) {
            persona->poi([](QWidget *nota) {
                auto *testo = parte<QPlainTextEdit>(nota, u"Text1"_s);
                auto *titolo = parte<QLineEdit>(nota, u"Text2"_s);
                const auto righe = [nota](const QString &detta) {
                    const auto etichette = nota->findChildren<QLabel *>();
                    return std::count_if(etichette.begin(), etichette.end(), [&](const auto *una) {
                        return una->isVisible() && una->text().contains(detta);
                    });
                };
                QCOMPARE(nota->windowTitle(), u"Nota"_s);
                batte(titolo, u"x"_s);
                QCOMPARE(titolo->text().size(), 70);
                QCOMPARE(righe(u"non è entrato"_s), 1);
                QCOMPARE(nota->windowTitle(), u"Nota"_s);
                batte(testo, u"x"_s);
                QCOMPARE(nota->windowTitle(), u"Nota – da salvare"_s);
                preme(nota, u"Command1"_s);
                QCOMPARE(nota->windowTitle(), u"Nota – si registra chiudendo"_s);
                testo->selectAll();
                QTest::keyClick(testo, Qt::Key_Delete);
                QCOMPARE(nota->windowTitle(), u"Nota – da salvare"_s);
                QCOMPARE(righe(u"testo vuoto"_s), 0);
                preme(nota, u"Command1"_s);
                QCOMPARE(righe(u"testo vuoto"_s), 1);
                batte(testo, u"y"_s);
                QCOMPARE(righe(u"testo vuoto"_s), 0);
                preme(nota, u"Command1"_s);
                preme(nota, u"Command4"_s);
            });
            preme(finestra, u"Command3_2"_s);
        });
        QCOMPARE(lette(u"SELECT length(Nome), Campolungo FROM Binari"_s), u"70;y"_s);
    }

    void solaLettura()
    {
        esegui(u"INSERT INTO Binari VALUES ('B1', 12, 'I1', 'T', 'testo')"_s);
        esegui(u"UPDATE Individui SET Nome = NULL"_s);
        blocco = 1;
        apre(u"fmIndividuo"_s, u"I1"_s, [&](QWidget *finestra) {
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
        });
        QCOMPARE(lette(u"SELECT Individui.Nome, Modifica, Campolungo FROM Individui, Binari"_s),
                 u"(Null);(Null);testo"_s);
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
        QCOMPARE(lette(u"SELECT IdProprietario, Tipo FROM Eventi"_s), u"I1;26"_s);
    }

    // Di un operatore si toglie il legame, e si sa che cosa resta.
    void legameConLOperatore()
    {
        esegui(u"INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O2', 'Ugo', 41)"_s);
        esegui(u"INSERT INTO OperatoriContesti VALUES ('O1', 'A1'), ('O2', 'A1')"_s);
        apre(u"fmArchivio"_s, u"A1"_s, [&](QWidget *finestra) {
            auto *elenco = parte<QTreeWidget>(finestra, u"ListView1"_s);
            for (const char *resta :
                 {"restano.", "restano; non essendo collegato ad altro, potranno essere tolti alla "
                              "prossima eliminazione di un record."}) {
                elenco->setCurrentItem(elenco->topLevelItem(0));
                persona->avvertimento(
                    u"Attenzione! Eliminando questa voce saranno, anche, \n"
                    "eliminate TUTTE le voci ad essa collegate. Procedere?\n"
                    "Si consiglia di annullare l'operazione e di effettuare, prima,\n"
                    "un back-up dell'archivio\n\n\nQui la voce è il collegamento con un "
                    "operatore: sarà tolto soltanto quello. L'operatore e i suoi dati "_s +
                        QString::fromUtf8(resta),
                    true);
                preme(finestra, u"Command3_1"_s);
            }
            QCOMPARE(comandi(finestra), u"Nea"_s);
        });
        QCOMPARE(righe(u"Operatori"_s), 2);
    }

    void generiDellaVoce()
    {
        struct Caso {
            int tipo = 0;
            QString primo;
            int quanti = 0;
        };
        for (const Caso &caso : {Caso{9, u"Battezzato/a"_s, 9}, Caso{10, u"Sposa"_s, 9},
                                 Caso{11, u"Defunto/a"_s, 8}, Caso{12, {}, 0}}) {
            apre(u"fmVoce"_s, {}, caso.tipo, [&](QWidget *voce) {
                const auto *generi = parte<QComboBox>(voce, u"ImageCombo1"_s);
                QCOMPARE(generi->count(), caso.quanti);
                QVERIFY(caso.primo.isEmpty() || generi->findText(caso.primo) >= 0);
                QCOMPARE(generi->currentIndex(), -1);
            });
        }
    }
};

PROVA_CON_FINESTRE(TstCollegamenti)

#include "tst_collegamenti.moc"
