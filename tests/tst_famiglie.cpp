#include "app/avvio.h"
#include "app/contesto.h"
#include "app/finestre.h"
#include "db/codici.h"
#include "db/connessioni.h"
#include "db/famiglie.h"
#include "db/generi.h"
#include "db/modello.h"
#include "platform/recordset.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using namespace modTarvola;

namespace
{

// I gesti di una persona, uno per ciascuna finestra che si apre, nell'ordine in cui si aprono.
class Persona
{
public:
    using Gesto = std::function<void(QDialog *)>;
    void poi(Gesto gesto)
    {
        m_gesti.push_back(std::move(gesto));
        if (m_gesti.size() == 1)
            aspetta();
    }
    bool finito() const { return m_gesti.empty(); }

private:
    void aspetta()
    {
        QTimer::singleShot(0, qApp, [this] {
            auto *finestra = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (finestra == nullptr || finestra == m_ultima) {
                aspetta();
                return;
            }
            m_ultima = finestra;
            const Gesto gesto = m_gesti.front();
            m_gesti.erase(m_gesti.begin());
            if (!m_gesti.empty())
                aspetta();
            gesto(finestra);
            if (finestra->isVisible())
                finestra->reject();
            m_ultima = nullptr;
        });
    }
    std::vector<Gesto> m_gesti;
    QDialog *m_ultima = nullptr;
};

void preme(QDialog *finestra, const QString &nome)
{
    QTest::mouseClick(finestra->findChild<QPushButton *>(nome), Qt::LeftButton);
}

// Sceglie il genere con l'etichetta data e preme "Nuovo".
void nuovo(QDialog *finestra, const QString &genere)
{
    auto *combo = finestra->findChild<QComboBox *>(u"ImageCombo1"_s);
    combo->setCurrentIndex(combo->findText(genere));
    QVERIFY2(combo->currentIndex() >= 0, qUtf8Printable(genere));
    preme(finestra, u"Command3_0"_s);
}

void scrive(QDialog *finestra, int casella, const QString &testo)
{
    QTest::keyClicks(finestra->findChild<QLineEdit *>(u"Text1_%1"_s.arg(casella)), testo);
}

// Il nome e "Salva".
Persona::Gesto chiama(const QString &nome)
{
    return [nome](QDialog *finestra) {
        scrive(finestra, 1, nome);
        preme(finestra, u"Command1"_s);
    };
}

QStringList offerti(QDialog *finestra)
{
    QStringList generi;
    const auto *combo = finestra->findChild<QComboBox *>(u"ImageCombo1"_s);
    for (int i = 0; i < combo->count(); ++i)
        generi << combo->itemText(i);
    return generi;
}

QStringList elencati(QDialog *finestra)
{
    QStringList collegamenti;
    const auto *elenco = finestra->findChild<QTreeWidget *>(u"ListView1"_s);
    for (int i = 0; i < elenco->topLevelItemCount(); ++i)
        collegamenti << elenco->topLevelItem(i)->text(0);
    return collegamenti;
}

void sceglie(QDialog *finestra, const QString &collegamento)
{
    auto *elenco = finestra->findChild<QTreeWidget *>(u"ListView1"_s);
    const auto trovati = elenco->findItems(collegamento, Qt::MatchExactly);
    QVERIFY2(!trovati.isEmpty(), qUtf8Printable(collegamento));
    elenco->setCurrentItem(trovati.constFirst());
}

// Le righe di una lettura, coi campi divisi da un punto e virgola.
QStringList righe(const QString &istruzione)
{
    QStringList lette;
    connessione().leggi({istruzione, {}, {}}, [&lette](const ado::Riga &riga) {
        QStringList campi;
        for (int i = 0; i < riga.colonne(); ++i)
            campi << riga.testo(i);
        lette << campi.join(u';');
        return true;
    });
    return lette;
}

void esegue(const QString &istruzione)
{
    connessione().Execute({istruzione, {}, {}});
}

} // namespace

