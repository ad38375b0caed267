# shellcheck shell=bash
# To be sourced. start_display starts a virtual display and names it in DISPLAY; the caller ends the process $xvfb.
start_display() {
    local pipe number=
    exec {pipe}< <(exec Xvfb -displayfd 1 -screen 0 1100x800x24 -nolisten tcp 2>/dev/null)
    xvfb=$!
    read -r -u "$pipe" number
    exec {pipe}<&-
    [ -n "$number" ] || return 1
    export DISPLAY=:$number
}
