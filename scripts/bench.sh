#!/usr/bin/env bash
# Measures Quillon against floors in a Windows of its own and writes build/bench.json and its plot:
#
#     scripts/bench.sh [x86 | x64] [ARGUMENTS OF BENCH.EXE]
#     scripts/bench.sh --calls [x86 | x64] FIGURE     counts the Wine server calls of ours and of the floor instead
#     scripts/bench.sh --services [x86 | x64]         the start with the 670 services of a Windows 10 instead
#
# docs/performance.md explains the figures. QUILLON_BUILD names another build folder than build/ARCHITECTURE.
set -euo pipefail
. "$(dirname "$0")/fixed-addresses.sh"
cd "$(dirname "$0")/.."
. scripts/display.sh

calls= services=
[ "${1:-}" != --calls ] || { calls=yes; shift; }
[ "${1:-}" != --services ] || { services=yes; shift; }
architecture=x86
case ${1:-} in
x86 | x64)
    architecture=$1
    shift
    ;;
esac
build=${QUILLON_BUILD:-build/$architecture}
prefix=$PWD/build/wine/bench-$$
log=build/bench-build.log

build_program() {
    mkdir -p build
    { cmake --preset "$architecture" -B "$build" && cmake --build "$build" --target bench; } >"$log" 2>&1 && return
    tail -n 60 "$log" >&2
    printf 'bench: the build failed; the whole log is in %s\n' "$log" >&2
    return 1
}

clean_up() {
    scripts/wine-prefix.sh stop "$prefix"
    [ -z "${xvfb:-}" ] || kill "$xvfb" 2>/dev/null || true
    rm -rf "$prefix"
}

bench() { timeout 1800 wine "$build/bench/bench.exe" "$@"; }

# Quillon and floor.exe read the registry that is there, so this one gets 200 entries, or the services.
seed() {
    local entries='C:\entries\entries.reg'
    mkdir -p "$prefix/drive_c/entries"
    if [ -n "$services" ]; then
        scripts/bench-services.py "$prefix/drive_c" "$build/bench/fixture_program.exe"
        entries='C:\services.reg'
    else
        bench --start-entries 'C:\entries'
    fi
    wine reg import "$entries" /reg:64 >/dev/null 2>&1
    wineserver -w
}

build_program
scripts/wine-prefix.sh copy "$prefix" winxp unmanaged
trap clean_up EXIT
start_display
export WINEPREFIX=$prefix LC_ALL=C.UTF-8 WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d;winedbg.exe=d'
export WINEDEBUG=-all
seed
if [ -n "$calls" ]; then
    # The server traces when its first program asks for it.
    WINEDEBUG=-all,+server bench --rounds 1 "$@" >"$prefix/table" 2>"$prefix/trace"
    scripts/bench-calls.py "$prefix/trace"
    exit
fi
if [ -n "$services" ]; then
    # The floor takes no names apart: it finds but few of these files.
    bench start --only-ours
    exit
fi
bench --json bench.json "$@"
mv bench.json build/bench.json
scripts/bench-plot.py build/bench.json build/bench.svg
