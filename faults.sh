#!/usr/bin/env bash
# Usage: ./faults.sh ROUNDS [SEED]
# Builds the programme of faults with sanitizers and runs it: the process killed, system calls that
# fail, a full disk, several programs on one file, damaged files, ROUNDS of each; then the long
# tests of salvage, conversion and deletion, in proportion. Prints the counts; ends with status 1
# when anything was lost. The same SEED makes the same faults.
#        ./faults.sh --giro PERSONS [SEED]
# Makes an archive of the strangest acts, opens and saves each on its page by keys alone: no row may
# be different. Then writes a letter in one box of each: nothing else may be different.
#        ./faults.sh --recupero SEEDS [FIRST SEED [DAMAGE]]
# Compares the repair with the recovery of the engine's own program: forty damages, SEEDS of each;
# prints the rows each finds again, and ends with status 1 when ours is behind anywhere.
#        ./faults.sh --storia STEPS [SEED]
# STEPS random steps, with undos and redos among them, then all undone and all redone, against dumps
# of every table; prints how many stood in the history, ends with status 1 where a row differs.
set -euo pipefail

if [[ "${1-}" = --storia && ${2-} =~ ^[1-9][0-9]*$ && ${3-0} =~ ^[0-9]+$ && $# -le 3 ]]; then
    cd "$(dirname "${BASH_SOURCE[0]}")"
    strumenti/prepara.sh build use
    cmake --preset lavoro
    cmake --build --preset lavoro --target tst_storia
    TARVOLA_GUASTI=$2 TARVOLA_SEME=${3-0} QT_QPA_PLATFORM=offscreen \
        exec build/lavoro/tests/cartelle/tst_storia/tst_storia aCaso
fi
if [ "${1-}" = --recupero ]; then
    shift
    cd "$(dirname "${BASH_SOURCE[0]}")"
    strumenti/prepara.sh build use recovery
    cmake --preset lavoro
    cmake --build --preset lavoro --target recupero
    exec build/lavoro/faults/recupero "$@"
fi
# A window without a display, with settings of its own.
senza_schermo()
{
    local impostazioni esito=0
    impostazioni=$(mktemp -d)
    QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME=$impostazioni XDG_RUNTIME_DIR=$impostazioni \
        LANG=it_IT.UTF-8 LC_ALL=C.UTF-8 "$@" || esito=1
    rm -rf "$impostazioni"
    return "$esito"
}

if [ "${1-}" = --giro ] && [[ ${2-} =~ ^[1-9][0-9]*$ && ${3-0} =~ ^[0-9]+$ && $# -le 3 ]]; then
    shift
    cd "$(dirname "${BASH_SOURCE[0]}")"
    strumenti/prepara.sh build use
    cmake --preset lavoro
    cmake --build --preset lavoro --target giro
    senza_schermo build/lavoro/faults/giro "$@"
    exit
fi
if [[ ! ${1-} =~ ^[1-9][0-9]*$ || ! ${2-0} =~ ^[0-9]+$ || $# -gt 2 ]]; then
    sed -n '2,12s/^# //p' "$0" >&2
    exit 2
fi
cd "$(dirname "${BASH_SOURCE[0]}")"
strumenti/prepara.sh build use tests
cmake --preset prova
lunghe=(tst_salvataggio tst_conversione_danni tst_eliminazione)
cmake --build --preset prova --target guasti giro pagina_uccisa "${lunghe[@]}"
# Their own exit status: no status of the programme means what theirs does.
export ASAN_OPTIONS=exitcode=99:halt_on_error=1:detect_leaks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=exitcode=99:halt_on_error=1:print_stacktrace=1
esito=0
build/prova/faults/guasti "$@" || esito=1
senza_schermo build/prova/faults/pagina_uccisa "$@" || esito=1
senza_schermo build/prova/faults/giro $(($1 * 25)) "${@:2}" || esito=1
# The tests that go at random or page by page, of which ./test.sh runs a part: forty rounds are all.
for prova in "${lunghe[@]}"; do
    TARVOLA_GUASTI=$(($1 * 8)) QT_QPA_PLATFORM=offscreen \
        "build/prova/tests/cartelle/$prova/$prova" -silent || esito=1
done
exit "$esito"
