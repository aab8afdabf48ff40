#include "faults/inganni.h"

#include <QByteArray>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
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

bool cadeNumero(int numero, Genere genere)
{
    if (!armato)
        return false;
    char nome[64];
    char dove[4096];
    std::snprintf(nome, sizeof nome, "/proc/self/fd/%d", numero);
    const ssize_t lungo = ::readlink(nome, dove, sizeof dove - 1);
    return lungo > radice.size() &&
           std::memcmp(dove, radice.constData(), static_cast<size_t>(radice.size())) == 0 &&
           cade(genere);
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
    return cadeNumero(numero, Genere::Scrive) ? -1 : sua(numero, byte, quanti);
}

ssize_t ingannaPwrite(int numero, const void *byte, size_t quanti, off_t dove)
{
    static const auto sua = vera<ssize_t (*)(int, const void *, size_t, off_t)>("pwrite");
    return cadeNumero(numero, Genere::Scrive) ? -1 : sua(numero, byte, quanti, dove);
}

ssize_t ingannaPwrite64(int numero, const void *byte, size_t quanti, off64_t dove)
{
    static const auto sua = vera<ssize_t (*)(int, const void *, size_t, off64_t)>("pwrite64");
    return cadeNumero(numero, Genere::Scrive) ? -1 : sua(numero, byte, quanti, dove);
}

int ingannaFsync(int numero)
{
    static const auto sua = vera<int (*)(int)>("fsync");
    return cadeNumero(numero, Genere::Altro) ? -1 : sua(numero);
}

int ingannaFdatasync(int numero)
{
    static const auto sua = vera<int (*)(int)>("fdatasync");
    return cadeNumero(numero, Genere::Altro) ? -1 : sua(numero);
}

int ingannaFtruncate(int numero, off_t lunghezza)
{
    static const auto sua = vera<int (*)(int, off_t)>("ftruncate");
    return cadeNumero(numero, Genere::Scrive) ? -1 : sua(numero, lunghezza);
}

int ingannaFtruncate64(int numero, off64_t lunghezza)
{
    static const auto sua = vera<int (*)(int, off64_t)>("ftruncate64");
    return cadeNumero(numero, Genere::Scrive) ? -1 : sua(numero, lunghezza);
}

int ingannaRename(const char *da, const char *a)
{
    static const auto sua = vera<int (*)(const char *, const char *)>("rename");
    return cadePercorso(da, Genere::Altro) || nonSa(da, a, 0) ? -1 : attendi(sua(da, a));
}

int ingannaRenameat2(int daDove, const char *da, int aDove, const char *a, unsigned modi)
{
    static const auto sua =
        vera<int (*)(int, const char *, int, const char *, unsigned)>("renameat2");
    return cadePercorso(da, Genere::Altro) || nonSa(da, a, modi == 0 ? 0 : piano.senzaModi)
               ? -1
               : attendi(sua(daDove, da, aDove, a, modi));
}

int ingannaLink(const char *da, const char *a)
{
    static const auto sua = vera<int (*)(const char *, const char *)>("link");
    return cadePercorso(da, Genere::Altro) || nonSa(da, a, piano.senzaLegami ? EPERM : 0)
               ? -1
               : attendi(sua(da, a));
}

int ingannaUnlink(const char *percorso)
{
    static const auto sua = vera<int (*)(const char *)>("unlink");
    return cadePercorso(percorso, Genere::Toglie) ? -1 : sua(percorso);
}

int ingannaMkdir(const char *percorso, mode_t permessi)
{
    static const auto sua = vera<int (*)(const char *, mode_t)>("mkdir");
    return cadePercorso(percorso, Genere::Altro) ? -1 : sua(percorso, permessi);
}

} // extern "C"
