#!/usr/bin/env bash
# Rules that no compiler checks. Looks at the sources and at the finished builds (scripts/build.sh).
# Its last line is `N passed, N failed, N skipped`.
set -uo pipefail
cd "$(dirname "$0")/.." || exit

product=(app report startup files support helmkit plugin resources)
passed=0 failed=0

rule() {
    local name=$1
    shift
    if "$@"; then
        passed=$((passed + 1))
        printf 'ok    %s\n' "$name"
    else
        failed=$((failed + 1))
        printf 'FAIL  %s\n' "$name"
    fi
}

sources() { find "$@" \( -name '*.cpp' -o -name '*.h' \) -print0; }

formatted() { sources "${product[@]}" win32 tests bench | xargs -0 clang-format --dry-run -Werror; }

# The choice between ANSI and wide functions belongs to win32/ alone.
no_flavour_words() {
    ! sources "${product[@]}" | xargs -0 grep -nHE '\bTCHAR\b|\bTEXT\(|\b_T\(|\bUNICODE\b'
}

# What the compiler made of the sources tells it better than their text: no import that ends in A or W.
no_flavour_calls() {
    local folder objects found
    for folder in "${product[@]}"; do
        mapfile -d '' -t objects < <(find "build/x86/$folder" -name '*.obj' -print0 2>/dev/null)
        if [ ${#objects[@]} = 0 ]; then
            printf 'no object files of %s: build it first (scripts/build.sh x86)\n' "$folder"
            return 1
        fi
        found=$(i686-w64-mingw32-nm -A --undefined-only "${objects[@]}" | grep -E ' (__imp_)?_[A-Z][A-Za-z0-9]*[a-z][AW]@[0-9]+$')
        [ -z "$found" ] || { printf '%s\n' "$found"; return 1; }
    done
}

imports_of_32bit() { scripts/check-imports.py --product dist/x86; }
imports_of_64bit() { scripts/check-imports.py --product dist/x64; }

# A check that finds nothing wrong anywhere proves nothing: GetTickCount64 came with Windows Vista.
imports_are_checked() {
    local folder found=
    folder=$(mktemp -d)
    printf 'extern "C" __declspec(dllimport) unsigned long long __stdcall GetTickCount64();\nint main() { return (int)GetTickCount64(); }\n' >"$folder/newer.cpp"
    i686-w64-mingw32-g++-win32 -static "$folder/newer.cpp" -o "$folder/newer.exe" &&
        found=$(scripts/check-imports.py "$folder/newer.exe")
    rm -rf "$folder"
    [[ $found == *'missing on Windows 98: kernel32.dll!GetTickCount64'* ]]
}

# An executable that asks for a newer subsystem is refused before its first instruction.
subsystem_4() {
    local file header
    for file in dist/x86/*.exe dist/x86/*.dll; do
        header=$(i686-w64-mingw32-objdump -p "$file")
        grep -qE '^MajorSubsystemVersion[[:space:]]+4$' <<<"$header" && continue
        printf '%s does not ask for subsystem version 4\n' "$file"
        return 1
    done
}

no_machine_paths() { ! git grep -nIE '(^|[^A-Za-z0-9_.])/(home|work|Users)/[a-z.]' -- . ':!scripts/check.sh'; }

rule 'sources are formatted' formatted
rule 'no TCHAR, TEXT or UNICODE outside win32/' no_flavour_words
rule 'no A or W function called outside win32/' no_flavour_calls
rule 'the 32-bit files import what Windows 98 and 2000 have, what fails on 98 explained' imports_of_32bit
rule 'the 64-bit files import what XP x64 has' imports_of_64bit
rule 'a program that imports GetTickCount64 is refused' imports_are_checked
rule 'the 32-bit files ask for subsystem 4.0' subsystem_4
rule 'no path of a developer machine in the tree' no_machine_paths

printf '%d passed, %d failed, 0 skipped\n' "$passed" "$failed"
[ "$failed" = 0 ]
