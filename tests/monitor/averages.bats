#!/usr/bin/env bats
# The row of averages.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

@test "averages are in a last row" {
    run --separate-stderr -0 "$MONITOR" --interval 0.1 --count 3 --average uptime,memory
    [ "$stderr" = "" ]
    [ "${#lines[@]}" -eq 5 ]
    [[ ${lines[4]} =~ $AVERAGE\ +$NUMBER\ +$UPTIME$ ]]
    [ "${#lines[4]}" -eq "${#lines[0]}" ]
    # Three intervals, and the delay of the last reading.
    [[ ${lines[4]} =~ ([0-9]+)\.([0-9]{3}) ]]
    covered=$((10#${BASH_REMATCH[1]}${BASH_REMATCH[2]}))
    ((covered >= 290 && covered < 5000))
}

@test "a single reading is its own average" {
    run --separate-stderr -0 "$MONITOR" --interval 0.05 --count 1 \
        --average cpu,memory,disk,free,uptime
    [[ ${lines[2]} =~ $AVERAGE ]]
    [ "${lines[2]:24}" = "${lines[1]:24}" ]
}

@test "averages of null values are null" {
    run --separate-stderr -0 "$MONITOR" --interval 0.01 --count 2 --path /nowhere \
        --average disk,free
    [[ ${lines[3]} =~ $AVERAGE\ +null\ +null$ ]]
}

@test "an interrupted monitor ends with its averages" {
    for signal in INT TERM; do
        rm -f table # the next monitor makes it, and does so after it has begun
        "$MONITOR" --interval 0.05 --average cpu >table 3>&- &
        pid=$!
        await_lines table 3
        kill "-$signal" "$pid"
        wait "$pid"
        [[ $(tail -n 1 table) =~ $AVERAGE\ +$NUMBER$ ]]
    done
}

@test "without a reading there is no last row" {
    "$MONITOR" --interval 3600 --average cpu >table 3>&- &
    pid=$!
    await_lines table 1
    kill -INT "$pid"
    wait "$pid"
    [ "$(wc -l <table)" -eq 1 ]
}

@test "an interrupted monitor with averages ends though its reader has stopped reading" {
    mkfifo pipe
    exec 4<>pipe
    "$MONITOR" --interval 0.001 --average cpu >pipe 3>&- 4>&- &
    pid=$!
    until grep -q '^SigBlk:.*4002$' "/proc/$pid/status"; do sleep 0.05; done
    sleep 2 # until the pipe is full: 800 rows are 64 KiB
    kill -TERM "$pid"
    wait "$pid"
    exec 4<&-
}
