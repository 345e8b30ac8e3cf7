# SPDX-FileCopyrightText: 2026 Halvar Controller contributors
# SPDX-License-Identifier: Apache-2.0
#
# Shared by the commands at the top of the project: one line a step, the output of a step only when it fails.

# step TITLE COMMAND...: runs COMMAND; on a terminal its last line of output is shown while it runs.
step() {
    local title=$1 log start status
    shift
    log=$(mktemp)
    start=$SECONDS
    if [ -t 1 ]; then
        "$@" >"$log" 2>&1 &
        local pid=$!
        while kill -0 "$pid" 2>/dev/null; do
            printf '\r\033[K%s: %.*s' "$title" $((${COLUMNS:-80} - ${#title} - 4)) "$(tail -n 1 "$log" | tr -d '\r\033')"
            sleep 0.3
        done
        status=0
        wait "$pid" || status=$?
        printf '\r\033[K'
    else
        status=0
        "$@" >"$log" 2>&1 || status=$?
    fi
    if [ "$status" -ne 0 ]; then
        cat "$log" >&2
        echo "$title: failed (exit status $status)" >&2
        rm -f "$log"
        return "$status"
    fi
    echo "$title: done ($((SECONDS - start)) s)"
    rm -f "$log"
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

# run_tests PRESET: all its tests, two or more at a time. Prints the runner's closing lines.
run_tests() {
    local preset=$1 log start status=0
    log=$(mktemp)
    start=$SECONDS
    if [ -t 1 ]; then
        ctest --preset "$preset" --parallel "$(nproc)" --progress --output-log "$log" || status=$?
    else
        ctest --preset "$preset" --parallel "$(nproc)" >"$log" 2>&1 || status=$?
        if [ "$status" -ne 0 ]; then cat "$log"; else grep -E 'tests passed|tests failed' "$log"; fi
    fi
    rm -f "$log"
    echo "Tests ($preset): exit status $status ($((SECONDS - start)) s)"
    return "$status"
}
