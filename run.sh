#!/usr/bin/env bash
# Installs what is missing, builds Tarvola and starts it; see uso() for the options.
set -euo pipefail

uso()
{
    cat <<'FINE'
Usage: ./run.sh [--demo [FOLDER]]

Installs what is missing (Debian), builds Tarvola in build/rilascio and starts it.

  --demo [FOLDER]  run the demonstration on a virtual display instead; its screenshots and the
                   archive files it writes go into FOLDER (build/dimostrazione)
  -h, --help, --aiuto
                   show this text

Where there is no display the demonstration is run as well.
FINE
}

radice=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
demo=no
cartella=$radice/build/dimostrazione
while [ $# -gt 0 ]; do
    case $1 in
    --demo)
        demo=si
        if [ $# -gt 1 ] && [[ $2 != -* ]]; then
            cartella=$(realpath -m -- "$2")
            shift
        fi
        ;;
    -h | --help | --aiuto)
        uso
        exit 0
        ;;
    *)
        echo "Unknown option: $1" >&2
        uso >&2
        exit 2
        ;;
    esac
    shift
done

cd "$radice"
if [ "$demo" = no ] && [ -z "${DISPLAY-}${WAYLAND_DISPLAY-}" ]; then
    echo "There is no display here: running the demonstration on a virtual one."
    demo=si
fi

gruppi=(build use)
[ "$demo" = no ] || gruppi+=(screen)
strumenti/prepara.sh "${gruppi[@]}"
cmake --preset rilascio
cmake --build --preset rilascio

if [ "$demo" = no ]; then
    exec build/rilascio/tarvola
fi
exec strumenti/schermo.sh build/rilascio/demo/dimostrazione "$cartella"
