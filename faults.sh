#!/usr/bin/env bash
# Usage: ./faults.sh ROUNDS [SEED]
# Builds the programme of faults with sanitizers and runs it: the process killed, system calls that
# fail, a full disk, several programs on one file, damaged files, ROUNDS of each; then the long
# tests of salvage, conversion and deletion, in proportion. Prints the counts; ends with status 1
# when anything was lost. The same SEED makes the same faults.
#        ./faults.sh --recupero SEEDS [FIRST SEED [DAMAGE]]
# Compares the repair with the recovery of the engine's own program: forty damages, SEEDS of each;
# prints the rows each finds again, and ends with status 1 when ours is behind anywhere.
set -euo pipefail

if [ "${1-}" = --recupero ]; then
    shift
    cd "$(dirname "${BASH_SOURCE[0]}")"
    strumenti/prepara.sh build use recovery
    cmake --preset lavoro
    cmake --build --preset lavoro --target recupero
    exec build/lavoro/faults/recupero "$@"
fi
if [[ ! ${1-} =~ ^[1-9][0-9]*$ || ! ${2-0} =~ ^[0-9]+$ || $# -gt 2 ]]; then
    sed -n '2,9s/^# //p' "$0" >&2
    exit 2
fi
cd "$(dirname "${BASH_SOURCE[0]}")"
strumenti/prepara.sh build use tests
cmake --preset prova
lunghe=(tst_salvataggio tst_conversione_danni tst_eliminazione)
cmake --build --preset prova --target guasti "${lunghe[@]}"
# Their own exit status: no status of the programme means what theirs does.
export ASAN_OPTIONS=exitcode=99:halt_on_error=1:detect_leaks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=exitcode=99:halt_on_error=1:print_stacktrace=1
esito=0
build/prova/faults/guasti "$@" || esito=1
# The tests that go at random or page by page, of which ./test.sh runs a part: forty rounds are all.
for prova in "${lunghe[@]}"; do
    TARVOLA_GUASTI=$(($1 * 8)) QT_QPA_PLATFORM=offscreen \
        "build/prova/tests/cartelle/$prova/$prova" -silent || esito=1
done
exit "$esito"
