#!/usr/bin/env bash
# Usage: ./test.sh [--quick] [CTEST-OPTION...]
# Installs what is missing, builds with sanitizers and runs every test offscreen; with options for
# ctest (for instance: ./test.sh -R voce) builds only the tests that they choose. With --quick in
# the "lavoro" preset, without sanitizers. Ends with ctest's summary and status.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
preset=prova
if [ "${1-}" = --quick ]; then
    preset=lavoro
    shift
fi
strumenti/prepara.sh build use tests
[ -e "build/$preset/build.ninja" ] || cmake --preset "$preset"
scelte=()
if [ $# -gt 0 ]; then
    # Ninja makes its own files again when the sources' list has changed.
    cmake --build --preset "$preset" --target build.ninja >/dev/null
    mapfile -t scelte < <(ctest --preset "$preset" -N "$@" | sed -n 's/^ *Test *#[0-9]*: \(tst_.*\)/\1/p')
fi
if [ $# -eq 0 ] || [ ${#scelte[@]} -gt 0 ]; then
    cmake --build --preset "$preset" ${scelte[@]:+--target "${scelte[@]}"}
fi
exec ctest --preset "$preset" "$@"
