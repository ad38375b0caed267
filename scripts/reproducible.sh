#!/usr/bin/env bash
# Builds the packages of the committed tree twice, in two folders and at two times, and compares them byte by byte:
#
#     scripts/reproducible.sh
#
# What a build takes from outside the tree (compilers, libraries, the packager) is that of this machine, for both.
set -euo pipefail
cd "$(dirname "$0")/.."

out=$PWD/build/reproducible
rm -rf "$out"
mkdir -p "$out"

# The second tree lies deeper and is built later, in another time zone.
build_in() {
    local tree=$1
    git clone -q --local . "$tree"
    # Its sources are Debian's and are not built here a second time.
    if [ -d build/libzip ]; then
        mkdir -p "$tree/build"
        cp -a build/libzip "$tree/build/"
    fi
    (cd "$tree" && CCACHE_DISABLE=1 scripts/package.sh >"$out/$(basename "$tree").log" 2>&1) || {
        tail -n 40 "$out/$(basename "$tree").log" >&2
        return 1
    }
}

build_in "$out/one"
TZ=Asia/Tokyo LC_ALL=C.UTF-8 build_in "$out/deeper/down/two"

differing=0
while read -r file; do
    cmp "$out/one/dist/$file" "$out/deeper/down/two/dist/$file" || differing=$((differing + 1))
done < <(cd "$out/one/dist" && find . -type f | sort)
files=$(find "$out/one/dist" -type f | wc -l)
[ "$files" = "$(find "$out/deeper/down/two/dist" -type f | wc -l)" ] || differing=$((differing + 1))
printf '%d files compared\n' "$files"
[ "$files" -gt 0 ] && [ "$differing" = 0 ] && rm -rf "$out"/{one,deeper}
printf '%d passed, %d failed, 0 skipped\n' "$((files > differing ? files - differing : 0))" "$differing"
[ "$files" -gt 0 ] && [ "$differing" = 0 ]
