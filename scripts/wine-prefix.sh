#!/usr/bin/env bash
# Wine prefixes for runs and tests: bases, made once, and cheap copies of them. Windows 98 is copied from one that
# plays 32-bit Windows, the others from one that plays 64-bit Windows, where 32-bit programs run as well.
#
#     scripts/wine-prefix.sh base                   makes build/wine/base unless it is there
#     scripts/wine-prefix.sh copy FOLDER FAMILY [unmanaged]
#                                                   a fresh copy of the base that is win98, win2k, winxp or win10;
#                                                   `unmanaged` for a display without window manager
#     scripts/wine-prefix.sh stop FOLDER            ends every program of that prefix
#     scripts/wine-prefix.sh has32                  succeeds when 32-bit Windows programs can run
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
base=$top/build/wine/base
windows_kind=win64

export WINEDEBUG=${WINEDEBUG:--all}
# No offers to install Mono and Gecko, no menu entries on the developer's own desktop.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d'

wineserver_of() { WINEPREFIX=$1 wineserver "$2" 2>/dev/null || true; }

use_base_of() {
    [ "$1" = win98 ] || return 0
    base=$top/build/wine/base32
    windows_kind=win32
}

# A prefix that was cut short while being made must not be taken for a finished one.
make_base() {
    [ ! -f "$base/.quillon-base" ] || return 0
    mkdir -p "$(dirname "$base")"
    (flock 9 && make_base_alone) 9>"$base.lock"
}

make_base_alone() {
    [ -f "$base/.quillon-base" ] && return
    printf 'wine: making the base prefix of %s\n' "$windows_kind"
    wineserver_of "$base" -k
    rm -rf "$base"
    # A home of its own: Wine would link its user folders to the developer's documents.
    mkdir -p "$top/build/wine/home"
    local log=$base.log
    if ! HOME=$top/build/wine/home WINEARCH=$windows_kind WINEPREFIX=$base wineboot -i >"$log" 2>&1; then
        printf 'wine: the base prefix could not be made; see %s\n' "$log" >&2
        return 1
    fi
    # Wine's own start-up entry would show up among those that a test puts there.
    local view=()
    [ "$windows_kind" = win32 ] || view=(/reg:64)
    WINEPREFIX=$base wine reg delete 'HKLM\Software\Microsoft\Windows\CurrentVersion\RunServices' \
        /v winemenubuilder /f "${view[@]}" >>"$log" 2>&1 || true
    WINEPREFIX=$base wineserver -w
    # The signs of the caption buttons; Wine does not find them among its own fonts.
    local signs=/usr/share/wine/fonts/marlett.ttf
    [ ! -f "$signs" ] || install -D -m 644 "$signs" "$base/drive_c/windows/Fonts/marlett.ttf"
    : >"$base/.quillon-base"
}

# Of those files that there are.
own_copies() {
    local folder=$1 file files=()
    shift
    for file; do [ ! -e "$file" ] || files+=("$file"); done
    [ ${#files[@]} = 0 ] || cp -p --remove-destination "${files[@]}" "$folder"
}

# Hard links share what nobody changes. The registry files and the ini files are written in place
# (wineserver only renames a new file over a registry file that has a single link), so they are copied.
copy_base() {
    local folder=$1 family=$2 windows=${3:-}
    if [ -e "$folder" ]; then
        wineserver_of "$folder" -k
        rm -rf "$folder"
    fi
    mkdir -p "$(dirname "$folder")"
    cp -al "$base" "$folder"
    own_copies "$folder" "$base"/{system.reg,user.reg,userdef.reg,.update-timestamp,wineserver}
    own_copies "$folder/drive_c/windows" "$base"/drive_c/windows/{win,system}.ini
    printf '\n[Software\\\\Wine]\n"Version"="%s"\n' "$family" >>"$folder/user.reg"
    # Without a window manager Wine waits two seconds for one at every window that opens or closes.
    [ "$windows" != unmanaged ] || printf '\n[Software\\\\Wine\\\\X11 Driver]\n"Managed"="N"\n' >>"$folder/user.reg"
}

# Where addresses stay random (fixed-addresses.sh) a start may fail once; then half of the tests would be left out.
# Afterwards the server goes on writing registry files for a while: a copy of the base that is made meanwhile fails.
runs_32bit() {
    local attempt status=1
    for attempt in 1 2 3; do
        WINEPREFIX=$base wine "$base/drive_c/windows/syswow64/hostname.exe" >/dev/null 2>&1 && status=0 && break
    done
    wineserver_of "$base" -w
    return $status
}

# On 64-bit Windows and on Windows of its own.
has_32bit() {
    make_base >&2 && runs_32bit || return
    use_base_of win98
    make_base >&2
}

case ${1:-} in
base) make_base ;;
copy) use_base_of "$3" && make_base && copy_base "$2" "$3" "${4:-}" ;;
stop) wineserver_of "$2" -k ;;
has32) has_32bit ;;
*)
    printf 'usage: wine-prefix.sh base | copy FOLDER FAMILY [unmanaged] | stop FOLDER | has32\n' >&2
    exit 2
    ;;
esac
