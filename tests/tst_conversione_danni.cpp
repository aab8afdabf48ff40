#include "db/connessioni.h"
#include "db/conversione.h"
#include "tests/anteriore.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

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

// Le tabelle cui mancano righe senza che il resoconto lo dica.
QStringList mancanzeTaciute(const QString &percorso, const Resoconto &resoconto,
                            const QJsonObject &attese)
{
    QStringList taciute;
    ado::Connection archivio;
    archivio.Open(stringaDiConnessione(percorso));
    for (const TabellaConvertita &tabella : resoconto.tabelle) {
        const bool passaPerIntera = tabella.lette == tabella.annunciate && tabella.rifiutate == 0 &&
                                    tabella.pagineGuaste == 0 && tabella.righeGuaste == 0;
        const auto presenti =
            archivio.valore({u"SELECT count(*) FROM "_s + tabella.nome, {}, {}}).toLongLong();
        if (passaPerIntera && presenti != attese[tabella.nome].toArray().size())
            taciute.append(tabella.nome);
    }
    return taciute;
}

} // namespace

class TstConversioneDanni : public QObject
{
    Q_OBJECT

private slots:
    // Qualunque danno finisce in un errore, o in una copia che dice che cosa manca. Con
    // TARVOLA_GUASTI nell'ambiente le copie danneggiate sono quante vi è scritto.
    void reggeAiDanni()
    {
        const int richieste = qEnvironmentVariableIntValue("TARVOLA_GUASTI");
        const int copie = richieste > 0 ? richieste : 300;
        const QList<Originale> originali{originale(u"storia"_s), originale(u"pieno-memo"_s),
                                         originale(u"codificato"_s), originale(u"pieno-ole"_s)};
        const QTemporaryDir cartella;
        const QString vecchio = cartella.filePath(u"vecchio.tvd"_s);
        const QString nuovo = cartella.filePath(u"nuovo.tvd"_s);
        int convertite = 0;
        qint64 massimo = 0;
        for (int copia = 0; copia < copie; ++copia) {
            const Originale &questo = originali.at(copia % 10 == 0 ? 3 : copia % 3);
            QByteArray file = questo.byte;
            Guastatore(static_cast<quint32>(copia)).guasta(file);
            QVERIFY(scritto(vecchio, file));
            QElapsedTimer tempo;
            tempo.start();
            try {
                const auto resoconto = converte(vecchio, nuovo, sempre);
                QVERIFY(resoconto);
                ++convertite;
                QCOMPARE(mancanzeTaciute(nuovo, *resoconto, questo.attese), QStringList());
            } catch (const ado::Errore &) {
                QVERIFY(!QFile::exists(nuovo));
            }
            massimo = qMax(massimo, tempo.elapsed());
            QCOMPARE(letto(vecchio), file);
            QFile::remove(nuovo);
        }
        qInfo("copie %d, convertite %d, la più lenta %lld ms", copie, convertite, massimo);
        QVERIFY(convertite > copie / 4 && convertite < copie);
    }
};

QTEST_GUILESS_MAIN(TstConversioneDanni)
#include "tst_conversione_danni.moc"
