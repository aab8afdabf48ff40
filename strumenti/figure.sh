#!/usr/bin/env bash
# Usage: strumenti/figure.sh
# Takes the screenshots of the manual and of README anew, from a run of the demonstration. Titles
# and file dialogs show the folders it runs in, and no picture may show those of a real machine: it
# runs in /home/anna, which is made for it, with sudo when not root, and removed afterwards.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
casa=/home/anna
if [ -e "$casa" ]; then
    echo "There is a $casa here already; it is left alone." >&2
    exit 1
fi
strumenti/prepara.sh build use screen
cmake --preset rilascio
cmake --build --preset rilascio

come_root=()
[ "$(id -u)" -eq 0 ] || come_root=(sudo)
"${come_root[@]}" install -d -o "$(id -un)" "$casa"
# shellcheck disable=SC2317
togli()
{
    "${come_root[@]}" rm -r "$casa"
}
trap togli EXIT
mkdir "$casa/Tarvola" "$casa/archivi"
cp build/rilascio/demo/dimostrazione build/rilascio/tarvola.mod "$casa/Tarvola"
HOME=$casa strumenti/schermo.sh "$casa/Tarvola/dimostrazione" "$casa/archivi"
cmake "-DDA=$casa/archivi" "-DGUIDA=$PWD/guida" -P guida/figure.cmake
cp "$casa/archivi/schermata.png" docs/schermata.png
