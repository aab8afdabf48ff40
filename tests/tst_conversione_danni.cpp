#include "anteriore.h"
#include "db/archivio/conversione.h"

#include <QJsonArray>

#include <algorithm>
#include <random>

using namespace anteriore;

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

// Le tabelle cui mancano righe.
QStringList mancanze(const QString &percorso, const QJsonObject &attese)
{
    Aparte archivio(percorso);
    QStringList trovate;
    for (const QString &tabella : attese.keys()) {
        const auto presenti = archivio.legge(u"SELECT count(*) FROM "_s + tabella);
        if (presenti.toLongLong() != attese[tabella].toArray().size())
            trovate.append(tabella);
    }
    return trovate;
}

} // namespace

class TstConversioneDanni : public QObject
{
    Q_OBJECT

private slots:
    // Qualunque danno finisce in un errore, o in una copia che dice che cosa manca.
    void reggeAiDanni()
    {
        QList<Originale> originali;
        for (const QString &nome : {u"storia"_s, u"pieno-memo"_s, u"codificato"_s, u"pieno-ole"_s})
            originali.append(
                {nome, byteDi(dato(nome + u".tvd"_s)), atteso(nome)[u"tables"_s].toObject()});
        const QTemporaryDir cartella;
        const QString vecchio = cartella.filePath(u"vecchio.tvd"_s);
        const QString nuovo = cartella.filePath(u"nuovo.tvd"_s);
        int mancanti = 0;
        int intere = 0;
        int rifiutate = 0;
        const int copie = volte(60);
        for (int copia = 0; copia < copie; ++copia) {
            const Originale &questo = originali.at(copia % 10 == 0 ? 3 : copia % 3);
            QByteArray file = questo.byte;
            Guastatore(static_cast<quint32>(copia)).guasta(file);
            scrive(vecchio, file);
            try {
                const auto resoconto = converte(vecchio, nuovo, avanti);
                QVERIFY(resoconto);
                const bool intera = passaPerIntero(*resoconto);
                ++(intera ? intere : mancanti);
                const QStringList taciute = intera ? mancanze(nuovo, questo.attese) : QStringList();
                QVERIFY2(taciute.isEmpty(), qPrintable(u"copia %1 di %2: %3"_s.arg(copia).arg(
                                                questo.nome, taciute.join(u", "))));
            } catch (const ado::Errore &) {
                ++rifiutate;
                QVERIFY(!QFile::exists(nuovo));
            }
            QCOMPARE(byteDi(vecchio), file);
            QFile::remove(nuovo);
        }
        // Perché la prova dica qualcosa i danni devono portare a ogni esito.
        QVERIFY(intere > 0 && mancanti > 0 && rifiutate > 0);
    }
};

QTEST_GUILESS_MAIN(TstConversioneDanni)
#include "tst_conversione_danni.moc"
