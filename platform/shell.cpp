#include "platform/shell.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace shell
{

namespace
{

QString liberoDa(const QString &percorso)
{
    const QFileInfo info(percorso);
    const QString estensione = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    QString candidato = percorso;
    for (int numero = 2; QFileInfo::exists(candidato); ++numero) {
        candidato = QStringLiteral("%1/%2 (%3)%4")
                        .arg(info.path(), info.completeBaseName())
                        .arg(numero)
                        .arg(estensione);
    }
    return candidato;
}

// Una copia non è fatta finché non è sul disco: solo allora l'originale si può togliere.
QString copia(const QString &origine, const QString &destinazione)
{
    QFile da(origine);
    if (!da.open(QIODevice::ReadOnly))
        return da.errorString();
    QSaveFile a(destinazione);
    if (!a.open(QIODevice::WriteOnly))
        return a.errorString();
    constexpr qint64 blocco = qint64{1} << 20;
    while (!da.atEnd()) {
        const QByteArray pezzo = da.read(blocco);
        if (pezzo.isEmpty())
            return da.errorString();
        if (a.write(pezzo) != pezzo.size())
            return a.errorString();
    }
    if (!a.flush() || ::fsync(a.handle()) != 0 || !a.commit())
        return a.errorString();
    return {};
}

QString muovi(const QString &origine, const QString &destinazione)
{
    // Il nucleo rifiuta da sé un nome preso nel frattempo: nulla è mai sovrascritto.
    if (::renameat2(AT_FDCWD, QFile::encodeName(origine).constData(), AT_FDCWD,
                    QFile::encodeName(destinazione).constData(), RENAME_NOREPLACE) == 0)
        return {};
    if (errno != EXDEV && errno != EINVAL)
        return QString::fromLocal8Bit(std::strerror(errno));
    QString motivo = copia(origine, destinazione);
    if (!motivo.isEmpty())
        return motivo;
    QFile file(origine);
    if (!file.remove()) {
        motivo = file.errorString();
        QFile::remove(destinazione);
    }
    return motivo;
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
    if (QFileInfo(programma).isWritable())
        return programma;
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

Esito OperazioneFile(const QString &operazione, const QString &origine, const QString &destinazione,
                     bool rinominaSePreso)
{
    if (operazione == QStringLiteral("Cancella"))
        return cancella(origine);
    const bool copiare = operazione == QStringLiteral("Copia");
    if (!copiare && operazione != QStringLiteral("Muovi") &&
        operazione != QStringLiteral("Rinomina"))
        return {1, {}, QStringLiteral("l'operazione %1 non esiste").arg(operazione)};
    Esito esito;
    QString arrivo = destinazione;
    if (QFileInfo::exists(destinazione)) {
        if (!rinominaSePreso)
            return {1, {}, QStringLiteral("il file di destinazione esiste già")};
        arrivo = liberoDa(destinazione);
        esito.nuovoNome = arrivo;
    }
    esito.motivo = copiare ? copia(origine, arrivo) : muovi(origine, arrivo);
    if (!esito.motivo.isEmpty()) {
        esito.stato = 1;
        esito.nuovoNome.clear();
    }
    return esito;
}

QString NomeFileDaPercorso(const QString &percorso)
{
    const qsizetype barra = qMax(percorso.lastIndexOf(u'\\'), percorso.lastIndexOf(u'/'));
    return percorso.mid(barra + 1);
}

} // namespace shell
