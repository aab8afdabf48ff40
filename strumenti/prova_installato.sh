#!/usr/bin/env bash
# Usage: strumenti/schermo.sh strumenti/prova_installato.sh
# Uses the installed Tarvola as someone at the desktop does: starts it from its desktop entry,
# double-clicks an archive file, closes the window. As root it does so as the user "nobody".
set -euo pipefail

if [ "$(id -u)" -eq 0 ]; then
    casa=$(mktemp -d)
    chown nobody "$casa"
    esito=0
    # Il file è letto dall'ingresso, perché la cartella può non essere aperta agli altri.
    setpriv --reuid=nobody --regid=nogroup --clear-groups \
        env -C "$casa" HOME="$casa" bash -s <"${BASH_SOURCE[0]}" || esito=$?
    rm -rf "$casa"
    exit "$esito"
fi

export XDG_RUNTIME_DIR=$HOME/run XDG_CONFIG_HOME=$HOME/.config
unset XDG_DATA_HOME XDG_DATA_DIRS XDG_CACHE_HOME DBUS_SESSION_BUS_ADDRESS
mkdir -m 700 "$XDG_RUNTIME_DIR"
programma=
# shellcheck disable=SC2317
chiudi()
{
    [ -z "$programma" ] || kill "$programma" 2>/dev/null || true
}
trap chiudi EXIT

# Aspetta, al più venti secondi, che un comando riesca; poi dice che cosa non è avvenuto.
aspetta()
{
    local che=$1
    shift
    for _ in {1..100}; do
        ! "$@" >/dev/null 2>&1 || return 0
        sleep 0.2
    done
    echo "This did not happen: $che" >&2
    exit 1
}
# I programmi avviati da questo utente, uno per riga.
in_funzione()
{
    pgrep -u "$(id -u)" -x tarvola
}
legge()
{
    find "/proc/$programma/fd" -lname "$1" | grep -q .
}
finita()
{
    ! kill -0 "$programma"
}
finestra()
{
    xdotool search --onlyvisible --name "$1"
}

gio launch /usr/share/applications/tarvola.desktop
aspetta "the main window opens" finestra '^Tarvola$'
programma=$(in_funzione)
echo "The main window is there."

cp /usr/share/tarvola/tarvola.mod "$HOME/prova.tvd"
tipo=$(gio info -a standard::content-type "$HOME/prova.tvd" | sed -n 's/.*content-type: //p')
[ "$tipo" = application/x-tarvola-archive ]
gio open "$HOME/prova.tvd"
aspetta "the running program opens the archive" legge "$HOME/prova.tvd"
sleep 1
[ "$(in_funzione)" = "$programma" ]
echo "The archive opened in the running program."

# L'accesso è facoltativo.
if finestra '^Accesso$' >/dev/null; then
    xdotool key Escape
    sleep 1
fi
xdotool key alt+F4
aspetta "the closing is asked" finestra '^Chiudi Tarvola$'
xdotool key alt+c
aspetta "the program ends" finita
programma=
test -d "$HOME/.local/share/Tarvola"
echo "The program has ended."
