#include "platform/finestre/testo_semplice.h"

namespace testo_semplice
{

namespace
{

const QString segno = QStringLiteral("[*]");

} // namespace

QString didascalia(const QString &testo)
{
    return QString(testo).replace(segno, segno + segno);
}

QString voceDi(const QString &didascalia)
{
    return QString(didascalia)
        .replace(segno + segno, segno)
        .replace(u'&', QStringLiteral("&&"))
        .replace(u'\t', u' ');
}

} // namespace testo_semplice
