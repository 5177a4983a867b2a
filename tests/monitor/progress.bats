#!/usr/bin/env bats
# What a terminal shows beside the table.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

@test "a terminal shows progress, which is erased in the end" {
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.1'
    erase=$'\r\033[K'
    [[ $output == *"${erase}"*"readings: 0 of 2; Ctrl-C ends"*"${erase}"[0-9]* ]]
    [[ $output == *"readings: 1 of 2; Ctrl-C ends"* ]]
    [[ $output == *"$erase" ]]
    # What remains of each line after its last erasure is the table.
    mapfile -t shown < <(sed -e 's/\r$//' -e 's/.*\r\x1b\[K//' <<<"$output")
    [ "${#shown[@]}" -eq 4 ]
    [[ ${shown[0]} =~ $HEADER ]]
    [[ ${shown[1]} =~ $ROW ]]
    [[ ${shown[2]} =~ $ROW ]]
    [ "${shown[3]}" = "" ]
}

@test "progress of readings without an end has no total" {
    run -0 on_terminal 'timeout -s INT 2 "$MONITOR" --interval 0.1 || [ $? -eq 124 ]'
    [[ $output == *"readings: 1; Ctrl-C ends"* ]]
}

@test "a message erases the progress line first" {
    mkdir here
    : >table
    run -0 on_terminal '
        (until [ "$(wc -l <table)" -ge 3 ]; do sleep 0.05; done; rmdir here) &
        "$MONITOR" --count 10 --interval 0.2 --path here >table'
    [[ $output == *$'Ctrl-C ends\033[?7h\r\033[Kmonitor: here: No such file or directory\r\n'* ]]
}

@test "progress goes to standard error alone" {
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.05 >table'
    [[ $output == *"readings: 1 of 2; Ctrl-C ends"* ]]
    [ "$(wc -l <table)" -eq 3 ]
    run ! grep -E 'readings|[[:cntrl:]]' table
}

@test "there is no progress without a terminal at standard error, or on a dumb terminal" {
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.05 2>/dev/null'
    [ "${#lines[@]}" -eq 3 ]
    [[ $output != *readings* && $output != *$'\033'* ]]
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.05' dumb
    [ "${#lines[@]}" -eq 3 ]
    [[ $output != *readings* && $output != *$'\033'* ]]
}

# The log comes through a pipe that pauses until the first rows are shown, and half a second more.
@test "a long replay shows how much is read, and erases it in the end" {
    write_log
    : >table
    run -0 on_terminal '
        (cat readings.log; until [ -s table ]; do sleep 0.05; done; sleep 0.5; cat readings.log) |
            "$MONITOR" --replay /dev/stdin >table'
    erase=$'\r\033[K'
    [[ $output == "$erase"*"read: 0 MiB"*"$erase" ]]
    [ "$(wc -l <table)" -eq 13 ]
    run ! grep -E 'read|[[:cntrl:]]' table
}

@test "a row erases the progress of a replay first" {
    write_log
    run -0 on_terminal '
        (cat readings.log; sleep 1; cat readings.log) | "$MONITOR" --replay /dev/stdin'
    mapfile -t shown < <(sed -e 's/\r$//' -e 's/.*\r\x1b\[K//' <<<"$output")
    [ "$(grep -c '^2026' <<<"$(printf '%s\n' "${shown[@]}")")" -eq 12 ]
    run ! grep read <<<"$(printf '%s\n' "${shown[@]}")"
}
