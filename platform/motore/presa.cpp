#include "platform/motore/presa.h"

#include "platform/errore.h"

#include <QFile>
#include <QMutex>

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

// Un byte che il motore non usa per i suoi blocchi.
constexpr off_t posto = 0x40000000 + 600;
constexpr int attesaMillisecondi = 2500;
constexpr int giroMillisecondi = 50;

// Chiudere un descrittore scioglierebbe i blocchi del motore sullo stesso file: quelli di un file
// si chiudono tutti insieme, quando nessuna connessione lo usa più.
struct Preso {
    std::vector<int> descrittori;
    int quanti = 0;
};

// Le connessioni possono chiudersi quando il programma già finisce: queste due non finiscono mai.
QMutex &guardia()
{
    static auto *una = new QMutex;
    return *una;
}

std::map<std::pair<dev_t, ino_t>, Preso> &presi()
{
    static auto *tutti = new std::map<std::pair<dev_t, ino_t>, Preso>;
    return *tutti;
}

bool blocca(int descrittore, short modo)
{
    struct flock blocco = {};
    blocco.l_type = modo;
    blocco.l_whence = SEEK_SET;
    blocco.l_start = posto;
    blocco.l_len = 1;
    // Un disco che non sa bloccare, o un file che si può solo leggere, non hanno di che difendersi.
    return ::fcntl(descrittore, F_OFD_SETLK, &blocco) == 0 || (errno != EAGAIN && errno != EACCES);
}

[[noreturn]] void occupato()
{
    throw ado::Errore(
        ado::Causa::Occupato,
        QStringLiteral("il file è bloccato da un altro programma; riprovare tra poco"));
}

} // namespace

Presa::Presa(const QString &percorso)
{
    const QByteArray nome = QFile::encodeName(percorso);
    const QMutexLocker chiuso(&guardia());
    struct stat stato = {};
    if (::stat(nome.constData(), &stato) != 0 || !S_ISREG(stato.st_mode))
        return;
    if (presi().count({stato.st_dev, stato.st_ino}) == 0) {
        int descrittore = ::open(nome.constData(), O_RDWR | O_CLOEXEC);
        if (descrittore < 0)
            descrittore = ::open(nome.constData(), O_RDONLY | O_CLOEXEC);
        if (descrittore < 0 || ::fstat(descrittore, &stato) != 0)
            return;
        // Il percorso può essere passato a un file che teniamo già.
        const bool nuovo = presi().count({stato.st_dev, stato.st_ino}) == 0;
        for (int atteso = 0; nuovo && !blocca(descrittore, F_RDLCK); atteso += giroMillisecondi) {
            if (atteso >= attesaMillisecondi) {
                ::close(descrittore);
                occupato();
            }
            ::usleep(giroMillisecondi * 1000);
        }
        presi()[{stato.st_dev, stato.st_ino}].descrittori.push_back(descrittore);
    }
    m_disco = stato.st_dev;
    m_numero = stato.st_ino;
    m_preso = true;
    ++presi()[{m_disco, m_numero}].quanti;
}

Presa::~Presa()
{
    if (!m_preso)
        return;
    const QMutexLocker chiuso(&guardia());
    const auto mio = presi().find({m_disco, m_numero});
    if (--mio->second.quanti > 0)
        return;
    for (const int descrittore : mio->second.descrittori)
        ::close(descrittore);
    presi().erase(mio);
}

void Presa::daSolo()
{
    const QMutexLocker chiuso(&guardia());
    if (m_preso && !blocca(presi()[{m_disco, m_numero}].descrittori.front(), F_WRLCK))
        occupato();
}

bool Presa::attuale(const QString &percorso) const
{
    struct stat stato = {};
    return !m_preso || (::stat(QFile::encodeName(percorso).constData(), &stato) == 0 &&
                        stato.st_dev == m_disco && stato.st_ino == m_numero);
}

int Presa::descrittoreDi(const QString &percorso)
{
    const QMutexLocker chiuso(&guardia());
    struct stat stato = {};
    if (::stat(QFile::encodeName(percorso).constData(), &stato) != 0)
        return -1;
    const auto suo = presi().find({stato.st_dev, stato.st_ino});
    return suo == presi().end() ? -1 : suo->second.descrittori.front();
}
