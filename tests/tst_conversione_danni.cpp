#include "db/connessioni.h"
#include "db/conversione.h"
#include "tests/anteriore.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <ctime>
#include <random>

using namespace anteriore;
using namespace modTarvola;
using namespace Qt::StringLiterals;

namespace
{

// Danni di ogni specie, sempre gli stessi per un dato seme.
class Guastatore
{
public:
    explicit Guastatore(quint32 seme) : m_caso(seme) {}

    void guasta(QByteArray &file)
    {
        switch (fino(6)) {
        case 0:
            file.truncate(fino(file.size()));
            break;
        case 1:
            for (qsizetype i = fino(40); i >= 0; --i)
                file[fino(file.size())] = static_cast<char>(fino(256));
            break;
        case 2:
            scambia(file);
            break;
        case 3:
            annoda(file);
            break;
        case 4:
            cambia(file, inizioDiPagina(file), QByteArray(pagina, static_cast<char>(fino(256))));
            break;
        default:
            // Dove stanno i numeri che governano la lettura: in testa e in coda alle pagine.
            for (qsizetype i = fino(8); i >= 0; --i) {
                const qsizetype posto = fino(2) == 0 ? fino(96) : pagina - 1 - fino(32);
                const qsizetype qui = inizioDiPagina(file) + posto;
                file[qui] = static_cast<char>(file[qui] ^ (1 << fino(8)));
            }
        }
    }

private:
    qsizetype fino(qsizetype quanti)
    {
        return std::uniform_int_distribution<qsizetype>(0, quanti - 1)(m_caso);
    }
    qsizetype inizioDiPagina(const QByteArray &file) { return fino(file.size() / pagina) * pagina; }

    void scambia(QByteArray &file)
    {
        const qsizetype una = inizioDiPagina(file);
        const qsizetype altra = inizioDiPagina(file);
        const QByteArray messa = file.mid(una, pagina);
        cambia(file, una, file.mid(altra, pagina));
        cambia(file, altra, messa);
    }

    // Le catene dei campi lunghi e le continuazioni delle definizioni tornano su pagine già viste.
    void annoda(QByteArray &file)
    {
        for (qsizetype inizio = 0; inizio + pagina <= file.size(); inizio += pagina) {
            const auto dove = static_cast<quint32>(inizioDiPagina(file) / pagina);
            const char posto[] = {'\0', static_cast<char>(dove), static_cast<char>(dove >> 8),
                                  '\0'};
            const qsizetype riga = inizio + (numero(file, inizio + 14) & 0x1fff);
            if (file.mid(inizio + 4, 4) == "LVAL" && riga + 4 <= file.size() && fino(2) == 0)
                cambia(file, riga, QByteArray(posto, 4));
            else if (file[inizio] == 2 && fino(10) == 0)
                cambia(file, inizio + 4, QByteArray(posto + 1, 3));
        }
    }

    std::mt19937 m_caso;
};

struct Originale {
    QString nome;
    QByteArray byte;
    QJsonObject attese;
};

Originale originale(const QString &nome)
{
    return {nome, letto(dato(nome + u".tvd"_s)), atteso(nome)[u"tables"_s].toObject()};
}

// Quello che anche un file sano può avere, tabelle e colonne in più, qui non conta.
bool passaPerIntero(const Resoconto &resoconto)
{
    return resoconto.catalogoIntero &&
           std::all_of(resoconto.tabelle.begin(), resoconto.tabelle.end(),
                       [](TabellaConvertita tabella) {
                           tabella.colonneIgnote.clear();
                           return tabella.intera();
                       });
}

// Le tabelle cui mancano righe in una copia che passa per intera.
QStringList mancanzeTaciute(const QString &percorso, const Resoconto &resoconto,
                            const QJsonObject &attese)
{
    QStringList taciute;
    if (!passaPerIntero(resoconto))
        return taciute;
    ado::Connection archivio;
    archivio.Open(stringaDiConnessione(percorso));
    for (const TabellaConvertita &tabella : resoconto.tabelle) {
        const auto presenti =
            archivio.valore({u"SELECT count(*) FROM "_s + tabella.nome, {}, {}}).toLongLong();
        if (presenti != attese[tabella.nome].toArray().size())
            taciute.append(tabella.nome);
    }
    return taciute;
}

} // namespace

class TstConversioneDanni : public QObject
{
    Q_OBJECT

    QList<Originale> m_originali;
    int m_convertite = 0;
    int m_intere = 0;
    int m_rifiutate = 0;
    double m_massimo = 0;

private slots:
    void initTestCase()
    {
        for (const QString &nome : {u"storia"_s, u"pieno-memo"_s, u"codificato"_s, u"pieno-ole"_s})
            m_originali.append(originale(nome));
    }

    // Con TARVOLA_GUASTI nell'ambiente le copie danneggiate sono quante vi è scritto.
    void reggeAiDanni_data()
    {
        QTest::addColumn<int>("prima");
        const int richieste = qEnvironmentVariableIntValue("TARVOLA_GUASTI");
        for (int prima = 0; prima < (richieste > 0 ? richieste : 300); prima += 50)
            QTest::addRow("dalla %d", prima) << prima;
    }

    // Qualunque danno finisce in un errore, o in una copia che dice che cosa manca.
    void reggeAiDanni()
    {
        QFETCH(int, prima);
        const QTemporaryDir cartella;
        const QString vecchio = cartella.filePath(u"vecchio.tvd"_s);
        const QString nuovo = cartella.filePath(u"nuovo.tvd"_s);
        for (int copia = prima; copia < prima + 50; ++copia) {
            const Originale &questo = m_originali.at(copia % 10 == 0 ? 3 : copia % 3);
            QByteArray file = questo.byte;
            Guastatore(static_cast<quint32>(copia)).guasta(file);
            QVERIFY(scritto(vecchio, file));
            const std::clock_t inizio = std::clock();
            try {
                const auto resoconto = converte(vecchio, nuovo, sempre);
                QVERIFY(resoconto);
                ++m_convertite;
                m_intere += passaPerIntero(*resoconto) ? 1 : 0;
                const QStringList taciute = mancanzeTaciute(nuovo, *resoconto, questo.attese);
                QVERIFY2(taciute.isEmpty(), qPrintable(u"copia %1 di %2: %3"_s.arg(copia).arg(
                                                questo.nome, taciute.join(u", "))));
            } catch (const ado::Errore &) {
                ++m_rifiutate;
                QVERIFY(!QFile::exists(nuovo));
            }
            const double secondi = static_cast<double>(std::clock() - inizio) / CLOCKS_PER_SEC;
            m_massimo = qMax(m_massimo, secondi);
            QVERIFY2(secondi < 5, "un danno ferma la lettura");
            QCOMPARE(letto(vecchio), file);
            QFile::remove(nuovo);
        }
    }

    // Perché la prova dica qualcosa i danni devono portare a ogni esito.
    void vedeOgniEsito() const
    {
        qInfo("convertite %d, di cui intere %d; rifiutate %d; la più lenta %.2f s di processore",
              m_convertite, m_intere, m_rifiutate, m_massimo);
        QVERIFY(m_intere > 0 && m_intere < m_convertite && m_rifiutate > 0);
    }
};

QTEST_GUILESS_MAIN(TstConversioneDanni)
#include "tst_conversione_danni.moc"
