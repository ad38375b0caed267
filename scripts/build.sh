#!/usr/bin/env bash
# Builds Quillon and leaves complete program folders in dist/:  scripts/build.sh [--program] [x86 | x64 ...]
# With --program the tests are left out.
set -euo pipefail
cd "$(dirname "$0")/.."

program=(Quillon.exe QuillonReport.exe Helmkit.dll QLNCustom.dll)

# Configuring again is quiet and quick; a failure shows what went wrong.
quietly() {
    local log=$1
    shift
    "$@" >"$log" 2>&1 && return
    tail -n 60 "$log" >&2
    printf 'build: failed; the whole log is in %s\n' "$log" >&2
    return 1
}

targets=()
if [ "${1:-}" = --program ]; then
    for file in "${program[@]}"; do targets+=(--target "${file%.*}"); done
    shift
fi
mkdir -p build
scripts/libzip.sh
[ $# -gt 0 ] || set -- x86 x64
for architecture in "$@"; do
    printf 'build: %s\n' "$architecture"
    quietly "build/configure-$architecture.log" cmake --preset "$architecture" || {
        printf 'build: scripts/setup.sh installs what is missing\n' >&2
        exit 1
    }
    quietly "build/build-$architecture.log" cmake --build --preset "$architecture" "${targets[@]}"
    rm -rf "dist/$architecture"
    mkdir -p "dist/$architecture"
    for file in "${program[@]}"; do cp "build/$architecture/program/$file" "dist/$architecture/"; done
done