class TstFamiglie : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void coppia_data();
    void coppia();
    void offerta_data();
    void offerta();
    void matrimonio();
    void battesimo();
    void chiudeSenzaNulla();
    void senzaGenere();
    void rifiuto();
    void membroNonSalvato();
    void individuoGiaAperto();
    void famigliaGiaAperta();
    void individuoSenzaCoppia();
    void eventi();
    void ultimoMembroEliminato();
    void aMeta();
    void solaLettura();

private:
    // Apre la finestra e la lascia ai gesti dati.
    void apre(const QString &nome, const std::function<void(FinestraEditor &)> &imposta,
              Persona::Gesto gesto);
    void apreFamiglia(int genere, Persona::Gesto gesto, const QString &codice = {});
    static void ilMatrimonioNelleTabelle();
    void scriveLaSposa(QDialog *sposa);

    std::unique_ptr<QTemporaryDir> m_cartella;
    Persona m_persona;
    int m_blocco = ado::adLockOptimistic;
};

void TstFamiglie::init()
{
    m_cartella = std::make_unique<QTemporaryDir>();
    m_blocco = ado::adLockOptimistic;
    avviaContesto();
    contesto().OperatoreCorrente = u"O1"_s;
    creaModello(m_cartella->filePath(u"prova.tvd"_s));
    ApriArchivio(m_cartella->filePath(u"prova.tvd"_s));
    esegue(u"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Diocesano')"_s);
    esegue(u"INSERT INTO Registri (Codice, Archivio, Tipo) VALUES ('R1', 'A1', 10)"_s);
    esegue(u"INSERT INTO Voci (Codice, Registro, Volume) VALUES ('V1', 'R1', 'I')"_s);
    esegue(u"INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O1', 'Ada', 42)"_s);
}

void TstFamiglie::apre(const QString &nome, const std::function<void(FinestraEditor &)> &imposta,
                       Persona::Gesto gesto)
{
    const auto finestra = NuovaFinestra(nome, nullptr);
    finestra->proprieta.Percorso = m_cartella->filePath(u"prova.tvd"_s);
    finestra->proprieta.ConOperatore = u"O1"_s;
    finestra->proprieta.TipoLock = m_blocco;
    finestra->proprieta.VoceLocale = u"V1"_s;
    imposta(*finestra);
    QTimer::singleShot(0, finestra.get(), [&] {
        gesto(finestra.get());
        finestra->reject();
    });
    QVERIFY(ApriFinestra(*finestra, {}));
    QVERIFY2(m_persona.finito(), "una finestra attesa non si è aperta");
    QVERIFY(FinestreAperte().empty());
}

void TstFamiglie::apreFamiglia(int genere, Persona::Gesto gesto, const QString &codice)
{
    apre(
        u"fmFamiglia"_s,
        [&](FinestraEditor &finestra) {
            finestra.proprieta.TipoFamigliaLocale = genere;
            finestra.proprieta.FamigliaLocale = codice;
        },
        std::move(gesto));
}

