#!/usr/bin/env bash
# Builds Quillon and leaves what is handed out in dist/packages/: a zip for each architecture, the setup program and
# the sums of all three. Everything that dist/ARCHITECTURE holds goes in. The same commit gives the same bytes
# (scripts/reproducible.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/source-date.sh
export TZ=UTC LC_ALL=C

command -v makensis >/dev/null && [ -d build/libzip/x64 ] || scripts/setup.sh
version=$(sed -n 's/^project(Quillon VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
out=dist/packages
stage=build/packages
rm -rf "$out" "$stage"
mkdir -p "$out" "$stage"

with_crlf() { sed -e "s/@VERSION@/$version/" -e 's/$/\r/' "$1"; }

# Permissions and times are part of an archive.
settle() {
    find "$1" -type d -exec chmod 755 {} +
    find "$1" -type f -exec chmod 644 {} +
    find "$1" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
}

stage_files() {
    local architecture
    with_crlf LICENSE >"$stage/LICENSE.txt"
    with_crlf packaging/readme.txt >"$stage/readme.txt"
    for architecture in x86 x64; do
        mkdir -p "$stage/$architecture" "$stage/zip-$architecture/Quillon"
        cp "dist/$architecture"/* "$stage/$architecture/"
        cp "dist/$architecture"/* "$stage"/{LICENSE,readme}.txt "$stage/zip-$architecture/Quillon/"
    done
    settle "$stage"
}

# The names that setup.nsi stores, makes room for and removes.
list_for_setup() {
    local kind architecture file
    for kind in Program:exe Library:dll; do
        printf '!macro Each%s action\n' "${kind%:*}"
        { cd "$stage" && ls -d -- x86/*."${kind#*:}" x64/*."${kind#*:}"; } | sed 's,.*/,,' | sort -u |
            sed 's/.*/  !insertmacro ${action} "&"/'
        printf '!macroend\n'
    done
    for architecture in X86 X64; do
        printf '!macro Store%s\n' "$architecture"
        for file in "$stage/${architecture,,}"/* "$stage"/{LICENSE,readme}.txt; do printf '  File "%s"\n' "$PWD/$file"; done
        printf '!macroend\n'
    done
}

make_zip() {
    (cd "$stage/zip-$1" && find Quillon -type f | sort | zip -q -9 -X -@ "$OLDPWD/$out/Quillon-$version-$1.zip")
}

make_setup() {
    list_for_setup >"$stage/files.nsh"
    makensis -V2 -WX -INPUTCHARSET UTF8 -NOCD "-DVERSION=$version" "-DSTAGE=$PWD/$stage" "-DFILES=$PWD/$stage/files.nsh" \
        "-DICON=$PWD/resources/quillon.ico" "-DOUTPUT=$PWD/$out/Quillon-$version-setup.exe" \
        -X"!addincludedir \"$PWD/packaging\"" packaging/setup.nsi
}

scripts/build.sh --program x86 x64
stage_files
make_zip x86
make_zip x64
make_setup
(cd "$out" && sha256sum -- *.zip *.exe >SHA256SUMS)
scripts/check-packages.sh
