#include "platform/disco/shell.h"

#include "platform/errore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

namespace shell
{

namespace
{

// Una copia non è fatta finché non è sul disco, col suo nome: solo allora l'originale si può
// togliere. Lancia ado::Errore.
void copia(const QString &origine, const QString &destinazione, const provvisorio::Passo &passo)
{
    provvisorio::File nuovo(destinazione);
    provvisorio::copia(origine, nuovo.percorso(), passo);
    nuovo.prendeIlPosto(origine, true);
    if (!provvisorio::sincronizzaNome(destinazione)) {
        QFile::remove(destinazione);
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("%1: il disco non risponde").arg(destinazione));
    }
}

void muovi(const QString &origine, const QString &destinazione, const provvisorio::Passo &passo)
{
    // Il nucleo rifiuta da sé un nome preso nel frattempo: nulla è mai sovrascritto.
    if (::renameat2(AT_FDCWD, QFile::encodeName(origine).constData(), AT_FDCWD,
                    QFile::encodeName(destinazione).constData(), RENAME_NOREPLACE) == 0) {
        provvisorio::sincronizzaNome(destinazione);
        return;
    }
    if (errno != EXDEV && errno != EINVAL && errno != ENOSYS)
        throw ado::Errore(ado::Causa::Altro, QString::fromLocal8Bit(std::strerror(errno)));
    copia(origine, destinazione, passo);
    QFile file(origine);
    if (!file.remove()) {
        QFile::remove(destinazione);
        throw ado::Errore(ado::Causa::Altro, file.errorString());
    }
}

Esito cancella(const QString &percorso)
{
    QFile file(percorso);
    if (file.moveToTrash())
        return {};
    return {1, {}, file.errorString()};
}

} // namespace

QString cartellaApplicazione()
{
    const QString programma = QCoreApplication::applicationDirPath();
    const bool daCostruire = QFileInfo::exists(programma + QStringLiteral("/CMakeCache.txt"));
    if (!daCostruire && QFileInfo(programma).isWritable())
        return programma;
    if (daCostruire) {
        const QString documenti =
            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
            QStringLiteral("/Tarvola");
        if (QDir().mkpath(documenti) && QFileInfo(documenti).isWritable())
            return documenti;
    }
    const QString dati = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir().mkpath(dati);
    return dati;
}

QString fileDelProgramma(const QString &nome)
{
    const QString programma = QCoreApplication::applicationDirPath();
    for (const QString &cartella :
         {cartellaApplicazione(), programma, programma + QStringLiteral("/../share/tarvola")}) {
        const QString percorso = cartella + u'/' + nome;
        if (QFileInfo::exists(percorso))
            return QDir::cleanPath(percorso);
    }
    return {};
}

QString liberoDa(const QString &percorso)
{
    const QFileInfo info(percorso);
    const QString estensione = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    const auto preso = [](const QString &nome) {
        const QStringList suoi = provvisorio::accanto(nome);
        return QFileInfo::exists(nome) ||
               std::any_of(suoi.cbegin(), suoi.cend(),
                           [](const QString &suo) { return QFileInfo::exists(suo); });
    };
    QString candidato = percorso;
    for (int numero = 2; preso(candidato); ++numero) {
        candidato = QStringLiteral("%1/%2 (%3)%4")
                        .arg(info.path(), info.completeBaseName())
                        .arg(numero)
                        .arg(estensione);
    }
    return candidato;
}

Esito OperazioneFile(Operazione operazione, const QString &origine, const QString &destinazione,
                     bool rinominaSePreso, const provvisorio::Passo &passo)
{
    if (operazione == Operazione::Cancella)
        return cancella(origine);
    if (!rinominaSePreso && QFileInfo::exists(destinazione))
        return {1, {}, QStringLiteral("il file di destinazione esiste già")};
    const QString arrivo = rinominaSePreso ? liberoDa(destinazione) : destinazione;
    const provvisorio::Passo suo =
        passo ? passo : [](qint64 /*fatto*/, qint64 /*totale*/) { return true; };
    try {
        operazione == Operazione::Copia ? copia(origine, arrivo, suo) : muovi(origine, arrivo, suo);
    } catch (const ado::Errore &errore) {
        return {errore.causa() == ado::Causa::Interrotto ? 2 : 1, {}, errore.testo()};
    }
    return {0, arrivo == destinazione ? QString() : arrivo, {}};
}

QString NomeFileDaPercorso(const QString &percorso)
{
    const qsizetype barra = qMax(percorso.lastIndexOf(u'\\'), percorso.lastIndexOf(u'/'));
    return percorso.mid(barra + 1);
}

} // namespace shell
