# shellcheck shell=bash
# Sourced first by a script that starts Wine: runs it once more with addresses that are not random, where that is allowed.
#
# The 64-bit loader of Wine 8 is linked to 0x7d000000, and Linux (seen with 6.18) puts its heap up to 1 GB behind it:
# once in some thousands of starts onto 0x7ffe0000, where every process has a page that it shares with Windows. Wine
# then ends with status 1 before any code of the program, and CreateProcess answers 1359. Where it is Wine's explorer
# that does not start, the program has no display.
if [ -z "${QUILLON_FIXED_ADDRESSES:-}" ]; then
    export QUILLON_FIXED_ADDRESSES=1
    ! setarch -R true 2>/dev/null || exec setarch -R "$BASH" "$0" "$@"
    printf '*** Addresses stay random here: once in some thousands Wine does not start a 64-bit program. ***\n'
fi
