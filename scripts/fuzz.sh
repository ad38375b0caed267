#!/usr/bin/env bash
# Runs every fuzzer, from its seeds on (tests/native/fuzz/seeds), and tells how many inputs each has executed.
#
#     scripts/fuzz.sh                       60 seconds in all
#     scripts/fuzz.sh --seconds 600         so long each
#     scripts/fuzz.sh --inputs 50000000     until so many inputs are done
set -euo pipefail
cd "$(dirname "$0")/.."

sources=(tests/native/fuzz/*.cpp)
limit=-max_total_time=$((60 / ${#sources[@]}))
case ${1:-} in
--seconds) limit=-max_total_time=$2 ;;
--inputs) limit=-runs=$2 ;;
'') ;;
*)
    printf 'usage: fuzz.sh [--seconds N | --inputs N]\n' >&2
    exit 2
    ;;
esac

cmake --preset native >/dev/null
logs=build/test-logs
mkdir -p "$logs"
failed=0
for source in "${sources[@]}"; do
    seeds=tests/native/fuzz/seeds/$(basename "$source" .cpp)
    name=fuzz_$(basename "$source" .cpp)
    cmake --build --preset native --target "$name" >"$logs/$name.build.log" || { cat "$logs/$name.build.log"; exit 1; }
    mkdir -p "build/native/corpus/$name"
    status=0
    "build/native/tests/native/$name" "$limit" -max_len=4096 -print_final_stats=1 -verbosity=1 \
        -artifact_prefix="$logs/$name-" "build/native/corpus/$name" "$seeds" >"$logs/$name.log" 2>&1 || status=$?
    executed=$(sed -n 's/^stat::number_of_executed_units: *//p' "$logs/$name.log")
    if [ $status = 0 ]; then
        printf '%s: %s inputs executed, nothing found\n' "$name" "$executed"
    else
        printf '%s: FAILED after %s inputs; see %s\n' "$name" "${executed:-?}" "$logs/$name.log"
        failed=1
    fi
done
exit $failed