// Chi è già elencato (e che cos'altro), chi si chiede, se è rifiutato.
void TstFamiglie::coppia_data()
{
    QTest::addColumn<QList<int>>("inseriti");
    QTest::addColumn<int>("chiesto");
    QTest::addColumn<bool>("rifiutato");
    const auto riga = [](const QList<int> &inseriti, int chiesto, bool rifiutato) {
        QStringList nomi;
        for (const int inserito : inseriti)
            nomi << QString::number(inserito);
        QTest::newRow(qUtf8Printable(u"[%1] + %2"_s.arg(nomi.join(u' ')).arg(chiesto)))
            << inseriti << chiesto << rifiutato;
    };
    for (const int ruolo : {6, 7, 36, 37}) {
        riga({}, ruolo, false);
        riga({ruolo}, ruolo, true);
        riga({12, 18, ruolo, 42}, ruolo, true);
        riga({12, 14, 18, 19, 39, 41, 42}, ruolo, false);
    }
    riga({6}, 7, false);
    riga({7}, 6, false);
    riga({36}, 37, false);
    riga({37}, 36, false);
    riga({6, 7}, 6, true);
    for (const int principale : {1, 2, 3, 4, 5, 34, 40}) {
        riga({principale}, 6, false);
        riga({principale}, 7, false);
        riga({principale, 7}, 6, true);
        riga({7, principale}, 6, true);
        riga({principale, 7}, 7, true);
        riga({principale, 36}, 37, true);
    }
    // Anche un ruolo che non è di coppia è rifiutato da una coppia completa; due principali no.
    riga({2, 7}, 1, true);
    riga({2, 7}, 34, true);
    riga({2}, 2, false);
    riga({6, 7}, 1, false);
    riga({2, 7}, 40, false);
    riga({2, 7}, 12, false);
    riga({2, 7}, 18, false);
    riga({2, 7}, 8, false);
}

void TstFamiglie::coppia()
{
    QFETCH(QList<int>, inseriti);
    QFETCH(int, chiesto);
    QTEST(ConiugeGiaInserito({inseriti.begin(), inseriti.end()}, chiesto), "rifiutato");
}

void TstFamiglie::offerta_data()
{
    QTest::addColumn<int>("genere");
    QTest::addColumn<QString>("sesso");
    QTest::addColumn<QString>("ruoli");
    const QString daVoce;
    QTest::newRow("coniugi da una voce") << 8 << daVoce << u"Marito Moglie"_s;
    QTest::newRow("coniugi da un uomo") << 8 << u"M"_s << u"Moglie"_s;
    QTest::newRow("coniugi da una donna") << 8 << u"F"_s << u"Marito"_s;
    QTest::newRow("coniugi da sesso ignoto") << 8 << u"?"_s << u"Marito"_s;
    QTest::newRow("genitori da una voce") << 35 << daVoce << u"Madre Padre"_s;
    QTest::newRow("genitori da un uomo") << 35 << u"M"_s << u"Madre Padre"_s;
    QTest::newRow("senza genere") << 0 << daVoce << QString();
}

void TstFamiglie::offerta()
{
    QFETCH(int, genere);
    QFETCH(QString, sesso);
    QStringList generi;
    const auto guarda = [&](QDialog *famiglia) { generi = offerti(famiglia); };
    if (sesso.isEmpty()) {
        apreFamiglia(genere, guarda);
    } else {
        esegue(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'X', 2)"_s);
        connessione().Execute({u"UPDATE Individui SET Sesso = ?"_s, {sesso}, {}});
        // Con il sesso ignoto la famiglia del coniuge non si crea, ma una che c'è si apre.
        esegue(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8)"_s);
        esegue(u"INSERT INTO %1 VALUES ('F1', 'I1')"_s.arg(
            genere == FamigliaConiuge ? u"FamiglieConiugi"_s : u"FamiglieGenitori"_s));
        apre(
            u"fmIndividuo"_s,
            [](FinestraEditor &finestra) { finestra.proprieta.IndividuoLocale = u"I1"_s; },
            [&](QDialog *individuo) {
                m_persona.poi(guarda);
                preme(individuo, u"Command3_2"_s);
            });
    }
    const QStringList coppia{u"Marito"_s, u"Moglie"_s, u"Padre"_s, u"Madre"_s};
    QStringList trovati;
    for (const QString &uno : generi) {
        if (coppia.contains(uno))
            trovati << uno;
    }
    QTEST(trovati.join(u' '), "ruoli");
}

