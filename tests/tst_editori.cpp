#include "app/avvio.h"
#include "app/contesto.h"
#include "app/finestre.h"
#include "comune.h"
#include "persona.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScreen>
#include <QTreeWidget>

#include <memory>

using namespace Qt::StringLiterals;
using namespace modTarvola;

namespace
{

const QString senzaVoce = u"Selezionare una voce"_s;
const QString nonData = u"Non è stata inserita una data valida"_s;
const QString nonPagina = u"Non è stata inserito un numero di pagina valido"_s;
const QString testoVuoto = u"Impossibile salvare un testo vuoto"_s;

// "0=Duomo|2=" riempie Text1_0 con "Duomo" e svuota Text1_2; "T" e "L" scelgono in ImageCombo2 e
// ImageCombo1.
void riempie(const QWidget *finestra, const QString &testi)
{
    const QStringList coppie = testi.split(u'|', Qt::SkipEmptyParts);
    for (const QString &coppia : coppie) {
        const QString valore = coppia.section(u'=', 1);
        if (coppia.startsWith(u'T'))
            parte<QComboBox>(finestra, u"ImageCombo2"_s)->setCurrentText(valore);
        else if (coppia.startsWith(u'L'))
            parte<QComboBox>(finestra, u"ImageCombo1"_s)->setCurrentText(valore);
        else
            compila(finestra, u"Text1_"_s + coppia.section(u'=', 0, 0), valore);
    }
}

bool acceso(const QWidget *finestra, const QString &nome)
{
    return parte<QWidget>(finestra, nome)->isEnabled();
}

// "Nuovo", "Elimina" e "Apri" come si vedono: maiuscolo chi è abilitato.
QString comandi(const QWidget *finestra)
{
    QString stato;
    for (int i = 0; i < 3; ++i)
        stato += acceso(finestra, u"Command3_%1"_s.arg(i)) ? "NEA"[i] : "nea"[i];
    return stato;
}

// "B1 Nota, O1 Contatto": i collegamenti di un editore.
QString collegati(const QWidget *finestra)
{
    const auto *elenco = parte<QTreeWidget>(finestra, u"ListView1"_s);
    QStringList tutti;
    for (int i = 0; i < elenco->topLevelItemCount(); ++i)
        tutti.append(elenco->topLevelItem(i)->toolTip(0) + u' ' + elenco->topLevelItem(i)->text(0));
    return tutti.join(u", "_s);
}

QStringList valori(const QString &tabella, const QString &colonne)
{
    QStringList letti;
    for (const QString &campo : colonne.split(u' '))
        letti += colonna(u"SELECT %1 FROM %2"_s.arg(campo, tabella));
    return letti;
}

// Dà alla finestra il codice del suo record.
void propria(const QString &nome, ProprietaFinestra &di, const QString &codice)
{
    const QHash<QString, QString ProprietaFinestra::*> sue{
        {u"fmArchivio"_s, &ProprietaFinestra::ArchivioLocale},
        {u"fmRegistro"_s, &ProprietaFinestra::RegistroLocale},
        {u"fmVoce"_s, &ProprietaFinestra::VoceLocale},
        {u"fmIndividuo"_s, &ProprietaFinestra::IndividuoLocale},
        {u"fmEvento"_s, &ProprietaFinestra::EventoLocale}};
    di.*sue.value(nome) = codice;
}

} // namespace

class TstEditori : public QObject
{
    Q_OBJECT

    std::unique_ptr<ArchivioDiProva> archivio;
    std::unique_ptr<Persona> persona;

    // Apre un editore, fa il passo e, se è ancora aperto, lo chiude dalla cornice. Un codice vuoto
    // è un record nuovo, che appartiene ai record messi in init().
    void apre(const QString &nome, const QString &codice, const Persona::Passo &passo,
              int blocco = 3)
    {
        const auto finestra = NuovaFinestra(nome, nullptr);
        ProprietaFinestra &sue = finestra->proprieta;
        sue.Percorso = archivio->percorso();
        sue.ConOperatore = u"O1"_s;
        sue.TipoLock = blocco;
        sue.ArchivioLocale = u"A1"_s;
        sue.RegistroLocale = u"R1"_s;
        sue.VoceLocale = nome == u"fmEvento" ? u"I1"_s : u"V1"_s;
        sue.VoceLocaleTipo = 9;
        propria(nome, sue, codice);
        finestra->Label2 = {u"Etichetta di prova"_s, nome == u"fmEvento" ? 21 : 1};
        persona->poi([&](QWidget *aperta) {
            QCOMPARE(aperta->objectName(), nome);
            passo(aperta);
            aperta->close();
        });
        ApriFinestra(*finestra, {});
        QVERIFY(persona->finita());
        QVERIFY(FinestreAperte().empty());
        QVERIFY(!contesto().SalvataggioRifiutato);
    }

