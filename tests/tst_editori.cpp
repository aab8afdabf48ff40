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

private slots:
    void init() { comincia(); }
    void cleanup() { finisce(); }

    void rifiuti_data()
    {
        QTest::addColumn<QString>("nome");
        QTest::addColumn<QString>("testi");
        QTest::addColumn<QString>("messaggio");
        const auto riga = [](const char *caso, const char *nome, const char *testi,
                             const char *messaggio) {
            QTest::newRow(caso) << QString::fromUtf8(nome) << QString::fromUtf8(testi)
                                << QString::fromUtf8(messaggio);
        };
        const char *archivi = "Impossibile salvare un archivio senza nome";
        const char *registri = "Impossibile salvare un registro senza tipo e titolo";
        const char *voci = "Impossibile salvare una voce senza almeno un dettaglio";
        const char *individui = "Impossibile salvare un individuo senza un dettaglio del nome";
        riga("archivio vuoto", "fmArchivio", "", archivi);
        riga("archivio di spazi", "fmArchivio", "0=   |1=Ab|2=Gr", archivi);
        riga("registro senza tipo", "fmRegistro", "0=Libro", registri);
        riga("registro senza titolo", "fmRegistro", "T=Battesimi|0= ", registri);
        riga("voce con la sola data", "fmVoce", "3=4 3 1750|1=  ", voci);
        riga("individuo vuoto", "fmIndividuo", "1=  |5= ", individui);
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
        QCOMPARE(righe(u"OperatoriContesti"_s) + righe(u"Binari"_s), 0);
    }

    void salvataggi_data()
    {
        QTest::addColumn<QString>("nome");
        QTest::addColumn<QString>("testi");
        QTest::addColumn<QString>("colonne");
        QTest::addColumn<QString>("attesi");
        const auto riga = [](const char *caso, const char *nome, const char *testi,
                             const char *colonne, const char *attesi) {
            QTest::newRow(caso) << QString::fromLatin1(nome) << QString::fromUtf8(testi)
                                << QString::fromUtf8(colonne) << QString::fromUtf8(attesi);
        };
        riga("archivio", "fmArchivio", "0=Pieve d'Òrsi|1=  ", "Codice Nome Abbreviazione Gruppo",
             "A2|Pieve d'Òrsi|(Null)|(Null)");
        riga("registro", "fmRegistro", "0=Libro|T=Morti|3= |4=1.2.1700|5=1 gen 1600",
             "Codice Archivio Tipo Titolo EventiCitati DataIniziale DataFinale Supporto",
             "R2|A1|11|Libro|(Null)|1700-02-01|1600-01-01|(Null)");
        riga("voce col solo volume", "fmVoce", "0=II", "Codice Registro Volume PaginaIniziale Data",
             "V2|R1|II|(Null)|(Null)");
        riga("voce con la sola pagina", "fmVoce", "1=12,5", "PaginaIniziale CodiceVoce",
             "13|(Null)");
        riga("voce col solo codice", "fmVoce", "2=7 bis|3=10 ottobre 1582", "CodiceVoce Data",
             "7 bis|1582-10-10");
        riga("individuo con la sola età", "fmIndividuo", "5=60 incirca",
             "Codice Voce Nome Età Ruolo Sesso Legittimo Vivente",
             "I2|V1|(Null)|60 incirca|1|(Null)|(Null)|(Null)");
        riga("evento vuoto", "fmEvento", "",
             "Codice IdProprietario Tipo Data Ora Luogo Indirizzo Causa Valore",
             "E1|I1|21|(Null)|(Null)|(Null)|(Null)|(Null)|(Null)");
        riga("ora sola", "fmEvento", "4=4 3 1750|5=10.30", "Data Ora",
             "1750-03-04|1750-03-04 10:30:00");
        riga("ora senza data", "fmEvento", "5=7", "Data Ora", "(Null)|1899-12-30 07:00:00");
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
        const QHash<QString, std::pair<QString, QString Contesto::*>> tabelle{
            {u"fmArchivio"_s, {u"Archivi"_s, &Contesto::ArchivioCorrente}},
            {u"fmRegistro"_s, {u"Registri"_s, &Contesto::RegistroCorrente}},
            {u"fmVoce"_s, {u"Voci"_s, &Contesto::VoceCorrente}},
            {u"fmIndividuo"_s, {u"Individui"_s, &Contesto::IndividuoCorrente}},
            {u"fmEvento"_s, {u"Eventi"_s, &Contesto::EventoCorrente}}};
        const auto [tabella, corrente] = tabelle.value(nome);
        const QString codice = tabella.front() + (nome == u"fmEvento" ? u"1"_s : u"2"_s);
        const QString quella = u"%1 WHERE Codice = '%2'"_s.arg(tabella, codice);
        QTEST(valori(quella, colonne).join(u'|'), "attesi");
        QVERIFY(legge(u"SELECT Modifica FROM "_s + quella).isValid());
        QCOMPARE(contesto().*corrente, codice);
        QCOMPARE(colonna(u"SELECT CodiceOperatore || CodiceContesto FROM OperatoriContesti"_s),
                 QStringList(u"O1"_s + codice));
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
        QCOMPARE(colonna(u"SELECT %1 ORDER BY rowid DESC LIMIT 1"_s.arg(campo)),
                 QStringList(scritto.isEmpty() ? u"(Null)"_s : scritto));
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
            persona->avviso(nonData);
            preme(finestra, u"Command1"_s);
            QVERIFY(finestra->isVisible());
        });
        // L'etichetta di chi apre era un'altra: il tipo dell'evento resta il suo.
        apre(u"fmEvento"_s, u"E1"_s, [](QWidget *finestra) { preme(finestra, u"Command1"_s); });
        QCOMPARE(valori(u"Eventi"_s, u"Tipo Ora"_s),
                 QStringList({u"20"_s, u"1750-03-04 10:30:00"_s}));
    }

    void caselleNonToccate()
    {
        const QString lungo = u"è"_s.repeated(75);
        esegui(u"UPDATE Voci SET Volume = ?, Data = '1750-03-04 10:30:00', PaginaIniziale = -3, "
               "CodiceVoce = '  '"_s,
               {lungo});
        esegui(u"UPDATE Registri SET DataIniziale = 'verso il 1750', Supporto = ''"_s);
        apre(u"fmVoce"_s, u"V1"_s, [](QWidget *finestra) {
            QCOMPARE(parte<QLineEdit>(finestra, u"Text1_0"_s)->text().size(), 60);
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
        QCOMPARE(valori(u"Voci"_s, u"Volume Data PaginaIniziale CodiceVoce"_s),
                 QStringList({lungo, u"1750-03-04 10:30:00"_s, u"-3"_s, u"(Null)"_s}));
        QCOMPARE(valori(u"Registri"_s, u"Titolo DataIniziale Supporto Tipo"_s),
                 QStringList({u"Altro titolo"_s, u"verso il 1750"_s, u"(Null)"_s, u"9"_s}));
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
        QCOMPARE(valori(u"Individui"_s, u"Sesso Legittimo Vivente"_s),
                 QStringList({u"F"_s, u"(Null)"_s, u"S"_s}));
        apre(u"fmIndividuo"_s, u"I1"_s, [](QWidget *finestra) {
            QVERIFY(!acceso(finestra, u"Frame3_0"_s));
            QVERIFY(acceso(finestra, u"Frame3_2"_s));
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
        });
        QCOMPARE(righe(u"Archivi"_s), 0);
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
        QCOMPARE(valori(u"Voci"_s, u"Volume Modifica"_s), QStringList({u"I"_s, u"(Null)"_s}));
        QVERIFY(!connessione().inTransazione());
    }
};

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstEditori prove;
    return QTest::qExec(&prove, argc, argv);
}

#include "tst_editori.moc"
