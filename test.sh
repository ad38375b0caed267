#!/usr/bin/env bash
# Builds everything and runs every test. The last line is `N passed, N failed, N skipped`; the exit status is 0
# when nothing failed. What failed is told in full in build/test-logs.
set -uo pipefail
. "$(dirname "$0")/scripts/fixed-addresses.sh"
cd "$(dirname "$0")" || exit
. scripts/display.sh

logs=build/test-logs
table=()
passed=0 failed=0 skipped=0

give_up() {
    printf '%s\n0 passed, 1 failed, 0 skipped\n' "$1"
    exit 1
}

# A step runs with its output in a log of its own; what it counted is read from there afterwards, so that steps
# can run side by side.
step() {
    local name=$1 status=0 began=$SECONDS
    shift
    "$@" >"$logs/$name.log" 2>&1 || status=$?
    printf '%s\n' "$status" >"$logs/$name.status"
    printf '%s\n' $((SECONDS - began)) >"$logs/$name.seconds"
}

add() {
    table+=("$(printf '%-28s %7d %7d %7d %7s   %s' "$@")")
    passed=$((passed + $2)) failed=$((failed + $3)) skipped=$((skipped + $4))
}

# Counts in the forms that the steps print; a step without a count has failed, whatever its status says.
collect() {
    local name=$1 status counts
    status=$(cat "$logs/$name.status")
    counts=$(tr -d '\r' <"$logs/$name.log" | sed -nE \
        -e 's/^\[doctest\] test cases: *[0-9]+ \| *([0-9]+) passed \| *([0-9]+) failed \| *([0-9]+) skipped.*/\1 \2 \3/p' \
        -e 's/^([0-9]+) passed, ([0-9]+) failed, ([0-9]+) skipped$/\1 \2 \3/p' \
        -e 's/^fuzz_.*: ([0-9]+) inputs executed, nothing found$/1 0 0/p' \
        -e 's/^fuzz_.*: FAILED .*/0 1 0/p' |
        awk '{ p += $1; f += $2; s += $3; n++ } END { if (n) print p + 0, f + 0, s + 0 }')
    # A non-zero status counts as a failure even when the step counted none, and so does an empty run.
    local p=0 f=0 s=0 note=
    [ -z "$counts" ] || read -r p f s <<<"$counts"
    if [ "$status" != 0 ] && [ "$f" = 0 ]; then f=1; fi
    [ -n "$counts" ] && [ $((p + f + s)) -gt 0 ] || { f=1 note='nothing was counted'; }
    [ "$f" = 0 ] || note="$note see $logs/$name.log"
    add "$name" "$p" "$f" "$s" "$(cat "$logs/$name.seconds")" "$note"
}

skip() {
    printf '\n*** SKIPPED: %s: %s ***\n\n' "$1" "$2"
    add "$1" 0 0 "$3" - "SKIPPED: $2"
}

under_wine() {
    local prefix=$1
    shift
    WINEPREFIX=$PWD/build/wine/$prefix WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d' \
        LC_ALL=C.UTF-8 timeout 900 wine "$@"
}

doctest_under_wine() {
    local name=$1 program=$2 status=0
    shift 2
    scripts/wine-prefix.sh copy "$PWD/build/wine/$name" winxp unmanaged || return 1
    under_wine "$name" "$program" --no-colors=1 "$@" || status=$?
    scripts/wine-prefix.sh stop "$PWD/build/wine/$name"
    rm -rf "build/wine/$name"
    return $status
}

# A script in another language's hands: the registered library, called late bound by the script host.
script_under_wine() {
    local name=$1 architecture=$2 prefix=$PWD/build/wine/$1 output loader=wine
    # `wine` takes the 32-bit host where there are two.
    [ "$architecture" = x86 ] || loader=$(command -v wine64 || echo /usr/lib/wine/wine64)
    scripts/wine-prefix.sh copy "$prefix" winxp unmanaged || return 1
    output=$(
        cd "build/$architecture/com_tests" || exit
        export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d'
        "$loader" 'C:\windows\system32\regsvr32.exe' /s Helmkit.dll
        timeout 120 "$loader" 'C:\windows\system32\cscript.exe' //nologo helmkit.vbs
    )
    scripts/wine-prefix.sh stop "$prefix"
    rm -rf "$prefix"
    printf '%s\n' "$output"
    # The host's exit status is 0 after an error, too.
    if grep -q '^passed' <<<"$output"; then
        echo '1 passed, 0 failed, 0 skipped'
    else
        echo '0 passed, 1 failed, 0 skipped'
        return 1
    fi
}

