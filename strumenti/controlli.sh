#!/usr/bin/env bash
# Usage: strumenti/controlli.sh [OPTION-OF-LINT...]
# The checks that need no running program: format, floors, and the lint of what differs from main,
# or on main of all, what came last first (see strumenti/lint.py --help; with --all, of everything;
# with --minutes N, of what fits). Every check runs even when an earlier one finds something; the
# status is 1 when any did.
# Needs the packages of "strumenti/prepara.sh build checks".
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
esito=0

strumenti/stile.sh || esito=1

echo "Lint:"
strumenti/lint.py "$@" || esito=1

[ "$esito" -eq 0 ] && echo "All checks passed." || echo "Some checks failed."
exit "$esito"