void TstFamiglie::ilMatrimonioNelleTabelle()
{
    QCOMPARE(righe(u"SELECT Codice, Voce, Nome, Sesso, Ruolo FROM Individui ORDER BY rowid"_s),
             (QStringList{u"I1;V1;Pietro;M;2"_s, u"I2;V1;Lucia;F;7"_s, u"I3;V1;Carlo;M;36"_s,
                          u"I4;V1;Anna;F;37"_s}));
    QCOMPARE(righe(u"SELECT Codice, Voce, Ruolo FROM Famiglie ORDER BY rowid"_s),
             (QStringList{u"F1;V1;8"_s, u"F2;V1;35"_s, u"F3;V1;35"_s}));
    QCOMPARE(righe(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s),
             (QStringList{u"F1;I1"_s, u"F1;I2"_s, u"F2;I3"_s, u"F3;I4"_s}));
    QCOMPARE(righe(u"SELECT * FROM FamiglieGenitori ORDER BY 1, 2"_s),
             (QStringList{u"F2;I2"_s, u"F3;I1"_s}));
    QCOMPARE(righe(u"SELECT CodiceContesto FROM OperatoriContesti ORDER BY 1"_s),
             (QStringList{u"F1"_s, u"F2"_s, u"F3"_s, u"I1"_s, u"I2"_s, u"I3"_s, u"I4"_s}));
}

// La sposa, e la famiglia da cui viene.
void TstFamiglie::scriveLaSposa(QDialog *sposa)
{
    QCOMPARE(sposa->windowTitle(), u"Individuo"_s);
    QVERIFY(!sposa->findChild<QGroupBox *>(u"Frame3_0"_s)->isEnabled());
    scrive(sposa, 1, u"Lucia"_s);
    m_persona.poi([this](QDialog *suoi) {
        m_persona.poi(chiama(u"Carlo"_s));
        nuovo(suoi, u"Padre"_s);
        QCOMPARE(contesto().IndividuoCorrente, u"I2"_s);
    });
    nuovo(sposa, u"Famiglia Genitori"_s);
    preme(sposa, u"Command1"_s);
}

// Lo sposo con la sposa, e le famiglie da cui ciascuno viene, dalla finestra della voce.
void TstFamiglie::matrimonio()
{
    const auto laSposa = [this](QDialog *sposa) { scriveLaSposa(sposa); };
    const auto loSposo = [&](QDialog *sposo) {
        scrive(sposo, 1, u"Pietro"_s);
        sposo->findChild<QRadioButton *>(u"Option1_1"_s)->click();
        m_persona.poi([&](QDialog *coniugi) {
            QCOMPARE(coniugi->windowTitle(), u"Famiglia Coniuge Pietro"_s);
            m_persona.poi(laSposa);
            nuovo(coniugi, u"Moglie"_s);
            QCOMPARE(elencati(coniugi), (QStringList{u"Sposo"_s, u"Moglie"_s, u"Trascrittore"_s}));
            QCOMPARE(contesto().IndividuoCorrente, u"I1"_s);
        });
        nuovo(sposo, u"Famiglia Coniuge"_s);
        m_persona.poi([&](QDialog *suoi) {
            m_persona.poi(chiama(u"Anna"_s));
            nuovo(suoi, u"Madre"_s);
            QCOMPARE(elencati(suoi), (QStringList{u"Madre"_s, u"Trascrittore"_s}));
        });
        nuovo(sposo, u"Famiglia Genitori"_s);
        QCOMPARE(elencati(sposo),
                 (QStringList{u"Famiglia Coniuge"_s, u"Famiglia Genitori"_s, u"Trascrittore"_s}));
        preme(sposo, u"Command1"_s);
    };
    apre(
        u"fmVoce"_s, [](FinestraEditor &voce) { voce.proprieta.VoceLocaleTipo = 10; },
        [&](QDialog *voce) {
            m_persona.poi(loSposo);
            nuovo(voce, u"Sposo"_s);
            QCOMPARE(elencati(voce).count(u"Famiglia Genitori"_s), 2);
        });
    ilMatrimonioNelleTabelle();
}

