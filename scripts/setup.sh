#!/usr/bin/env bash
# Installs what building and testing Quillon needs on Debian 12 or 13; does nothing, and needs neither
# network nor root, when everything is already there.
set -euo pipefail

base=(cmake ninja-build make git python3 g++ clang clang-format libclang-rt-dev doctest-dev
      g++-mingw-w64-i686-win32 g++-mingw-w64-x86-64-win32 mingw-w64-tools libz-mingw-w64-dev dpkg-dev
      zip unzip p7zip-full nsis cppcheck clang-tidy
      xvfb xdotool x11-utils imagemagick fonts-liberation procps
      libwin-hivex-perl
      rapidjson-dev jq sqlite3 python3-jsonschema)
# widl imports the Automation base types from the IDL files of libwine-dev.
wine64=(wine wine64 libwine-dev fonts-wine)
wine32=(wine32:i386)

installed() { dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null | grep -q '^installed'; }

missing() {
    local package
    for package in "$@"; do installed "$package" || printf '%s\n' "$package"; done
}

# The packages have these names, and Quillon was tried, on two releases alone.
supported() (
    . /etc/os-release 2>/dev/null || true
    case "${ID:-} ${VERSION_CODENAME:-} $(uname -m)" in
    'debian bookworm x86_64' | 'debian trixie x86_64') return ;;
    esac
    printf 'setup: Debian 12 and 13 on x86_64 are supported; this is %s on %s, and missing here are: %s\n' \
        "${PRETTY_NAME:-an unknown system}" "$(uname -m)" "$*" >&2
    return 1
)

as_root() {
    if [ "$(id -u)" = 0 ]; then
        DEBIAN_FRONTEND=noninteractive "$@"
    elif command -v sudo >/dev/null; then
        sudo DEBIAN_FRONTEND=noninteractive "$@"
    else
        printf 'setup: root is needed to run: %s\n' "$*" >&2
        return 1
    fi
}

# A list that cannot be had is left to the install to miss: what is wanted may stand in another.
refresh_lists() { as_root apt-get update -q || printf 'setup: not every package list could be fetched\n' >&2; }

apt_install() { as_root apt-get install -y -q --no-install-recommends "$@"; }

# The i386 security index is at times out of step with amd64, and then no set of wine packages of
# both architectures fits together. The main suite alone always does, so it is offered alone.
install_wine_from_main_suite() {
    local work status=0
    work=$(mktemp -d)
    mkdir -p "$work/lists/partial"
    # SIGNED_BY is not among the fields apt tells, so the archive's own keyring is named.
    apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' |
        sort -u | awk -v codename="$(. /etc/os-release && echo "$VERSION_CODENAME")" -v ring=/usr/share/keyrings/debian-archive-keyring.gpg \
            '$2 == codename && $3 == "main" { print "deb [signed-by=" ring "] " $1 " " $2 " " $3 }' >"$work/main.list"
    chmod -R a+rX "$work"
    local only_main=(-o "Dir::Etc::sourcelist=$work/main.list" -o Dir::Etc::sourceparts=- -o "Dir::State::Lists=$work/lists")
    as_root apt-get "${only_main[@]}" update -q &&
        as_root apt-get "${only_main[@]}" install -y -q --no-install-recommends --allow-downgrades \
            "${wine64[@]}" "${wine32[@]}" || status=$?
    as_root rm -rf "$work"
    return $status
}

install_wine() {
    if ! dpkg --print-foreign-architectures | grep -qx i386; then
        as_root dpkg --add-architecture i386
        refresh_lists
    fi
    apt_install "${wine64[@]}" "${wine32[@]}" && return
    printf 'setup: the plain install of 32-bit Wine failed; trying the main suite alone\n' >&2
    install_wine_from_main_suite && return
    printf '\nsetup: *** 32-bit Wine cannot be had here: the 32-bit tests will be SKIPPED ***\n\n' >&2
    apt_install "${wine64[@]}"
}

mapfile -t wanted < <(missing "${base[@]}")
mapfile -t wanted_wine < <(missing "${wine64[@]}" "${wine32[@]}")
if [ ${#wanted[@]} -gt 0 ] || [ ${#wanted_wine[@]} -gt 0 ]; then
    supported "${wanted[@]}" "${wanted_wine[@]}"
    printf 'setup: installing: %s\n' "${wanted[*]} ${wanted_wine[*]}"
    refresh_lists
fi
[ ${#wanted[@]} -eq 0 ] || apt_install "${wanted[@]}"
[ ${#wanted_wine[@]} -eq 0 ] || install_wine
"$(dirname "$0")/libzip.sh"
