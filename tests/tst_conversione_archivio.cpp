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
    bool converteRispondendo(QMessageBox::StandardButton risposta,
                             const std::function<QString(const QString &)> &nelCestino)
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
        return converteArchivio(&finestra, m_percorso, nelCestino);
    }

    QString sposta(const QString &percorso)
    {
        return QFile::rename(percorso, m_cestino) ? m_cestino : QString();
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
        m_cestino = m_cartella->filePath(u"vecchio.tvd"_s);
    }

    void converteEMetteAlSuoPosto_data()
    {
        QTest::addColumn<int>("messaggi");
        QTest::newRow("vuoto") << 1;
        QTest::newRow("storia") << 2;
    }

    void converteEMetteAlSuoPosto()
    {
        QFETCH(int, messaggi);
        const QByteArray byte =
            letto(dato(QString::fromLatin1(QTest::currentDataTag()) + u".tvd"_s));
        QVERIFY(scritto(m_percorso, byte));
        QVERIFY(converteRispondendo(QMessageBox::Yes,
                                    [this](const QString &vecchio) { return sposta(vecchio); }));
        QCOMPARE(rimasti(), (QStringList{u"parrocchia.tvd"_s, u"vecchio.tvd"_s}));
        QCOMPARE(letto(m_cestino), byte);
        ado::Connection archivio;
        archivio.Open(stringaDiConnessione(m_percorso));
        QCOMPARE(m_detti.size(), messaggi);
        QVERIFY(m_detti.first().contains(u"Cestino"_s));
        if (messaggi == 2) {
            QVERIFY(m_detti.at(1).contains(u"Traduzioni: colonne sconosciute L2, Conteggio"_s));
            QVERIFY(m_detti.at(1).contains(u"Tabelle sconosciute: Errori di incollamento"_s));
        }
    }

    void lasciaIlVecchioAlSuoPosto_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("risponde");
        QTest::addColumn<QString>("cestino");
        QTest::addColumn<int>("messaggi");
        QTest::newRow("altra password") << u"altra-password"_s << true << u"va"_s << 1;
        QTest::newRow("si risponde No") << u"vuoto"_s << false << u"va"_s << 1;
        QTest::newRow("non va nel Cestino") << u"vuoto"_s << true << u"non va"_s << 1;
        QTest::newRow("il nuovo non arriva") << u"vuoto"_s << true << u"sparisce"_s << 2;
    }

    void lasciaIlVecchioAlSuoPosto()
    {
        QFETCH(QString, file);
        QFETCH(bool, risponde);
        QFETCH(QString, cestino);
        QFETCH(int, messaggi);
        const QByteArray byte = letto(dato(file + u".tvd"_s));
        QVERIFY(scritto(m_percorso, byte));
        const auto nelCestino = [&](const QString &vecchio) {
            if (cestino == u"non va"_s)
                return QString();
            if (cestino == u"sparisce"_s) {
                for (const QString &uno : rimasti())
                    QFile::remove(m_cartella->filePath(uno) + u"/parrocchia.tvd"_s);
            }
            return sposta(vecchio);
        };
        QVERIFY(!converteRispondendo(risponde ? QMessageBox::Yes : QMessageBox::No, nelCestino));
        QCOMPARE(rimasti(), QStringList{u"parrocchia.tvd"_s});
        QCOMPARE(letto(m_percorso), byte);
        QCOMPARE(m_detti.size(), messaggi);
    }
};

QTEST_MAIN(TstConversioneArchivio)
#include "tst_conversione_archivio.moc"
