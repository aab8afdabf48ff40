#include "faults/danni.h"

#include "db/archivio/connessioni.h"
#include "platform/riparazione/pagine.h"

#include <QFile>

namespace danni
{

namespace
{

using Guasta = std::function<void(QByteArray &, const Mappa &, QRandomGenerator &)>;

constexpr qsizetype pagina = 4096;
const QString coniugi = QStringLiteral("FamiglieConiugi");
const QString genitori = QStringLiteral("FamiglieGenitori");
const QString operatori = QStringLiteral("OperatoriContesti");
const QString individuo = QStringLiteral("Individuo");

QList<quint32> pagineDa(const pagine::File &file, quint32 radice)
{
    QList<quint32> tutte;
    QList<quint32> daVedere{radice};
    while (!daVedere.isEmpty()) {
        const quint32 numero = daVedere.takeFirst();
        const pagine::Pagina letta = file.pagina(numero);
        tutte.append(numero);
        if (letta.foglia)
            continue;
        for (const pagine::Cella &cella : letta.celle)
            daVedere.append(cella.figlio);
        daVedere.append(letta.ultimoFiglio);
    }
    return tutte;
}

void giraUnBit(QByteArray &file, qsizetype da, qsizetype quanti, QRandomGenerator &caso)
{
    const qsizetype dove = da + caso.bounded(static_cast<int>(quanti));
    file[dove] = static_cast<char>(file.at(dove) ^ (1 << caso.bounded(8)));
}

// Zeri, o byte a caso.
void copre(QByteArray &file, qsizetype da, qsizetype quanti, QRandomGenerator &caso)
{
    const bool vuota = caso.bounded(2) == 0;
    for (qsizetype i = da; i < qMin(da + quanti, file.size()); ++i)
        file[i] = vuota ? '\0' : static_cast<char>(caso.bounded(256));
}

void coprePagina(QByteArray &file, quint32 numero, QRandomGenerator &caso)
{
    copre(file, (qsizetype{numero} - 1) * pagina, pagina, caso);
}

template <class Lista>
auto unoDi(const Lista &lista, QRandomGenerator &caso)
{
    return lista.at(caso.bounded(static_cast<int>(lista.size())));
}

Guasta bitIn(qsizetype da, qsizetype quanti)
{
    return [da, quanti](QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso) {
        giraUnBit(file, da, quanti, caso);
    };
}

Guasta radiciDi(const QStringList &nomi)
{
    return [nomi](QByteArray &file, const Mappa &mappa, QRandomGenerator &caso) {
        for (const QString &nome : nomi)
            coprePagina(file, mappa.alberi.value(nome).constFirst(), caso);
    };
}

// Le radici di tutti gli indici, o di tutte le tabelle.
Guasta radiciDegli(bool indici)
{
    return [indici](QByteArray &file, const Mappa &mappa, QRandomGenerator &caso) {
        for (auto albero = mappa.alberi.cbegin(); albero != mappa.alberi.cend(); ++albero) {
            if (mappa.alberi.contains(albero.key() + individuo) ||
                albero.key().startsWith(QStringLiteral("sqlite_")) == indici)
                coprePagina(file, albero->constFirst(), caso);
        }
    };
}

// Una pagina qualunque dell'albero, se ne ha più d'una non la radice.
Guasta foglieDi(const QStringList &nomi)
{
    return [nomi](QByteArray &file, const Mappa &mappa, QRandomGenerator &caso) {
        for (const QString &nome : nomi) {
            const QList<quint32> pagine = mappa.alberi.value(nome);
            coprePagina(file, unoDi(pagine.size() > 1 ? pagine.mid(1) : pagine, caso), caso);
        }
    };
}

Guasta pagineACaso(int quante)
{
    return [quante](QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso) {
        for (int i = 0; i < quante; ++i)
            copre(file, caso.bounded(static_cast<int>(file.size() / pagina)) * pagina, pagina,
                  caso);
    };
}

Guasta bitACaso(int quanti)
{
    return [quanti](QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso) {
        for (int i = 0; i < quanti; ++i)
            giraUnBit(file, 0, file.size(), caso);
    };
}

Guasta resta(double parte)
{
    return [parte](QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso) {
        const auto lungo = static_cast<double>(file.size());
        file.truncate(static_cast<qsizetype>(lungo * (parte + caso.bounded(1 - parte))));
    };
}

void pagineScambiate(QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso)
{
    const auto quante = static_cast<int>(file.size() / pagina);
    const qsizetype una = caso.bounded(1, quante) * pagina;
    const qsizetype altra = caso.bounded(1, quante) * pagina;
    const QByteArray prima = file.mid(una, pagina);
    file.replace(una, pagina, file.mid(altra, pagina));
    file.replace(altra, pagina, prima);
}

void schemaRotto(QByteArray &file, const Mappa &mappa, QRandomGenerator &caso)
{
    coprePagina(file, unoDi(mappa.schema, caso), caso);
}

void bitNelloSchema(QByteArray &file, const Mappa &mappa, QRandomGenerator &caso)
{
    giraUnBit(file, (qsizetype{unoDi(mappa.schema, caso)} - 1) * pagina + 100, pagina - 100, caso);
}

void settore(QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso)
{
    constexpr qsizetype misura = 512;
    copre(file, caso.bounded(static_cast<int>(file.size() / misura)) * misura, misura, caso);
}

std::vector<Danno> dellaTestata()
{
    constexpr qsizetype intera = 100;
    return {
        {QStringLiteral("firma"), bitIn(0, 16)},
        {QStringLiteral("misura delle pagine"), bitIn(16, 2)},
        {QStringLiteral("formato di scrittura"), bitIn(18, 1)},
        {QStringLiteral("formato di lettura"), bitIn(19, 1)},
        {QStringLiteral("byte riservati"), bitIn(20, 1)},
        {QStringLiteral("frazioni delle pagine"), bitIn(21, 3)},
        {QStringLiteral("pagine attese"), bitIn(28, 4)},
        {QStringLiteral("prima pagina libera"), bitIn(32, 4)},
        {QStringLiteral("pagine libere"), bitIn(36, 4)},
        {QStringLiteral("formato dello schema"), bitIn(44, 4)},
        {QStringLiteral("radice più alta"), bitIn(52, 4)},
        {QStringLiteral("codifica dei testi"), bitIn(56, 4)},
        {QStringLiteral("versione dello schema"), bitIn(60, 4)},
        {QStringLiteral("contrassegno"), bitIn(68, 4)},
        {QStringLiteral("due bit della testata"),
         [](QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso) {
             giraUnBit(file, 0, intera, caso);
             giraUnBit(file, 0, intera, caso);
         }},
        {QStringLiteral("testata intera"),
         [](QByteArray &file, const Mappa & /*mappa*/, QRandomGenerator &caso) {
             copre(file, 0, intera, caso);
         }},
        {QStringLiteral("password"),
         [](QByteArray &file, const Mappa &mappa, QRandomGenerator &caso) {
             giraUnBit(file, mappa.password, 64, caso);
         }},
    };
}

std::vector<Danno> degliAlberi()
{
    return {
        {QStringLiteral("pagina 1"), [](QByteArray &file, const Mappa & /*mappa*/,
                                        QRandomGenerator &caso) { coprePagina(file, 1, caso); }},
        {QStringLiteral("pagina dello schema"), schemaRotto},
        {QStringLiteral("bit nello schema"), bitNelloSchema},
        {QStringLiteral("radice dei coniugi"), radiciDi({coniugi})},
        {QStringLiteral("radice dei genitori"), radiciDi({genitori})},
        {QStringLiteral("radice degli operatori"), radiciDi({operatori})},
        {QStringLiteral("radici dei coniugi e del loro indice"),
         radiciDi({coniugi, coniugi + individuo})},
        {QStringLiteral("radici di coniugi e genitori"), radiciDi({coniugi, genitori})},
        {QStringLiteral("radice degli individui"), radiciDi({QStringLiteral("Individui")})},
        {QStringLiteral("radice dei binari"), radiciDi({QStringLiteral("Binari")})},
        {QStringLiteral("radice dei generi"), radiciDi({QStringLiteral("Traduzioni")})},
        {QStringLiteral("radici degli indici"), radiciDegli(true)},
        {QStringLiteral("radici delle tabelle"), radiciDegli(false)},
        {QStringLiteral("foglia di coppie"), foglieDi({coniugi})},
        {QStringLiteral("foglie di coppie e indice"),
         foglieDi({genitori, genitori + individuo, operatori})},
        {QStringLiteral("foglia di eventi"), foglieDi({QStringLiteral("Eventi")})},
    };
}

std::vector<Danno> ovunque()
{
    return {
        {QStringLiteral("una pagina"), pagineACaso(1)},
        {QStringLiteral("venti pagine"), pagineACaso(20)},
        {QStringLiteral("un settore"), settore},
        {QStringLiteral("un bit"), bitACaso(1)},
        {QStringLiteral("duecento bit"), bitACaso(200)},
        {QStringLiteral("pagine scambiate"), pagineScambiate},
        {QStringLiteral("tronco"), resta(0.05)},
    };
}

} // namespace

Mappa mappaDi(const QString &sano)
{
    Mappa mappa;
    QHash<QString, quint32> radici;
    {
        ado::Connection archivio;
        modTarvola::apriFile(archivio, sano);
        archivio.leggi(
            {QStringLiteral("SELECT name, rootpage FROM sqlite_schema WHERE rootpage"), {}, {}},
            [&radici](const ado::Riga &riga) {
                radici.insert(riga.testo(0), static_cast<quint32>(riga.intero(1)));
                return true;
            });
        QFile file(sano);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("l'archivio della prova non si legge");
        mappa.password =
            file.readAll().indexOf(archivio
                                       .valore({QStringLiteral("SELECT Valore FROM Protezione "
                                                               "WHERE Nome = 'password'"),
                                                {},
                                                {}})
                                       .toString()
                                       .toUtf8());
    }
    const pagine::File file(sano);
    for (auto radice = radici.cbegin(); radice != radici.cend(); ++radice)
        mappa.alberi.insert(radice.key(), pagineDa(file, *radice));
    mappa.schema = pagineDa(file, 1);
    return mappa;
}

const std::vector<Danno> &tutti()
{
    static const std::vector<Danno> danni = [] {
        std::vector<Danno> insieme = dellaTestata();
        for (const auto &altri : {degliAlberi(), ovunque()})
            insieme.insert(insieme.end(), altri.begin(), altri.end());
        return insieme;
    }();
    return danni;
}

} // namespace danni
