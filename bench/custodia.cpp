#include "db/archivio/custodia.h"

#include "bench/tavola.h"
#include "db/archivio/connessioni.h"
#include "db/schema/modello.h"
#include "platform/motore/jro.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

// Quanto costano compattazione e back-up di un archivio grande accanto a ciò che il motore fa da
// solo: VACUUM INTO e poi il disco. Ogni misura gira in un processo suo, che dice la sua memoria.
namespace
{

constexpr int volte = 3;

struct Misura {
    double secondi = 0;
    double megabyte = 0;
};

bool avanti(qint64 /*fatto*/, qint64 /*totale*/)
{
    return true;
}

void esegue(ado::Connection &connessione, const char *istruzione, const QVariantList &valori = {})
{
    connessione.Execute({QString::fromUtf8(istruzione), valori, {}});
}

// Metà del file sono persone ed eventi, metà file allegati di un megabyte.
void genera(const QString &percorso, int megabyte)
{
    modTarvola::creaModello(percorso);
    ado::Connection connessione;
    connessione.Open(modTarvola::stringaDiConnessione(percorso));
    ado::Transazione transazione(connessione);
    esegue(connessione, "INSERT INTO Voci (Codice) VALUES ('V1')");
    const char *const numeri = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                               "WHERE i < ?) ";
    const int persone = megabyte * 1400;
    esegue(connessione,
           QByteArray(numeri)
               .append("INSERT INTO Individui (Codice, Voce, Nome, Cognome, Detto, Ruolo) "
                       "SELECT 'I' || i, 'V1', 'Giovanni Battista ' || i, 'Della Rovere', "
                       "hex(randomblob(12)), 1 FROM n")
               .constData(),
           {persone});
    esegue(connessione,
           QByteArray(numeri)
               .append("INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Luogo) SELECT "
                       "'E' || i, 'I' || i, 20, '1750-03-04', hex(randomblob(16)) FROM n")
               .constData(),
           {persone});
    esegue(connessione,
           QByteArray(numeri)
               .append("INSERT INTO Binari (Codice, Tipo, IdProprietario, Nome, Campolungo) SELECT "
                       "'B' || i, 14, 'V1', 'carta', randomblob(1000000) FROM n")
               .constData(),
           {megabyte / 2});
    transazione.conferma();
}

void pavimento(const QString &percorso, const QString &copia)
{
    sqlite3 *base = nullptr;
    sqlite3_stmt *istruzione = nullptr;
    const QByteArray nome = copia.toUtf8();
    if (sqlite3_open_v2(percorso.toUtf8().constData(), &base, SQLITE_OPEN_READWRITE, nullptr) !=
            SQLITE_OK ||
        sqlite3_prepare_v2(base, "VACUUM INTO ?", -1, &istruzione, nullptr) != SQLITE_OK ||
        sqlite3_bind_text(istruzione, 1, nome.constData(), -1, SQLITE_STATIC) != SQLITE_OK ||
        sqlite3_step(istruzione) != SQLITE_DONE)
        qFatal("il motore non compatta: %s", sqlite3_errmsg(base));
    sqlite3_finalize(istruzione);
    sqlite3_close(base);
    const int file = ::open(nome.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || ::fsync(file) != 0)
        qFatal("il disco non risponde");
    ::close(file);
}

void soloCompatta(const QString &percorso, const QString &copia)
{
    const QString stringa = modTarvola::stringaDiConnessione(percorso);
    const jro::Fermo fermo([&stringa](ado::Connection &sua) { sua.Open(stringa); });
    ado::Connection origine;
    origine.Open(stringa);
    jro::CompactDatabase(origine, copia, avanti);
}

void soloVerifica(const QString &percorso, const QString &copia)
{
    ado::Connection origine;
    ado::Connection verificata;
    origine.Open(modTarvola::stringaDiConnessione(percorso));
    verificata.Open(modTarvola::stringaDiConnessione(copia));
    jro::verificaIntegrita(verificata, avanti);
    jro::confronta(origine, verificata, avanti);
}

Misura misura(const std::function<void()> &lavoro)
{
    // Ciò che è ancora da scrivere di prima non deve pesare su chi viene dopo.
    ::sync();
    int tubo[2];
    if (::pipe(tubo) != 0)
        qFatal("manca un tubo");
    if (::fork() == 0) {
        const double secondi = millisecondi(lavoro) / 1000;
        const Misura mia{secondi, memoriaMassima()};
        ::_exit(::write(tubo[1], &mia, sizeof mia) == sizeof mia ? 0 : 1);
    }
    ::close(tubo[1]);
    Misura letta;
    int stato = 1;
    const bool detto = ::read(tubo[0], &letta, sizeof letta) == sizeof letta;
    ::close(tubo[0]);
    ::wait(&stato);
    if (!detto || stato != 0)
        qFatal("una misura non è arrivata in fondo");
    return letta;
}

// I tempi di un lavoro fatto più volte, in secondi, e la memoria del peggiore, in MiB.
struct Tempi {
    std::vector<double> secondi;
    double megabyte = 0;

