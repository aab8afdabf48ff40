#include "db/connessioni.h"
#include "faults/campione.h"
#include "faults/inganni.h"
#include "faults/lavori.h"
#include "faults/prove.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

#include <cerrno>

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
    {"delete", [](const lavori::Posto &posto) { lavori::elimina(posto, QStringLiteral("V3")); },
     false},
    {"attach", [](const lavori::Posto &posto) { lavori::allega(posto, QStringLiteral("x-2")); },
     false},
    {"compact", lavori::compatta, true},
    {"back-up", lavori::copia, true},
    {"restore", lavori::recupera, true},
};

// I file che si vedono e il loro contenuto.
QMap<QString, QByteArray> visibili(const QString &cartella)
{
    QMap<QString, QByteArray> trovati;
    const QDir dove(cartella);
    for (const QString &nome : dove.entryList(QDir::Files)) {
        QFile file(dove.filePath(nome));
        if (file.open(QIODevice::ReadOnly))
            trovati.insert(dove.filePath(nome), file.readAll());
    }
    for (const QString &nome : dove.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        trovati.insert(visibili(dove.filePath(nome)));
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

// Quante righe di prima mancano nell'archivio; un'eliminazione riuscita ne può togliere.
qint64 mancano(const Righe &prima, const lavori::Posto &posto)
{
    lavori::apre(posto);
    const Righe dopo = campione::istantanea(modTarvola::connessione());
    qint64 quante = 0;
    for (auto tabella = prima.cbegin(); tabella != prima.cend(); ++tabella)
        quante += campione::mancano(*tabella, dopo.value(tabella.key()));
    return quante;
}

struct Stato {
    lavori::Posto posto;
    QMap<QString, QByteArray> file;
    Righe righe;
    Righe senzaLaVoce;
};

int verifica(const Stato &stato, const Lavoro &lavoro, bool riuscito, const QString &dove)
{
    int perdite = verificaIntegri(stato.posto.cartella);
    if (lavoro.suiFile && !riuscito && visibili(stato.posto.cartella) != stato.file) {
        perduto(dove + QStringLiteral(": i file non sono più quelli"));
        ++perdite;
    }
    try {
        const bool tolta = QLatin1String(lavoro.nome) == QLatin1String("delete") &&
                           mancano(stato.righe, stato.posto) > 0;
        if (mancano(tolta ? stato.senzaLaVoce : stato.righe, stato.posto) > 0) {
            perduto(dove + QStringLiteral(": righe perdute"));
            ++perdite;
        }
        // E si va avanti.
        lavori::salva(stato.posto, QStringLiteral("dopo"));
    } catch (const ado::Errore &errore) {
        perduto(dove + QStringLiteral(": ") + errore.testo());
        ++perdite;
    }
    lavori::chiude();
    return perdite;
}

Stato prepara(const Giro &giro)
{
    Stato stato{{giro.cartella + QStringLiteral("/chiamate")}, {}, {}, {}};
    lavori::prepara(stato.posto, 12);
    lavori::apre(stato.posto);
    stato.righe = campione::istantanea(modTarvola::connessione());
    lavori::copia(stato.posto);
    lavori::recupera(stato.posto);
    stato.file = visibili(stato.posto.cartella);
    lavori::elimina(stato.posto, QStringLiteral("V3"));
    stato.senzaLaVoce = campione::istantanea(modTarvola::connessione());
    lavori::chiude();
    return stato;
}

bool compie(const Stato &stato, const Lavoro &lavoro, inganni::Piano piano)
{
    rimette(stato.posto, stato.file);
    piano.cartella = stato.posto.cartella;
    inganni::arma(piano);
    bool riuscito = true;
    try {
        lavoro.compie(stato.posto);
    } catch (const ado::Errore &errore) {
        riuscito = errore.testo().isEmpty();
    }
    // Il disco resta guasto mentre il file si chiude.
    lavori::chiude();
    inganni::disarma();
    return riuscito;
}

int falliscono(Giro &giro, bool pieno)
{
    const Stato stato = prepara(giro);
    int perdite = 0;
    int iniettati = 0;
    int messaggi = 0;
    for (const Lavoro &lavoro : tutti) {
        compie(stato, lavoro, {{}, -1, 0, false, pieno, false});
        const int chiamate = inganni::passate();
        const int volte = qMin(chiamate, qMax(3, giro.giri));
        for (int i = 0; i < volte; ++i) {
            const int quale = volte == chiamate ? i : giro.caso.bounded(chiamate);
            const int errore = pieno ? ENOSPC : (i % 3 == 0 ? ENOSPC : EIO);
            const bool riuscito = compie(stato, lavoro, {{}, quale, errore, pieno, pieno, false});
            iniettati += inganni::fallite();
            messaggi += riuscito ? 0 : 1;
            perdite += verifica(
                stato, lavoro, riuscito,
                QStringLiteral("%1, chiamata %2").arg(QString::fromUtf8(lavoro.nome)).arg(quale));
        }
    }
    QTextStream(stdout) << (pieno ? "disk full: " : "failing calls: ") << iniettati
                        << " calls failed, " << messaggi << " ended in a message: lost " << perdite
                        << '\n';
    return perdite;
}

} // namespace

int chiamate(Giro &giro)
{
    return falliscono(giro, false);
}

int discoPieno(Giro &giro)
{
    return falliscono(giro, true);
}

} // namespace prove
