#include "db/lavoro/lavoro.h"
#include "prova_editori.h"

#include <QLabel>
#include <QRadioButton>

namespace
{

const QString senzaVoce = u"Selezionare una voce"_s;
const QString nonData = u"Non è stata inserita una data valida"_s;
const QString nonPagina = u"Non è stata inserito un numero di pagina valido"_s;

} // namespace

class TstEditori : public QObject, private ProvaEditori
{
    Q_OBJECT

    // Con un valore rifiutato nella casella "Salva" lo ripete, non salva e non chiude; a chi passa
    // a un altro programma non si dice nulla. Alla fine la casella è vuota.
    void insiste(QWidget *finestra, QLineEdit *casella, const QString &messaggio)
    {
        const QString testo = casella->text();
        QFocusEvent altrove(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QApplication::sendEvent(casella, &altrove);
        QCoreApplication::processEvents();
        persona->avviso(messaggio);
        preme(finestra, u"Command1"_s);
        QCoreApplication::processEvents();
        QVERIFY(finestra->isVisible());
        QCOMPARE(casella->text(), testo);
        compila(finestra, casella->objectName(), {});
    }

    // Lascia la casella col tabulatore e aspetta che il controllo sia fatto.
    static void lascia(QWidget *finestra, const QString &nome)
    {
        auto *quella = parte<QLineEdit>(finestra, nome);
        quella->setFocus();
        QTest::keyClick(quella, Qt::Key_Tab);
        QCoreApplication::processEvents();
    }

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void rifiuti_data()
    {
        colonneDiTesto({"nome", "testi", "messaggio"});
        const char *archivi = "Impossibile salvare un archivio senza nome";
        const char *registri = "Impossibile salvare un registro senza tipo e titolo";
        const char *voci = "Impossibile salvare una voce senza almeno un dettaglio";
        const char *individui = "Impossibile salvare un individuo senza un dettaglio del nome";
        riga("archivio di spazi", {"fmArchivio", "0=   |1=Ab|2=Gr", archivi});
        riga("registro senza tipo", {"fmRegistro", "0=Libro", registri});
        riga("registro senza titolo", {"fmRegistro", "T=Battesimi|0= ", registri});
        riga("voce con la sola data", {"fmVoce", "3=4 3 1750|1=  ", voci});
        riga("individuo vuoto", {"fmIndividuo", "1=  |5= ", individui});
        riga("recapito di spazi", {"fmRecapito", "0= |2=  ", "Inserire almeno una voce"});
    }
    void rifiuti()
    {
        QFETCH(QString, nome);
        QFETCH(QString, testi);
        QFETCH(QString, messaggio);
        apre(nome, {}, [&](QWidget *finestra) {
            persona->avviso(senzaVoce);
            preme(finestra, u"Command3_0"_s);
            riempie(finestra, testi + u"|L=Nota"_s);
            persona->avviso(messaggio);
            preme(finestra, u"Command3_0"_s);
            QVERIFY(finestra->isVisible());
            QVERIFY(!contesto().SalvataggioRifiutato);
            persona->avviso(messaggio);
            preme(finestra, u"Command1"_s);
            QVERIFY(!finestra->isVisible());
            QVERIFY(contesto().SalvataggioRifiutato);
        });
        for (const QString &tabella : {u"Archivi"_s, u"Registri"_s, u"Voci"_s, u"Individui"_s})
            QCOMPARE(righe(tabella), 1);
        for (const QString &tabella : {u"Comunicazioni"_s, u"OperatoriContesti"_s, u"Binari"_s})
            QCOMPARE(righe(tabella), 0);
    }

    void salvataggi_data()
    {
        colonneDiTesto({"nome", "testi", "colonne", "attesi"});
        riga("archivio", {"fmArchivio", "0=Pieve d'Òrsi|1=  ", "Nome, Abbreviazione, Gruppo",
                          "A2;Pieve d'Òrsi;(Null);(Null)"});
        riga("registro", {"fmRegistro", "0=Libro|T=Morti|3= |4=1.2.1700|5=1 gen 1600",
                          "Archivio, Tipo, Titolo, EventiCitati, DataIniziale, DataFinale",
                          "R2;A1;11;Libro;(Null);1700-02-01;1600-01-01"});
        riga("voce con la sola pagina",
             {"fmVoce", "1=12,5", "Registro, PaginaIniziale, CodiceVoce", "V2;R1;13;(Null)"});
        riga("voce col solo codice",
             {"fmVoce", "2=7 bis|3=10 ottobre 1582", "CodiceVoce, Data", "V2;7 bis;1582-10-10"});
        riga("individuo con la sola età",
             {"fmIndividuo", "5=60 incirca", "Voce, Nome, Età, Ruolo, Sesso, Legittimo",
              "I2;V1;(Null);60 incirca;1;(Null);(Null)"});
        riga("evento vuoto", {"fmEvento", "", "IdProprietario, Tipo, Data, Ora, Luogo, Valore",
                              "E1;I1;21;(Null);(Null);(Null);(Null)"});
        riga("ora sola",
             {"fmEvento", "4=4 3 1750|5=10.30", "Data, Ora", "E1;1750-03-04;1750-03-04 10:30:00"});
        riga("ora senza data", {"fmEvento", "5=7", "Data, Ora", "E1;(Null);1899-12-30 07:00:00"});
        riga("indirizzo vuoto",
             {"fmLuogo", "2=  ", "IdProprietario, Indirizzo1, Indirizzo3", "L1;A1;(Null);(Null)"});
        riga("recapito con la sola posta",
             {"fmRecapito", "3=pieve@esempio.it", "IdProprietario, Telefono, \"E-mail\", Altro2",
              "C1;A1;(Null);pieve@esempio.it;(Null)"});
    }
    void salvataggi()
    {
        QFETCH(QString, nome);
        QFETCH(QString, testi);
        QFETCH(QString, colonne);
        apre(nome, {}, [&](QWidget *finestra) {
            riempie(finestra, testi);
            preme(finestra, u"Command1"_s);
            QVERIFY(!finestra->isVisible());
        });
        const QHash<QString, std::pair<QString, QString>> tabelle{
            {u"fmArchivio"_s, {u"Archivi"_s, contesto().ArchivioCorrente}},
            {u"fmRegistro"_s, {u"Registri"_s, contesto().RegistroCorrente}},
            {u"fmVoce"_s, {u"Voci"_s, contesto().VoceCorrente}},
            {u"fmIndividuo"_s, {u"Individui"_s, contesto().IndividuoCorrente}},
            {u"fmEvento"_s, {u"Eventi"_s, contesto().EventoCorrente}},
            {u"fmLuogo"_s, {u"Luoghi"_s, u"L1"_s}},
            {u"fmRecapito"_s, {u"Comunicazioni"_s, u"C1"_s}}};
        const auto [tabella, corrente] = tabelle.value(nome);
        const QString ultima = tabella + u" ORDER BY rowid DESC LIMIT 1"_s;
        QTEST(lette(u"SELECT Codice, "_s + colonne + u" FROM "_s + ultima), "attesi");
        QVERIFY(legge(u"SELECT Modifica FROM "_s + ultima).isValid());
        QCOMPARE(corrente, lette(u"SELECT Codice FROM "_s + ultima));
        QCOMPARE(legami(), QStringList(u"O1"_s + corrente));
    }

    void caselleControllate_data()
    {
        QTest::addColumn<QString>("nome");
        QTest::addColumn<int>("casella");
        QTest::addColumn<QString>("campo");
        QTest::addColumn<QString>("testo");
        QTest::addColumn<QString>("scritto");
        const auto righe = [](const char *nome, int casella, const char *campo,
                              const char *coppie) {
            for (const QString &coppia : QString::fromUtf8(coppie).split(u'|'))
                QTest::addRow("%s %d [%s]", nome, casella, qUtf8Printable(coppia))
                    << QString::fromLatin1(nome) << casella << QString::fromLatin1(campo)
                    << coppia.section(u">"_s, 0, 0) << coppia.section(u">"_s, 1, 1);
        };
        righe("fmRegistro", 4, "DataIniziale FROM Registri",
              "1 1 100>0100-01-01|29/2/1900|ieri|  >(Null)|31.12.1899>1899-12-31");
        righe("fmRegistro", 5, "DataFinale FROM Registri", "1.1.99|2 2 2000>2000-02-02");
        righe("fmVoce", 3, "Data FROM Voci", "4 mar 1750>1750-03-04|31 4 1750|   >(Null)");
        righe("fmVoce", 1, "PaginaIniziale FROM Voci",
              "0>0|2147483647>2147483647|2147483648|-1|dodici|  >(Null)|1.000>1000");
        righe("fmEvento", 4, "Data FROM Eventi", "30/2/1750|1750-03-04>1750-03-04|  >(Null)");
    }
    void caselleControllate()
    {
        QFETCH(QString, nome);
        QFETCH(int, casella);
        QFETCH(QString, campo);
        QFETCH(QString, testo);
        QFETCH(QString, scritto);
        const QString nomeCasella = u"Text1_%1"_s.arg(casella);
        const QString messaggio = campo.startsWith(u"Pagina") ? nonPagina : nonData;
        apre(nome, {}, [&](QWidget *finestra) {
            riempie(finestra, nome == u"fmRegistro" ? u"0=Libro|T=Morti"_s : u"0=x"_s);
            compila(finestra, nomeCasella, testo);
            if (scritto.isEmpty())
                persona->avviso(messaggio);
            lascia(finestra, nomeCasella);
            QVERIFY(persona->finita());
            auto *quella = parte<QLineEdit>(finestra, nomeCasella);
            QCOMPARE(finestra->focusWidget() == quella, scritto.isEmpty());
            QCOMPARE(quella->text(), testo.trimmed());
            if (scritto.isEmpty())
                insiste(finestra, quella, messaggio);
            preme(finestra, u"Command1"_s);
            QVERIFY(!finestra->isVisible());
        });
        QCOMPARE(lette(u"SELECT %1 ORDER BY rowid DESC LIMIT 1"_s.arg(campo)),
                 scritto.isEmpty() ? u"(Null)"_s : scritto);
    }

    void oraRifiutata()
    {
        esegui(u"INSERT INTO Eventi (Codice, IdProprietario, Tipo, Ora) "
               "VALUES ('E1', 'I1', 20, '1750-03-04 10:30:00')"_s);
        apre(u"fmEvento"_s, u"E1"_s, [&](QWidget *finestra) {
            QCOMPARE(parte<QLineEdit>(finestra, u"Text1_5"_s)->text(),
                     u"mercoledì, 4 mar 1750, 10:30:0"_s);
            compila(finestra, u"Text1_5"_s, u"verso sera"_s);
            lascia(finestra, u"Text1_5"_s);
            persona->avviso(u"Non è stata inserita un'ora valida"_s);
            preme(finestra, u"Command1"_s);
            QVERIFY(finestra->isVisible());
        });
        // L'etichetta di chi apre era un'altra: il tipo dell'evento resta il suo.
        apre(u"fmEvento"_s, u"E1"_s, [](QWidget *finestra) { preme(finestra, u"Command1"_s); });
        QCOMPARE(lette(u"SELECT Tipo, Ora FROM Eventi"_s), u"20;1750-03-04 10:30:00"_s);
    }

    // L'ora va dove va la data, finché le si scrive e quando si registra; non chi ha un giorno suo.
    void oraELaData_data()
    {
        colonneDiTesto({"data", "ora", "date", "attesa"});
        riga("prima l'ora", {"", "", "4 3 1750", "1750-03-04 07:00:00"});
        riga("ora nello stesso giorno",
             {"1750-03-04", "1750-03-04 07:00:00", " |5.3.1750|6.3.1750", "1750-03-06 07:00:00"});
        riga("ora senza giorno",
             {"1750-03-04", "1899-12-30 07:00:00", "5.3.1750", "1750-03-05 07:00:00"});
        riga("ora di un altro giorno",
             {"1750-03-04", "1750-03-05 07:00:00", "6.3.1750", "1750-03-05 07:00:00"});
        riga("non toccata", {"1750-03-04", "1899-12-30 07:00:00", "", "1899-12-30 07:00:00"});
    }
    void oraELaData()
    {
        QFETCH(QString, data);
        QFETCH(QString, ora);
        QFETCH(QString, date);
        esegui(u"INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Ora) "
               "VALUES ('E1', 'I1', 20, nullif(?, ''), nullif(?, ''))"_s,
               {data, ora});
        apre(u"fmEvento"_s, u"E1"_s, [&](QWidget *finestra) {
            if (ora.isEmpty())
                compila(finestra, u"Text1_5"_s, u"7"_s);
            for (const QString &una : date.split(u'|', Qt::SkipEmptyParts))
                compila(finestra, u"Text1_4"_s, una);
            preme(finestra, u"Command1"_s);
        });
        QTEST(lette(u"SELECT Ora FROM Eventi"_s), "attesa");
    }

    void caselleNonToccate()
    {
        const QString lungo = u"è"_s.repeated(75);
        esegui(u"UPDATE Voci SET Volume = ?, Data = '1750-03-04 10:30:00', PaginaIniziale = -3, "
               "CodiceVoce = '  '"_s,
               {lungo});
        esegui(u"UPDATE Registri SET DataIniziale = 'verso il 1750', Supporto = ''"_s);
        apre(u"fmVoce"_s, u"V1"_s, [&lungo](QWidget *finestra) {
            auto *lunga = parte<QLineEdit>(finestra, u"Text1_0"_s);
            QCOMPARE(lunga->text(), lungo);
            batte(lunga, u"x"_s);
            QCOMPARE(lunga->text(), lungo);
            QVERIFY(!lunga->accessibleDescription().isEmpty());
            QCOMPARE(parte<QLineEdit>(finestra, u"Text1_3"_s)->text(), u"4 mar 1750"_s);
            lascia(finestra, u"Text1_1"_s);
            preme(finestra, u"Command1"_s);
        });
        apre(u"fmRegistro"_s, u"R1"_s, [](QWidget *finestra) {
            QVERIFY(!acceso(finestra, u"ImageCombo2"_s));
            QCOMPARE(parte<QComboBox>(finestra, u"ImageCombo2"_s)->currentText(), u"Battesimi"_s);
            riempie(finestra, u"0=Altro titolo"_s);
            preme(finestra, u"Command1"_s);
        });
        QCOMPARE(lette(u"SELECT Volume, Data, PaginaIniziale, CodiceVoce FROM Voci"_s),
                 lungo + u";1750-03-04 10:30:00;-3;(Null)"_s);
        QCOMPARE(lette(u"SELECT Titolo, DataIniziale, Supporto, Tipo FROM Registri"_s),
                 u"Altro titolo;verso il 1750;(Null);9"_s);
    }

    void dueCaselleCattive()
    {
        apre(u"fmRegistro"_s, {}, [&](QWidget *finestra) {
            compila(finestra, u"Text1_4"_s, u"ieri"_s);
            auto *dopo = parte<QLineEdit>(finestra, u"Text1_5"_s);
            compila(finestra, u"Text1_5"_s, u"domani"_s);
            QVERIFY(finestra->focusWidget() == dopo);
            // Il fuoco torna dov'era, e la casella che lo perde così non parla anche lei.
            persona->avviso(nonData);
            QTest::keyClick(dopo, Qt::Key_Backtab, Qt::ShiftModifier);
            for (int i = 0; i < 5; ++i)
                QCoreApplication::processEvents();
            QVERIFY(persona->finita());
        });
    }

    void scelteDellIndividuo()
    {
        esegui(u"UPDATE Individui SET Sesso = 'm', Legittimo = 'N', Vivente = 'S'"_s);
        apre(u"fmIndividuo"_s, u"I1"_s, [&](QWidget *finestra) {
            QCOMPARE(parte<QLabel>(finestra, u"Label2"_s)->text(), u"Battezzato/a"_s);
            for (const char *scelto : {"Option1_0", "Option1_5", "Option1_7"})
                QVERIFY(parte<QRadioButton>(finestra, QLatin1String(scelto))->isChecked());
            QVERIFY(acceso(finestra, u"Frame3_0"_s));
            riempie(finestra, u"L=Famiglia Coniuge"_s);
            persona->avviso(
                u"Per creare una famiglia come coniuge è necessario definire il sesso"_s);
            preme(finestra, u"Command3_0"_s);
            preme(finestra, u"Option1_2"_s);
            preme(finestra, u"Option1_3"_s);
            preme(finestra, u"Command1"_s);
        });
        QCOMPARE(lette(u"SELECT Sesso, Legittimo, Vivente FROM Individui"_s), u"F;(Null);S"_s);
        apre(u"fmIndividuo"_s, u"I1"_s, [](QWidget *finestra) {
            QVERIFY(!acceso(finestra, u"Frame3_0"_s));
            QVERIFY(acceso(finestra, u"Frame3_2"_s));
        });
    }

    // Ciò che si scrive altrove compare da sé; di un altro archivio non importa.
    void collegamentiDaSe()
    {
        apre(u"fmArchivio"_s, u"A1"_s, [&](QWidget *finestra) {
            {
                Lavoro lavoro(connessione());
                lavoro.scrive({u"Binari"_s, {}, {{u"IdProprietario"_s, u"A1"_s}, {u"Tipo"_s, 12}}});
                lavoro.conferma();
            }
            QCOMPARE(collegati(finestra), QString());
            QTRY_COMPARE(collegati(finestra), u"B1 Nota"_s);
            esegui(u"DELETE FROM Binari"_s);
            emit annunci().avvenuto({{}, archivio->accanto(u"altro.tvd"_s), nullptr, {}});
            QCoreApplication::processEvents();
            QCOMPARE(collegati(finestra), u"B1 Nota"_s);
        });
    }

    void tasti()
    {
        apre(u"fmArchivio"_s, {}, [&](QWidget *finestra) {
            compila(finestra, u"Text1_0"_s, u"Pieve"_s);
            for (const auto tasto : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
                QTest::keyClick(parte<QLineEdit>(finestra, u"Text1_0"_s), tasto);
                QVERIFY(finestra->isVisible());
            }
        });
        QCOMPARE(righe(u"Archivi"_s), 1);
    }

    void guasti()
    {
        const QString inizio = u"Operazione non riuscita:\n"_s;
        apre(u"fmArchivio"_s, u"A1"_s, [&](QWidget *finestra) {
            compila(finestra, u"Text1_0"_s, u"Pieve"_s);
            esegui(u"DELETE FROM Archivi"_s);
            persona->avviso(inizio + u"il record non esiste più"_s);
            preme(finestra, u"Command1"_s);
            QVERIFY(finestra->isVisible());
            QCOMPARE(parte<QLineEdit>(finestra, u"Text1_0"_s)->text(), u"Pieve"_s);
            // Chi è stato eliminato da un'altra finestra non riceve più nulla.
            riempie(finestra, u"L=Nota"_s);
            persona->avviso(inizio + u"il record A1 non esiste più"_s);
            preme(finestra, u"Command3_0"_s);
        });
        QCOMPARE(righe(u"Archivi"_s) + righe(u"Binari"_s), 0);
        apre(u"fmRegistro"_s, {}, [&](QWidget *finestra) {
            riempie(finestra, u"0=Libro|T=Morti"_s);
            persona->avviso(inizio + u"il record A1, di cui questo fa parte, non esiste più"_s);
            preme(finestra, u"Command1"_s);
            QVERIFY(finestra->isVisible());
        });
        QCOMPARE(righe(u"Registri"_s), 1);
        apre(u"fmVoce"_s, u"V1"_s, [&](QWidget *finestra) {
            compila(finestra, u"Text1_0"_s, u"II"_s);
            esegui(u"DROP TABLE OperatoriContesti"_s);
            persona->avviso(inizio + u"no such table: OperatoriContesti"_s);
            preme(finestra, u"Command1"_s);
            QVERIFY(finestra->isVisible());
        });
        QCOMPARE(lette(u"SELECT Volume, Modifica FROM Voci"_s), u"I;(Null)"_s);
        QVERIFY(!connessione().inTransazione());
    }
};

PROVA_CON_FINESTRE(TstEditori)

#include "tst_editori.moc"
