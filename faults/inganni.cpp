#include "faults/inganni.h"

#include <QByteArray>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

namespace
{

std::atomic<bool> armato{false};
std::atomic<int> conto{0};
std::atomic<int> cadute{0};
inganni::Piano piano;
QByteArray radice;

std::atomic<bool> togliere{false};
QByteArray altroDisco;

// Ciò che un disco vero perderebbe se la corrente mancasse: i file scritti dopo l'ultima volta che
// sono stati portati sul disco, e ciò che se n'è fatto intanto.
using File = std::pair<dev_t, ino_t>;
std::mutex chiusura;
std::set<File> inMemoria;
std::string nonPortati;
std::atomic<int> falsate{0};

void segna(int numero, bool scritto)
{
    struct stat stato = {};
    if (::fstat(numero, &stato) != 0)
        return;
    const std::lock_guard guardia(chiusura);
    if (scritto)
        inMemoria.insert({stato.st_dev, stato.st_ino});
    else
        inMemoria.erase({stato.st_dev, stato.st_ino});
}

// Un file che prende un nome, o il cui giornale è tolto, dev'essere già tutto sul disco.
void esigePortato(const char *percorso, const char *perche)
{
    struct stat stato = {};
    if (::stat(percorso, &stato) != 0)
        return;
    const std::lock_guard guardia(chiusura);
    if (inMemoria.count({stato.st_dev, stato.st_ino}) > 0)
        nonPortati += std::string(nonPortati.empty() ? "" : "; ") + perche + ' ' + percorso;
}

void esigeSenzaGiornale(const char *giornale)
{
    static const std::string coda = "-journal";
    const std::string nome(giornale);
    // Quelli nascosti sono file che nascono: conta quando prendono il loro nome.
    const bool nascosto = nome.find("/.") != std::string::npos;
    if (!nascosto && nome.size() > coda.size() &&
        nome.compare(nome.size() - coda.size(), coda.size(), coda) == 0)
        esigePortato(nome.substr(0, nome.size() - coda.size()).c_str(), "journal removed of");
}

enum class Genere { Apre, ApreScrivendo, Scrive, Toglie, Altro };

// Vero se la chiamata deve fallire; allora l'errore è quello del piano.
bool cade(Genere genere)
{
    if (piano.solaLettura) {
        if (genere == Genere::Apre)
            return false;
        errno = EROFS;
        return true;
    }
    if (piano.soloScritture && genere != Genere::Scrive)
        return false;
    const int mia = conto++;
    if (piano.quale < 0 || mia < piano.quale || (mia > piano.quale && !piano.dalliInPoi))
        return false;
    if (piano.muore)
        ::kill(::getpid(), SIGKILL);
    ++cadute;
    togliere = genere == Genere::Toglie;
    errno = piano.errore;
    return true;
}

bool sotto(const char *percorso, const QByteArray &cartella)
{
    return percorso != nullptr && !cartella.isEmpty() &&
           std::strncmp(percorso, cartella.constData(), static_cast<size_t>(cartella.size())) == 0;
}

// Ciò che un disco non sa fare con due nomi; allora l'errore è il suo.
bool nonSa(const char *da, const char *a, int errore)
{
    if (!armato || !sotto(da, radice))
        return false;
    errno = sotto(da, altroDisco) != sotto(a, altroDisco) ? EXDEV : errore;
    return errno != 0;
}

// Chi muore fra un cambio di nome e l'altro abbia il tempo di farlo.
int attendi(int esito)
{
    if (armato && piano.attesa > 0) {
        const int errore = errno;
        ::usleep(piano.attesa);
        errno = errore;
    }
    return esito;
}

bool cadePercorso(const char *percorso, Genere genere)
{
    return armato && sotto(percorso, radice) && cade(genere);
}

bool riguarda(int numero)
{
    if (!armato)
        return false;
    char nome[64];
    char dove[4096];
    std::snprintf(nome, sizeof nome, "/proc/self/fd/%d", numero);
    const ssize_t lungo = ::readlink(nome, dove, sizeof dove - 1);
    return lungo > radice.size() &&
           std::memcmp(dove, radice.constData(), static_cast<size_t>(radice.size())) == 0;
}

// Una pagina di un albero fra quelle che si scrivono, o -1: una scritta male non può sfuggire a chi
// verifica, mentre di un testo lungo nessuno sa come dovrebbe essere.
ssize_t paginaDiAlbero(const char *byte, size_t quanti)
{
    constexpr size_t pagina = 4096;
    static const std::string generi = {2, 5, 10, 13};
    for (size_t da = 0; da + pagina <= quanti; da += pagina)
        if (generi.find(byte[da]) != std::string::npos)
            return static_cast<ssize_t>(da);
    return -1;
}

// Scrive come chiesto, o dice di averlo fatto e lascia una pagina di zeri.
template <class Scrittura>
ssize_t scrive(int numero, const void *byte, size_t quanti, Scrittura scrittura)
{
    if (!riguarda(numero))
        return scrittura(byte);
    if (cade(Genere::Scrive))
        return -1;
    segna(numero, true);
    const auto *chiesti = static_cast<const char *>(byte);
    const ssize_t pagina = piano.falsa < 0 ? -1 : paginaDiAlbero(chiesti, quanti);
    if (pagina < 0 || falsate++ != piano.falsa)
        return scrittura(byte);
    std::string altri(chiesti, quanti);
    std::fill_n(altri.begin() + pagina, 4096, '\0');
    return scrittura(altri.data());
}

// Vero se la chiamata va fatta davvero, e allora il file cambia.
bool accorcia(int numero)
{
    const bool suo = riguarda(numero);
    if (suo && cade(Genere::Scrive))
        return false;
    if (suo)
        segna(numero, true);
    return true;
}

template <class Chiamata>
int porta(int numero, Chiamata chiamata)
{
    const bool suo = riguarda(numero);
    if (suo && cade(Genere::Altro))
        return -1;
    const int esito = chiamata(numero);
    if (suo && esito == 0)
        segna(numero, false);
    return esito;
}

// Prima che un nome cambi: vero se deve fallire.
bool cadeNome(const char *da, const char *a, unsigned modi, int nonSaFare)
{
    if (cadePercorso(da, Genere::Altro) || nonSa(da, a, nonSaFare))
        return true;
    if (armato && sotto(da, radice)) {
        esigePortato(da, "renamed");
        if ((modi & RENAME_EXCHANGE) != 0)
            esigePortato(a, "exchanged");
    }
    return false;
}

template <class Funzione>
Funzione vera(const char *nome)
{
    return reinterpret_cast<Funzione>(::dlsym(RTLD_NEXT, nome));
}

Genere diApertura(int modi)
{
    return (modi & (O_WRONLY | O_RDWR | O_CREAT)) != 0 ? Genere::ApreScrivendo : Genere::Apre;
}

} // namespace

