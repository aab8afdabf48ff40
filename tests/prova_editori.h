#pragma once

#include "app/avvio.h"
#include "app/contesto.h"
#include "app/finestre.h"
#include "comune.h"
#include "persona.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QTreeWidget>

#include <memory>

using namespace Qt::StringLiterals;
using namespace modTarvola;

// "0=Duomo|2=" riempie Text1_0 con "Duomo" e svuota Text1_2; "T" e "L" scelgono in ImageCombo2 e
// ImageCombo1.
inline void riempie(const QWidget *finestra, const QString &testi)
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

inline bool acceso(const QWidget *finestra, const QString &nome)
{
    return parte<QWidget>(finestra, nome)->isEnabled();
}

// "Nuovo", "Elimina" e "Apri" come si vedono: maiuscolo chi è abilitato.
inline QString comandi(const QWidget *finestra)
{
    QString stato;
    for (int i = 0; i < 3; ++i)
        stato += acceso(finestra, u"Command3_%1"_s.arg(i)) ? "NEA"[i] : "nea"[i];
    return stato;
}

// "B1 Nota, O1 Contatto": i collegamenti di un editore.
inline QString collegati(const QWidget *finestra)
{
    const auto *elenco = parte<QTreeWidget>(finestra, u"ListView1"_s);
    QStringList tutti;
    for (int i = 0; i < elenco->topLevelItemCount(); ++i)
        tutti.append(elenco->topLevelItem(i)->toolTip(0) + u' ' + elenco->topLevelItem(i)->text(0));
    return tutti.join(u", "_s);
}

inline QStringList valori(const QString &tabella, const QString &colonne)
{
    QStringList letti;
    for (const QString &campo : colonne.split(u' '))
        letti += colonna(u"SELECT %1 FROM %2"_s.arg(campo, tabella));
    return letti;
}

// Dà alla finestra il codice del suo record.
inline void propria(const QString &nome, ProprietaFinestra &di, const QString &codice)
{
    const QHash<QString, QString ProprietaFinestra::*> sue{
        {u"fmArchivio"_s, &ProprietaFinestra::ArchivioLocale},
        {u"fmRegistro"_s, &ProprietaFinestra::RegistroLocale},
        {u"fmVoce"_s, &ProprietaFinestra::VoceLocale},
        {u"fmIndividuo"_s, &ProprietaFinestra::IndividuoLocale},
        {u"fmEvento"_s, &ProprietaFinestra::EventoLocale}};
    di.*sue.value(nome) = codice;
}

// Un archivio con un record per tabella, e gli editori che vi si aprono.
class ProvaEditori
{
protected:
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

    void comincia()
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

    void finisce()
    {
        QCOMPARE(persona->inattese(), QStringList());
        QCOMPARE(contesto().TestoCampoLungo + contesto().NomeCampoLungo, QString());
        QVERIFY(!contesto().TestoModificato && !contesto().NomeModificato);
    }
};
