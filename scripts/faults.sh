#!/usr/bin/env bash
# Runs the finished program again and again (tests/faults), from its start over a refresh, deletions, restores and a
# backup to its end, each time with another of its Windows calls failing:
#
#     scripts/faults.sh                 each call in turn; hours
#     scripts/faults.sh --faults=100    so many of them, always the same
#     scripts/faults.sh --rounds=10000,1000    none fails: that many refreshes and deletions (scripts/endurance.sh)
#
# Needs the built tests (scripts/build.sh). The last lines are doctest's.
set -euo pipefail
. "$(dirname "$0")/fixed-addresses.sh"
cd "$(dirname "$0")/.."
. scripts/display.sh

architecture=x86
scripts/wine-prefix.sh has32 || architecture=x64
prefix=$PWD/build/wine/faults-$$

[ -n "${DISPLAY:-}" ] || start_display
finish() {
    scripts/wine-prefix.sh stop "$prefix"
    rm -rf "$prefix"
    [ -z "${xvfb:-}" ] || kill "$xvfb" 2>/dev/null
}
scripts/wine-prefix.sh copy "$prefix" winxp unmanaged
trap finish EXIT

WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d;winedbg.exe=d' LC_ALL=C.UTF-8 \
    wine "build/$architecture/tests/faults_driver.exe" --no-colors=1 "${@:---faults=all}"
