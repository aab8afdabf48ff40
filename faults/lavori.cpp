#include "faults/lavori.h"

#include "db/archivio/connessioni.h"
#include "db/archivio/custodia.h"
#include "db/atto/atto.h"
#include "db/lavoro/binari.h"
#include "db/schema/generi.h"
#include "db/schema/modello.h"
#include "faults/campione.h"

#include <QDir>
#include <QRandomGenerator>

using namespace modTarvola;

namespace lavori
{

namespace
{

bool avanti(qint64 /*fatto*/, qint64 /*totale*/)
{
    return true;
}

} // namespace

void apre(const Posto &posto)
{
    ApriArchivio(posto.archivio());
    const auto impostazione = [](const char *quale) {
        return connessione().valore({QString::fromUtf8(quale), {}, {}}).toString();
    };
    constexpr auto pieno = "2";
    if (impostazione("PRAGMA synchronous") != QLatin1String(pieno) ||
        impostazione("PRAGMA journal_mode") != QLatin1String("delete"))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il motore non porta sul disco ciò che scrive"));
}

void chiude()
{
    avviaArchivi();
}

QString salva(const Posto &posto, const QString &nome)
{
    apre(posto);
    Lavoro lavoro(connessione(), {}, QStringLiteral("O1"));
    const QString codice = lavoro
                               .scrive({QStringLiteral("Individui"),
                                        {},
                                        {{QStringLiteral("Voce"), QStringLiteral("V1")},
                                         {QStringLiteral("Nome"), nome}}})
                               .codice;
    lavoro.conferma();
    return codice;
}

void iscrive(const Posto &posto, const QString &nome)
{
    apre(posto);
    const auto codiceIn = [](const char *tabella) {
        return connessione()
            .valore(
                {QStringLiteral("SELECT max(Codice) FROM ") + QString::fromUtf8(tabella), {}, {}})
            .toString();
    };
    Lavoro lavoro(connessione(), {}, QStringLiteral("O1"));
    const Scritto scritto = lavoro.scrive(
        {QStringLiteral("Individui"), codiceIn("Individui"), {{QStringLiteral("Nome"), nome}}});
    lavoro.iscrive(modTarvola::Posto::Coniuge, scritto.codice, codiceIn("Famiglie"));
    lavoro.conferma();
}

namespace
{

void scrive(const Atto &prima, Atto &dopo)
{
    const EsitoAtto esito =
        modTarvola::scriveAtto(connessione(), QStringLiteral("O1"), prima, dopo);
    if (esito.che != EsitoAtto::Scritto)
        throw ado::Errore(ado::Causa::Altro, QStringLiteral("atto non scritto: ") + esito.motivo);
}

} // namespace

void scriveAtto(const Posto &posto)
{
    apre(posto);
    // Come il primo dell'archivio, ma tutto ancora da scrivere.
    Atto atto = leggeAtto(connessione(), QStringLiteral("V1")).value();
    atto.codice.clear();
    for (PersonaDiAtto &persona : atto.persone) {
        persona.codice.clear();
        for (EventoDiAtto &evento : persona.eventi)
            evento.codice.clear();
    }
    for (FamigliaDiAtto &famiglia : atto.famiglie)
        famiglia.codice.clear();
    atto.testi = {{{}, TestoRiportato, QStringLiteral("x"), QString(20'000, u'à')}};
    scrive({}, atto);
}

void cambiaAtto(const Posto &posto)
{
    apre(posto);
    const Atto prima = leggeAtto(connessione(), QStringLiteral("V1")).value();
    Atto dopo = prima;
    dopo.campi.insert(QStringLiteral("Volume"), QStringLiteral("x"));
    dopo.persone.first().campi.insert(QStringLiteral("Nome"), QStringLiteral("x"));
    dopo.daEliminare.append(dopo.persone.takeLast().codice);
    const int nuova = dopo.aggiunge(1);
    dopo.persona(nuova)->campi.insert(QStringLiteral("Nome"), QStringLiteral("y"));
    dopo.famiglie.first().figli = {nuova};
    scrive(prima, dopo);
}

void elimina(const Posto &posto, const QString &voce)
{
    apre(posto);
    modTarvola::elimina(connessione(), voce, QStringLiteral("O1"));
}

QString allega(const Posto &posto, const QString &nome)
{
    apre(posto);
    Lavoro lavoro(connessione());
    const QByteArray tutto = contenuto(nome);
    constexpr qsizetype pezzo = 50'000;
    auto flusso = aggiungeFile(lavoro, {14, QStringLiteral("V1"), nome, tutto.size()});
    for (qsizetype da = 0; da < tutto.size(); da += pezzo)
        flusso->Write(tutto.mid(da, pezzo));
    flusso.reset();
    const QString codice =
        connessione()
            .valore({QStringLiteral("SELECT Codice FROM Binari WHERE Nome = ?"), {nome}, {}})
            .toString();
    lavoro.conferma();
    return codice;
}

void compatta(const Posto &posto)
{
    chiude();
    compattaArchivio(posto.archivio(), posto.cestino(), avanti);
}

void copia(const Posto &posto)
{
    chiude();
    copiaArchivio(posto.archivio(), posto.copia(), avanti);
}

void recupera(const Posto &posto)
{
    chiude();
    recuperaArchivio(posto.archivio(), posto.recupero(), avanti);
}

QByteArray contenuto(const QString &nome)
{
    QRandomGenerator caso(static_cast<quint32>(qHash(nome, 1)));
    QByteArray byte(caso.bounded(200'000), Qt::Uninitialized);
    for (char &uno : byte)
        uno = static_cast<char>(caso.bounded(256));
    return byte;
}

void prepara(const Posto &posto, int voci)
{
    chiude();
    QDir(posto.cartella).removeRecursively();
    for (const char *nome : {"/copie", "/recuperi"})
        QDir().mkpath(posto.cartella + QString::fromUtf8(nome));
    creaModello(posto.archivio());
    apre(posto);
    campione::riempie(connessione(), voci);
    chiude();
}

} // namespace lavori
