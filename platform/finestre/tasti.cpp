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

QKeySequence delMenu(const QString &comando)
{
    if (comando == QStringLiteral("Apri"))
        return QKeySequence::Open;
    if (comando == QStringLiteral("Nuovo"))
        return QKeySequence::New;
    if (comando == QStringLiteral("Back up"))
        return Qt::CTRL | Qt::Key_B;
    return comando == QStringLiteral("Manuale") ? QKeySequence(Qt::Key_F1) : QKeySequence();
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