    void aggiunge(const Misura &una)
    {
        secondi.push_back(una.secondi);
        megabyte = std::max(megabyte, una.megabyte);
    }
};

// A turno, su dischi senza nulla in sospeso: ciò che il motore fa da solo, e noi.
void misuraTutto(Tavola &tavola, const QString &archivio, const QString &copia,
                 const QString &cestino)
{
    Tempi motore;
    Tempi compatta;
    Tempi verifica;
    Tempi backUp;
    Tempi alSuoPosto;
    for (int giro = 0; giro < volte; ++giro) {
        motore.aggiunge(misura([&] { pavimento(archivio, copia); }));
        QFile::remove(copia);
        compatta.aggiunge(misura([&] { soloCompatta(archivio, copia); }));
        verifica.aggiunge(misura([&] { soloVerifica(archivio, copia); }));
        QFile::remove(copia);
        backUp.aggiunge(misura([&] { modTarvola::copiaArchivio(archivio, copia, avanti); }));
        QFile::remove(copia);
        alSuoPosto.aggiunge(
            misura([&] { modTarvola::compattaArchivio(archivio, cestino, avanti); }));
        QDir(cestino).removeRecursively();
    }
    const double base = mediana(motore.secondi);
    const double controllo = mediana(verifica.secondi);
    tavola.rapporto("compattare senza verifica, s", 1.15, mediana(compatta.secondi), base);
    tavola.assoluto("verificare la copia, s", 0, controllo);
    tavola.rapporto("back-up meno la verifica, s", 1.15, mediana(backUp.secondi) - controllo, base);
    tavola.rapporto("compattare al suo posto meno la verifica, s", 1.15,
                    mediana(alSuoPosto.secondi) - controllo, base);
    tavola.assoluto("memoria del back-up, MiB", 64, backUp.megabyte);
    tavola.assoluto("memoria della compattazione, MiB", 64, alSuoPosto.megabyte);
}

} // namespace

int main(int argc, char **argv)
{
    const QString cartella = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    const int megabyte = argc > 2 ? QByteArray(argv[2]).toInt() : 1000;
    if (!QFileInfo(cartella).isDir() || megabyte < 2) {
        QTextStream(stderr) << "usage: custodia FOLDER [MEGABYTES]\n";
        return 2;
    }
    const QString archivio = cartella + QStringLiteral("/grande.tvd");
    const QString copia = cartella + QStringLiteral("/copia.tvd");
    QFile::remove(archivio);
    QFile::remove(copia);
    genera(archivio, megabyte);
    Tavola tavola(volte);
    misuraTutto(tavola, archivio, copia, cartella + QStringLiteral("/Cestino"));
    QFile::remove(archivio);
    return tavola.bastata() ? 0 : 1;
}
