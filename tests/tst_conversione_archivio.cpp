#include "app/conversione_archivio.h"
#include "db/connessioni.h"
#include "tests/anteriore.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace anteriore;
using namespace modTarvola;
using namespace Qt::StringLiterals;

class TstConversioneArchivio : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_cartella;
    QString m_percorso;
    QString m_cestino;
    QStringList m_detti;

    // Risponde ai messaggi come farebbe chi guarda, col bottone dato dove c'è, e ne tiene il testo.
    bool converteRispondendo(QMessageBox::StandardButton risposta)
    {
        m_detti.clear();
        QTimer risponde;
        connect(&risponde, &QTimer::timeout, this, [this, risposta] {
            auto *scatola = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (scatola == nullptr)
                return;
            m_detti.append(scatola->text());
            QAbstractButton *bottone = scatola->button(risposta);
            (bottone != nullptr ? bottone : scatola->button(QMessageBox::Ok))->click();
        });
        risponde.start(10);
        QWidget finestra;
        return converteArchivio(&finestra, m_percorso, m_cestino);
    }

    // I file della cartella, anche quelli nascosti.
    QStringList rimasti() const
    {
        return QDir(m_cartella->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private slots:
    void init()
    {
        m_cartella = std::make_unique<QTemporaryDir>();
        m_percorso = m_cartella->filePath(u"parrocchia.tvd"_s);
        m_cestino = m_cartella->filePath(u"Cestino"_s);
    }

    void converteEMetteAlSuoPosto_data()
    {
        QTest::addColumn<int>("messaggi");
        QTest::newRow("vuoto") << 2;
        QTest::newRow("storia") << 3;
    }

    void converteEMetteAlSuoPosto()
    {
        QFETCH(int, messaggi);
        const QByteArray byte =
            letto(dato(QString::fromLatin1(QTest::currentDataTag()) + u".tvd"_s));
        QVERIFY(scritto(m_percorso, byte));
        QVERIFY(QFile::setPermissions(m_percorso, QFile::ReadOwner | QFile::WriteOwner));
        const QString morto = u".parrocchia.tvd.parziale-999999999-0"_s;
        QVERIFY(scritto(m_cartella->filePath(morto), "a metà"));
        QVERIFY(converteRispondendo(QMessageBox::Yes));
        QCOMPARE(rimasti(), (QStringList{u"Cestino"_s, u"parrocchia.tvd"_s}));
        QCOMPARE(letto(m_cestino + u"/parrocchia.tvd"_s), byte);
        QVERIFY(!(QFile::permissions(m_percorso) & QFile::ReadOther));
        ado::Connection archivio;
        archivio.Open(stringaDiConnessione(m_percorso));
        QCOMPARE(m_detti.size(), messaggi);
        QVERIFY(m_detti.first().contains(u"Cestino"_s));
        QCOMPARE(m_detti.at(1), u"Il file\n"_s + m_percorso + u"\nè stato rinominato\n"_s +
                                    m_cestino + u"/parrocchia.tvd"_s);
        if (messaggi == 3) {
            QVERIFY(m_detti.at(2).contains(u"Traduzioni: colonne sconosciute L2, Conteggio"_s));
            QVERIFY(m_detti.at(2).contains(u"Tabelle sconosciute: Errori di incollamento"_s));
        }
    }

    void lasciaIlVecchioAlSuoPosto_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("risponde");
        QTest::addColumn<bool>("cestino");
        QTest::addColumn<QString>("detto");
        QTest::newRow("altra password") << u"altra-password"_s << true << true << u"password"_s;
        QTest::newRow("si risponde No") << u"vuoto"_s << false << true << u"Convertire"_s;
        QTest::newRow("non va nel Cestino")
            << u"vuoto"_s << true << false << u"Trasferimeto fallito del file"_s;
    }

    void lasciaIlVecchioAlSuoPosto()
    {
        QFETCH(QString, file);
        QFETCH(bool, risponde);
        QFETCH(bool, cestino);
        QFETCH(QString, detto);
        const QByteArray byte = letto(dato(file + u".tvd"_s));
        QVERIFY(scritto(m_percorso, byte));
        if (!cestino)
            QVERIFY(scritto(m_cestino, "non è una cartella"));
        const QStringList prima = rimasti();
        QVERIFY(!converteRispondendo(risponde ? QMessageBox::Yes : QMessageBox::No));
        QCOMPARE(rimasti(), prima);
        QCOMPARE(letto(m_percorso), byte);
        QVERIFY2(m_detti.constLast().contains(detto), qPrintable(m_detti.constLast()));
        QCOMPARE(m_detti.contains(u"Trasferimeto fallito del file"_s + m_percorso), !cestino);
    }
};

QTEST_MAIN(TstConversioneArchivio)
#include "tst_conversione_archivio.moc"
