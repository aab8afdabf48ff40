#include "app/area.h"
#include "platform/finestre/memoria_finestre.h"
#include "programma.h"

#include <QHeaderView>
#include <QMdiSubWindow>
#include <QScreen>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QString nome = u"prova"_s;

// Mostra una finestra come farebbe il programma, la porta alle misure date e la chiude.
void usaECambia(const QSize &misure)
{
    QWidget finestra;
    finestra.resize(300, 200);
    memoria::ricordaFinestra(&finestra, nome);
    finestra.show();
    finestra.resize(misure);
    finestra.close();
}

QSize misureRese()
{
    QWidget finestra;
    finestra.resize(300, 200);
    memoria::ricordaFinestra(&finestra, nome);
    return finestra.size();
}

struct Elenco {
    explicit Elenco(int colonne) : modello(1, colonne)
    {
        vista.setModel(&modello);
        memoria::ricordaColonne(vista.horizontalHeader(), nome);
    }
    QStandardItemModel modello;
    QTableView vista;
};

} // namespace

class TestMemoria : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        cartella = std::make_unique<QTemporaryDir>();
        riapre();
    }
    void cleanup() { memoria::usaFile({}); }

    void leMisureTornano()
    {
        // Chi non tocca la finestra ne segue le misure, che possono cambiare col carattere.
        usaECambia({300, 200});
        QVERIFY(!memoria::valore(u"finestre/"_s + nome).isValid());
        usaECambia({420, 310});
        riapre();
        QCOMPARE(misureRese(), QSize(420, 310));
    }

    void unoSchermoPiuPiccoloBasta()
    {
        const QSize schermo = QGuiApplication::primaryScreen()->availableSize();
        usaECambia(schermo * 3);
        const QSize rese = misureRese();
        QVERIFY(rese.width() <= schermo.width() && rese.height() <= schermo.height());
    }

    void unFileRovinatoNonDisturba()
    {
        memoria::usaFile({});
        QFile file(cartella->filePath(u"finestre.ini"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            "[finestre]\nprova=@ByteArray(\\x1\\x2niente)\n[colonne]\nprova-3=a b -7\n\xff\xfe");
        file.close();
        riapre();
        QCOMPARE(misureRese(), QSize(300, 200));
        const Elenco elenco(3);
        QCOMPARE(elenco.vista.columnWidth(2), Elenco(4).vista.columnWidth(2));
    }

    void leColonneAdattateNonSonoDellUtente()
    {
        const auto larghe = [](int) { return 77; };
        {
            Elenco elenco(2);
            memoria::adattaColonne(elenco.vista.horizontalHeader(), larghe);
            QCOMPARE(elenco.vista.columnWidth(1), 77);
        }
        riapre();
        {
            Elenco elenco(2);
            QVERIFY(elenco.vista.columnWidth(1) != 77);
            elenco.vista.setColumnWidth(0, 88);
            memoria::adattaColonne(elenco.vista.horizontalHeader(), larghe);
            QCOMPARE(elenco.vista.columnWidth(0), 88);
        }
        riapre();
        Elenco elenco(2);
        memoria::adattaColonne(elenco.vista.horizontalHeader(), larghe);
        QCOMPARE(elenco.vista.columnWidth(0), 88);
        // Di un elenco con altre colonne non si sa nulla.
        QVERIFY(Elenco(3).vista.columnWidth(0) != 88);
    }

    void gliElenchiTornanoAlLoroPosto()
    {
        const QRect suo(37, 41, 305, 207);
        {
            Area area(nullptr);
            apre(area)->setGeometry(suo);
            area.subWindowList().constFirst()->close();
        }
        riapre();
        Area area(nullptr);
        QMdiSubWindow *finestra = apre(area);
        QCOMPARE(finestra->geometry(), suo);
        // La seconda con lo stesso nome non copre la prima, e una troppo grande resta dentro.
        QVERIFY(apre(area)->geometry() != suo);
        finestra->setGeometry(500, 400, 900, 700);
        area.ricordaPosti();
        Area altra(nullptr);
        const QRect reso = apre(altra)->geometry();
        QVERIFY(altra.viewport()->rect().contains(reso));
    }

private:
    void riapre() const
    {
        memoria::usaFile({});
        memoria::usaFile(cartella->filePath(u"finestre.ini"_s));
    }

    static QMdiSubWindow *apre(Area &area)
    {
        area.resize(640, 480);
        area.show();
        QMdiSubWindow *finestra = area.addSubWindow(new QWidget);
        area.colloca(finestra, u"Voci"_s);
        return finestra;
    }

    std::unique_ptr<QTemporaryDir> cartella;
};

PROVA_CON_FINESTRE(TestMemoria)

#include "tst_memoria.moc"
