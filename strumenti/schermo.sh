#!/usr/bin/env bash
# Usage: strumenti/schermo.sh COMMAND [ARGUMENT...]
# Runs a command on a virtual display of its own, 1600x1000 at 96 dpi, with a window manager and
# Italian settings, and ends with the command's status.
set -euo pipefail

lavoro=$(mktemp -d)
schermo=
gestore=
comando=
# shellcheck disable=SC2317
chiudi()
{
    for processo in $comando $gestore $schermo; do
        kill "$processo" 2>/dev/null || true
        wait "$processo" 2>/dev/null || true
    done
    rm -rf "$lavoro"
}
trap chiudi EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# Aspetta, al più dieci secondi, che un comando riesca mentre il processo dato è vivo.
aspetta()
{
    local processo=$1
    shift
    for _ in {1..100}; do
        ! "$@" || return 0
        kill -0 "$processo" 2>/dev/null || return 1
        sleep 0.1
    done
    return 1
}

: >"$lavoro/numero"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -dpi 96 -nolisten tcp -noreset \
    3>"$lavoro/numero" >"$lavoro/schermo.log" 2>&1 &
schermo=$!
if ! aspetta "$schermo" grep -q . "$lavoro/numero"; then
    echo "The virtual display did not start:" >&2
    cat "$lavoro/schermo.log" >&2
    exit 1
fi

# Nulla di quanto l'utente ha scelto per il proprio schermo deve cambiare ciò che si vede qui.
unset LC_ALL WAYLAND_DISPLAY QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
unset QT_SCALE_FACTOR QT_SCREEN_SCALE_FACTORS
DISPLAY=":$(cat "$lavoro/numero")"
export DISPLAY QT_QPA_PLATFORM=xcb QT_FONT_DPI=96
export LANG=it_IT.UTF-8 LANGUAGE=it LC_CTYPE=C.UTF-8
export XDG_CONFIG_HOME="$lavoro/config" XDG_RUNTIME_DIR="$lavoro/run"
mkdir -m 700 "$XDG_CONFIG_HOME" "$XDG_RUNTIME_DIR"

openbox --startup "touch $lavoro/pronto" >"$lavoro/gestore.log" 2>&1 &
gestore=$!
if ! aspetta "$gestore" test -e "$lavoro/pronto"; then
    echo "The window manager did not start:" >&2
    cat "$lavoro/gestore.log" >&2
    exit 1
fi

# Sullo sfondo, perché un segnale ricevuto qui non debba aspettarne la fine.
"$@" &
comando=$!
esito=0
wait "$comando" || esito=$?
comando=
exit "$esito"
