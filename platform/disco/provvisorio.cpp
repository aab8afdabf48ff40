#include "platform/disco/provvisorio.h"

#include "platform/errore.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
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
    } else if (errore == EEXIST) {
        motivo = QStringLiteral("nel frattempo è comparso un file con questo nome");
    }
    throw ado::Errore(causa, QStringLiteral("%1: %2").arg(percorso, motivo));
}

// Un descrittore che si chiude da sé.
class Descrittore
{
public:
    Descrittore(const QString &percorso, int modi)
        : m_numero(::open(QFile::encodeName(percorso).constData(), modi | O_CLOEXEC, 0600))
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
    constexpr qsizetype byteAlMassimo = 200;
    constexpr qsizetype lettere = 40;
    QString nome = QFileInfo(destinazione).fileName();
    const QByteArray intero = QFile::encodeName(nome);
    if (intero.size() > byteAlMassimo)
        nome = nome.left(lettere) + u'~' +
               QString::fromLatin1(
                   QCryptographicHash::hash(intero, QCryptographicHash::Sha1).toHex().left(12));
    return u'.' + nome + genere;
}

QString nomeNuovo(const QString &destinazione, const QString &genere)
{
    static QAtomicInt conto;
    return QStringLiteral("%1/%2%3-%4")
        .arg(QFileInfo(destinazione).absolutePath(), inizioNome(destinazione, genere))
        .arg(QCoreApplication::applicationPid())
        .arg(conto.fetchAndAddRelaxed(1));
}

bool alLavoro(const QString &processo)
{
    const pid_t numero = processo.toInt();
    return numero <= 0 || ::kill(numero, 0) == 0 || errno != ESRCH;
}

// I file del genere dato il cui processo non c'è più.
QStringList abbandonati(const QString &destinazione, const QString &genere)
{
    QStringList trovati;
    const QDir cartella = QFileInfo(destinazione).absoluteDir();
    const QString inizio = inizioNome(destinazione, genere);
    const auto nomi = cartella.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &nome : nomi) {
        if (nome.startsWith(inizio) && !alLavoro(nome.mid(inizio.size()).section(u'-', 0, 0)))
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
    if ((errno != EINVAL && errno != ENOSYS) || modo == RENAME_EXCHANGE)
        return errno;
    if (modo == RENAME_NOREPLACE && ::access(altro.constData(), F_OK) == 0)
        return EEXIST;
    return ::rename(uno.constData(), altro.constData()) == 0 ? 0 : errno;
}

bool stessoFile(const QString &uno, const QString &altro)
{
    struct stat suo = {};
    struct stat diAltro = {};
    return ::stat(QFile::encodeName(uno).constData(), &suo) == 0 &&
           ::stat(QFile::encodeName(altro).constData(), &diAltro) == 0 &&
           suo.st_dev == diAltro.st_dev && suo.st_ino == diAltro.st_ino;
}

mode_t permessiDi(const QString &percorso)
{
    struct stat stato = {};
    if (::stat(QFile::encodeName(percorso).constData(), &stato) != 0)
        fallisci(percorso, errno);
    return stato.st_mode & 0666U;
}

