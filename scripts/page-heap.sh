#!/usr/bin/env bash
# Runs the 64-bit unit tests with each C++ object on pages of its own, so that a step past one ends the run there:
#
#     scripts/page-heap.sh [wide | ansi]
#
# Apart from the suite, after scripts/build.sh x64. Left out are the tests of failing calls, since this heap makes calls of
# its own, and those of very many objects: each object takes two mappings, of which Linux allows a process but so many.
# Its last line is `N passed, N failed, N skipped`.
set -uo pipefail
. "$(dirname "$0")/fixed-addresses.sh"
cd "$(dirname "$0")/.." || exit
. scripts/display.sh

flavour=${1:-wide}
prefix=$PWD/build/wine/page-heap-$$ log=build/test-logs/page-heap-$flavour.log
mkdir -p build/test-logs

clean_up() {
    scripts/wine-prefix.sh stop "$prefix"
    [ -z "${xvfb:-}" ] || kill "$xvfb" 2>/dev/null
    rm -rf "$prefix"
}

tests() { timeout 1800 wine build/x64/tests/unit_tests.exe "$@"; }

fail() {
    printf 'page-heap: %s\n0 passed, 1 failed, 0 skipped\n' "$1"
    exit 1
}

scripts/wine-prefix.sh copy "$prefix" winxp unmanaged || exit
trap clean_up EXIT
start_display || fail 'Xvfb did not start'
export WINEPREFIX=$prefix LC_ALL=C.UTF-8 WINEDEBUG=-all
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d;winedbg.exe=d'

# A check that finds nothing anywhere proves nothing: 20 bytes fit, the 21st and the 33rd do not.
tests --write-on-heap=20 --page-heap 2>/dev/null
[ $? = 20 ] || fail 'a block of 20 bytes does not take 20'
for count in 21 33; do
    tests --write-on-heap=$count --page-heap >/dev/null 2>&1
    [ $? != $count ] || fail "$count bytes in a block of 20 went unnoticed"
done

tests --no-colors=1 "--flavour=$flavour" --page-heap -sfe='*long_list*,*long_paths*,*hostile*,*registry_export*,*faults_test*' \
    -tce='*ten thousand*,*thousand *,*thousands*,*one of 1 MiB*' >"$log" 2>&1
status=$?
grep -a '^\[doctest\] test cases' "$log" || tail -n 5 "$log"
[ $status = 0 ] || fail "the tests ended with $status; the whole log is in $log"
printf '1 passed, 0 failed, 0 skipped\n'
