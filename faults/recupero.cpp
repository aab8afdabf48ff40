// La riparazione messa a confronto con quella del motore (".recover" del programma sqlite3): per
// ogni danno e ogni seme, quante delle righe di prima ritrova ciascuna. Le nostre contano solo
// nella loro tabella; quelle del motore anche fra le perdute e ritrovate, di cui non sa la tabella.

#include "db/archivio/connessioni.h"
#include "db/archivio/custodia.h"
#include "db/schema/modello.h"
#include "db/schema/schema.h"
#include "faults/campione.h"
#include "faults/danni.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <sys/wait.h>
#include <unistd.h>

using namespace modTarvola;

namespace
{

constexpr int secondiAlMassimo = 60;
const QString motore = QStringLiteral("sqlite3");
const QString ritrovate = QStringLiteral("lost_and_found");

// Le impronte delle righe: delle tabelle, col loro nome, o di righe di cui non si sa la tabella.
using Impronte = QSet<QByteArray>;

struct Sano {
    QByteArray byte;
    danni::Mappa mappa;
    Impronte conTabella;
    QList<QSet<QByteArray>> senzaTabella; // per ogni riga, come può comparire fra le ritrovate
};

QByteArray impronta(const QVariantList &valori)
{
    QCryptographicHash somma(QCryptographicHash::Sha1);
    for (const QVariant &valore : valori) {
        const QByteArray byte = valore.typeId() == QMetaType::QByteArray
                                    ? valore.toByteArray()
                                    : valore.toString().toUtf8();
        somma.addData(QByteArray::number(valore.typeId()) + ':' + QByteArray::number(byte.size()) +
                      ':');
        somma.addData(byte);
    }
    return somma.result();
}

void leggeTutte(ado::Connection &archivio, const QString &tabella, bool inPagine,
                const std::function<void(const QVariantList &)> &perRiga)
{
    archivio.leggi({QStringLiteral("SELECT * FROM %1%2")
                        .arg(tabella, inPagine ? QStringLiteral(" NOT INDEXED") : QString()),
                    {},
                    {}},
                   [&perRiga](const ado::Riga &riga) {
                       QVariantList valori;
                       for (int i = 0; i < riga.colonne(); ++i)
                           valori.append(riga.valore(i));
                       perRiga(valori);
                       return true;
                   });
}

// Ciò che una riga legge del file: niente se la tabella non si legge fino in fondo.
void seSiLegge(const std::function<void()> &lettura)
{
    try {
        lettura();
    } catch (const ado::Errore &) {
        return;
    }
}

Impronte righeDi(const QString &percorso)
{
    Impronte tutte;
    seSiLegge([&] {
        ado::Connection archivio;
        archivio.Open(stringaDiConnessione(percorso));
        for (const QString &tabella : tabelle())
            seSiLegge([&] {
                leggeTutte(archivio, tabella, true, [&](const QVariantList &riga) {
                    tutte.insert(tabella.toUtf8() + impronta(riga));
                });
            });
    });
    return tutte;
}

// Le righe che il motore ha messo fra le ritrovate: rootpgno, pgno, nfield, id e i campi.
QSet<QByteArray> ritrovateDa(const QString &percorso)
{
    enum { campi = 2, chiave, primo };
    QSet<QByteArray> tutte;
    seSiLegge([&] {
        ado::Connection archivio;
        archivio.Open(stringaDiConnessione(percorso));
        leggeTutte(archivio, ritrovate, false, [&](const QVariantList &riga) {
            QVariantList valori = riga.mid(primo, riga.at(campi).toInt());
            // La chiave interna, quando è una colonna, nella riga è vuota.
            if (!valori.isEmpty() && !valori.constFirst().isValid())
                valori[0] = riga.at(chiave);
            tutte.insert(impronta(valori));
        });
    });
    return tutte;
}

Sano leggeSano(const QString &percorso)
{
    Sano sano;
    QFile file(percorso);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("l'archivio della prova non si legge");
    sano.byte = file.readAll();
    sano.mappa = danni::mappaDi(percorso);
    ado::Connection archivio;
    archivio.Open(stringaDiConnessione(percorso));
    for (const QString &tabella : tabelle()) {
        leggeTutte(archivio, tabella, true, [&](const QVariantList &riga) {
            sano.conTabella.insert(tabella.toUtf8() + impronta(riga));
            const QVariantList rovescia(riga.crbegin(), riga.crend());
            sano.senzaTabella.append({tabella.toUtf8() + impronta(riga), impronta(riga),
                                      riga.size() == 2 ? impronta(rovescia) : impronta(riga)});
        });
    }
    return sano;
}

qint64 comuni(const Impronte &une, const Impronte &altre)
{
    return std::count_if(une.cbegin(), une.cend(),
                         [&altre](const QByteArray &una) { return altre.contains(una); });
}

struct Riparato {
    qint64 righe = 0;
    QString motivo; // perché non è riuscito
};

// In un processo a parte: se cade o non finisce, non ha ritrovato nulla.
Riparato nostro(const QString &percorso, const Sano &sano, const QString &cartella)
{
    const QString motivo = cartella + QStringLiteral("/motivo");
    QFile::remove(motivo);
    const pid_t figlio = ::fork();
    if (figlio == 0) {
        ::alarm(secondiAlMassimo);
        int esito = 0;
        try {
            compattaArchivio(percorso, cartella + QStringLiteral("/Cestino"),
                             [](qint64 /*fatto*/, qint64 /*totale*/) { return true; });
        } catch (const std::exception &errore) {
            QFile file(motivo);
            if (file.open(QIODevice::WriteOnly))
                file.write(errore.what());
            file.close();
            esito = 1;
        }
        ::_exit(esito);
    }
    int stato = 0;
    ::waitpid(figlio, &stato, 0);
    if (stato == 0)
        return {comuni(sano.conTabella, righeDi(percorso)), {}};
    QFile file(motivo);
    return {0, file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                              : QStringLiteral("caduto (%1)").arg(stato)};
}

qint64 delMotore(const QString &percorso, const Sano &sano)
{
    const QString nuovo = percorso + QStringLiteral(".motore");
    QFile::remove(nuovo);
    QProcess legge;
    QProcess scrive;
    legge.setStandardOutputProcess(&scrive);
    legge.setStandardErrorFile(QProcess::nullDevice());
    scrive.setStandardOutputFile(QProcess::nullDevice());
    scrive.setStandardErrorFile(QProcess::nullDevice());
    legge.start(motore, {QStringLiteral("-cmd"), QStringLiteral(".load \"" PAGINE_DEL_MOTORE "\""),
                         percorso, QStringLiteral(".recover")});
    scrive.start(motore, {nuovo});
    if (!legge.waitForStarted() || !scrive.waitForFinished(secondiAlMassimo * 1000))
        qFatal("il programma %s non parte o non finisce", qPrintable(motore));
    legge.waitForFinished();
    const Impronte trovate = righeDi(nuovo) + ritrovateDa(nuovo);
    return std::count_if(sano.senzaTabella.cbegin(), sano.senzaTabella.cend(),
                         [&trovate](const QSet<QByteArray> &riga) {
                             return std::any_of(riga.cbegin(), riga.cend(), [&](const auto &una) {
                                 return trovate.contains(una);
                             });
                         });
}

// Un archivio come nasce dal lavoro, con qualcosa di cancellato, e lo stesso compattato.
std::vector<Sano> prepara(const QString &cartella)
{
    constexpr int voci = 500;
    const QString percorso = cartella + QStringLiteral("/sano.tvd");
    creaModello(percorso);
    avviaArchivi();
    ApriArchivio(percorso);
    campione::riempie(connessione(), voci);
    for (const char *istruzione :
         {"DELETE FROM Eventi WHERE CAST(substr(Codice, 2) AS INTEGER) BETWEEN 20 AND 60",
          "DELETE FROM Binari WHERE Codice IN ('B6', 'B11')"})
        connessione().Execute({QString::fromUtf8(istruzione), {}, {}});
    avviaArchivi();
    std::vector<Sano> sani{leggeSano(percorso)};
    compattaArchivio(percorso, cartella + QStringLiteral("/Cestino"),
                     [](qint64 /*fatto*/, qint64 /*totale*/) { return true; });
    sani.push_back(leggeSano(percorso));
    return sani;
}

// Un confronto con chi non ritrova nemmeno un archivio sano non direbbe nulla.
void provaIlMotore(const QString &cartella, const Sano &sano)
{
    const QString percorso = cartella + QStringLiteral("/sano.tvd");
    if (delMotore(percorso, sano) != sano.senzaTabella.size())
        qFatal("%s non ritrova tutto un archivio sano", qPrintable(motore));
}

bool scrive(const QString &percorso, const QByteArray &byte)
{
    QFile file(percorso);
    return file.open(QIODevice::WriteOnly) && file.write(byte) == byte.size();
}

// Il file della prova, da capo: con gli stessi byte e niente accanto.
void rimette(const QString &cartella, const QString &percorso, const QByteArray &byte)
{
    for (const QString &via : provvisorio::accanto(percorso))
        QFile::remove(via);
    QDir(cartella + QStringLiteral("/Cestino")).removeRecursively();
    if (!scrive(percorso, byte))
        qFatal("la prova non può preparare i suoi file");
}

// Vero se la nostra non è rimasta indietro; ne scrive la riga della tavola.
bool prova(const QString &cartella, const Sano &sano, const danni::Danno &danno, quint32 seme)
{
    QRandomGenerator caso(seme);
    QByteArray byte = sano.byte;
    danno.guasta(byte, sano.mappa, caso);
    const QString percorso = cartella + QStringLiteral("/prova.tvd");
    rimette(cartella, percorso, byte);
    const qint64 sue = delMotore(percorso, sano);
    rimette(cartella, percorso, byte);
    const Riparato nostre = nostro(percorso, sano, cartella);
    QTextStream esce(stdout);
    esce << danno.nome << '\t' << seme << '\t' << sano.conTabella.size() << '\t' << nostre.righe
         << '\t' << sue;
    if (nostre.righe < sue)
        esce << "\tBEHIND " << nostre.motivo;
    esce << '\n';
    return nostre.righe >= sue;
}

// Rende quante volte la nostra è rimasta indietro.
int confronta(const QString &cartella, quint32 semi, quint32 daSeme, const QString &soloDanno)
{
    const std::vector<Sano> sani = prepara(cartella);
    provaIlMotore(cartella, sani.back());
    QTextStream(stdout) << "damage\tseed\trows\tours\tengine\n";
    int indietro = 0;
    int prove = 0;
    for (const danni::Danno &danno : danni::tutti()) {
        if (!soloDanno.isEmpty() && danno.nome != soloDanno)
            continue;
        for (quint32 seme = daSeme; seme < daSeme + semi; ++seme) {
            ++prove;
            indietro += prova(cartella, sani.at(seme % sani.size()), danno, seme) ? 0 : 1;
        }
    }
    QTextStream(stdout) << "behind the engine's recovery in " << indietro << " of " << prove
                        << '\n';
    return prove == 0 ? 1 : indietro;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication applicazione(argc, argv);
    const QStringList argomenti = QCoreApplication::arguments();
    const quint32 semi = argomenti.value(1).toUInt();
    if (semi < 1 || QStandardPaths::findExecutable(motore).isEmpty()) {
        QTextStream(stderr) << "usage: recupero SEEDS [FIRST SEED [DAMAGE]]; it needs sqlite3\n";
        return 2;
    }
    const QTemporaryDir cartella;
    return confronta(cartella.path(), semi, argomenti.value(2, QStringLiteral("1")).toUInt(),
                     argomenti.value(3)) == 0
               ? 0
               : 1;
}