// I dischi che non tengono permessi non contano.
void prendeIPermessi(const QString &percorso, mode_t permessi)
{
    if (::chmod(QFile::encodeName(percorso).constData(), permessi) != 0 && errno != EPERM &&
        errno != ENOTSUP && errno != ENOSYS && errno != EINVAL)
        fallisci(percorso, errno);
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
    // Un lavoro lungo non comincia dove non può finire. La maschera dei permessi, che è di tutto il
    // processo, si legge solo cambiandola: la dice un file vuoto.
    const QByteArray nome = QFile::encodeName(m_percorso);
    const int prova = ::open(nome.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (prova < 0)
        fallisci(QFileInfo(destinazione).absolutePath(), errno);
    ::close(prova);
    m_diDocumento = permessiDi(m_percorso);
    QFile::remove(m_percorso);
}

File::~File()
{
    if (!m_suo)
        return;
    QFile::remove(m_percorso);
    for (const QString &suo : accanto(m_percorso))
        QFile::remove(suo);
}

void File::prendeIlPosto(const QString &origine, bool soloSeLibera)
{
    mode_t permessi = m_diDocumento;
    if (QFileInfo::exists(m_destinazione))
        permessi = permessiDi(m_destinazione);
    else if (!origine.isEmpty())
        permessi = (permessi & permessiDi(origine)) | S_IRUSR | S_IWUSR;
    prendeIPermessi(m_percorso, permessi);
    const int errore = rinomina(m_percorso, m_destinazione, soloSeLibera ? RENAME_NOREPLACE : 0);
    if (errore != 0)
        fallisci(m_destinazione, errore);
    m_suo = false;
    sincronizzaNome(m_destinazione);
}

// Il nome del vecchio file non è mai quello di un file a metà, che si toglierebbe.
QString File::scambia()
{
    prendeIPermessi(m_percorso, permessiDi(m_destinazione));
    m_vecchio = nomeNuovo(m_destinazione, scambiato);
    if (const int errore = rinomina(m_percorso, m_vecchio, RENAME_NOREPLACE))
        fallisci(m_vecchio, errore);
    int errore = rinomina(m_vecchio, m_destinazione, RENAME_EXCHANGE);
    if (errore != 0) {
        // Il nuovo torna un file a metà: lo scambio, se si può, comincia da capo in altro modo.
        if (const int ritorno = rinomina(m_vecchio, m_percorso, RENAME_NOREPLACE)) {
            QFile::remove(m_vecchio);
            fallisci(m_vecchio, ritorno);
        }
        if (errore == EINVAL || errore == ENOSYS)
            errore = scambiaInPiuPassi();
    }
    if (errore != 0)
        fallisci(m_destinazione, errore);
    m_suo = false;
    sincronizzaNome(m_destinazione);
    return m_vecchio;
}

// Rende 0 o l'errore, e allora la destinazione è com'era.
int File::scambiaInPiuPassi()
{
    // Con due nomi per il vecchio file la destinazione non manca mai.
    if (::link(QFile::encodeName(m_destinazione).constData(),
               QFile::encodeName(m_vecchio).constData()) == 0) {
        const int errore = rinomina(m_percorso, m_destinazione, 0);
        if (errore != 0)
            QFile::remove(m_vecchio);
        return errore;
    }
    int errore = rinomina(m_destinazione, m_vecchio, RENAME_NOREPLACE);
    if (errore != 0)
        return errore;
    errore = rinomina(m_percorso, m_destinazione, RENAME_NOREPLACE);
    if (errore != 0 && rinomina(m_vecchio, m_destinazione, RENAME_NOREPLACE) != 0)
        fallisci(QStringLiteral("%1\nIl vecchio file è\n%2").arg(m_destinazione, m_vecchio),
                 errore);
    return errore;
}

void File::ripristina()
{
    // Il vecchio torna al suo nome in un passo; il nuovo, di cui non si sa che fare, scompare.
    int errore = rinomina(m_vecchio, m_destinazione, RENAME_EXCHANGE);
    if (errore == 0)
        QFile::remove(m_vecchio);
    else if (errore == EINVAL || errore == ENOSYS)
        errore = rinomina(m_vecchio, m_destinazione, 0);
    if (errore != 0)
        fallisci(QStringLiteral("%1\nIl vecchio file è\n%2").arg(m_destinazione, m_vecchio),
                 errore);
    sincronizzaNome(m_destinazione);
}

QStringList scambiInterrotti(const QString &destinazione)
{
    QStringList trovati;
    const auto rimasti = abbandonati(destinazione, scambiato);
    for (const QString &rimasto : rimasti) {
        // Di uno scambio appena cominciato resta un secondo nome per lo stesso file.
        if (stessoFile(rimasto, destinazione))
            QFile::remove(rimasto);
        else
            trovati.append(rimasto);
    }
    std::sort(trovati.begin(), trovati.end(), [](const QString &uno, const QString &altro) {
        return QFileInfo(uno).metadataChangeTime() > QFileInfo(altro).metadataChangeTime();
    });
    return trovati;
}

void ritrovaIn(const QString &cartella)
{
    const QDir dove(cartella);
    const auto nomi =
        dove.entryList({QStringLiteral(".*") + scambiato + u'*'}, QDir::Files | QDir::Hidden);
    for (const QString &nome : nomi) {
        const QString suo = dove.filePath(nome.mid(1, nome.lastIndexOf(scambiato) - 1));
        const QStringList rimasti = scambiInterrotti(suo);
        if (!rimasti.isEmpty() && rinomina(rimasti.constFirst(), suo, RENAME_NOREPLACE) == 0)
            sincronizzaNome(suo);
    }
}

bool sincronizzaNome(const QString &percorso)
{
    const QByteArray cartella = QFile::encodeName(QFileInfo(percorso).absolutePath());
    const int numero = ::open(cartella.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (numero < 0)
        return true;
    const bool fatto = ::fsync(numero) == 0 || errno == EINVAL || errno == ENOTSUP;
    ::close(numero);
    return fatto;
}

void crea(const QString &percorso)
{
    const Descrittore vuoto(percorso, O_WRONLY | O_CREAT | O_EXCL);
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

QStringList accanto(const QString &percorso)
{
    return {percorso + QStringLiteral("-journal"), percorso + QStringLiteral("-wal"),
            percorso + QStringLiteral("-shm")};
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
