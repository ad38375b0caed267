# Read by the scripts that check rules: counting, and what several of them look at.
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

tell_rules() {
    printf '%d passed, %d failed, 0 skipped\n' "$passed" "$failed"
    [ "$failed" = 0 ]
}

# wants_version MAJOR MINOR FILE...: whether each asks Windows for this version, as subsystem and as operating system.
wants_version() {
    local major=$1 minor=$2 file header field
    shift 2
    for file in "$@"; do
        header=$(x86_64-w64-mingw32-objdump -p "$file")
        for field in "MajorSubsystemVersion $major" "MinorSubsystemVersion $minor" "MajorOSystemVersion $major" "MinorOSystemVersion $minor"; do
            grep -qE "^${field/ /[[:space:]]+}\$" <<<"$header" && continue
            printf '%s does not have %s\n' "$file" "$field"
            return 1
        done
    done
}
