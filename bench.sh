#!/usr/bin/env bash
# Usage: ./bench.sh [INDIVIDUALS [TIMES]]
#        ./bench.sh --fatica SERIES.json
#        ./bench.sh --fatica-testo SERIES.json
# Makes an archive of 1,000,000 individuals (or as many as said) once, and measures the program
# on it against the least work the engine can do, TIMES (5) times in turn, and the page of an act:
# its opening, a key, a save, its memory; then a back-up and a compaction, a large file attached and
# the conversion of the earlier format, in proportion.
# One line a figure: name, median, floor's median, ratio, goal, ok or short. Status 1 where one
# falls short.
# With --fatica: writes the acts of a series on the page of the act, by keys alone and without a
# display, and says how many keys an act costs and where they went. Status 1 where a row of the new
# archive is not what the series says.
# With --fatica-testo: from the eleventh act on pastes the text into the new act, lets the page read
# the boxes in it, and says how many it got right, wrong and not at all.
set -euo pipefail

serie=
dal_testo=
if [ "${1:-}" = --fatica ] || [ "${1:-}" = --fatica-testo ]; then
    [ "$1" = --fatica ] || dal_testo=--testo
    serie=$(realpath -e -- "${2:?the file of a series}")
fi
cd "$(dirname "${BASH_SOURCE[0]}")"
if [ -n "$serie" ]; then
    strumenti/prepara.sh build use
    cmake --preset rilascio >&2
    cmake --build --preset rilascio --target fatica >&2
    impostazioni=$(mktemp -d)
    trap 'rm -rf "$impostazioni"' EXIT
    QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME=$impostazioni LANG=it_IT.UTF-8 LC_ALL=C.UTF-8 \
        build/rilascio/bench/fatica $dal_testo "$serie"
    exit
fi
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
strumenti/schermo.sh "$programmi/scheda" "$archivio" "$volte" || stato=1
strumenti/schermo.sh "$programmi/testo" "$archivio" "$volte" || stato=1
"$programmi/custodia" "$cartella" $((individui / 1000 + 2)) || stato=1
strumenti/schermo.sh "$programmi/allegato" "$cartella" $((individui * 3 / 10000 + 1)) || stato=1
"$programmi/storia" "$archivio" "$cartella" $((individui * 3 / 10000 + 1)) "$volte" || stato=1
"$programmi/anteriore" tests/dati/anteriore/vuoto.tvd "$cartella/anteriore.tvd" \
    $((individui / 10)) || stato=1
exit $stato
