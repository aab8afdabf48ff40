#!/usr/bin/env bash
# Usage: strumenti/controlli.sh
# The checks that need no running program: format, floors, lint. Every check runs even when an
# earlier one finds something; the status is 1 when any did.
# Needs the packages of "strumenti/prepara.sh build checks".
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
esito=0

sorgenti()
{
    git ls-files -z --cached --others --exclude-standard -- "$@"
}

echo "Format:"
sorgenti '*.cpp' '*.h' | xargs -0 -r clang-format-14 --dry-run -Werror || esito=1

echo "Floors:"
strumenti/piani.py --prova || esito=1
strumenti/piani.py || esito=1

echo "Lint:"
# I comandi di "prova" sono i soli che comprendono ogni sorgente; di ciò che fanno gli strumenti
# servono qui solo i file che i sorgenti includono.
cmake --preset prova --log-level=WARNING
cmake --build --preset prova --target autogen
sorgenti '*.cpp' | xargs -0 -r -n 1 -P "$(nproc)" clang-tidy-14 -quiet -p build/prova 2>&1 |
    sed '/^[0-9]* warnings\{0,1\} \(and [0-9]* errors\{0,1\} \)\{0,1\}generated\.$/d' || esito=1

[ "$esito" -eq 0 ] && echo "All checks passed." || echo "Some checks failed."
exit "$esito"
