#!/usr/bin/env bash
# Usage: strumenti/stile.sh
# Format and floors, in a few seconds: also the first of the tests. Status 77, and nothing looked
# at, where this is no working copy or clang-format-14, git or python3 are not installed.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
for programma in clang-format-14 git python3; do
    command -v "$programma" >/dev/null || exit 77
done
git rev-parse --git-dir >/dev/null 2>&1 || exit 77
esito=0

echo "Format:"
git ls-files -z --cached --others --exclude-standard -- '*.cpp' '*.h' |
    xargs -0 -r -n 40 -P "$(nproc)" clang-format-14 --dry-run -Werror || esito=1

echo "Floors:"
strumenti/piani.py --prova || esito=1
strumenti/piani.py || esito=1
exit "$esito"