# Every figure once, on little work: that the benchmark still builds, and that program and floors agree.
quick_benchmark() {
    local architecture=$1 status=0
    cmake --build --preset "$architecture" --target bench || return 1
    scripts/wine-prefix.sh copy "$PWD/build/wine/bench" winxp unmanaged || return 1
    under_wine bench "build/$architecture/bench/bench.exe" --quick && echo '1 passed, 0 failed, 0 skipped' || status=1
    scripts/wine-prefix.sh stop "$PWD/build/wine/bench"
    rm -rf build/wine/bench
    return $status
}

native() { cmake --build --preset native && build/native/tests/native/native_tests --no-colors=1; }

scripts/setup.sh || give_up 'test: the set-up failed'
began=$SECONDS
rm -rf "$logs"
mkdir -p "$logs"
scripts/wine-prefix.sh base || give_up 'test: no Wine prefix could be made'
scripts/build.sh x86 x64 || give_up 'test: the build failed'
python3 tests/fixtures/make.py build/fixtures || give_up 'test: the fixture programs could not be built'
cmake --preset native >"$logs/configure-native.log" 2>&1 || give_up "test: see $logs/configure-native.log"
printf 'test: built after %d s\n' $((SECONDS - began))

architectures=(x64)
combinations=(x64:win2k x64:winxp x64:win10)
if scripts/wine-prefix.sh has32; then
    architectures=(x86 x64)
    combinations=(x86:win98 x86:win2k x86:winxp x86:win10 "${combinations[@]}")
fi

start_display || give_up 'test: Xvfb did not start'
trap 'kill "$xvfb" 2>/dev/null' EXIT

# Beside each other: what runs natively and then the built program, in Windows and on displays of its own, and what runs
# inside one process, which keeps one processor busy.
{
    step native native
    step fuzz scripts/fuzz.sh
    step check scripts/check.sh
    step e2e python3 tests/e2e/run.py "${combinations[@]}"
} &
beside=$!
names=()
for architecture in "${architectures[@]}"; do
    tests=build/$architecture
    for flavour in wide ansi; do
        name=unit_tests-$architecture-$flavour
        step "$name" doctest_under_wine "$name" "$tests/tests/unit_tests.exe" "--flavour=$flavour"
        names+=("$name")
    done
    step "com_tests-$architecture" doctest_under_wine "com_tests-$architecture" "$tests/com_tests/com_tests.exe"
    step "script-$architecture" script_under_wine "script-$architecture" "$architecture"
    names+=("com_tests-$architecture" "script-$architecture")
done
step scripts python3 tests/scripts/run.py
step samples python3 tests/samples/run.py "${architectures[@]}"
step bench quick_benchmark "${architectures[0]}"
steps=(check scripts samples bench faults support_request report e2e)
if [ ${#architectures[@]} = 2 ]; then
    step windows98 scripts/windows98.sh
    steps+=(windows98)
fi
step faults scripts/faults.sh --faults=100
step support_request python3 tests/support_request/run.py "${architectures[@]}"
step report python3 tests/report/run.py "${combinations[@]}"
wait "$beside"

for name in native fuzz "${names[@]}" "${steps[@]}"; do collect "$name"; done
[ ${#architectures[@]} = 2 ] || {
    skip unit_tests-x86 'there is no 32-bit Wine here' 4
    skip support_request-x86 'there is no 32-bit Wine here' 61
    skip e2e-x86 'there is no 32-bit Wine here' 4
    skip windows98 'there is no 32-bit Wine here' 2
}

printf '\n'
for name in native "${names[@]}" "${steps[@]}"; do
    [ "$(cat "$logs/$name.status")" = 0 ] || { printf -- '--- the end of %s ---\n' "$logs/$name.log"; tail -n 60 "$logs/$name.log"; }
done
grep -hE '^e2e ' "$logs/e2e.log"
grep -hE '^fuzz_' "$logs/fuzz.log"
printf '\n%-28s %7s %7s %7s %7s\n' '' passed failed skipped seconds
printf '%s\n' "${table[@]}"
printf '\ntest: %d s without the set-up\n' $((SECONDS - began))
printf '%d passed, %d failed, %d skipped\n' "$passed" "$failed" "$skipped"
[ "$failed" = 0 ]
