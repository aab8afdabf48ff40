#include "db/archivio/connessioni.h"
#include "db/schema/tabelle.h"
#include "faults/campione.h"
#include "faults/inganni.h"
#include "faults/lavori.h"
#include "faults/prove.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

#include <cerrno>
#include <climits>
#include <csignal>
#include <unistd.h>

namespace prove
{

namespace
{

using Righe = QHash<QString, campione::Righe>;

struct Lavoro {
    const char *nome;
    std::function<void(const lavori::Posto &)> compie;
    bool suiFile; // un comando sui file: fallito, non lascia traccia
};

const Lavoro tutti[] = {
    {"open", [](const lavori::Posto &posto) { lavori::apre(posto); }, false},
    {"save", [](const lavori::Posto &posto) { lavori::salva(posto, QStringLiteral("x-1")); },
     false},
    {"member", [](const lavori::Posto &posto) { lavori::iscrive(posto, QStringLiteral("x-3")); },
     false},
    {"act", lavori::scriveAtto, false},
    {"changed act", lavori::cambiaAtto, false},
    {"delete", [](const lavori::Posto &posto) { lavori::elimina(posto, QStringLiteral("V3")); },
     false},
    {"attach", [](const lavori::Posto &posto) { lavori::allega(posto, QStringLiteral("x-2")); },
     false},
    {"compact", lavori::compatta, true},
    {"back-up", lavori::copia, true},
    {"restore", lavori::recupera, true},
};

// Un disco: ciò che non sa fare, e se nel frattempo si riempie.
struct Disco {
    const char *nome = "";
    bool pieno = false;
    int senzaModi = 0;
    bool senzaLegami = false;
    bool cestinoAltrove = false;
    bool sbaglia = false; // scrive altro da ciò che gli si dice, e non lo dice
    bool muore = false;   // a quella chiamata il programma è ucciso
};

// I file e il loro contenuto, anche quelli nascosti.
QMap<QString, QByteArray> contenuto(const QString &cartella, QDir::Filters quali = QDir::Hidden)
{
    QMap<QString, QByteArray> trovati;
    const QDir dove(cartella);
    for (const QString &nome : dove.entryList(QDir::Files | quali)) {
        QFile file(dove.filePath(nome));
        if (file.open(QIODevice::ReadOnly))
            trovati.insert(dove.filePath(nome), file.readAll());
    }
    for (const QString &nome : dove.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        trovati.insert(contenuto(dove.filePath(nome), quali));
    return trovati;
}

void rimette(const lavori::Posto &posto, const QMap<QString, QByteArray> &com_era)
{
    QDir(posto.cestino()).removeRecursively();
    for (const QString &cartella : {posto.cartella, posto.cartella + QStringLiteral("/copie"),
                                    posto.cartella + QStringLiteral("/recuperi")}) {
        const QDir dove(cartella);
        for (const QString &nome : dove.entryList(QDir::Files | QDir::Hidden))
            QFile::remove(dove.filePath(nome));
    }
    for (auto file = com_era.cbegin(); file != com_era.cend(); ++file) {
        QFile scritto(file.key());
        if (!scritto.open(QIODevice::WriteOnly) || scritto.write(*file) != file->size())
            qFatal("la prova non può preparare i suoi file");
    }
}

// Senza le ore in cui i record nacquero e cambiarono: due salvataggi uguali hanno le loro.
Righe righeDi(const QString &percorso)
{
    modTarvola::ApriArchivio(percorso);
    Righe righe;
    {
        ado::Connection &archivio = modTarvola::connessione();
        const ado::Transazione annullata(archivio);
        for (const modTarvola::catalogo::Tabella &tabella : modTarvola::catalogo::tutte()) {
            for (const auto &ora : {QStringLiteral("Creazione"), QStringLiteral("Modifica")}) {
                if (tabella.colonna(ora) != nullptr)
                    archivio.Execute(
                        {QStringLiteral("UPDATE %1 SET %2 = ''").arg(tabella.nome, ora), {}, {}});
            }
        }
        righe = campione::istantanea(archivio);
    }
    lavori::chiude();
    return righe;
}

struct Stato {
    lavori::Posto posto;
    QMap<QString, QByteArray> file;
    Righe righe;
    QHash<QString, Righe> dopo; // per lavoro, le righe di quando è riuscito
};

struct Esito {
    bool riuscito = true;
    bool ucciso = false;
    bool muto = false;          // fallito senza dire perché
    bool restaQualcosa = false; // ciò che doveva togliere non si è potuto togliere
    int chiamate = 0;
    int fallite = 0;
    QString senzaCorrente; // ciò che sarebbe andato perduto mancando la corrente
};

// La copia e il recupero sono di prima dell'ultimo salvataggio: chi dice di averli rifatti deve
// averli cambiati.
Stato prepara(const Giro &giro)
{
    Stato stato{{giro.cartella + QStringLiteral("/chiamate")}, {}, {}, {}};
    lavori::prepara(stato.posto, 12);
    lavori::copia(stato.posto);
    lavori::recupera(stato.posto);
    lavori::salva(stato.posto, QStringLiteral("x-0"));
    lavori::chiude();
    stato.righe = righeDi(stato.posto.archivio());
    stato.file = contenuto(stato.posto.cartella);
    for (const Lavoro &lavoro : tutti) {
        lavoro.compie(stato.posto);
        lavori::chiude();
        stato.dopo.insert(QString::fromUtf8(lavoro.nome), righeDi(stato.posto.archivio()));
        rimette(stato.posto, stato.file);
    }
    return stato;
}

struct Conti {
    int iniettati = 0;
    int uccisi = 0;
    int messaggi = 0;
    int perdite = 0;
};

Esito compie(const Stato &stato, const Lavoro &lavoro, const Disco &disco, int quale, int errore)
{
    rimette(stato.posto, stato.file);
    inganni::Piano piano;
    piano.cartella = stato.posto.cartella;
    piano.quale = disco.sbaglia ? -1 : quale;
    piano.falsa = !disco.sbaglia ? -1 : quale < 0 ? INT_MAX : quale;
    piano.errore = errore;
    piano.muore = disco.muore;
    piano.dalliInPoi = disco.pieno;
    piano.soloScritture = disco.pieno;
    piano.senzaModi = disco.senzaModi;
    piano.senzaLegami = disco.senzaLegami;
    if (disco.cestinoAltrove)
        piano.altroDisco = stato.posto.cestino() + u'/';
    inganni::arma(piano);
    Esito esito;
    try {
        lavoro.compie(stato.posto);
    } catch (const ado::Errore &guasto) {
        esito.riuscito = false;
        esito.muto = guasto.testo().isEmpty();
    }
    // Il disco resta guasto mentre il file si chiude.
    lavori::chiude();
    inganni::disarma();
    esito.chiamate = disco.sbaglia ? inganni::scrittureDiAlbero() : inganni::passate();
    esito.fallite = disco.sbaglia ? 1 : inganni::fallite();
    esito.senzaCorrente = inganni::perdutiSenzaCorrente();
    esito.restaQualcosa = inganni::fallitoIlTogliere();
    return esito;
}

// Lo stesso in un programma a parte, che muore a quella chiamata.
Esito muore(const Stato &stato, const Lavoro &lavoro, const Disco &disco, int quale, Conti &conti)
{
    const pid_t figlio = ::fork();
    if (figlio == 0) {
        compie(stato, lavoro, disco, quale, 0);
        ::_exit(0);
    }
    Esito esito;
    esito.riuscito = false;
    esito.ucciso = true;
    conti.perdite += finisceCosi(figlio, 0, SIGKILL);
    return esito;
}

// Ciò che un comando riuscito deve avere fatto oltre a non perdere righe.
bool haFatto(const Stato &stato, const QString &lavoro)
{
    if (lavoro == QStringLiteral("compact"))
        return contenuto(stato.posto.cestino())
            .values()
            .contains(stato.file.value(stato.posto.archivio()));
    if (lavoro == QStringLiteral("back-up"))
        return righeDi(stato.posto.copia()) == stato.righe;
    if (lavoro == QStringLiteral("restore"))
        return righeDi(stato.posto.recupero()) == stato.righe;
    return true;
}

int verifica(const Stato &stato, const Lavoro &lavoro, const Esito &esito, const QString &dove)
{
    int perdite = verificaIntegri(stato.posto.cartella);
    const auto esige = [&](bool vero, const char *che) {
        if (!vero) {
            perduto(dove + QStringLiteral(": ") + QString::fromUtf8(che));
            ++perdite;
        }
    };
    const QString nome = QString::fromUtf8(lavoro.nome);
    esige(!esito.muto, "un errore senza parole");
    esige(esito.senzaCorrente.isEmpty(),
          qPrintable(QStringLiteral("non era sul disco: ") + esito.senzaCorrente));
    if (lavoro.suiFile && !esito.riuscito && !esito.ucciso) {
        const auto quali = esito.restaQualcosa ? QDir::Filters() : QDir::Hidden;
        esige(contenuto(stato.posto.cartella, quali) == stato.file, "i file non sono più quelli");
    }
    try {
        // O tutto o nulla, in un senso e nell'altro.
        const Righe righe = righeDi(stato.posto.archivio());
        const Righe &dopo = stato.dopo[nome];
        esige(righe == dopo || (!esito.riuscito && righe == stato.righe), "righe perdute o a metà");
        esige(!esito.riuscito || haFatto(stato, nome), "detto fatto, e non è fatto");
        // E si va avanti.
        lavori::salva(stato.posto, QStringLiteral("dopo"));
    } catch (const ado::Errore &errore) {
        esige(false, qPrintable(errore.testo()));
    }
    lavori::chiude();
    return perdite;
}

// Il lavoro prima riesce, poi fallisce in ciascuna delle sue chiamate, o in tante a caso.
void fallisce(Giro &giro, const Stato &stato, const Lavoro &lavoro, const Disco &disco,
              Conti &conti)
{
    const QString nome =
        QString::fromUtf8(disco.nome) + QStringLiteral(", ") + QString::fromUtf8(lavoro.nome);
    const Esito sano = compie(stato, lavoro, disco, -1, 0);
    conti.perdite += verifica(stato, lavoro, sano, nome);
    const bool soloLegge = disco.pieno && QLatin1String(lavoro.nome) == QLatin1String("open");
    if (!sano.riuscito || (sano.chiamate == 0 && !soloLegge)) {
        perduto(nome + QStringLiteral(": non riesce, o non c'è nulla da far fallire"));
        ++conti.perdite;
    }
    constexpr int errori[] = {ENOSPC, EIO, EACCES};
    const bool ciascuna = disco.muore && !lavoro.suiFile;
    const int volte = ciascuna ? sano.chiamate : qMin(sano.chiamate, qMax(3, giro.giri));
    for (int i = 0; i < volte; ++i) {
        const int quale = volte == sano.chiamate ? i : giro.caso.bounded(sano.chiamate);
        const Esito esito =
            disco.muore ? muore(stato, lavoro, disco, quale, conti)
                        : compie(stato, lavoro, disco, quale, disco.pieno ? ENOSPC : errori[i % 3]);
        conti.iniettati += esito.fallite;
        conti.uccisi += esito.ucciso ? 1 : 0;
        conti.messaggi += esito.riuscito || esito.ucciso ? 0 : 1;
        conti.perdite +=
            verifica(stato, lavoro, esito, nome + QStringLiteral(", chiamata %1").arg(quale));
    }
}

int falliscono(Giro &giro, std::initializer_list<Disco> dischi, bool soloSuiFile)
{
    const Stato stato = prepara(giro);
    Conti conti;
    for (const Disco &disco : dischi) {
        for (const Lavoro &lavoro : tutti) {
            if (lavoro.suiFile || !soloSuiFile)
                fallisce(giro, stato, lavoro, disco, conti);
        }
    }
    QTextStream uscita(stdout);
    uscita << dischi.begin()->nome << ": ";
    if (conti.uccisi > 0)
        uscita << conti.uccisi << " times";
    else
        uscita << conti.iniettati << " calls failed, " << conti.messaggi << " ended in a message";
    uscita << ": lost " << conti.perdite << '\n';
    return conti.perdite;
}

} // namespace

int chiamate(Giro &giro)
{
    int perdite = falliscono(giro, {{"failing calls"}}, false);
    perdite += falliscono(giro,
                          {{"disks that cannot exchange files", false, EINVAL},
                           {"nor link them", false, ENOSYS, true}},
                          true);
    perdite += falliscono(giro, {{"Cestino on another disk", false, 0, false, true}}, true);
    // Una copia scritta male non prende il posto di nulla.
    perdite += falliscono(giro, {{"disks that write wrong", false, 0, false, false, true}}, true);
    // Un salvataggio è ucciso a ciascuna chiamata: o c'è per intero, o non c'è.
    perdite += falliscono(giro, {{"killed at a call", false, 0, false, false, false, true}}, false);
    return perdite;
}

int discoPieno(Giro &giro)
{
    return falliscono(giro, {{"disk full", true}}, false);
}

} // namespace prove
