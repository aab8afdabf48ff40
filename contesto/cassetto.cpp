#include "contesto/cassetto.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

namespace bozze
{

namespace
{

constexpr int versione = 1;
constexpr auto soloSuo = QFile::ReadOwner | QFile::WriteOwner;

const QString chiaveVersione = QStringLiteral("versione");
const QString chiaveArchivio = QStringLiteral("archivio");
const QString chiaveAperte = QStringLiteral("aperte");
const QString chiaveUltime = QStringLiteral("ultime");

QString &scelta()
{
    static QString sola;
    return sola;
}

// Lo stesso archivio, comunque lo si nomini, ha lo stesso cassetto.
QString percorsoDi(const QString &cartella, const QString &archivio)
{
    const QFileInfo file(archivio);
    const QString vero =
        file.canonicalFilePath().isEmpty() ? file.absoluteFilePath() : file.canonicalFilePath();
    return cartella + u'/' +
           QString::fromLatin1(
               QCryptographicHash::hash(vero.toUtf8(), QCryptographicHash::Sha256).toHex()) +
           QStringLiteral(".json");
}

QJsonArray inJson(const QList<Bozza> &bozze)
{
    QJsonArray tutte;
    for (const Bozza &una : bozze)
        tutte.append(inJson(una));
    return tutte;
}

QList<Bozza> bozzeDa(const QJsonValue &valore)
{
    QList<Bozza> tutte;
    const QJsonArray elenco = valore.toArray();
    for (const auto &una : elenco) {
        if (const auto bozza = daJson(una.toObject()))
            tutte.append(*bozza);
    }
    return tutte;
}

} // namespace

const QString &cartella()
{
    return scelta();
}

QString cartellaDellUtente()
{
    const QString dellUtente = qEnvironmentVariable("XDG_STATE_HOME");
    // XDG Base Directory vuole un percorso assoluto; un altro non conta.
    const QString stato = QDir::isAbsolutePath(dellUtente)
                              ? dellUtente
                              : QDir::homePath() + QStringLiteral("/.local/state");
    return stato + QStringLiteral("/tarvola/bozze");
}

void usaCartella(const QString &percorso)
{
    scelta() = percorso;
}

void Cassetto::sfoltisce(const QDateTime &ora)
{
    const QDateTime limite = ora.addDays(-giorniUltime);
    ultime.removeIf([&limite](const Bozza &una) { return una.quando < limite; });
    if (ultime.size() > quanteUltime)
        ultime.resize(quanteUltime);
}

Cassetto legge(const QString &archivio, QString *guasto)
{
    Cassetto cassetto{archivio, {}, {}};
    if (cartella().isEmpty())
        return cassetto;
    QFile file(percorsoDi(cartella(), archivio));
    if (!file.open(QIODevice::ReadOnly))
        return cassetto;
    const QJsonObject tutto = QJsonDocument::fromJson(file.readAll()).object();
    file.close();
    if (tutto.value(chiaveVersione).toInt() != versione) {
        const QString daParte = file.fileName() + QStringLiteral(".guasto");
        QFile::remove(daParte);
        if (file.rename(daParte) && guasto != nullptr)
            *guasto = daParte;
        return cassetto;
    }
    cassetto.aperte = bozzeDa(tutto.value(chiaveAperte));
    cassetto.ultime = bozzeDa(tutto.value(chiaveUltime));
    return cassetto;
}

bool scrive(const QString &cartella, const Cassetto &cassetto)
{
    const QString percorso = percorsoDi(cartella, cassetto.archivio);
    if (cassetto.vuoto())
        return !QFile::exists(percorso) || QFile::remove(percorso);
    if (!QDir().mkpath(cartella) || !QFile::setPermissions(cartella, soloSuo | QFile::ExeOwner))
        return false;
    QSaveFile file(percorso);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(soloSuo))
        return false;
    file.write(QJsonDocument(QJsonObject{{chiaveVersione, versione},
                                         {chiaveArchivio, cassetto.archivio},
                                         {chiaveAperte, inJson(cassetto.aperte)},
                                         {chiaveUltime, inJson(cassetto.ultime)}})
                   .toJson(QJsonDocument::Compact));
    return file.commit();
}

} // namespace bozze
