// Quanto costa poter annullare: salvare un atto, eliminare un archivio, il file dopo mille atti, la
// memoria per riprendere un file allegato eliminato.
//   storia ARCHIVIO CARTELLA [MEGABYTE [VOLTE]]

#include "bench/tavola.h"
#include "db/archivio/connessioni.h"
#include "db/atto/atto.h"
#include "db/lavoro/binari.h"
#include "db/lavoro/ripresa.h"
#include "db/schema/modello.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <random>

using namespace modTarvola;

namespace
{

QString qui(const char *istruzione)
{
    return connessione().valore({QString::fromUtf8(istruzione), {}, {}}).toString();
}

// Un atto come se ne scrivono: il battezzato, i genitori, i padrini, la nascita e il testo.
void scriveUno(std::mt19937 &caso, const QString &registro, bool senzaStoria)
{
    static const QStringList nomi{QStringLiteral("Giovanni"),   QStringLiteral("Maria"),
                                  QStringLiteral("Antonio"),    QStringLiteral("Domenica"),
                                  QStringLiteral("Bartolomeo"), QStringLiteral("Orsola")};
    static const QStringList cognomi{QStringLiteral("Rossi"), QStringLiteral("De Luca"),
                                     QStringLiteral("Barbieri"), QStringLiteral("Zanè")};
    const auto uno = [&caso](const QStringList &tutti) {
        return tutti.at(static_cast<int>(caso() % static_cast<unsigned>(tutti.size())));
    };
    Atto prima = nuovoAtto(connessione(), registro);
    Atto dopo = prima;
    const QString numero = QString::number(caso() % 1000);
    dopo.campi[QStringLiteral("CodiceVoce")] = numero;
    QString testo = QStringLiteral("Addì %1 del mese io curato ho battezzato ").arg(numero);
    for (const int ruolo : {1, 36, 37, 34, 34}) {
        const int chiave = dopo.aggiunge(ruolo);
        Campi &campi = dopo.persona(chiave)->campi;
        campi[QStringLiteral("Nome")] = uno(nomi);
        campi[QStringLiteral("Cognome")] = uno(cognomi);
        testo += uno(nomi) + u' ' + uno(cognomi) + QStringLiteral(" di questa parrocchia, ");
    }
    dopo.testi.append({{}, 13, {}, testo});
    Lavoro lavoro(connessione());
    if (senzaStoria)
        lavoro.senzaStoria();
    if (scriveAtto(connessione(), QStringLiteral("O1"), prima, dopo).che != EsitoAtto::Scritto)
        qFatal("l'atto non è stato scritto");
    lavoro.conferma();
}

void elimina(const QString &codice, bool senzaStoria)
{
    Lavoro lavoro(connessione());
    if (senzaStoria)
        lavoro.senzaStoria();
    lavoro.elimina(codice);
    lavoro.conferma();
}

void nuovoArchivio(const QString &percorso)
{
    QFile::remove(percorso);
    creaModello(percorso);
    ApriArchivio(percorso);
    Lavoro lavoro(connessione());
    lavoro.scrive(
        {QStringLiteral("Archivi"), {}, {{QStringLiteral("Nome"), QStringLiteral("Prova")}}});
    lavoro.scrive({QStringLiteral("Registri"),
                   {},
                   {{QStringLiteral("Archivio"), QStringLiteral("A1")},
                    {QStringLiteral("Tipo"), 9},
                    {QStringLiteral("Titolo"), QStringLiteral("Battesimi")}}});
    lavoro.conferma();
}

void misuraAtti(Tavola &tavola, const QString &cartella)
{
    constexpr int atti = 1000;
    double dimensioni[2];
    for (const bool senza : {false, true}) {
        const QString percorso = cartella + QStringLiteral("/mille-%1.tvd").arg(senza ? 1 : 0);
        nuovoArchivio(percorso);
        std::mt19937 caso(7);
        for (int i = 0; i < atti; ++i)
            scriveUno(caso, QStringLiteral("R1"), senza);
        if (!senza)
            tavola.assoluto("passi ricordati dopo mille atti", 0,
                            static_cast<double>(storia::elenco(connessione()).size()));
        connessione().Close();
        dimensioni[senza ? 1 : 0] = static_cast<double>(QFileInfo(percorso).size()) / 1024;
        QFile::remove(percorso);
    }
    tavola.rapporto("il file dopo mille atti, KiB", 1.03, dimensioni[0], dimensioni[1]);
    const QString percorso = cartella + QStringLiteral("/salva.tvd");
    nuovoArchivio(percorso);
    std::mt19937 caso(9);
    const auto salva = [&](bool senza) {
        return millisecondi([&] {
            for (int i = 0; i < 40; ++i)
                scriveUno(caso, QStringLiteral("R1"), senza);
        });
    };
    tavola.rapporto(
        "salvare quaranta atti, ms", 1.15, [&] { return salva(false); },
        [&] { return salva(true); });
    connessione().Close();
    QFile::remove(percorso);
}

void misuraEliminazione(Tavola &tavola, const QString &archivio, const QString &cartella)
{
    const QString copia = cartella + QStringLiteral("/elimina.tvd");
    QFile::remove(copia);
    if (!QFile::copy(archivio, copia))
        qFatal("l'archivio non si può copiare");
    ApriArchivio(copia);
    int quale = 0;
    const auto toglie = [&](bool senza) {
        ++quale;
        return millisecondi([&] { elimina(QStringLiteral("A%1").arg(quale), senza); });
    };
    tavola.rapporto(
        "eliminare un archivio di un decimo, ms", 1.5, [&] { return toglie(false); },
        [&] { return toglie(true); });
    connessione().Close();
    QFile::remove(copia);
}

void misuraAllegato(Tavola &tavola, const QString &cartella, int megabyte)
{
    const QString percorso = cartella + QStringLiteral("/allegato.tvd");
    nuovoArchivio(percorso);
    constexpr qint64 mega = qint64{1} << 20;
    {
        Lavoro lavoro(connessione());
        auto flusso = aggiungeFile(
            lavoro, {14, QStringLiteral("A1"), QStringLiteral("scansione.tif"), mega * megabyte});
        for (int i = 0; i < megabyte; ++i)
            flusso->Write(QByteArray(mega, static_cast<char>(i)));
        // Il flusso tiene aperto il lavoro.
        flusso.reset();
        lavoro.conferma();
    }
    azzeraMemoriaMassima();
    const double sua = memoriaMassima();
    const double tolto = millisecondi([] { elimina(QStringLiteral("B1"), false); });
    const double tornato =
        millisecondi([] { riprendeFino(connessione(), *storia::daAnnullare(connessione())); });
    if (qui("SELECT length(Campolungo) FROM Binari") != QString::number(mega * megabyte))
        qFatal("il contenuto non è tornato");
    const double massima = memoriaMassima();
    tavola.assoluto("eliminare un file allegato, ms", 0, tolto);
    tavola.assoluto("riprenderlo, ms", 0, tornato);
    tavola.assoluto("memoria per eliminarlo e riprenderlo, MiB", 64, massima - sua);
    connessione().Close();
    QFile::remove(percorso);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication applicazione(argc, argv);
    if (argc < 3)
        return 2;
    const QString archivio = QString::fromLocal8Bit(argv[1]);
    const QString cartella = QString::fromLocal8Bit(argv[2]);
    const int megabyte = argc > 3 ? QByteArray(argv[3]).toInt() : 300;
    // Ogni volta toglie due archivi dei dieci.
    const int volte = argc > 4 ? qBound(1, QByteArray(argv[4]).toInt(), 5) : 5;
    avviaArchivi();
    Tavola tavola(volte);
    tavola.intesta();
    misuraAllegato(tavola, cartella, megabyte);
    misuraAtti(tavola, cartella);
    misuraEliminazione(tavola, archivio, cartella);
    return tavola.bastata() ? 0 : 1;
}
