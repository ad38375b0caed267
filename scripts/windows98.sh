#!/usr/bin/env bash
# Shows what Windows 98 would refuse of the finished 32-bit program (scripts/build.sh x86):
#
#     scripts/windows98.sh          one walk through everything that a user can do
#     scripts/windows98.sh --long   the walk, and every end-to-end case
#
# Each runs twice. Once with Wine's relay trace, which names the first call of each function that only exists on
# Windows 98; and once on imitations of its libraries (tests/windows98), where such a function fails and records its
# call. The last line is `N passed, N failed, N skipped`.
set -euo pipefail
cd "$(dirname "$0")/.."

case ${1:-} in
'' | --long) ;;
*)
    printf 'usage: windows98.sh [--long]\n' >&2
    exit 2
    ;;
esac

python3 tests/windows98/make.py build/windows98 dist/x86
ways=(x86:win98:trace x86:win98:imitation)
status=0
python3 tests/e2e/run.py --walk "${ways[@]}" | tee build/windows98/walk.log || status=1
if [ "${1:-}" = --long ]; then
    python3 tests/e2e/run.py "${ways[@]}" | tee build/windows98/cases.log || status=1
    cat build/windows98/{walk,cases}.log |
        awk '/^[0-9]+ passed, / { p += $1; f += $3; s += $5 } END { printf "%d passed, %d failed, %d skipped\n", p, f, s }'
fi
exit $status
