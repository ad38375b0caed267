#!/usr/bin/env bash
# Tries Quillon on a fresh machine: makes a bare Debian in build/debian, clones the last commit into it and runs the
# README's two commands there, or another one. Needs root, debootstrap and network; takes about an hour.
#
#     scripts/on-debian.sh 12 | 13 [COMMAND]
#
# The fresh machine has mounts and processes of its own, in namespaces that end with this script, however it ends.
# Its files stay behind for a look at them (build/debian/13/root/quillon/build/test-logs) until the next time.
set -euo pipefail
cd "$(dirname "$0")/.."

case ${1:-} in
12) codename=bookworm ;;
13) codename=trixie ;;
*)
    printf 'usage: on-debian.sh 12 | 13 [COMMAND]\n' >&2
    exit 2
    ;;
esac
release=$1
shift
[ $# -gt 0 ] || set -- './run.sh' './test.sh'
root=$PWD/build/debian/$release

complain() {
    printf 'on-debian: %s\n' "$1" >&2
    exit 1
}

[ "$(id -u)" = 0 ] || complain 'only root can make a system of its own'
command -v debootstrap >/dev/null || complain 'the package debootstrap is missing'

# Where this machine gets Debian from; debootstrap knows a place itself. One with a password in it stays here.
mirror() {
    apt-get indextargets --format '$(ORIGIN) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' 2>/dev/null |
        awk '$1 == "Debian" && $2 == "main" && $3 !~ /@|security/ { print $3; exit }'
}

make_root() {
    local log=$root.log from
    from=$(mirror)
    printf 'on-debian: making a bare Debian %s in %s\n' "$release" "build/debian/$release"
    rm -rf --one-file-system "$root"
    debootstrap --variant=minbase "$codename" "$root" ${from:+"$from"} >"$log" 2>&1 || {
        tail -n 20 "$log" >&2
        complain "debootstrap failed; the whole log is in $log"
    }
    # Without waiting for the disk after each file: this system need not outlive a power failure.
    echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/unsafe-io"
    git -c advice.detachedHead=false clone -q --depth 1 "file://$PWD" "$root/root/quillon"
}

# In a clean environment, but for the way to the network. The shell stays there while the command runs: it is the
# first process of its namespace, which has to take care of orphans.
inside() {
    local proxy way=() status=0
    for proxy in http_proxy https_proxy no_proxy; do [ -z "${!proxy:-}" ] || way+=("$proxy=${!proxy}"); done
    setpriv --pdeathsig KILL unshare --mount --propagation private --pid --fork --kill-child --ipc \
        bash -c 'mount -t proc proc "$0/proc" && mount --rbind /dev "$0/dev" && mount -t tmpfs tmpfs "$0/dev/shm" &&
            exec chroot "$0" /usr/bin/env -i "${@:2}" bash -c "cd /root/quillon && $1; exit \$?"' \
        "$root" "$1" HOME=/root TERM=dumb PATH=/usr/sbin:/usr/bin:/sbin:/bin "${way[@]}" <&0 9>&- &
    machine=$!
    wait "$machine" || status=$?
    machine=
    return $status
}

mkdir -p build/debian
exec 9>"$root.lock"
flock -n 9 || complain "another one is at work in $root"
machine=
trap '[ -z "$machine" ] || kill -KILL "$machine" 2>/dev/null || true' EXIT
trap 'exit 130' INT TERM HUP
make_root
printf 'on-debian: commit %s\n' "$(git rev-parse --short HEAD)"
failed=0
for command in "$@"; do
    printf '\non-debian: Debian %s: %s\n' "$release" "$command"
    began=$SECONDS status=0
    inside "$command" || status=$?
    results+=("$(printf 'on-debian: Debian %s: %s ended with %d after %d s' "$release" "$command" "$status" $((SECONDS - began)))")
    [ "$status" = 0 ] || failed=1
done
printf '\n'
printf '%s\n' "${results[@]}"
exit $failed
