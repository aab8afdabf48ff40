#include "platform/errore.h"

namespace ado
{

Errore::Errore(Causa quale, const QString &testo)
    : std::runtime_error(testo.toStdString()), m_causa(quale)
{
}

QString Errore::testo() const
{
    return QString::fromUtf8(what());
}

} // namespace ado
