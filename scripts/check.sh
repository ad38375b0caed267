#!/usr/bin/env bash
# Rules that no compiler checks. Looks at the sources and at the finished builds (scripts/build.sh).
# Its last line is `N passed, N failed, N skipped`.
set -uo pipefail
cd "$(dirname "$0")/.." || exit

product=(app report startup files support helmkit plugin resources)
. scripts/rules.sh

sources() { find "$@" \( -name '*.cpp' -o -name '*.h' \) -print0; }

formatted() { sources "${product[@]}" win32 tests bench | xargs -0 clang-format --dry-run -Werror; }

cppcheck_finds_nothing() {
    cppcheck -q -j2 --enable=warning,performance,portability --library=windows --std=c++20 --platform=win64 -I. \
        --suppressions-list=scripts/cppcheck-suppressions.txt --error-exitcode=1 "${product[@]}" win32
}

# The sources that compile natively are those that the native tests need; clang does not know the others' headers.
clang_tidy_finds_nothing() {
    cmake --preset native >/dev/null || return
    local files
    mapfile -t files < <(python3 -c 'import json; print(*(row["file"] for row in json.load(open("build/native/compile_commands.json"))), sep="\n")' |
        grep -v '/tests/' | sort -u)
    [ ${#files[@]} -gt 0 ] || { echo 'no sources found'; return 1; }
    clang-tidy --quiet -p build/native "${files[@]}" 2>/dev/null
}

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

# Neither is version.dll, which Windows 98 has, but which no Windows since Vista takes from its own folder first.
planting_is_checked() {
    local folder found=
    folder=$(mktemp -d)
    printf '#include <windows.h>\nint main() { return VerQueryValueA(nullptr, "", nullptr, nullptr); }\n' >"$folder/version.cpp"
    i686-w64-mingw32-g++-win32 -static "$folder/version.cpp" -lversion -o "$folder/Quillon.exe" &&
        tee "$folder"/{QuillonReport.exe,Helmkit.dll,QLNCustom.dll} <"$folder/Quillon.exe" >/dev/null &&
        found=$(scripts/check-imports.py --product "$folder")
    rm -rf "$folder"
    [[ $found == *'could be taken from beside the program: version.dll!VerQueryValueA'* ]]
}

# An executable that asks for a newer system is refused before its first instruction. No 64-bit Windows for this processor
# is older than 5.2.
asks_for_4_0() { wants_version 4 0 dist/x86/*.exe dist/x86/*.dll; }
asks_for_5_2() { wants_version 5 2 dist/x64/*.exe dist/x64/*.dll; }

# Random addresses, no execution of data, and on a terminal server no compatibility layer.
asks_for_protection() {
    local file header flag
    for file in dist/x86/*.exe dist/x86/*.dll dist/x64/*.exe dist/x64/*.dll; do
        header=$(x86_64-w64-mingw32-objdump -p "$file" | sed -n '/^DllCharacteristics/,/^SizeOfStack/p')
        for flag in DYNAMIC_BASE NX_COMPAT TERMINAL_SERVICE_AWARE $([[ $file == dist/x64/* ]] && echo HIGH_ENTROPY_VA); do
            grep -q "$flag" <<<"$header" || { printf '%s lacks %s\n' "$file" "$flag"; return 1; }
        done
    done
}

# Without the flag no object would ask for the function that ends an overrun program.
looks_at_its_stack() {
    local architecture folder objects
    for architecture in x86:i686 x64:x86_64; do
        for folder in "${product[@]}" win32; do
            mapfile -d '' -t objects < <(find "build/${architecture%:*}/$folder" -name '*.obj' -print0 2>/dev/null)
            "${architecture#*:}-w64-mingw32-nm" --undefined-only "${objects[@]}" | grep ' _*__stack_chk_fail$' >/dev/null && continue
            printf 'no function of build/%s/%s looks at its stack\n' "${architecture%:*}" "$folder"
            return 1
        done
    done
}

# Boxes, menus and pages take the user's own font; a face named here might be missing on another Windows.
no_named_faces() { ! sources "${product[@]}" win32 | xargs -0 grep -nE 'lfFaceName|FONT +[0-9]+,|CreateFont[AW]?\('; }

# Beside entries and exports, a source without a header of its name hides what it offers in another's.
paired_names() {
    local source alone=0
    for source in $(git ls-files 'app/*.cpp' 'startup/*.cpp' 'files/*.cpp' 'resources/*.cpp' 'support/*.cpp' \
        'helmkit/*.cpp' 'plugin/*.cpp' 'win32/*.cpp'); do
        case $source in
        */main.cpp | */dll.cpp | */exports.cpp | report/format_*.cpp | win32/base/runtime_*.cpp | win32/base/static_guard.cpp) continue ;;
        esac
        [ -f "${source%.cpp}.h" ] || { printf '%s has no header of its name\n' "$source"; alone=1; }
    done
    [ $alone = 0 ]
}

no_machine_paths() { ! git grep -nIE '(^|[^A-Za-z0-9_.])/(home|work|Users)/[a-z.]' -- . ':!scripts/check.sh'; }

rule 'sources are formatted' formatted
rule 'cppcheck finds nothing' cppcheck_finds_nothing
rule 'clang-tidy finds nothing' clang_tidy_finds_nothing
rule 'no TCHAR, TEXT or UNICODE outside win32/' no_flavour_words
rule 'no A or W function called outside win32/' no_flavour_calls
rule 'the 32-bit files import what Windows 98 and 2000 have, what fails on 98 explained' imports_of_32bit
rule 'the 64-bit files import what XP x64 has' imports_of_64bit
rule 'a program that imports GetTickCount64 is refused' imports_are_checked
rule 'a program that imports version.dll is refused' planting_is_checked
rule 'the 32-bit files ask for Windows 4.0' asks_for_4_0
rule 'the 64-bit files ask for Windows 5.2' asks_for_5_2
rule 'the files ask for what protects them' asks_for_protection
rule 'the product looks at its stack before it returns' looks_at_its_stack
rule 'the manifests are as Windows XP to 11 want them' scripts/check-manifests.py dist/x86 dist/x64
rule 'no font face is named' no_named_faces
rule 'no include against the arrows between the folders (scripts/arrows.py)' scripts/arrows.py
rule 'the picture of the folders is drawn from the same table' scripts/arrows.py --drawn
rule 'header and source bear one name' paired_names
rule 'no path of a developer machine in the tree' no_machine_paths

tell_rules
