#!/usr/bin/env bash
# Zips one file of 5 GiB (sparse) with the built program's zip writer and reads the archive back with three other
# tools. Takes minutes, so it is no part of test.sh:  scripts/zip64.sh [x86 | x64 ...]  (after scripts/build.sh)
set -euo pipefail
. "$(dirname "$0")/fixed-addresses.sh"
cd "$(dirname "$0")/.."

[ $# -gt 0 ] || set -- x86 x64
builds=${QUILLON_BUILDS:-$PWD/build}
prefix=$PWD/build/wine/zip64
folder=$(mktemp -d)
cleanup() {
    scripts/wine-prefix.sh stop "$prefix"
    rm -rf "$folder" "$prefix"
}
trap cleanup EXIT
scripts/wine-prefix.sh copy "$prefix" winxp unmanaged

size=$((5 * 1024 * 1024 * 1024))
truncate -s $((size - 4)) "$folder/five.bin"
printf 'last' >>"$folder/five.bin"
printf 'small' >"$folder/small.txt"

zip_with() {
    local architecture=$1
    shift
    (cd "$folder" && WINEPREFIX=$prefix WINEDEBUG=-all wine "$builds/$architecture/support_request/zip_driver.exe" "$@" quiet)
}

for architecture in "$@"; do
    rm -f "$folder/big.zip"
    began=$SECONDS
    zip_with "$architecture" zip big.zip spec=five.bin spec=small.txt
    printf '%s: %d s to write, the archive has %d bytes\n' "$architecture" $((SECONDS - began)) "$(stat -c %s "$folder/big.zip")"
    # An entry behind the large one is added: that one is copied.
    zip_with "$architecture" zip big.zip AllowAppend spec=small.txt
    unzip -tq "$folder/big.zip"
    7z t "$folder/big.zip" | grep -q '^Everything is Ok'
    python3 - "$folder/big.zip" "$size" <<'END'
import sys
import zipfile

with zipfile.ZipFile(sys.argv[1]) as archive:
    assert archive.namelist() == ['five.bin', 'small.txt'], archive.namelist()
    info = archive.getinfo('five.bin')
    assert info.file_size == int(sys.argv[2]), info.file_size
    with archive.open(info) as file:
        size, last = 0, b''
        while piece := file.read(1 << 24):
            size, last = size + len(piece), piece
    assert size == int(sys.argv[2]) and last.endswith(b'last'), size
END
    printf '%s: unzip, 7z and zipfile agree\n' "$architecture"
done
