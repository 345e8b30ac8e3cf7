# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 Halvar Controller contributors
# SPDX-License-Identifier: Apache-2.0
#
# Shared by the commands at the top of the project: one line a step, the output of a step only when it fails.

# show_progress TITLE LOG: the last line of LOG behind TITLE, over and over, on the terminal.
show_progress() {
    local width
    width=$(stty size <&1 2>/dev/null | cut -d ' ' -f 2) || width=
    [ "${width:-0}" -gt 20 ] || width=80
    while sleep 0.3; do
        printf '\r\033[K%s: %.*s' "$1" $((width - ${#1} - 3)) "$(tail -n 1 "$2" | tr -d '\r\033')"
    done
}

# step TITLE COMMAND...: runs COMMAND; on a terminal its last line of output is shown while it runs.
step() {
    local title=$1 log start=$SECONDS status=0 progress=
    shift
    log=$(mktemp)
    if [ -t 1 ]; then
        show_progress "$title" "$log" &
        progress=$!
    fi
    # COMMAND stays in the foreground, so that an interrupt reaches it.
    "$@" >"$log" 2>&1 || status=$?
    if [ -n "$progress" ]; then
        kill "$progress" 2>/dev/null || true
        wait "$progress" 2>/dev/null || true
        printf '\r\033[K'
    fi
    if [ "$status" -ne 0 ]; then
        cat "$log" >&2
        echo "$title: failed (exit status $status)" >&2
    else
        echo "$title: done ($((SECONDS - start)) s)"
    fi
    rm -f "$log"
    return "$status"
}

# build PRESET [TARGET...]: configures and builds a preset.
build() {
    local preset=$1
    shift
    step "Configure ($preset)" cmake --preset "$preset"
    if [ $# -gt 0 ]; then
        step "Build ($preset)" cmake --build --preset "$preset" --target "$@"
    else
        step "Build ($preset)" cmake --build --preset "$preset"
    fi
}

# run_tests PRESET [CTEST-OPTION...]: its tests, one more at a time than there are processors, since many wait more than
# they compute. Prints the runner's closing line.
run_tests() {
    local preset=$1 log start=$SECONDS status=0 jobs=$(($(nproc) + 1))
    shift
    log=$(mktemp)
    if [ -t 1 ]; then
        ctest --preset "$preset" --parallel "$jobs" --progress "$@" || status=$?
    else
        ctest --preset "$preset" --parallel "$jobs" "$@" >"$log" 2>&1 || status=$?
        if [ "$status" -ne 0 ]; then cat "$log"; else grep -E 'tests passed|tests failed' "$log"; fi
    fi
    rm -f "$log"
    echo "Tests ($preset): exit status $status ($((SECONDS - start)) s)"
    return "$status"
}
