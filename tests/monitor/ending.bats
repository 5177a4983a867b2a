#!/usr/bin/env bats
# How the program ends: by a signal, a closed pipe or a full disk.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

# interrupted_in_its_wait_by SIGNAL: ends a monitor that waits for an hour.
interrupted_in_its_wait_by() {
    "$MONITOR" --interval 3600 >table 2>messages 3>&- &
    pid=$!
    await_lines table 1
    kill "-$1" "$pid"
    wait "$pid"
    [ "$(wc -l <table)" -eq 1 ]
    [ ! -s messages ]
}

# A shell starts its background jobs with SIGINT ignored. The monitor must end all the same.
@test "SIGINT ends a wait, with status 0" {
    interrupted_in_its_wait_by INT
}

@test "SIGTERM ends a wait, with status 0" {
    interrupted_in_its_wait_by TERM
}

@test "an interrupted table ends with a whole row" {
    "$MONITOR" --interval 0.001 >table 3>&- &
    pid=$!
    await_lines table 50
    kill -INT "$pid"
    wait "$pid"
    [ "$(tail -c 1 table)" = "" ]
    [[ $(tail -n 1 table) =~ $ROW ]]
    run ! grep -Evn "$ROW" <(tail -n +2 table)
}

@test "an interrupted monitor ends though its reader has stopped reading" {
    mkfifo pipe
    exec 4<>pipe
    run ! dd if=/dev/zero of=pipe bs=4096 oflag=nonblock # until the pipe is full
    "$MONITOR" --interval 0.001 >pipe 3>&- 4>&- &
    pid=$!
    # SIGINT and SIGTERM are blocked: the monitor has begun to wait.
    until grep -q '^SigBlk:.*4002$' "/proc/$pid/status"; do sleep 0.05; done
    sleep 0.2
    kill -TERM "$pid"
    wait "$pid"
    exec 4<&-
}

@test "a full disk ends it with a message and status 1" {
    for options in '--count 3 --interval 0.05' --help --version; do
        # shellcheck disable=SC2086 # the options are words
        run --separate-stderr -1 bash -c '"$@" >/dev/full' bash "$MONITOR" $options
        [ "$stderr" = "monitor: cannot write to standard output: No space left on device" ]
    done
}

@test "a file that may not grow ends it with a message and status 1" {
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --interval 0.001 >table' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write to standard output: File too large" ]
}

@test "a closed pipe ends it with a message and status 1" {
    { env --default-signal=PIPE "$MONITOR" --interval 0.05 2>messages || echo $? >status; } |
        head -n 2 >table
    [ "$(cat status)" = 1 ]
    [ "$(cat messages)" = "monitor: cannot write to standard output: Broken pipe" ]
    [[ $(tail -n 1 table) =~ $ROW ]]
}

@test "a closed standard output ends it with a message and status 1" {
    run --separate-stderr -1 bash -c '"$1" --count 1 --interval 0.001 >&-' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write to standard output: Bad file descriptor" ]
    run --separate-stderr -1 bash -c '"$1" --count 1 --interval 0.001 <&- >&-' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write to standard output: Bad file descriptor" ]
    run -0 bash -c '"$1" --count 1 --interval 0.001 --path /nowhere 2>&-' bash "$MONITOR"
    [[ ${lines[1]} =~ $ROW_WITHOUT_DISK ]]
}
