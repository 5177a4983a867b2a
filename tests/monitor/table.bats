#!/usr/bin/env bats
# The table of live readings.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

@test "three readings are a header and three rows of one width" {
    run --separate-stderr -0 "$MONITOR" --count 3 --interval 0.1
    [ "$stderr" = "" ]
    [ "${#lines[@]}" -eq 4 ]
    [[ ${lines[0]} =~ $HEADER ]]
    for row in "${lines[@]:1}"; do
        [[ $row =~ $ROW ]]
        [ "${#row}" -eq "${#lines[0]}" ]
    done
}

@test "each row follows one interval after the one before" {
    before=$(date +%s%3N)
    run --separate-stderr -0 "$MONITOR" --count 4 --interval 0.2
    ((${#lines[@]} == 5))
    for i in 1 2 3 4; do # a row may be early by what the clock is adjusted by
        (($(milliseconds "${lines[i]%% *}") - before >= i * 200 - 10))
    done
}

@test "times are those of the zone asked for" {
    for zone in Z:Z +00:00:Z +01:00:+0100 -05:30:-0530 +14:00:+1400; do
        before=$(date +%s%3N)
        run --separate-stderr -0 "$MONITOR" --count 1 --interval 0.001 --offset "${zone%:*}"
        after=$(date +%s%3N)
        time=${lines[1]%% *}
        [[ $time =~ ^$TIME ]]
        [ "${time:23}" = "${zone##*:}" ]
        moment=$(milliseconds "$time")
        ((moment >= before && moment <= after))
        [[ ${lines[0]} =~ $HEADER ]]
        [ "${#lines[1]}" -eq "${#lines[0]}" ]
    done
}

@test "a pipe sees each row at once" {
    exec 5< <(exec "$MONITOR" --interval 0.5 3>&-)
    pid=$!
    read -r -t 20 -u 5 header
    [[ $header =~ $HEADER ]]
    read -r -t 20 -u 5 row
    [[ $row =~ $ROW ]]
    exec 5<&-
    kill -TERM "$pid"
}

@test "the disk is that of the path" {
    # /proc has no blocks, so all of it is in use.
    run --separate-stderr -0 "$MONITOR" --count 1 --interval 0.001 --path /proc
    [[ ${lines[0]} =~ "free MiB" ]]
    [[ ${lines[1]} =~ ^${TIME}Z\ +$NUMBER\ +$NUMBER\ +100\.0\ +0\.0\ +$UPTIME$ ]]
}

@test "an unreadable path is reported once, and its values are null" {
    run --separate-stderr -0 "$MONITOR" --count 3 --interval 0.05 --path /nowhere/at/all
    [ "$stderr" = "monitor: /nowhere/at/all: No such file or directory" ]
    [ "${#lines[@]}" -eq 4 ]
    [[ ${lines[0]} =~ $HEADER ]]
    for row in "${lines[@]:1}"; do
        [[ $row =~ $ROW_WITHOUT_DISK ]]
        [ "${#row}" -eq "${#lines[0]}" ]
    done
}

@test "each change of a path's error is reported" {
    mkdir -p folder/there
    touch file
    # A link that is renamed into its place changes in one step.
    ln -s folder link-to-folder
    ln -s file link-to-file
    "$MONITOR" --interval 0.05 --path here/there >table 2>messages 3>&- &
    pid=$!
    await_row table "$ROW_WITHOUT_DISK"
    mv -T link-to-folder here
    await_row table "$ROW"
    mv -T link-to-file here
    await_row table "$ROW_WITHOUT_DISK"
    kill -TERM "$pid"
    wait "$pid"
    diff messages - <<'END'
monitor: here/there: No such file or directory
monitor: here/there: readable again
monitor: here/there: Not a directory
END
}
