#include "platform/finestre/desktop.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace desktop
{

namespace
{

// Dove manca un ambiente grafico chi apre resta in vita quanto il programma che ha aperto: un esito
// tardivo è di quello.
constexpr qint64 prontezza = 20000; // millisecondi

// Il comando del desktop che apre un collegamento e dice se vi è riuscito; vuoto se non c'è.
QStringList comando()
{
    for (const QStringList &uno : {QStringList{QStringLiteral("xdg-open")},
                                   QStringList{QStringLiteral("gio"), QStringLiteral("open")}}) {
        const QString programma = QStandardPaths::findExecutable(uno.constFirst());
        if (!programma.isEmpty())
            return QStringList{programma} + uno.mid(1);
    }
    return {};
}

} // namespace

void apre(const QString &percorso)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(percorso));
}

bool apreCollegamento(const QString &collegamento, QObject *chi,
                      const std::function<void()> &rifiutato)
{
    const QUrl indirizzo(collegamento);
    QStringList con = comando();
    if (con.isEmpty())
        return QDesktopServices::openUrl(indirizzo);
    // Senza padrone: distrutto col programma si porterebbe via quello che ha aperto.
    auto *processo = new QProcess;
    processo->setStandardInputFile(QProcess::nullDevice());
    processo->setStandardOutputFile(QProcess::nullDevice());
    processo->setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer orologio;
    orologio.start();
    const QPointer<QObject> vivo(chi);
    QObject::connect(processo, &QProcess::finished, processo,
                     [=](int esito, QProcess::ExitStatus come) {
                         processo->deleteLater();
                         const bool riuscito = esito == 0 && come == QProcess::NormalExit;
                         if (!riuscito && orologio.elapsed() < prontezza && vivo != nullptr)
                             rifiutato();
                     });
    const QString programma = con.takeFirst();
    processo->start(programma, con << QString::fromLatin1(indirizzo.toEncoded()));
    if (processo->waitForStarted())
        return true;
    delete processo;
    return false;
}

} // namespace desktop
