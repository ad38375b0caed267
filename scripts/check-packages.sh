#!/usr/bin/env bash
# Holds the finished packages (scripts/package.sh) against what they must be. Its last line is
# `N passed, N failed, N skipped`.
set -uo pipefail
cd "$(dirname "$0")/../dist/packages" || exit
top=$OLDPWD
. "$top/scripts/rules.sh"
opened=$(mktemp -d)
trap 'rm -rf "$opened"' EXIT
setup=$(echo Quillon-*-setup.exe)

sums_agree() { sha256sum --quiet -c SHA256SUMS; }

zips_open() {
    local zip
    for zip in *.zip; do unzip -tq "$zip" && 7z t "$zip" >/dev/null || return; done
}

# Each zip holds what the build left, a licence and a readme, and nothing else.
zip_is_complete() {
    local architecture=$1
    unzip -q *-"$architecture".zip -d "$opened/$architecture" || return
    diff <(cd "$top/dist/$architecture" && sha256sum -- * | sort -k 2) \
        <(cd "$opened/$architecture/Quillon" && sha256sum -- *.exe *.dll | sort -k 2) &&
        [ -s "$opened/$architecture/Quillon/LICENSE.txt" ] && [ -s "$opened/$architecture/Quillon/readme.txt" ]
}

setup_opens() { 7z x -y -o"$opened/setup" "$setup" >/dev/null; }

# The plug-ins travel inside; 7z shows them in a folder named $PLUGINSDIR.
setup_starts_everywhere() { "$top/scripts/check-imports.py" "$setup" "$opened"/setup/*PLUGINSDIR/*.dll; }

setup_asks_for_4() { wants_version 4 0 "$setup" "$opened"/setup/*PLUGINSDIR/*.dll; }

# The setup program's manifest is the packager's own and speaks for each processor.
setup_tells_version() { 7z l "$setup" >/dev/null && grep -qaP 'P\0r\0o\0d\0u\0c\0t\0V\0e\0r\0s\0i\0o\0n' "$setup"; }

rule 'the sums are those of the packages' sums_agree
rule 'unzip and 7z find nothing wrong with the zips' zips_open
rule 'the 32-bit zip holds the program, a licence and a readme' zip_is_complete x86
rule 'the 64-bit zip holds the program, a licence and a readme' zip_is_complete x64
rule '7z opens the setup program' setup_opens
rule 'the setup program and its plug-ins import what Windows 98 and 2000 have' setup_starts_everywhere
rule 'the setup program and its plug-ins ask for Windows 4.0' setup_asks_for_4
rule 'the setup program carries its version' setup_tells_version
tell_rules
