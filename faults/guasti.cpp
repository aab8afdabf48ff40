#include "db/archivio/connessioni.h"
#include "faults/prove.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QTextStream>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace prove
{

void perduto(const QString &che)
{
    QTextStream(stderr) << "LOST: " << che << '\n';
}

Finale aParte(int secondi, const std::function<Finale()> &lavoro)
{
    const pid_t figlio = ::fork();
    if (figlio == 0) {
        ::alarm(static_cast<unsigned>(secondi));
        int esito = Perduto;
        try {
            esito = lavoro();
        } catch (const std::exception &errore) {
            perduto(QString::fromUtf8(errore.what()));
        }
        ::_exit(esito);
    }
    int stato = 0;
    if (::waitpid(figlio, &stato, 0) == figlio && WIFEXITED(stato) &&
        (WEXITSTATUS(stato) == Fatto || WEXITSTATUS(stato) == Rifiutato))
        return static_cast<Finale>(WEXITSTATUS(stato));
    if (!WIFEXITED(stato) || WEXITSTATUS(stato) != Perduto)
        perduto(QStringLiteral("il programma è caduto o non finisce (%1)").arg(stato));
    return Perduto;
}

int finisceCosi(pid_t processo, int stato, int segnale)
{
    int suo = 0;
    const bool finito = ::waitpid(processo, &suo, 0) == processo;
    if (finito && (segnale != 0 ? WIFSIGNALED(suo) && WTERMSIG(suo) == segnale
                                : WIFEXITED(suo) && WEXITSTATUS(suo) == stato))
        return 0;
    perduto(QStringLiteral("un programma è finito come non doveva (%1)").arg(suo));
    return 1;
}

int verificaIntegri(const QString &cartella)
{
    int rotti = 0;
    QDirIterator giro(cartella, {QStringLiteral("*.tvd")}, QDir::Files,
                      QDirIterator::Subdirectories);
    while (giro.hasNext()) {
        const QString percorso = giro.next();
        QString esito;
        try {
            ado::Connection connessione;
            connessione.Open(modTarvola::stringaDiConnessione(percorso));
            esito =
                connessione.valore({QStringLiteral("PRAGMA integrity_check"), {}, {}}).toString();
        } catch (const ado::Errore &errore) {
            esito = errore.testo();
        }
        if (esito == QStringLiteral("ok"))
            continue;
        perduto(percorso + QStringLiteral(": ") + esito);
        ++rotti;
    }
    return rotti;
}

} // namespace prove

int main(int argc, char **argv)
{
    const QCoreApplication applicazione(argc, argv);
    const QStringList argomenti = QCoreApplication::arguments();
    const int giri = argomenti.value(1).toInt();
    if (giri < 1) {
        QTextStream(stderr) << "usage: guasti ROUNDS [SEED]\n";
        return 2;
    }
    const quint32 seme =
        argomenti.size() > 2 ? argomenti.at(2).toUInt() : QRandomGenerator::global()->generate();
    QTextStream(stdout) << "rounds " << giri << ", seed " << seme << '\n';
    ::signal(SIGPIPE, SIG_IGN);
    QTemporaryDir cartella;
    int perdite = 0;
    for (auto prova : {prove::uccisioni, prove::chiamate, prove::discoPieno, prove::giornali,
                       prove::dueProgrammi, prove::danneggiati}) {
        prove::Giro giro{cartella.path(), giri, QRandomGenerator(seme)};
        perdite += prova(giro);
    }
    cartella.setAutoRemove(perdite == 0);
    if (perdite > 0)
        QTextStream(stdout) << "what was lost lies in " << cartella.path() << '\n';
    QTextStream(stdout) << "lost in all: " << perdite << '\n';
    return perdite == 0 ? 0 : 1;
}
