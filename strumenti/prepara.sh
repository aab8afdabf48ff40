#!/usr/bin/env bash
# Usage: strumenti/prepara.sh GROUP...
# Makes sure that what the named groups need is installed:
#   build    what compiles the program
#   use      what the program looks for while it runs
#   tests    what makes linking the test programs quick
#   screen   the virtual display of the demonstration
#   package  what builds, checks and tries the Debian package
#   checks   the format and lint checks
#   recovery the engine's own program, whose recovery the repair is compared with
# With apt-get the missing packages are installed, with sudo when not root; where nothing is
# missing apt-get is not called. Without apt-get what is missing is named, and the status is 1.
set -euo pipefail

declare -A pacchetti=(
    [build]="g++ cmake ninja-build pkg-config qt6-base-dev libsqlite3-dev libhunspell-dev"
    [use]="libqt6svg6 qt6-translations-l10n hunspell-it fonts-dejavu-core"
    [tests]="mold"
    [screen]="xvfb openbox"
    [package]="dpkg-dev lintian file desktop-file-utils appstream shared-mime-info libxml2-utils mandoc libglib2.0-bin xdotool procps"
    [checks]="clang-format-14 clang-tidy-14 git python3"
    [recovery]="sqlite3"
)
declare -A programmi=(
    [build]="g++ cmake ninja pkg-config"
    [use]=""
    [tests]=""
    [screen]="Xvfb openbox"
    [package]="dpkg-shlibdeps lintian file desktop-file-validate appstreamcli update-mime-database xmllint mandoc gio xdotool pgrep"
    [checks]="clang-format-14 clang-tidy-14 git python3"
    [recovery]="sqlite3"
)

# Stampa i pacchetti, fra quelli dati, che dpkg non conosce come installati.
pacchetti_mancanti()
{
    local pacchetto stato
    for pacchetto in "$@"; do
        stato=$(dpkg-query -W -f='${db:Status-Status}' "$pacchetto" 2>/dev/null) || stato=
        [ "$stato" = installed ] || echo "$pacchetto"
    done
}

installa()
{
    local come_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing, and there is no sudo to install them with:" >&2
            printf '  %s\n' "$@" >&2
            return 1
        fi
        come_root=(sudo)
    fi
    echo "Installing: $*"
    "${come_root[@]}" apt-get update -qq
    "${come_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "$@"
}

# Stampa ciò che manca a un gruppo dove i pacchetti hanno altri nomi, per quanto si può vedere.
cose_mancanti()
{
    local programma libreria
    for programma in ${programmi[$1]}; do
        command -v "$programma" >/dev/null || echo "$programma"
    done
    case $1 in
    build)
        command -v pkg-config >/dev/null || return 0
        for libreria in Qt6Core Qt6Gui Qt6Network Qt6Widgets Qt6Test sqlite3 hunspell; do
            pkg-config --exists "$libreria" || echo "$libreria (library and headers)"
        done
        ;;
    use)
        [ -n "$(find /usr/share/hunspell /usr/share/myspell -name it_IT.dic 2>/dev/null)" ] ||
            echo "it_IT (Italian dictionary of Hunspell)"
        ;;
    esac
}

for gruppo in "$@"; do
    if [ -z "${pacchetti[$gruppo]-}" ]; then
        echo "Unknown group: $gruppo" >&2
        exit 2
    fi
done

if command -v apt-get >/dev/null; then
    elenco=
    for gruppo in "$@"; do
        elenco+=" ${pacchetti[$gruppo]}"
    done
    # shellcheck disable=SC2086
    mancanti=$(pacchetti_mancanti $elenco)
    # shellcheck disable=SC2086
    [ -z "$mancanti" ] || installa $mancanti
else
    mancanti=
    for gruppo in "$@"; do
        mancanti+=$(cose_mancanti "$gruppo")$'\n'
    done
    mancanti=$(sort -u <<<"$mancanti" | sed '/^$/d')
    if [ -n "$mancanti" ]; then
        echo "There is no apt-get here. Please install, with this system's own means:" >&2
        echo "$mancanti" >&2
        exit 1
    fi
fi
