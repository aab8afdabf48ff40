#include "app/avvio.h"
#include "prova_famiglie.h"

#include <QGroupBox>
#include <QRadioButton>

using namespace Qt::StringLiterals;
using namespace modTarvola;

// Le famiglie scritte dalle finestre delle voci e degli individui, una sull'altra.
class TstParentele : public QObject, ProvaFamiglie
{
    Q_OBJECT

private slots:
    void init() { comincia(); }
    void matrimonio();
    void battesimo();
    void individuoGiaAperto();
    void famigliaGiaAperta();

private:
    static void ilMatrimonioNelleTabelle();
    void scriveLaSposa(QDialog *sposa);
};

void TstParentele::ilMatrimonioNelleTabelle()
{
    QCOMPARE(lette(u"SELECT Codice, Voce, Nome, Sesso, Ruolo FROM Individui ORDER BY rowid"_s),
             (QStringList{u"I1;V1;Pietro;M;2"_s, u"I2;V1;Lucia;F;7"_s, u"I3;V1;Carlo;M;36"_s,
                          u"I4;V1;Anna;F;37"_s}));
    QCOMPARE(lette(u"SELECT Codice, Voce, Ruolo FROM Famiglie ORDER BY rowid"_s),
             (QStringList{u"F1;V1;8"_s, u"F2;V1;35"_s, u"F3;V1;35"_s}));
    QCOMPARE(lette(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s),
             (QStringList{u"F1;I1"_s, u"F1;I2"_s, u"F2;I3"_s, u"F3;I4"_s}));
    QCOMPARE(lette(u"SELECT * FROM FamiglieGenitori ORDER BY 1, 2"_s),
             (QStringList{u"F2;I2"_s, u"F3;I1"_s}));
    QCOMPARE(lette(u"SELECT CodiceContesto FROM OperatoriContesti ORDER BY 1"_s),
             (QStringList{u"F1"_s, u"F2"_s, u"F3"_s, u"I1"_s, u"I2"_s, u"I3"_s, u"I4"_s}));
}

// La sposa, e la famiglia da cui viene.
void TstParentele::scriveLaSposa(QDialog *sposa)
{
    QCOMPARE(sposa->windowTitle(), u"Individuo"_s);
    QVERIFY(!sposa->findChild<QGroupBox *>(u"Frame3_0"_s)->isEnabled());
    scrive(sposa, 1, u"Lucia"_s);
    poi([this](QDialog *suoi) {
        poi(chiama(u"Carlo"_s));
        nuovo(suoi, u"Padre"_s);
        QCOMPARE(contesto().IndividuoCorrente, u"I2"_s);
    });
    nuovo(sposa, u"Famiglia Genitori"_s);
    preme(sposa, u"Command1"_s);
}