    // Il passo per la finestra dei testi lunghi.
    void scriveTesto(const QString &titolo, const QString &testo, bool salva)
    {
        persona->poi([=](QWidget *finestra) {
            QCOMPARE(finestra->objectName(), u"fmTxtL"_s);
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

    // Lascia la casella col tabulatore e aspetta che il controllo sia fatto.
    static void lascia(QWidget *finestra, const QString &nome)
    {
        finestra->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(finestra));
        auto *casella = parte<QLineEdit>(finestra, nome);
        casella->setFocus();
        QTest::keyClick(casella, Qt::Key_Tab);
        QCoreApplication::processEvents();
    }

private slots:
    void init()
    {
        avviaContesto();
        archivio = std::make_unique<ArchivioDiProva>();
        persona = std::make_unique<Persona>();
        esegui(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')"_s);
        esegui(u"INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) "
               "VALUES ('R1', 'A1', 9, 'Battesimi')"_s);
        esegui(u"INSERT INTO Voci (Codice, Registro, Volume) VALUES ('V1', 'R1', 'I')"_s);
        esegui(
            u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'Zoe', 1)"_s);
        esegui(u"INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O1', 'Ada', 42)"_s);
    }

    void cleanup()
    {
        QCOMPARE(persona->inattese(), QStringList());
        QCOMPARE(contesto().TestoCampoLungo + contesto().NomeCampoLungo, QString());
        QVERIFY(!contesto().TestoModificato && !contesto().NomeModificato);
    }

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
        QTest::addColumn<QString>("testo");
        QTest::addColumn<QString>("scritto");
        const auto righe = [](const char *nome, int casella, const char *coppie) {
            for (const QString &coppia : QString::fromUtf8(coppie).split(u'|'))
                QTest::addRow("%s %d [%s]", nome, casella, qUtf8Printable(coppia))
                    << QString::fromLatin1(nome) << casella << coppia.section(u">"_s, 0, 0)
                    << coppia.section(u">"_s, 1, 1);
        };
        righe("fmRegistro", 4, "1 1 100>0100-01-01|29/2/1900|ieri|  >(Null)|31.12.1899>1899-12-31");
        righe("fmRegistro", 5, "1.1.99|2 2 2000>2000-02-02");
        righe("fmVoce", 3, "4 mar 1750>1750-03-04|31 4 1750|   >(Null)");
        righe("fmVoce", 1, "0>0|2147483647>2147483647|2147483648|-1|dodici|  >(Null)|1.000>1000");
        righe("fmEvento", 4, "30/2/1750|1750-03-04>1750-03-04|  >(Null)");
    }
    void caselleControllate()
    {
        QFETCH(QString, nome);
        QFETCH(int, casella);
        QFETCH(QString, testo);
        QFETCH(QString, scritto);
        const QString nomeCasella = u"Text1_%1"_s.arg(casella);
        const QString messaggio = nome == u"fmVoce" && casella == 1 ? nonPagina : nonData;
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
            if (scritto.isEmpty()) {
                // A chi passa a un altro programma non si dice nulla; "Salva" non salva né chiude.
                QFocusEvent altrove(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
                QApplication::sendEvent(quella, &altrove);
                QCoreApplication::processEvents();
                persona->avviso(messaggio);
                preme(finestra, u"Command1"_s);
                QCoreApplication::processEvents();
                QVERIFY(finestra->isVisible());
                QCOMPARE(quella->text(), testo);
                compila(finestra, nomeCasella, {});
            }
            preme(finestra, u"Command1"_s);
            QVERIFY(!finestra->isVisible());
        });
        const QHash<QString, QStringList> campi{
            {u"fmRegistro"_s, {u"DataIniziale"_s, u"DataFinale"_s}},
            {u"fmVoce"_s, {u"PaginaIniziale"_s, {}, u"Data"_s}},
            {u"fmEvento"_s, {u"Data"_s}}};
        const QString tabella = nome == u"fmRegistro" ? u"Registri"_s
                                : nome == u"fmVoce"   ? u"Voci"_s
                                                      : u"Eventi"_s;
        const QString campo = campi.value(nome).value(casella - (nome == u"fmVoce" ? 1 : 4));
        const QStringList letti =
            colonna(u"SELECT %1 FROM %2 ORDER BY rowid DESC LIMIT 1"_s.arg(campo, tabella));
        QCOMPARE(letti, QStringList(scritto.isEmpty() ? u"(Null)"_s : scritto));
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

    void primoCollegamento()
    {
        apre(u"fmArchivio"_s, {}, [&](QWidget *finestra) {
            QCOMPARE(comandi(finestra), u"Nea"_s);
            QCOMPARE(parte<QComboBox>(finestra, u"ImageCombo1"_s)->currentIndex(), -1);
            riempie(finestra, u"0=Pieve|L=Testo riportato"_s);
            scriveTesto(u"Perché"_s, u"L'anno 1750\n"_s, true);
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
        });
        QCOMPARE(colonna(u"SELECT Modifica FROM Archivi"_s), QStringList({u"mai"_s, u"mai"_s}));
        QCOMPARE(colonna(u"SELECT Tipo||IdProprietario||coalesce(Nome, '-')||Campolungo "
                         "FROM Binari"_s),
                 QStringList({u"13A2PerchéL'anno 1750\n"_s, u"12A2-a voce"_s}));
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
    TstEditori prove;
    return QTest::qExec(&prove, argc, argv);
}

#include "tst_editori.moc"
