#!/usr/bin/env bash
# Tells which lines and branches of the product the suite reaches, folder by folder:
#
#     scripts/coverage.sh            the whole suite, with the 32-bit program
#     scripts/coverage.sh --quick    without the end-to-end part
#
# The programs are built without optimization by the presets coverage-x86 and coverage-native, and each adds its counts to
# those of the runs before it when it ends. A program that is ended from outside leaves none. What nothing reached is
# listed in build/coverage/unreached.txt. That a test fails is told, and changes nothing else: test.sh judges.
set -uo pipefail
. "$(dirname "$0")/fixed-addresses.sh"
cd "$(dirname "$0")/.." || exit
. scripts/display.sh

case ${1:-} in
'' | --quick) ;;
*)
    printf 'usage: coverage.sh [--quick]\n' >&2
    exit 2
    ;;
esac

out=$PWD/build/coverage
windows_build=build/coverage-x86
prefix=$PWD/build/wine/coverage
families=(x86:win98 x86:win2k x86:winxp x86:win10)

build() {
    scripts/libzip.sh && scripts/wine-prefix.sh has32 && python3 tests/fixtures/make.py build/fixtures &&
        cmake --preset coverage-x86 && cmake --build --preset coverage-x86 &&
        cmake --preset coverage-native && cmake --build --preset coverage-native --target native_tests
}

step() {
    local name=$1
    shift
    printf 'coverage: %s\n' "$name"
    "$@" >"$out/$name.log" 2>&1 || printf 'coverage: %s failed; see %s\n' "$name" "build/coverage/$name.log"
}

under_wine() {
    WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d' LC_ALL=C.UTF-8 \
        timeout 1800 wine "$@"
}

rm -rf "$out"
mkdir -p "$out"
build >"$out/build.log" 2>&1 || { tail -n 40 "$out/build.log"; exit 1; }
find "$windows_build" build/coverage-native -name '*.gcda' -delete
start_display || exit 1
trap 'kill "$xvfb" 2>/dev/null' EXIT
scripts/wine-prefix.sh copy "$prefix" winxp unmanaged || exit 1

step native build/coverage-native/tests/native/native_tests
# The counts go beside the object files, from whatever drive the program takes for the current one.
export GCOV_PREFIX=Z:
for flavour in wide ansi; do step "unit-$flavour" under_wine "$windows_build/tests/unit_tests.exe" "--flavour=$flavour"; done
step com under_wine "$windows_build/com_tests/com_tests.exe"
scripts/wine-prefix.sh stop "$prefix"
rm -rf "$prefix"
step support_request python3 tests/support_request/run.py --build 'build/coverage-{}' x86
[ "${1:-}" = --quick ] || QUILLON_PROGRAM_X86=$PWD/$windows_build/program QUILLON_BUILD_X86=$PWD/$windows_build \
    step e2e python3 tests/e2e/run.py "${families[@]}"

python3 scripts/coverage-table.py "$out/unreached.txt" \
    "$windows_build:i686-w64-mingw32-gcov-win32" build/coverage-native:gcov
