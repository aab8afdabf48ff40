#include "platform/finestre/tasti.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QShortcut>
#include <QToolBar>
#include <QToolButton>

namespace tasti
{

namespace
{

const QString bottoneDelResto = QStringLiteral("qt_toolbar_ext_button");

// La barra per un lettore di schermo: il bottone del resto, che esiste anche quando non serve, c'è
// soltanto finché si vede.
class BarraLetta : public QAccessibleWidget
{
public:
    explicit BarraLetta(QToolBar *barra) : QAccessibleWidget(barra, QAccessible::ToolBar) {}

    int childCount() const override { return static_cast<int>(figli().size()); }
    QAccessibleInterface *child(int posto) const override { return figli().value(posto); }
    int indexOfChild(const QAccessibleInterface *figlio) const override
    {
        return static_cast<int>(figli().indexOf(figlio));
    }

private:
    QList<QAccessibleInterface *> figli() const
    {
        QList<QAccessibleInterface *> visti;
        for (int i = 0; i < QAccessibleWidget::childCount(); ++i) {
            QAccessibleInterface *figlio = QAccessibleWidget::child(i);
            const QObject *oggetto = figlio->object();
            if (oggetto->objectName() != bottoneDelResto || !figlio->state().invisible)
                visti.append(figlio);
        }
        return visti;
    }
};

QAccessibleInterface *legge(const QString &classe, QObject *oggetto)
{
    auto *barra =
        classe == QStringLiteral("QToolBar") ? qobject_cast<QToolBar *>(oggetto) : nullptr;
    return barra == nullptr ? nullptr : new BarraLetta(barra);
}

} // namespace

QString conTasto(const QString &testo, const QKeySequence &tasto)
{
    QString piano = testo;
    piano.remove(u'&');
    return tasto.isEmpty()
               ? piano
               : piano + QStringLiteral(" (") + tasto.toString(QKeySequence::NativeText) + u')';
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
    QAccessible::installFactory(legge);
    const auto bottoni = barra->findChildren<QToolButton *>(bottoneDelResto);
    for (QToolButton *bottone : bottoni) {
        bottone->setAccessibleName(QStringLiteral("Altri comandi"));
        bottone->setToolTip(bottone->accessibleName());
    }
}

} // namespace tasti
