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
trap 'echo "This failed, at line $LINENO: $BASH_COMMAND" >&2' ERR

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
# I programmi di questo utente, uno per riga; non quelli finiti di cui nessuno ha letto l'esito.
in_funzione()
{
    pgrep -u "$(id -u)" -x -r D,R,S tarvola
}
legge()
{
    find "/proc/$programma/fd" -lname "$1" | grep -q .
}
finita()
{
    ! in_funzione
}
finestra()
{
    xdotool search --onlyvisible --name "$1"
}
rinuncia_all_accesso()
{
    sleep 1
    if finestra '^Accesso$' >/dev/null; then
        xdotool key Escape
        sleep 1
    fi
}

gio launch /usr/share/applications/tarvola.desktop
aspetta "the main window opens" finestra '^Tarvola$'
programma=$(in_funzione)
echo "The main window is there."

# La cartella del programma non si può scrivere: l'archivio nuovo nasce in quella dei dati.
xdotool key alt+f
sleep 1
xdotool key Down Return
aspetta "a new file is asked for" finestra '^Crea un nuovo file'
sleep 1
xdotool type nuovo
xdotool key Return
aspetta "the new archive is open" legge "$HOME/.local/share/Tarvola/nuovo.tvd"
rinuncia_all_accesso
echo "A new archive was made in the user's data folder."

cp /usr/share/tarvola/tarvola.mod "$HOME/prova.tvd"
tipo=$(gio info -a standard::content-type "$HOME/prova.tvd" | sed -n 's/.*content-type: //p')
aspetta "the file is known as an archive" test "$tipo" = application/x-tarvola-archive
gio open "$HOME/prova.tvd"
aspetta "the running program opens the archive" legge "$HOME/prova.tvd"
uno_solo()
{
    [ "$(in_funzione)" = "$programma" ]
}
aspetta "one program is enough" uno_solo
echo "The archive opened in the running program."

rinuncia_all_accesso
xdotool key alt+F4
aspetta "the closing is asked" finestra '^Chiudi Tarvola$'
xdotool key alt+c
aspetta "the program ends" finita
programma=
echo "The program has ended."
