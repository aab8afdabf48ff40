#include "app/richieste.h"

#include "platform/finestre/messaggi.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDataStream>
#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>

namespace
{

constexpr int attesa = 3000; // millisecondi
constexpr char presa = '+';
constexpr auto forma = QDataStream::Qt_6_0;

QString cartellaDellePrese()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/tarvola");
}

bool occupato()
{
    return messaggi::inCorso() || QApplication::activeModalWidget() != nullptr ||
           QApplication::activePopupWidget() != nullptr;
}

bool consegna(QLocalSocket &a, const QStringList &percorsi)
{
    QDataStream dati(&a);
    dati.setVersion(forma);
    dati << percorsi;
    char risposta = 0;
    return a.waitForBytesWritten(attesa) && a.waitForReadyRead(attesa) && a.getChar(&risposta) &&
           risposta == presa;
}

} // namespace

Richieste::Richieste(QWidget *finestra, std::function<void(const QString &)> apre)
    : m_finestra(finestra), m_apre(std::move(apre))
{
    m_presa.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_presa, &QLocalServer::newConnection, this, &Richieste::riceve);
    // Nessun segnale dice che l'ultimo comando è finito: lo si guarda a ogni giro del ciclo degli
    // eventi, che per servire una richiesta deve essere di nuovo il più esterno.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this, [this] {
        if (!m_attese.isEmpty() && !occupato())
            QMetaObject::invokeMethod(this, &Richieste::serve, Qt::QueuedConnection);
    });
}

bool Richieste::affida(const QStringList &percorsi)
{
    const QFileInfoList prese =
        QDir(cartellaDellePrese()).entryInfoList(QDir::System | QDir::Files, QDir::Time);
    for (const QFileInfo &una : prese) {
        QLocalSocket a;
        a.connectToServer(una.absoluteFilePath());
        if (a.waitForConnected(attesa)) {
            if (consegna(a, percorsi))
                return true;
        } else if (a.error() == QLocalSocket::ConnectionRefusedError) {
            // Chi l'aveva aperta non c'è più, e non ha potuto toglierla.
            QLocalServer::removeServer(una.absoluteFilePath());
        }
    }
    return false;
}

bool Richieste::ascolta()
{
    const QDir cartella(cartellaDellePrese());
    const QString nome = cartella.filePath(QString::number(QCoreApplication::applicationPid()));
    QLocalServer::removeServer(nome);
    return cartella.mkpath(QStringLiteral(".")) && m_presa.listen(nome);
}

void Richieste::accoda(const QStringList &percorsi)
{
    m_attese += percorsi;
    QMetaObject::invokeMethod(this, &Richieste::serve, Qt::QueuedConnection);
}

void Richieste::riceve()
{
    while (QLocalSocket *da = m_presa.nextPendingConnection()) {
        connect(da, &QLocalSocket::disconnected, da, &QObject::deleteLater);
        connect(da, &QLocalSocket::readyRead, this, [this, da] {
            QDataStream dati(da);
            dati.setVersion(forma);
            QStringList percorsi;
            dati.startTransaction();
            dati >> percorsi;
            if (!dati.commitTransaction())
                return;
            da->putChar(presa);
            da->flush();
            accoda(percorsi);
            portaDavanti();
        });
    }
}

void Richieste::serve()
{
    if (m_attese.isEmpty() || occupato())
        return;
    const QString percorso = m_attese.takeFirst();
    messaggi::protetto(m_finestra, [this, &percorso] { m_apre(percorso); });
}

// Davanti viene la finestra che può rispondere: l'editor aperto fa capire che cosa si aspetta.
void Richieste::portaDavanti()
{
    if (m_finestra->isMinimized())
        m_finestra->showNormal();
    QWidget *modale = QApplication::activeModalWidget();
    QWidget *davanti = modale == nullptr ? m_finestra : modale;
    davanti->raise();
    davanti->activateWindow();
}
