// Misura il programma contro il meno che il motore possa fare, a turno, sullo stesso archivio.
//   misura ARCHIVIO [VOLTE]

#include "bench/pavimento.h"
#include "bench/tavola.h"
#include "db/archivio/connessioni.h"
#include "db/elenchi/elenco.h"
#include "db/lavoro/eliminazione.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <algorithm>
#include <random>

using namespace modTarvola;

namespace
{

struct Corsa {
    double pronta = 0;  // millisecondi dalla partenza del processo
    double memoria = 0; // MiB al massimo
};

Corsa corre(const QString &programma, const QStringList &argomenti)
{
    QProcess processo;
    Corsa corsa;
    QElapsedTimer orologio;
    orologio.start();
    processo.start(QCoreApplication::applicationDirPath() + u'/' + programma, argomenti);
    QByteArray detto;
    while (processo.waitForReadyRead(120000)) {
        detto += processo.readAllStandardOutput();
        if (corsa.pronta == 0 && detto.contains("pronta"))
            corsa.pronta = static_cast<double>(orologio.nsecsElapsed()) / 1e6;
    }
    processo.waitForFinished(120000);
    detto += processo.readAllStandardOutput();
    const QByteArrayList parole = detto.simplified().split(' ');
    corsa.memoria = parole.constLast().toDouble();
    return corsa;
}

Richiesta individui(int ambito, bool dettagli)
{
    return {QStringLiteral("Individui"), ambito, dettagli, QStringLiteral("A5"),
            QStringLiteral("R135"),      {}};
}

// Le prime cinquanta righe di un elenco.
void primaPagina(const Richiesta &richiesta)
{
    const Elenco elenco(richiesta, connessione());
    const std::vector<qint64> chiavi = elenco.chiaviDopo(-1, 1000);
    for (size_t i = 0; i < std::min<size_t>(50, chiavi.size()); ++i)
        elenco.riga(chiavi[i]);
}

void misuraElenchi(Tavola &misura, const QString &percorso)
{
    constexpr int serie = 3;
    const QStringList prime{percorso, QStringLiteral("prime")};
    misura.rapporto(
        "prime righe dall'avvio, ms", 1.7,
        [&] { return corre(QStringLiteral("finestra"), prime).pronta; },
        [&] { return corre(QStringLiteral("finestra_minima"), {percorso}).pronta; }, serie);
    misura.assoluto("memoria con tutte le chiavi, MiB", 75, [&] {
        return corre(QStringLiteral("finestra"), {percorso, QStringLiteral("tutte")}).memoria;
    });
    misura.assoluto("memoria dopo ordinare e saltare, MiB", 95, [&] {
        return corre(QStringLiteral("finestra"), {percorso, QStringLiteral("salta")}).memoria;
    });
    const QStringList dettagli{percorso, QStringLiteral("prime"), QStringLiteral("dettagli")};
    misura.rapporto(
        "dettagli di tutto, prime righe, contro elenco, ms", 1.15,
        [&] { return corre(QStringLiteral("finestra"), dettagli).pronta; },
        [&] { return corre(QStringLiteral("finestra"), prime).pronta; }, serie);
}

void misuraRighe(Tavola &misura, const QString &percorso)
{
    const Elenco elenco(individui(7, false), connessione());
    const std::vector<qint64> chiavi = elenco.chiaviDopo(-1, 1000000000);
    std::mt19937 caso(7);
    std::vector<qint64> pagina(50);
    const auto nuovaPagina = [&] {
        for (qint64 &chiave : pagina)
            chiave = chiavi[std::uniform_int_distribution<size_t>(0, chiavi.size() - 1)(caso)];
    };
    misura.rapporto(
        "cinquanta righe a caso, ms", 3,
        [&] {
            return millisecondi([&] {
                for (const qint64 chiave : pagina)
                    elenco.riga(chiave);
            });
        },
        [&] {
            nuovaPagina();
            const double suo = millisecondi([&] { righePerChiave(percorso, pagina); });
            return suo;
        });
    misura.rapporto(
        "ordinare per cognome, ms", 2,
        [&] {
            return millisecondi([&] {
                elenco.chiaviOrdinate(
                    static_cast<int>(elenco.colonne().indexOf(QStringLiteral("Cognome"))));
            });
        },
        [&] { return millisecondi([&] { ordinaIlMeno(percorso); }); });
    misura.rapporto(
        "dettagli di un registro contro elenco, ms", 2,
        [] { return millisecondi([] { primaPagina(individui(4, true)); }); },
        [] { return millisecondi([] { primaPagina(individui(4, false)); }); });
}

void misuraEliminazioni(Tavola &misura, const QString &percorso, int volte)
{
    const QString copia = percorso + QStringLiteral(".copia");
    QFile::remove(copia);
    if (!QFile::copy(percorso, copia))
        return;
    ApriArchivio(copia);
    int voce = 1000;
    misura.assoluto("eliminare una voce, ms", 100, [&] {
        voce += 37;
        return millisecondi([&] { elimina(connessione(), QStringLiteral("V%1").arg(voce), {}); });
    });
    int registro = 200;
    misura.assoluto("eliminare un registro, ms", 300, [&] {
        ++registro;
        return millisecondi(
            [&] { elimina(connessione(), QStringLiteral("R%1").arg(registro), {}); });
    });
    int archivio = 0;
    misura.assoluto("eliminare un archivio di un decimo, ms", 3000, [&] {
        archivio = archivio % volte + 1;
        return millisecondi(
            [&] { elimina(connessione(), QStringLiteral("A%1").arg(archivio), {}); });
    });
    connessione().Close();
    QFile::remove(copia);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication applicazione(argc, argv);
    if (argc < 2)
        return 2;
    const QString percorso = QString::fromLocal8Bit(argv[1]);
    const int volte = argc > 2 ? qBound(1, QString::fromLocal8Bit(argv[2]).toInt(), 6) : 5;
    avviaArchivi();
    ApriArchivio(percorso);
    Tavola misura(volte);
    misura.intesta();
    misuraElenchi(misura, percorso);
    misuraRighe(misura, percorso);
    misuraEliminazioni(misura, percorso, volte);
    return misura.bastata() ? 0 : 1;
}
