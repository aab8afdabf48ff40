#!/usr/bin/env bash
# Usage: ./bench.sh [INDIVIDUALS [TIMES]]
# Makes an archive of 1,000,000 individuals (or as many as said) once, and measures the program
# on it against the least work the engine can do, TIMES (5) times in turn. One line a figure:
# name, median, floor's median, ratio, goal, ok or short. Status 1 where one falls short.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
individui=${1:-1000000}
volte=${2:-5}

strumenti/prepara.sh build use screen
cmake --preset rilascio
cmake --build --preset rilascio --target misura genera finestra finestra_minima

cartella=build/banco
archivio=$cartella/archivio-$individui.tvd
mkdir -p "$cartella"
if [ ! -e "$archivio" ]; then
    echo "Writing $archivio ..."
    build/rilascio/bench/genera "$archivio.nuovo" "$individui"
    mv "$archivio.nuovo" "$archivio"
fi
exec strumenti/schermo.sh build/rilascio/bench/misura "$archivio" "$volte"