namespace inganni
{

void arma(const Piano &nuovo)
{
    piano = nuovo;
    radice = nuovo.cartella.toUtf8();
    altroDisco = nuovo.altroDisco.toUtf8();
    conto = 0;
    cadute = 0;
    togliere = false;
    falsate = 0;
    {
        const std::lock_guard guardia(chiusura);
        inMemoria.clear();
        nonPortati.clear();
    }
    armato = true;
}

int passate()
{
    return conto;
}

int fallite()
{
    return cadute;
}

bool fallitoIlTogliere()
{
    return togliere;
}

int scrittureDiAlbero()
{
    return falsate;
}

QString perdutiSenzaCorrente()
{
    const std::lock_guard guardia(chiusura);
    return QString::fromStdString(nonPortati);
}

void disarma()
{
    armato = false;
}

} // namespace inganni

// Col nome che ha nella libreria del C ciascuna viene prima della sua, anche per le librerie.
extern "C" {

int ingannaOpen(const char *percorso, int modi, ...) __asm__("open");
int ingannaOpen64(const char *percorso, int modi, ...) __asm__("open64");
ssize_t ingannaWrite(int numero, const void *byte, size_t quanti) __asm__("write");
ssize_t ingannaPwrite(int numero, const void *byte, size_t quanti, off_t dove) __asm__("pwrite");
ssize_t ingannaPwrite64(int numero, const void *byte, size_t quanti,
                        off64_t dove) __asm__("pwrite64");
int ingannaFsync(int numero) __asm__("fsync");
int ingannaFdatasync(int numero) __asm__("fdatasync");
int ingannaFtruncate(int numero, off_t lunghezza) __asm__("ftruncate");
int ingannaFtruncate64(int numero, off64_t lunghezza) __asm__("ftruncate64");
int ingannaRename(const char *da, const char *a) __asm__("rename");
int ingannaRenameat2(int daDove, const char *da, int aDove, const char *a,
                     unsigned modi) __asm__("renameat2");
int ingannaLink(const char *da, const char *a) __asm__("link");
int ingannaUnlink(const char *percorso) __asm__("unlink");
int ingannaMkdir(const char *percorso, mode_t permessi) __asm__("mkdir");

int ingannaOpen(const char *percorso, int modi, ...)
{
    va_list altri;
    va_start(altri, modi);
    const mode_t permessi = va_arg(altri, mode_t);
    va_end(altri);
    static const auto sua = vera<int (*)(const char *, int, ...)>("open");
    return cadePercorso(percorso, diApertura(modi)) ? -1 : sua(percorso, modi, permessi);
}

int ingannaOpen64(const char *percorso, int modi, ...)
{
    va_list altri;
    va_start(altri, modi);
    const mode_t permessi = va_arg(altri, mode_t);
    va_end(altri);
    static const auto sua = vera<int (*)(const char *, int, ...)>("open64");
    return cadePercorso(percorso, diApertura(modi)) ? -1 : sua(percorso, modi, permessi);
}

ssize_t ingannaWrite(int numero, const void *byte, size_t quanti)
{
    static const auto sua = vera<ssize_t (*)(int, const void *, size_t)>("write");
    return scrive(numero, byte, quanti,
                  [=](const void *questi) { return sua(numero, questi, quanti); });
}

ssize_t ingannaPwrite(int numero, const void *byte, size_t quanti, off_t dove)
{
    static const auto sua = vera<ssize_t (*)(int, const void *, size_t, off_t)>("pwrite");
    return scrive(numero, byte, quanti,
                  [=](const void *questi) { return sua(numero, questi, quanti, dove); });
}

ssize_t ingannaPwrite64(int numero, const void *byte, size_t quanti, off64_t dove)
{
    static const auto sua = vera<ssize_t (*)(int, const void *, size_t, off64_t)>("pwrite64");
    return scrive(numero, byte, quanti,
                  [=](const void *questi) { return sua(numero, questi, quanti, dove); });
}

int ingannaFsync(int numero)
{
    static const auto sua = vera<int (*)(int)>("fsync");
    return porta(numero, sua);
}

int ingannaFdatasync(int numero)
{
    static const auto sua = vera<int (*)(int)>("fdatasync");
    return porta(numero, sua);
}

int ingannaFtruncate(int numero, off_t lunghezza)
{
    static const auto sua = vera<int (*)(int, off_t)>("ftruncate");
    return accorcia(numero) ? sua(numero, lunghezza) : -1;
}

int ingannaFtruncate64(int numero, off64_t lunghezza)
{
    static const auto sua = vera<int (*)(int, off64_t)>("ftruncate64");
    return accorcia(numero) ? sua(numero, lunghezza) : -1;
}

int ingannaRename(const char *da, const char *a)
{
    static const auto sua = vera<int (*)(const char *, const char *)>("rename");
    return cadeNome(da, a, 0, 0) ? -1 : attendi(sua(da, a));
}

int ingannaRenameat2(int daDove, const char *da, int aDove, const char *a, unsigned modi)
{
    static const auto sua =
        vera<int (*)(int, const char *, int, const char *, unsigned)>("renameat2");
    return cadeNome(da, a, modi, modi == 0 ? 0 : piano.senzaModi)
               ? -1
               : attendi(sua(daDove, da, aDove, a, modi));
}

int ingannaLink(const char *da, const char *a)
{
    static const auto sua = vera<int (*)(const char *, const char *)>("link");
    return cadeNome(da, a, 0, piano.senzaLegami ? EPERM : 0) ? -1 : attendi(sua(da, a));
}

int ingannaUnlink(const char *percorso)
{
    static const auto sua = vera<int (*)(const char *)>("unlink");
    if (cadePercorso(percorso, Genere::Toglie))
        return -1;
    if (armato && sotto(percorso, radice))
        esigeSenzaGiornale(percorso);
    return sua(percorso);
}

int ingannaMkdir(const char *percorso, mode_t permessi)
{
    static const auto sua = vera<int (*)(const char *, mode_t)>("mkdir");
    return cadePercorso(percorso, Genere::Altro) ? -1 : sua(percorso, permessi);
}

} // extern "C"
