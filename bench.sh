#!/usr/bin/env bash
# Usage: ./bench.sh [INDIVIDUALS [TIMES]]
# Makes an archive of 1,000,000 individuals (or as many as said) once, and measures the program
# on it against the least work the engine can do, TIMES (5) times in turn; then a back-up and a
# compaction, a large file attached and the conversion of the earlier format, in proportion.
# One line a figure: name, median, floor's median, ratio, goal, ok or short. Status 1 where one
# falls short.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
individui=${1:-1000000}
volte=${2:-5}

strumenti/prepara.sh build use screen
cmake --preset rilascio
cmake --build --preset rilascio --target banchi

programmi=build/rilascio/bench
cartella=build/banco
archivio=$cartella/archivio-$individui.tvd
mkdir -p "$cartella"
if [ ! -e "$archivio" ]; then
    echo "Writing $archivio ..."
    "$programmi/genera" "$archivio.nuovo" "$individui"
    mv "$archivio.nuovo" "$archivio"
fi
stato=0
strumenti/schermo.sh "$programmi/misura" "$archivio" "$volte" || stato=1
"$programmi/custodia" "$cartella" $((individui / 1000 + 2)) || stato=1
strumenti/schermo.sh "$programmi/allegato" "$cartella" $((individui * 3 / 10000 + 1)) || stato=1
"$programmi/anteriore" tests/dati/anteriore/vuoto.tvd "$cartella/anteriore.tvd" \
    $((individui / 10)) || stato=1
exit $stato
