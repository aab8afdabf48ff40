#include "platform/finestre/desktop.h"

#include <QDesktopServices>
#include <QUrl>

namespace desktop
{

void apre(const QString &percorso)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(percorso));
}

bool apreCollegamento(const QString &collegamento)
{
    return QDesktopServices::openUrl(QUrl(collegamento));
}

} // namespace desktop
