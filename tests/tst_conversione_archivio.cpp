#include "anteriore.h"
#include "app/conversione_archivio.h"
#include "persona.h"
#include "programma.h"

#include <QDir>

using namespace anteriore;

class TstConversioneArchivio : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_cartella;
    QString m_percorso;
    QString m_cestino;
    Persona m_persona;

    void domanda(bool si)
    {
        m_persona.domanda(u"Il file\n%1\nè nel formato anteriore: per aprirlo va convertito.\n"
                          "Il vecchio file sarà spostato nella cartella 'Cestino'.\n"
                          "Convertire il file?"_s.arg(m_percorso),
                          si, QMessageBox::Question);
    }

    bool converte() const
    {
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

    void cleanup()
    {
        QCOMPARE(m_persona.inattese(), QStringList());
        QVERIFY(m_persona.finita());
    }

    void converteEMetteAlSuoPosto_data()
    {
        QTest::addColumn<QString>("mancanze");
        QTest::newRow("vuoto") << QString();
        QTest::newRow("storia") << u"Il file è stato convertito. Non si è potuto riportare tutto:\n"
                                   "Traduzioni: colonne sconosciute L2, Conteggio\n"
                                   "Tabelle sconosciute: Errori di incollamento"_s;
    }
    void converteEMetteAlSuoPosto()
    {
        QFETCH(QString, mancanze);
        const QByteArray byte =
            byteDi(dato(QString::fromLatin1(QTest::currentDataTag()) + u".tvd"_s));
        scrive(m_percorso, byte);
        QVERIFY(QFile::setPermissions(m_percorso, QFile::ReadOwner | QFile::WriteOwner));
        scrive(m_cartella->filePath(u".parrocchia.tvd.parziale-999999999-0"_s), "a metà");
        domanda(true);
        m_persona.avviso(u"Il file\n"_s + m_percorso + u"\nè stato rinominato\n"_s + m_cestino +
                         u"/parrocchia.tvd"_s);
        if (!mancanze.isEmpty())
            m_persona.avviso(mancanze);
        QVERIFY(converte());
        QCOMPARE(rimasti(), (QStringList{u"Cestino"_s, u"parrocchia.tvd"_s}));
        QCOMPARE(byteDi(m_cestino + u"/parrocchia.tvd"_s), byte);
        QVERIFY(!(QFile::permissions(m_percorso) & QFile::ReadOther));
        const Aparte convertito(m_percorso);
    }

    void lasciaIlVecchioAlSuoPosto_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("avviso");
        QTest::newRow("altra password")
            << u"altra-password"_s
            << u"Operazione non riuscita:\n%1\nla password del file è un'altra"_s;
        QTest::newRow("si risponde No") << u"vuoto"_s << QString();
        QTest::newRow("non va nel Cestino") << u"vuoto"_s << u"Trasferimeto fallito del file%1"_s;
    }
    void lasciaIlVecchioAlSuoPosto()
    {
        QFETCH(QString, file);
        QFETCH(QString, avviso);
        const QByteArray byte = byteDi(dato(file + u".tvd"_s));
        scrive(m_percorso, byte);
        scrive(m_cestino, "non è una cartella");
        const QStringList prima = rimasti();
        if (file == u"vuoto")
            domanda(!avviso.isEmpty());
        if (!avviso.isEmpty())
            m_persona.avviso(avviso.arg(m_percorso));
        QVERIFY(!converte());
        QCOMPARE(rimasti(), prima);
        QCOMPARE(byteDi(m_percorso), byte);
    }
};

PROVA_CON_FINESTRE(TstConversioneArchivio)

#include "tst_conversione_archivio.moc"