// Lo sposo con la sposa, e le famiglie da cui ciascuno viene, dalla finestra della voce.
void TstParentele::matrimonio()
{
    const auto laSposa = [this](QDialog *sposa) { scriveLaSposa(sposa); };
    const auto loSposo = [&](QDialog *sposo) {
        scrive(sposo, 1, u"Pietro"_s);
        sposo->findChild<QRadioButton *>(u"Option1_1"_s)->click();
        poi([&](QDialog *coniugi) {
            QCOMPARE(coniugi->windowTitle(), u"Famiglia Coniuge Pietro"_s);
            poi(laSposa);
            nuovo(coniugi, u"Moglie"_s);
            QCOMPARE(elencati(coniugi), (QStringList{u"Sposo"_s, u"Moglie"_s, u"Trascrittore"_s}));
            QCOMPARE(contesto().IndividuoCorrente, u"I1"_s);
        });
        nuovo(sposo, u"Famiglia Coniuge"_s);
        poi([&](QDialog *suoi) {
            poi(chiama(u"Anna"_s));
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
            poi(loSposo);
            nuovo(voce, u"Sposo"_s);
            QCOMPARE(elencati(voce).count(u"Famiglia Genitori"_s), 2);
        });
    ilMatrimonioNelleTabelle();
}

// Il battezzato coi genitori, che si possono anche scrivere partendo dalla voce.
void TstParentele::battesimo()
{
    const auto ilBambino = [&](QDialog *bambino) {
        scrive(bambino, 1, u"Rosa"_s);
        poi([&](QDialog *genitori) {
            for (const auto &[ruolo, nome] :
                 {std::pair{u"Padre"_s, u"Carlo"_s}, std::pair{u"Madre"_s, u"Anna"_s}}) {
                poi(chiama(nome));
                nuovo(genitori, ruolo);
            }
        });
        nuovo(bambino, u"Famiglia Genitori"_s);
        preme(bambino, u"Command1"_s);
    };
    const auto altraFamiglia = [&](QDialog *altra) {
        QCOMPARE(altra->windowTitle(), u"Famiglia"_s);
        poi(chiama(u"Ugo"_s));
        nuovo(altra, u"Padre"_s);
    };
    apre(
        u"fmVoce"_s, [](FinestraEditor &voce) { voce.proprieta.VoceLocaleTipo = 9; },
        [&](QDialog *voce) {
            poi(ilBambino);
            nuovo(voce, u"Battezzato/a"_s);
            poi(altraFamiglia);
            nuovo(voce, u"Famiglia Genitori"_s);
        });
    QCOMPARE(
        lette(u"SELECT Codice, Nome, Sesso, Ruolo FROM Individui ORDER BY rowid"_s),
        (QStringList{u"I1;Rosa;;1"_s, u"I2;Carlo;M;36"_s, u"I3;Anna;F;37"_s, u"I4;Ugo;M;36"_s}));
    QCOMPARE(lette(u"SELECT * FROM FamiglieConiugi ORDER BY 1, 2"_s),
             (QStringList{u"F1;I2"_s, u"F1;I3"_s, u"F2;I4"_s}));
    QCOMPARE(lette(u"SELECT * FROM FamiglieGenitori ORDER BY 1, 2"_s), QStringList{u"F1;I1"_s});
}

void TstParentele::individuoGiaAperto()
{
    esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Sesso, Ruolo) "
           "VALUES ('I1', 'V1', 'Pietro', 'M', 2)"_s);
    esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8)"_s);
    esegui(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1')"_s);
    const auto famigliaAperta = [&](QDialog *famiglia) {
        QCOMPARE(famiglia->windowTitle(), u"Famiglia Coniuge "_s);
        persona->avviso(u"La finestra richiesta è già aperta"_s);
        sceglie(famiglia, u"Sposo"_s);
        preme(famiglia, u"Command3_2"_s);
    };
    apre(
        u"fmIndividuo"_s,
        [](FinestraEditor &finestra) { finestra.proprieta.IndividuoLocale = u"I1"_s; },
        [&](QDialog *individuo) {
            poi(famigliaAperta);
            preme(individuo, u"Command3_2"_s);
        });
}

void TstParentele::famigliaGiaAperta()
{
    esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'P', 36)"_s);
    esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 35)"_s);
    esegui(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1')"_s);
    const auto padre = [&](QDialog *individuo) {
        QCOMPARE(individuo->windowTitle(), u"Individuo"_s);
        persona->avviso(u"La finestra richiesta è già aperta"_s);
        // Il padre ha la famiglia come coniuge, qualunque ne sia il genere.
        sceglie(individuo, u"Famiglia Coniuge"_s);
        preme(individuo, u"Command3_2"_s);
    };
    apreFamiglia(
        35,
        [&](QDialog *famiglia) {
            poi(padre);
            preme(famiglia, u"Command3_2"_s);
        },
        u"f1"_s);
}

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    preparaApplicazione(applicazione);
    TstParentele prova;
    return QTest::qExec(&prova, argc, argv);
}

#include "tst_parentele.moc"
