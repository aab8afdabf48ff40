#include "platform/disco/sistema.h"

#include <QFile>
#include <QHash>
#include <QSysInfo>

namespace sistema
{

QString nome()
{
    return QSysInfo::prettyProductName();
}

Memoria memoria(const QString &elenco)
{
    constexpr quint64 kilobyte = 1024;
    QHash<QByteArray, quint64> byte;
    QFile file(elenco);
    if (file.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> righe = file.readAll().split('\n');
        for (const QByteArray &riga : righe) {
            const qsizetype segno = riga.indexOf(':');
            const QByteArray valore = riga.mid(segno + 1).trimmed();
            if (segno > 0 && valore.endsWith(" kB"))
                byte.insert(riga.left(segno), valore.chopped(3).toULongLong() * kilobyte);
        }
    }
    const quint64 libera = byte.value("MemAvailable");
    const quint64 totale = byte.value("MemTotal");
    return {libera, totale, libera + byte.value("SwapFree"), totale + byte.value("SwapTotal")};
}

} // namespace sistema
