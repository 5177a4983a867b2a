#!/usr/bin/env bats
# The log: what --log writes.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

# fails_to_append REASON LOG: the monitor ends with status 1 and this reason, after a row.
fails_to_append() {
    local reason=$1
    shift
    run --separate-stderr -1 timeout 20 "$MONITOR" --interval 0.001 --log "$@"
    [ "$stderr" = "monitor: cannot append to $1$reason" ]
    [[ ${lines[0]} =~ $HEADER ]]
    [[ ${lines[1]} =~ $ROW ]]
}

# fails_to_open LOG REASON: the monitor ends with status 1 and this reason alone.
fails_to_open() {
    run --separate-stderr -1 timeout 10 "$MONITOR" --count 1 --log "$1"
    [ "$output" = "" ]
    [ "$stderr" = "monitor: cannot open $1: $2" ]
}

@test "a log gets one line for each row, and its replay is the same table" {
    "$MONITOR" --interval 0.05 --count 20 --log log >table
    [ "$(wc -l <log)" -eq 20 ]
    run ! grep -Evn "$LINE" log
    run --separate-stderr -0 "$MONITOR" --replay log
    [ "$stderr" = "" ]
    diff table - <<<"$output"
}

@test "a replay shows times in the zone asked for" {
    "$MONITOR" --interval 0.05 --count 3 --offset -05:30 --log log >table
    run -0 "$MONITOR" --replay log --offset -05:30
    diff table - <<<"$output"
}

@test "null values have no pair, and a replay shows them as null" {
    run --separate-stderr -0 "$MONITOR" --interval 0.01 --count 2 --path /nowhere --log log
    table=$output
    run ! grep -Evn "$LINE_WITHOUT_DISK" log
    run --separate-stderr -0 "$MONITOR" --replay log
    [ "$stderr" = "" ]
    [ "$output" = "$table" ]
}

@test "readings are appended to a log" {
    printf 'here before\n' >log
    "$MONITOR" --interval 0.01 --count 1 --log log
    "$MONITOR" --interval 0.01 --count 2 --log log
    [ "$(wc -l <log)" -eq 4 ]
    [ "$(head -n 1 log)" = "here before" ]
    run ! grep -Evn "$LINE" <(tail -n +2 log)
}

@test "a partial line at the end of a log remains a line of its own" {
    printf 'time=2026-11-21T15:21:35.790Z cp' >log
    "$MONITOR" --interval 0.01 --count 2 --log log
    [ "$(wc -l <log)" -eq 3 ]
    [ "$(head -n 1 log)" = "time=2026-11-21T15:21:35.790Z cp" ]
    run ! grep -Evn "$LINE" <(tail -n +2 log)
    run --separate-stderr -1 "$MONITOR" --replay log
    [ "$stderr" = "monitor: log:1: not a line of name=value pairs" ]
}

@test "each line is in the log as soon as it is in the table" {
    "$MONITOR" --interval 0.2 --log log >table 3>&- &
    pid=$!
    await_lines table 2
    : >>log
    await_lines log 1
    kill -INT "$pid"
    wait "$pid"
    [ "$(wc -l <log)" -eq "$(($(wc -l <table) - 1))" ]
}

@test "a full disk leaves no part of a line in the log" {
    # Room for the line in the file and some bytes of the next line.
    printf '%01000d\n' 0 >before
    cp before log
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --interval 0.001 --log log' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot append to log: File too large" ]
    cmp before log
    # The newline that would end a partial line is removed too.
    printf '%01024d' 0 >before
    cp before log
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --interval 0.001 --log log' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot append to log: File too large" ]
    cmp before log
}

@test "a log without room ends the program" {
    fails_to_append ': No space left on device' /dev/full
}

@test "a log that is a pipe without a reader ends the program" {
    mkfifo pipe
    head -c 1 pipe >byte &
    fails_to_append ': Broken pipe' pipe
    [ "$(cat byte)" = t ]
}

@test "a log that is a pipe gets each line" {
    run --separate-stderr -0 "$MONITOR" --interval 0.01 --count 3 --log >(cat >log)
    until [ "$(wc -l <log)" -eq 3 ]; do sleep 0.05; done
    run ! grep -Evn "$LINE" log
}

@test "an interrupted monitor ends though its log's reader has stopped reading" {
    mkfifo pipe
    exec 4<>pipe
    run ! dd if=/dev/zero of=pipe bs=4096 oflag=nonblock # until the pipe is full
    "$MONITOR" --interval 0.001 --log pipe >table 3>&- 4>&- &
    pid=$!
    await_lines table 2
    sleep 0.2
    kill -TERM "$pid"
    wait "$pid"
    exec 4<&-
}

# ends_when_its_log COMMAND...: the monitor ends when a command has removed or replaced its log.
ends_when_its_log() {
    "$MONITOR" --interval 0.05 --count 200 --log log >table 2>messages 3>&- &
    pid=$!
    await_lines table 2
    "$@"
    status=0
    wait "$pid" || status=$?
    [ "$status" -eq 1 ]
    reason="the file was removed, renamed or replaced"
    [ "$(cat messages)" = "monitor: cannot append to log: $reason" ]
}

@test "a log that is removed ends the program" {
    ends_when_its_log rm log
    [ ! -e log ]
}

@test "a log that is renamed ends the program, and keeps its lines" {
    ends_when_its_log mv log log.1
    [ ! -e log ]
    [[ $(head -n 1 log.1) =~ $LINE ]]
}

@test "a log that is replaced ends the program" {
    printf 'mine\n' >"$BATS_TEST_TMPDIR/mine"
    ends_when_its_log mv mine log
    [ "$(cat log)" = mine ]
}

@test "a log that cannot be opened is reported before the first row" {
    mkdir folder
    : >file
    fails_to_open folder 'Is a directory'
    fails_to_open nowhere/log 'No such file or directory'
    fails_to_open file/log 'Not a directory'
}

@test "a log that another program locks ends the program" {
    : >log
    exec 4<log
    flock -s 4
    fails_to_append ': another program locks it' log 4<&-
    [ ! -s log ]
    # A short lock does no harm.
    (sleep 0.3) 3>&- & # keeps the lock after this shell has closed the file
    exec 4<&-
    run -0 "$MONITOR" --interval 0.001 --count 1 --log log
    [ "$(wc -l <log)" -eq 1 ]
}

@test "several monitors append to one log" {
    for _ in 1 2 3 4; do
        "$MONITOR" --interval 0.001 --count 200 --log log >/dev/null 3>&- &
    done
    wait
    [ "$(wc -l <log)" -eq 800 ]
    run ! grep -Evn "$LINE" log
}

@test "a monitor locks its log for no longer than a line takes" {
    "$MONITOR" --interval 0.05 --log log >/dev/null 3>&- &
    pid=$!
    : >>log
    await_lines log 1
    run --separate-stderr -0 "$MONITOR" --interval 0.001 --count 1 --log log
    [ "$stderr" = "" ]
    kill -TERM "$pid"
    wait "$pid"
}
