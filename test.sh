#!/usr/bin/env bash
# Usage: ./test.sh [CTEST-OPTION...]
# Installs what is missing, builds with sanitizers and runs every test offscreen; the options go
# to ctest (for instance: ./test.sh -R voce). Ends with ctest's summary and status.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
strumenti/prepara.sh build use
cmake --preset prova
cmake --build --preset prova
exec ctest --preset prova "$@"
