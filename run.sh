#!/usr/bin/env bash
# Builds Quillon and opens it in a seeded Windows of its own (build/wine/run):  ./run.sh [x86 | x64]
set -euo pipefail
cd "$(dirname "$0")"

scripts/setup.sh
scripts/wine-prefix.sh base
architecture=${1:-}
if [ -z "$architecture" ]; then
    if scripts/wine-prefix.sh has32; then architecture=x86; else architecture=x64; fi
fi
case $architecture in
x86 | x64) ;;
*)
    printf 'usage: ./run.sh [x86 | x64]\n' >&2
    exit 2
    ;;
esac
scripts/build.sh "$architecture"
python3 tests/fixtures/make.py build/fixtures
exec python3 tests/e2e/show.py "$architecture"
