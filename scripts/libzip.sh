#!/usr/bin/env bash
# Cross-builds libzip from Debian's source package into build/libzip/x86 and build/libzip/x64 (include/, lib/);
# does nothing, and needs no network, for what is already there:  scripts/libzip.sh [RELEASE...]
#
# The source is that of the first RELEASE whose package can be had: this system's own, or else Debian 12's, which
# is the version that Quillon grew up with.
#
# Static, with zlib from libz-mingw-w64-dev and nothing else: no other compressors, no cryptography library (the
# traditional encryption needs none). libzip's own file sources are left out, since they call what Windows 98
# lacks: the program brings its own (support/zip_source.h). GCC 14 would refuse the pointers in them.
set -euo pipefail
cd "$(dirname "$0")/.."

out=build/libzip
work=$out/work
own_release=$(. /etc/os-release && echo "$VERSION_CODENAME")
releases=("$@")
[ $# -gt 0 ] || mapfile -t releases < <(printf '%s\n' "$own_release" bookworm | uniq)

finished() { [ -f "$out/$1/lib/libzip.a" ] && [ -f "$out/$1/include/zip.h" ]; }

# What the archive has of a release. Debian's own source list may be without deb-src lines, so one is made of the
# places the binary packages come from. SIGNED_BY is not among the fields apt tells, so the archive's own keyring
# is named.
fetch() {
    local release=$1 top=$PWD/$work
    rm -rf "$work"
    mkdir -p "$work/lists/partial" "$work/archives/partial"
    apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' |
        sort -u | awk -v codename="$own_release" -v release="$release" -v ring=/usr/share/keyrings/debian-archive-keyring.gpg \
            '$2 == codename && $3 == "main" { print "deb-src [signed-by=" ring "] " $1 " " release " " $3 }' >"$work/source.list"
    local only_sources=(-o "Dir::Etc::sourcelist=$top/source.list" -o Dir::Etc::sourceparts=- -o "Dir::State::Lists=$top/lists"
        -o "Dir::Cache::archives=$top/archives" -o "Dir::Cache::srcpkgcache=" -o "Dir::Cache::pkgcache="
        -o APT::Sandbox::User= -o Debug::NoLocking=1)
    apt-get "${only_sources[@]}" update -q
    (cd "$work" && apt-get "${only_sources[@]}" source -q libzip)
}

fetch_from_first() {
    local release status
    compgen -G "$work/libzip-*/CMakeLists.txt" >/dev/null && return
    for release in "${releases[@]}"; do
        logged "fetch-$release" fetch "$release"
        [ "$status" != 0 ] || return 0
        grep -E '^E: ' "$out/fetch-$release.log" >&2 || true
        printf 'libzip: the source package of %s cannot be had\n' "$release" >&2
    done
    printf 'libzip: Quillon needs the source package of %s; is the package archive reached? See %s\n' \
        "${releases[*]}" "$out/fetch-${releases[0]}.log" >&2
    return 1
}

build() {
    local architecture=$1 triplet=$2 processor=$3 off=() option
    local build=$work/$architecture
    for option in BZIP2 LZMA ZSTD COMMONCRYPTO GNUTLS MBEDTLS OPENSSL WINDOWS_CRYPTO; do off+=("-DENABLE_$option=OFF"); done
    for option in TOOLS REGRESS OSSFUZZ EXAMPLES DOC; do off+=("-DBUILD_$option=OFF"); done
    rm -rf "$build" "${out:?}/$architecture"
    cmake -G Ninja -S "$work"/libzip-*/ -B "$build" -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_SYSTEM_PROCESSOR="$processor" \
        -DCMAKE_C_COMPILER="$triplet-gcc-win32" -DCMAKE_RC_COMPILER="$triplet-windres" -DCMAKE_FIND_ROOT_PATH="/usr/$triplet" \
        -DCMAKE_FIND_ROOT_PATH_MODE_PROGRAM=NEVER -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY \
        -DCMAKE_BUILD_TYPE=MinSizeRel -DBUILD_SHARED_LIBS=OFF -DZLIB_LIBRARY="/usr/$triplet/lib/libz.a" \
        -DZLIB_INCLUDE_DIR="/usr/$triplet/include" \
        -DCMAKE_C_FLAGS="${4:-} -ffunction-sections -fdata-sections -Wno-error=incompatible-pointer-types" \
        -DCMAKE_INSTALL_PREFIX="$PWD/$out/$architecture.new" -DCMAKE_INSTALL_LIBDIR=lib "${off[@]}"
    cmake --build "$build" -j2
    cmake --install "$build"
    local archive=$out/$architecture.new/lib/libzip.a
    "$triplet-ar" t "$archive" | grep -E '^zip_source_(file|win32)' | xargs "$triplet-ar" d "$archive"
    "$triplet-ranlib" "$archive"
    mv "$out/$architecture.new" "$out/$architecture"
}

# Sets `status`. Not `"$@" || ...`: in a condition the shell would go on after a failing command of the step.
logged() {
    local log=$out/$1.log
    shift
    set +e
    (
        set -e
        "$@"
    ) >"$log" 2>&1
    status=$?
    set -e
}

build_logged() {
    local status log=build-$1
    logged "$log" build "$@"
    [ "$status" != 0 ] || return 0
    tail -n 40 "$out/$log.log" >&2
    printf 'libzip: failed; the whole log is in %s\n' "$out/$log.log" >&2
    return 1
}

main() {
    if finished x86 && finished x64; then return; fi
    mkdir -p "$out"
    fetch_from_first
    printf 'libzip: building %s for x86 and x64\n' "$(basename "$work"/libzip-*/)"
    finished x86 || build_logged x86 i686-w64-mingw32 x86 '-march=i686 -mno-sse'
    finished x64 || build_logged x64 x86_64-w64-mingw32 AMD64
    rm -rf "$work"
}

main