// Il battezzato coi genitori, che si possono anche scrivere partendo dalla voce.
void TstFamiglie::battesimo()
{
    const auto ilBambino = [&](QDialog *bambino) {
        scrive(bambino, 1, u"Rosa"_s);
        m_persona.poi([&](QDialog *genitori) {
            for (const auto &[ruolo, nome] :
                 {std::pair{u"Padre"_s, u"Carlo"_s}, std::pair{u"Madre"_s, u"Anna"_s}}) {
                m_persona.poi(chiama(nome));
                nuovo(genitori, ruolo);
            }
        });
        nuovo(bambino, u"Famiglia Genitori"_s);
        preme(bambino, u"Command1"_s);
    };
    const auto altraFamiglia = [&](QDialog *altra) {
        QCOMPARE(altra->windowTitle(), u"Famiglia"_s);
        m_persona.poi(chiama(u"Ugo"_s));
        nuovo(altra, u"Padre"_s);
    };
    apre(
        u"fmVoce"_s, [](FinestraEditor &voce) { voce.proprieta.VoceLocaleTipo = 9; },
        [&](QDialog *voce) {
            m_persona.poi(ilBambino);
            nuovo(voce, u"Battezzato/a"_s);
            m_persona.poi(altraFamiglia);
            nuovo(voce, u"Famiglia Genitori"_s);
        });
    QCOMPARE(
        righe(u"SELECT Codice, Nome, Sesso, Ruolo FROM Individui ORDER BY rowid"_s),
        (QStringList{u"I1;Rosa;;1"_s, u"I2;Carlo;M;36"_s, u"I3;Anna;F;37"_s, u"I4;Ugo;M;36"_s}));
    QCOMPARE(righe(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s),
             (QStringList{u"F1;I2"_s, u"F1;I3"_s, u"F2;I4"_s}));
    QCOMPARE(righe(u"SELECT * FROM FamiglieGenitori ORDER BY 1, 2"_s), QStringList{u"F1;I1"_s});
}

void TstFamiglie::chiudeSenzaNulla()
{
    apreFamiglia(8, [](QDialog *famiglia) {
        auto *chiudi = famiglia->findChild<QPushButton *>(u"Command1"_s);
        QCOMPARE(chiudi->text(), u"Chiudi"_s);
        QVERIFY(!famiglia->findChild<QPushButton *>(u"Command3_1"_s)->isEnabled());
        chiudi->click();
        QVERIFY(!famiglia->isVisible());
    });
    QCOMPARE(righe(u"SELECT * FROM Famiglie"_s), QStringList());
}

void TstFamiglie::senzaGenere()
{
    apreFamiglia(8, [&](QDialog *famiglia) {
        m_persona.poi([](QDialog *scatola) {
            QCOMPARE(qobject_cast<QMessageBox *>(scatola)->text(), u"Selezionare una voce"_s);
        });
        preme(famiglia, u"Command3_0"_s);
    });
    QCOMPARE(righe(u"SELECT * FROM Famiglie"_s), QStringList());
}

void TstFamiglie::rifiuto()
{
    apreFamiglia(35, [&](QDialog *famiglia) {
        m_persona.poi(chiama(u"Anna"_s));
        nuovo(famiglia, u"Madre"_s);
        m_persona.poi([](QDialog *scatola) {
            QCOMPARE(qobject_cast<QMessageBox *>(scatola)->text(),
                     u"Questo tipo di coniuge è già stato inserito"_s);
        });
        nuovo(famiglia, u"Madre"_s);
    });
    QCOMPARE(righe(u"SELECT Nome FROM Individui"_s), QStringList{u"Anna"_s});
}

// Chi chiude la finestra del membro senza salvare non fa entrare nella coppia nessun altro.
void TstFamiglie::membroNonSalvato()
{
    esegue(u"INSERT INTO Individui (Codice, Voce, Nome) VALUES ('I9', 'V1', 'altro')"_s);
    contesto().IndividuoCorrente = u"I9"_s;
    apreFamiglia(8, [&](QDialog *famiglia) {
        m_persona.poi([](QDialog *individuo) { scrive(individuo, 1, u"mai"_s); });
        nuovo(famiglia, u"Moglie"_s);
        QCOMPARE(elencati(famiglia), QStringList{u"Trascrittore"_s});
    });
    QCOMPARE(righe(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s), QStringList());
    QCOMPARE(contesto().IndividuoCorrente, QString());
    QCOMPARE(righe(u"SELECT Codice, Voce, Ruolo FROM Famiglie"_s), QStringList{u"F1;V1;8"_s});
}

