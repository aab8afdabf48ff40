#include "platform/finestre/tasti.h"

#include <QAbstractButton>
#include <QShortcut>
#include <QToolBar>
#include <QToolButton>

namespace tasti
{

QString conTasto(const QString &testo, const QKeySequence &tasto)
{
    QString piano = testo;
    return piano.remove(u'&') + QStringLiteral(" (") + tasto.toString(QKeySequence::NativeText) +
           u')';
}

void assegna(QWidget *dove, const QKeySequence &tasto, QAbstractButton *bottone)
{
    auto *scorciatoia = new QShortcut(tasto, dove);
    scorciatoia->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(scorciatoia, &QShortcut::activated, bottone, [bottone] { bottone->click(); });
    bottone->setToolTip(conTasto(bottone->text(), tasto));
}

void chiama(QToolBar *barra, const QString &nome)
{
    barra->setAccessibleName(nome);
    const auto bottoni =
        barra->findChildren<QToolButton *>(QStringLiteral("qt_toolbar_ext_button"));
    for (QToolButton *bottone : bottoni) {
        bottone->setAccessibleName(QStringLiteral("Altri comandi"));
        bottone->setToolTip(bottone->accessibleName());
    }
}

} // namespace tasti
