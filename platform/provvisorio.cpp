#include "platform/provvisorio.h"

#include "platform/ado.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace provvisorio
{

namespace
{

// Il resto del nome dice il processo, perché chi viene dopo sappia se è ancora al lavoro.
const QString parziale = QStringLiteral(".parziale-");
const QString scambiato = QStringLiteral(".scambio-");

[[noreturn]] void fallisci(const QString &percorso, int errore)
{
    ado::Causa causa = ado::Causa::Altro;
    QString motivo = QString::fromLocal8Bit(std::strerror(errore));
    if (errore == ENOSPC || errore == EDQUOT) {
        causa = ado::Causa::DiscoPieno;
        motivo = QStringLiteral("il disco è pieno");
    } else if (errore == EROFS) {
        causa = ado::Causa::SolaLettura;
        motivo = QStringLiteral("il disco è di sola lettura");
    } else if (errore == EACCES || errore == EPERM) {
        causa = ado::Causa::Illeggibile;
        motivo = QStringLiteral("manca il permesso");
    }
    throw ado::Errore(causa, QStringLiteral("%1: %2").arg(percorso, motivo));
}

// Un descrittore che si chiude da sé.
class Descrittore
{
public:
    Descrittore(const QString &percorso, int modi)
        : m_numero(::open(QFile::encodeName(percorso).constData(), modi | O_CLOEXEC, 0644))
    {
        if (m_numero < 0)
            fallisci(percorso, errno);
    }
    ~Descrittore() { ::close(m_numero); }
    Descrittore(const Descrittore &) = delete;
    Descrittore &operator=(const Descrittore &) = delete;
    int operator*() const { return m_numero; }

private:
    int m_numero;
};

QString inizioNome(const QString &destinazione, const QString &genere)
{
    // Un nome lungo quanto il disco consente non lascerebbe posto per il resto.
    return u'.' + QFileInfo(destinazione).fileName().left(60) + genere;
}

QString nomeNuovo(const QString &destinazione, const QString &genere)
{
    static QAtomicInt conto;
    return QStringLiteral("%1/%2%3-%4")
        .arg(QFileInfo(destinazione).absolutePath(), inizioNome(destinazione, genere))
        .arg(QCoreApplication::applicationPid())
        .arg(conto.fetchAndAddRelaxed(1));
}

// I file del genere dato il cui processo non c'è più.
QStringList abbandonati(const QString &destinazione, const QString &genere)
{
    QStringList trovati;
    const QDir cartella = QFileInfo(destinazione).absoluteDir();
    const QString inizio = inizioNome(destinazione, genere);
    const auto nomi = cartella.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &nome : nomi) {
        if (!nome.startsWith(inizio))
            continue;
        const pid_t processo = nome.mid(inizio.size()).section(u'-', 0, 0).toInt();
        if (processo > 0 && ::kill(processo, 0) != 0 && errno == ESRCH)
            trovati.append(cartella.filePath(nome));
    }
    return trovati;
}

// Rende 0 o l'errore. Un disco che non conosce i modi vuole il cambio di nome semplice.
int rinomina(const QString &da, const QString &a, unsigned modo)
{
    const QByteArray uno = QFile::encodeName(da);
    const QByteArray altro = QFile::encodeName(a);
    if (::renameat2(AT_FDCWD, uno.constData(), AT_FDCWD, altro.constData(), modo) == 0)
        return 0;
    if (errno != EINVAL || modo == RENAME_EXCHANGE)
        return errno;
    if (modo == RENAME_NOREPLACE && ::access(altro.constData(), F_OK) == 0)
        return EEXIST;
    return ::rename(uno.constData(), altro.constData()) == 0 ? 0 : errno;
}

// Il nome nuovo regge a un'interruzione di corrente solo quando anche la cartella è sul disco. Non
// tutti i dischi lo sanno fare, e il cambio è comunque avvenuto.
void sincronizzaCartella(const QString &percorso)
{
    const QByteArray cartella = QFile::encodeName(QFileInfo(percorso).absolutePath());
    const int numero = ::open(cartella.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (numero < 0)
        return;
    ::fsync(numero);
    ::close(numero);
}

void scrive(int a, const QString &percorso, const char *byte, qint64 quanti)
{
    while (quanti > 0) {
        const ssize_t scritti = ::write(a, byte, static_cast<size_t>(quanti));
        if (scritti < 0 && errno == EINTR)
            continue;
        if (scritti <= 0)
            fallisci(percorso, scritti == 0 ? ENOSPC : errno);
        byte += scritti;
        quanti -= scritti;
    }
}

} // namespace

File::File(const QString &destinazione)
    : m_destinazione(destinazione), m_percorso(nomeNuovo(destinazione, parziale))
{
    const auto vecchi = abbandonati(destinazione, parziale);
    for (const QString &vecchio : vecchi)
        QFile::remove(vecchio);
}

File::~File()
{
    if (!m_suo)
        return;
    QFile::remove(m_percorso);
    QFile::remove(m_percorso + QStringLiteral("-journal"));
}

void File::prendeIlPosto()
{
    if (const int errore = rinomina(m_percorso, m_destinazione, 0))
        fallisci(m_destinazione, errore);
    m_suo = false;
    sincronizzaCartella(m_destinazione);
}

QString File::scambia()
{
    // Da qui il nome non è più di un file a metà: nessuno lo toglierà.
    m_vecchio = nomeNuovo(m_destinazione, scambiato);
    if (const int errore = rinomina(m_percorso, m_vecchio, RENAME_NOREPLACE))
        fallisci(m_vecchio, errore);
    int errore = rinomina(m_vecchio, m_destinazione, RENAME_EXCHANGE);
    if (errore == EINVAL || errore == ENOSYS) {
        // Il nome provvisorio è libero di nuovo: vi passa il vecchio file.
        errore = rinomina(m_destinazione, m_percorso, RENAME_NOREPLACE);
        if (errore == 0)
            errore = rinomina(m_vecchio, m_destinazione, RENAME_NOREPLACE);
        if (errore == 0)
            errore = rinomina(m_percorso, m_vecchio, RENAME_NOREPLACE);
    }
    if (errore != 0) {
        rinomina(m_percorso, m_destinazione, RENAME_NOREPLACE);
        rinomina(m_vecchio, m_percorso, RENAME_NOREPLACE);
        fallisci(m_destinazione, errore);
    }
    m_suo = false;
    sincronizzaCartella(m_destinazione);
    return m_vecchio;
}

void File::ripristina()
{
    // Il vecchio torna al suo nome in un passo; il nuovo, di cui non si sa che fare, scompare.
    int errore = rinomina(m_vecchio, m_destinazione, RENAME_EXCHANGE);
    if (errore == 0)
        errore = rinomina(m_vecchio, m_percorso, 0);
    else if (errore == EINVAL || errore == ENOSYS)
        errore = rinomina(m_vecchio, m_destinazione, 0);
    if (errore != 0)
        fallisci(m_destinazione, errore);
    m_suo = true;
    sincronizzaCartella(m_destinazione);
}

QStringList scambiInterrotti(const QString &destinazione)
{
    return abbandonati(destinazione, scambiato);
}

void copia(const QString &origine, const QString &nuovo, const Passo &passo)
{
    const Descrittore da(origine, O_RDONLY | O_NONBLOCK);
    struct stat stato = {};
    if (::fstat(*da, &stato) != 0)
        fallisci(origine, errno);
    const Descrittore a(nuovo, O_WRONLY | O_CREAT | O_EXCL);
    QByteArray blocco(1 << 20, Qt::Uninitialized);
    for (qint64 fatti = 0;;) {
        const ssize_t letti = ::read(*da, blocco.data(), static_cast<size_t>(blocco.size()));
        if (letti < 0 && errno == EINTR)
            continue;
        if (letti < 0)
            fallisci(origine, errno);
        if (letti == 0)
            break;
        scrive(*a, nuovo, blocco.constData(), letti);
        fatti += letti;
        avanza(passo, fatti, qMax(fatti, static_cast<qint64>(stato.st_size)));
    }
    if (::fsync(*a) != 0)
        fallisci(nuovo, errno);
}

void sincronizza(const QString &percorso)
{
    const Descrittore file(percorso, O_RDONLY);
    if (::fsync(*file) != 0)
        fallisci(percorso, errno);
}

void avanza(const Passo &passo, qint64 fatto, qint64 totale)
{
    if (!passo(fatto, totale))
        throw ado::Errore(ado::Causa::Interrotto, QStringLiteral("interrotto"));
}

} // namespace provvisorio