void TstFamiglie::individuoGiaAperto()
{
    esegue(u"INSERT INTO Individui (Codice, Voce, Nome, Sesso, Ruolo) "
           "VALUES ('I1', 'V1', 'Pietro', 'M', 2)"_s);
    esegue(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8)"_s);
    esegue(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1')"_s);
    const auto famigliaAperta = [&](QDialog *famiglia) {
        QCOMPARE(famiglia->windowTitle(), u"Famiglia Coniuge "_s);
        m_persona.poi([](QDialog *scatola) {
            QCOMPARE(qobject_cast<QMessageBox *>(scatola)->text(),
                     u"La finestra richiesta è già aperta"_s);
        });
        sceglie(famiglia, u"Sposo"_s);
        preme(famiglia, u"Command3_2"_s);
    };
    apre(
        u"fmIndividuo"_s,
        [](FinestraEditor &finestra) { finestra.proprieta.IndividuoLocale = u"I1"_s; },
        [&](QDialog *individuo) {
            m_persona.poi(famigliaAperta);
            preme(individuo, u"Command3_2"_s);
        });
}

void TstFamiglie::famigliaGiaAperta()
{
    esegue(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'P', 36)"_s);
    esegue(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 35)"_s);
    esegue(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1')"_s);
    const auto padre = [&](QDialog *individuo) {
        QCOMPARE(individuo->windowTitle(), u"Individuo"_s);
        m_persona.poi([](QDialog *scatola) {
            QCOMPARE(qobject_cast<QMessageBox *>(scatola)->text(),
                     u"La finestra richiesta è già aperta"_s);
        });
        // Il padre ha la famiglia come coniuge, qualunque ne sia il genere.
        sceglie(individuo, u"Famiglia Coniuge"_s);
        preme(individuo, u"Command3_2"_s);
    };
    apreFamiglia(
        35,
        [&](QDialog *famiglia) {
            m_persona.poi(padre);
            preme(famiglia, u"Command3_2"_s);
        },
        u"f1"_s);
}

// Un ruolo che non è di coppia dà una persona della stessa voce, fuori dalla coppia. Il modello non
// lo offre nelle famiglie, ma un archivio può farlo.
void TstFamiglie::individuoSenzaCoppia()
{
    esegue(u"UPDATE Traduzioni SET Tipo = Tipo + 512 WHERE Codice IN (5, 34)"_s);
    apreFamiglia(8, [&](QDialog *famiglia) {
        m_persona.poi(chiama(u"Teste"_s));
        nuovo(famiglia, u"Testimone"_s);
        nuovo(famiglia, u"Padrino/Madrina"_s);
    });
    QCOMPARE(righe(u"SELECT Voce, Nome, Ruolo FROM Individui"_s), QStringList{u"V1;Teste;5"_s});
    QCOMPARE(righe(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s), QStringList());
}

void TstFamiglie::eventi()
{
    apreFamiglia(8, [&](QDialog *famiglia) {
        m_persona.poi([](QDialog *evento) {
            QCOMPARE(evento->windowTitle(), u"Evento di Famiglia"_s);
            QCOMPARE(contesto().EventoCorrente, QString());
            scrive(evento, 2, u"Vercelli"_s);
            preme(evento, u"Command1"_s);
        });
        nuovo(famiglia, u"Matrimonio"_s);
        sceglie(famiglia, u"Matrimonio"_s);
        m_persona.poi([](QDialog *evento) {
            QCOMPARE(evento->windowTitle(), u"Matrimonio"_s);
            QCOMPARE(contesto().EventoCorrente, u"E1"_s);
            QCOMPARE(evento->findChild<QLineEdit *>(u"Text1_2"_s)->text(), u"Vercelli"_s);
        });
        preme(famiglia, u"Command3_2"_s);
    });
    QCOMPARE(righe(u"SELECT Codice, IdProprietario, Tipo, Luogo FROM Eventi"_s),
             QStringList{u"E1;F1;18;Vercelli"_s});
}

// Con l'ultimo membro va la famiglia; ciò che si aggiunge dopo è di una famiglia nuova.
void TstFamiglie::ultimoMembroEliminato()
{
    apreFamiglia(35, [&](QDialog *famiglia) {
        m_persona.poi(chiama(u"Anna"_s));
        nuovo(famiglia, u"Madre"_s);
        sceglie(famiglia, u"Madre"_s);
        m_persona.poi([](QDialog *scatola) {
            qobject_cast<QMessageBox *>(scatola)->button(QMessageBox::Retry)->click();
        });
        preme(famiglia, u"Command3_1"_s);
        QCOMPARE(elencati(famiglia), QStringList());
        QCOMPARE(righe(u"SELECT Codice FROM Famiglie"_s), QStringList());
        m_persona.poi(chiama(u"Rita"_s));
        nuovo(famiglia, u"Madre"_s);
        QCOMPARE(elencati(famiglia), (QStringList{u"Madre"_s, u"Trascrittore"_s}));
    });
    QCOMPARE(righe(u"SELECT Famiglie.Voce, Famiglie.Ruolo, Nome FROM Famiglie, FamiglieConiugi, "
                   "Individui WHERE Famiglie.Codice = CodiceFamiglia "
                   "AND Individui.Codice = CodiceIndividuo"_s),
             QStringList{u"V1;35;Rita"_s});
}

// Se l'iscrizione di chi apre non riesce, non resta neppure la famiglia.
void TstFamiglie::aMeta()
{
    esegue(u"INSERT INTO Individui (Codice, Voce, Nome) VALUES ('I1', 'V1', 'X')"_s);
    esegue(u"CREATE TRIGGER Guasto BEFORE INSERT ON FamiglieGenitori "
           "BEGIN SELECT RAISE(ABORT, 'guasto'); END"_s);
    apre(
        u"fmFamiglia"_s,
        [](FinestraEditor &finestra) {
            finestra.proprieta.TipoFamigliaLocale = FamigliaGenitori;
            finestra.proprieta.IndividuoLocale = u"I1"_s;
        },
        [&](QDialog *famiglia) {
            m_persona.poi([](QDialog *scatola) {
                QCOMPARE(qobject_cast<QMessageBox *>(scatola)->text(),
                         u"Operazione non riuscita:\nguasto"_s);
            });
            nuovo(famiglia, u"Padre"_s);
            QCOMPARE(righe(u"SELECT * FROM Famiglie"_s), QStringList());
            QCOMPARE(righe(u"SELECT * FROM OperatoriContesti"_s), QStringList());
        });
    QVERIFY(!connessione().inTransazione());
}

void TstFamiglie::solaLettura()
{
    esegue(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'P', 36)"_s);
    esegue(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 35)"_s);
    esegue(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1')"_s);
    m_blocco = ado::adLockReadOnly;
    apreFamiglia(
        35,
        [](QDialog *famiglia) {
            QVERIFY(!famiglia->findChild<QPushButton *>(u"Command3_0"_s)->isEnabled());
            QVERIFY(!famiglia->findChild<QPushButton *>(u"Command3_1"_s)->isEnabled());
            QVERIFY(famiglia->findChild<QPushButton *>(u"Command3_2"_s)->isEnabled());
        },
        u"F1"_s);
}

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstFamiglie prova;
    return QTest::qExec(&prova, argc, argv);
}

#include "tst_famiglie.moc"
