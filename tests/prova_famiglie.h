#pragma once

#include "app/contesto.h"
#include "app/finestre.h"
#include "comune.h"
#include "db/famiglie.h"
#include "db/generi.h"
#include "persona.h"
#include "platform/recordset.h"

#include <QComboBox>
#include <QTreeWidget>

// Sceglie il genere con l'etichetta data e preme "Nuovo".
inline void nuovo(QDialog *finestra, const QString &genere)
{
    auto *combo = parte<QComboBox>(finestra, QStringLiteral("ImageCombo1"));
    combo->setCurrentIndex(combo->findText(genere));
    QVERIFY2(combo->currentIndex() >= 0, qUtf8Printable(genere));
    preme(finestra, QStringLiteral("Command3_0"));
}

inline void scrive(QDialog *finestra, int casella, const QString &testo)
{
    batte(parte<QLineEdit>(finestra, QStringLiteral("Text1_%1").arg(casella)), testo);
}

inline QStringList elencati(QDialog *finestra)
{
    QStringList collegamenti;
    const auto *elenco = parte<QTreeWidget>(finestra, QStringLiteral("ListView1"));
    for (int i = 0; i < elenco->topLevelItemCount(); ++i)
        collegamenti << elenco->topLevelItem(i)->text(0);
    return collegamenti;
}

inline void sceglie(QDialog *finestra, const QString &collegamento)
{
    auto *elenco = parte<QTreeWidget>(finestra, QStringLiteral("ListView1"));
    const auto trovati = elenco->findItems(collegamento, Qt::MatchExactly);
    QVERIFY2(!trovati.isEmpty(), qUtf8Printable(collegamento));
    elenco->setCurrentItem(trovati.constFirst());
}

// Le righe di una lettura, coi campi divisi da un punto e virgola.
inline QStringList lette(const QString &istruzione)
{
    QStringList trovate;
    modTarvola::connessione().leggi({istruzione, {}, {}}, [&trovate](const ado::Riga &riga) {
        QStringList campi;
        for (int i = 0; i < riga.colonne(); ++i)
            campi << riga.testo(i);
        trovate << campi.join(u';');
        return true;
    });
    return trovate;
}

// Ciò che le prove delle famiglie hanno in comune: un archivio con una voce di matrimonio, e le
// finestre aperte una sull'altra, ciascuna lasciata al gesto che le spetta e poi chiusa.
class ProvaFamiglie
{
protected:
    using Gesto = std::function<void(QDialog *)>;

    void comincia()
    {
        blocco = ado::adLockOptimistic;
        modTarvola::avviaContesto();
        modTarvola::contesto().OperatoreCorrente = QStringLiteral("O1");
        archivio = std::make_unique<ArchivioDiProva>();
        persona = std::make_unique<Persona>();
        esegui(QStringLiteral("INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Diocesano')"));
        esegui(QStringLiteral(
            "INSERT INTO Registri (Codice, Archivio, Tipo) VALUES ('R1', 'A1', 10)"));
        esegui(
            QStringLiteral("INSERT INTO Voci (Codice, Registro, Volume) VALUES ('V1', 'R1', 'I')"));
        esegui(
            QStringLiteral("INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O1', 'Ada', 42)"));
    }

    void poi(const Gesto &gesto)
    {
        persona->poi([gesto](QWidget *widget) {
            auto *finestra = qobject_cast<QDialog *>(widget);
            QVERIFY(finestra != nullptr);
            gesto(finestra);
            if (finestra->isVisible())
                finestra->reject();
        });
    }

    // Il nome e "Salva".
    static Gesto chiama(const QString &nome)
    {
        return [nome](QDialog *finestra) {
            scrive(finestra, 1, nome);
            preme(finestra, QStringLiteral("Command1"));
        };
    }

    // Apre la finestra e la lascia al gesto dato.
    void apre(const QString &nome, const std::function<void(modTarvola::FinestraEditor &)> &imposta,
              const Gesto &gesto)
    {
        const auto finestra = modTarvola::NuovaFinestra(nome, nullptr);
        finestra->proprieta.Percorso = archivio->percorso();
        finestra->proprieta.ConOperatore = QStringLiteral("O1");
        finestra->proprieta.TipoLock = blocco;
        finestra->proprieta.VoceLocale = QStringLiteral("V1");
        imposta(*finestra);
        poi(gesto);
        QVERIFY(modTarvola::ApriFinestra(*finestra, {}));
        QVERIFY2(persona->finita(), "una finestra attesa non si è aperta");
        QCOMPARE(persona->inattese(), QStringList());
        QVERIFY(modTarvola::FinestreAperte().empty());
    }

    void apreFamiglia(int genere, const Gesto &gesto, const QString &codice = {})
    {
        apre(
            QStringLiteral("fmFamiglia"),
            [&](modTarvola::FinestraEditor &finestra) {
                finestra.proprieta.TipoFamigliaLocale = genere;
                finestra.proprieta.FamigliaLocale = codice;
            },
            gesto);
    }

    std::unique_ptr<ArchivioDiProva> archivio;
    std::unique_ptr<Persona> persona;
    int blocco = ado::adLockOptimistic;
};
