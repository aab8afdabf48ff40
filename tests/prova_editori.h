#pragma once

#include "contesto/contesto.h"
#include "contesto/finestre.h"
#include "finestre_di_prova.h"
#include "programma.h"

#include <QPlainTextEdit>

#include <memory>

// Le colonne di una tabella di casi fatta tutta di testi, e una sua riga.
inline void colonneDiTesto(const std::initializer_list<const char *> &nomi)
{
    for (const char *nome : nomi)
        QTest::addColumn<QString>(nome);
}
inline void riga(const char *caso, const std::initializer_list<const char *> &testi)
{
    QTestData &nuova = QTest::newRow(caso);
    for (const char *testo : testi)
        nuova << QString::fromUtf8(testo);
}

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
        tutti.append(elenco->topLevelItem(i)->data(0, Qt::UserRole).toString() + u' ' +
                     elenco->topLevelItem(i)->text(0));
    return tutti.join(u", "_s);
}

// "A1;Duomo|A2;(Null)": le righe di una lettura e i loro campi.
inline QString lette(const QString &istruzione)
{
    QStringList trovate;
    connessione().leggi({istruzione, {}, {}}, [&trovate](const ado::Riga &letta) {
        QStringList campi;
        for (int i = 0; i < letta.colonne(); ++i)
            campi.append(letta.nullo(i) ? u"(Null)"_s : letta.testo(i));
        trovate.append(campi.join(u';'));
        return true;
    });
    return trovate.join(u'|');
}

// Un archivio con un record per tabella, e gli editori che vi si aprono.
class ProvaEditori
{
protected:
    std::unique_ptr<ArchivioDiProva> archivio;
    std::unique_ptr<Persona> persona;
    int blocco = 3;

    // Il passo davanti alla prossima finestra; se resta aperta la si chiude dalla cornice.
    void poi(const Persona::Passo &passo)
    {
        persona->poi([passo](QWidget *finestra) {
            passo(finestra);
            finestra->close();
        });
    }

    // Apre un editore e fa il passo. Un codice vuoto è un record nuovo, che appartiene ai record
    // messi in comincia(); il genere è quello del registro, della famiglia o dell'operatore.
    void apre(const QString &nome, const QString &codice, int genere, const Persona::Passo &passo)
    {
        using Codice = QString ProprietaFinestra::*;
        const QHash<QString, std::pair<QString, Codice>> editori{
            {u"fmArchivio"_s, {{}, &ProprietaFinestra::ArchivioLocale}},
            {u"fmRegistro"_s, {{}, &ProprietaFinestra::RegistroLocale}},
            {u"fmVoce"_s, {{}, &ProprietaFinestra::VoceLocale}},
            {u"fmIndividuo"_s, {u"V1"_s, &ProprietaFinestra::IndividuoLocale}},
            {u"fmFamiglia"_s, {u"V1"_s, &ProprietaFinestra::FamigliaLocale}},
            {u"fmEvento"_s, {u"I1"_s, &ProprietaFinestra::EventoLocale}},
            {u"fmLuogo"_s, {u"A1"_s, &ProprietaFinestra::LuogoLocale}},
            {u"fmRecapito"_s, {u"A1"_s, &ProprietaFinestra::RecapitoLocale}},
            {u"fmOperatore"_s, {u"A1"_s, &ProprietaFinestra::OperatoreLocale}}};
        const auto finestra = NuovaFinestra(nome, nullptr);
        ProprietaFinestra &sue = finestra->proprieta;
        sue.Percorso = archivio->percorso();
        sue.ConOperatore = u"O1"_s;
        sue.TipoLock = blocco;
        sue.ArchivioLocale = u"A1"_s;
        sue.RegistroLocale = u"R1"_s;
        sue.VoceLocale = editori[nome].first;
        sue.VoceLocaleTipo = sue.TipoFamigliaLocale = sue.TipoOperatore = genere;
        sue.*editori[nome].second = codice;
        finestra->Label2 = {u"Etichetta di prova"_s, nome == u"fmEvento" ? 21 : 1};
        poi([&](QWidget *aperta) {
            QCOMPARE(aperta->objectName(), nome);
            passo(aperta);
        });
        QVERIFY(ApriFinestra(*finestra, {}));
        QVERIFY(persona->finita());
        QVERIFY(FinestreAperte().empty());
        QVERIFY(!contesto().SalvataggioRifiutato);
    }
    void apre(const QString &nome, const QString &codice, const Persona::Passo &passo)
    {
        apre(nome, codice, 9, passo);
    }

    void comincia()
    {
        blocco = 3;
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
