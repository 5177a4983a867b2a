#!/usr/bin/env bats
# What examples/monitor does as a program. MONITOR is its path, LIBRARY_VERSION the version of the
# library that it was built with. Single quotes hold what another shell expands.
# shellcheck disable=SC2016

bats_require_minimum_version 1.5.0

NUMBER='[0-9]+\.[0-9]'
TIME='[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{3}'
UPTIME='[0-9]+\+[0-9]{2}:[0-9]{2}:[0-9]{2}'
ROW="^${TIME}Z +$NUMBER +$NUMBER +$NUMBER +$NUMBER +$UPTIME\$"
ROW_WITHOUT_DISK="^${TIME}Z +$NUMBER +$NUMBER +null +null +$UPTIME\$"
HEADER='^time +cpu %  memory %  disk %  free [MGTP]iB  uptime d\+hh:mm:ss$'
LINE="^time=${TIME}Z cpu=[0-9.]+ memory=[0-9.]+ disk=[0-9.]+ free=[0-9]+ uptime=[0-9]+\$"
LINE_WITHOUT_DISK="^time=${TIME}Z cpu=[0-9.]+ memory=[0-9.]+ uptime=[0-9]+\$"
AVERAGE='^average over [0-9]+\.[0-9]{3} s'
DATA=$BATS_TEST_DIRNAME/monitor_data

# Waits until a file has so many lines; a program that does not write them is a failure.
await_lines() {
    local tries
    for ((tries = 0; tries < 200; ++tries)); do
        if (($(wc -l <"$1") >= $2)); then return; fi
        sleep 0.05
    done
    echo "$1 has no $2 lines" >&2
    return 1
}

# The same for a last line of that form.
await_row() {
    local tries
    for ((tries = 0; tries < 200; ++tries)); do
        if tail -n 1 "$1" | grep -Eq "$2"; then return; fi
        sleep 0.05
    done
    echo "$1 has no row like $2" >&2
    return 1
}

# Options with which the monitor ends at once, with status 2 and this reason alone.
refuses() {
    local reason=$1
    shift
    run --separate-stderr -2 timeout 10 "$MONITOR" "$@"
    [ "$output" = "" ]
    # shellcheck disable=SC2154 # run sets it
    [ "$stderr" = "monitor: $reason"$'\n'"Try monitor --help." ]
}

# A monitor that appends to a log ends with status 1 and this reason, after a heading and a row.
fails_to_append() {
    local reason=$1
    shift
    run --separate-stderr -1 timeout 20 "$MONITOR" --interval 0.001 --log "$@"
    [ "$stderr" = "monitor: cannot append to $1$reason" ]
    [[ ${lines[0]} =~ $HEADER ]]
    [[ ${lines[1]} =~ $ROW ]]
}

# A monitor that cannot open its log ends with status 1 and this reason alone.
fails_to_open() {
    run --separate-stderr -1 timeout 10 "$MONITOR" --count 1 --log "$1"
    [ "$output" = "" ]
    [ "$stderr" = "monitor: cannot open $1: $2" ]
}

# Replays a log, and compares all that comes of it: status, table and messages.
replays() {
    local status=$1 name=$2
    shift 2
    run --separate-stderr "-$status" "$MONITOR" --replay "$@"
    diff "$DATA/$name.table" - <<<"$output"
    if [ "$status" -eq 0 ]; then
        [ "$stderr" = "" ]
    else
        diff "$DATA/$name.messages" - <<<"$stderr"
    fi
}

milliseconds() {
    date -d "$1" +%s%3N
}

# ---- help and options

@test "--help names every option, the forms of a zone, and the exit status" {
    run --separate-stderr -0 "$MONITOR" --help
    [ "$stderr" = "" ]
    for text in 'Usage: monitor [OPTIONS]' '--interval SECONDS' '--count NUMBER' '--path PATH' \
        '--offset ZONE' '--log FILE' '--replay FILE' '--average NAMES' '--help' '--version' 'Z, +hh:mm or -hh:mm' 'Exit status: 0'; do
        grep -qF -e "$text" <<<"$output"
    done
    run ! grep -E '.{81}' <<<"$output"
}

@test "the program's page shows the help as it is" {
    run -0 "$MONITOR" --help
    [[ $(<"$BATS_TEST_DIRNAME/../examples/monitor/README.md") == *$'monitor --help\n'"$output"$'\n```'* ]]
}

@test "--version names the program and the library" {
    run --separate-stderr -0 "$MONITOR" --version
    [ "$output" = "monitor 1.0.0, utillibrary $LIBRARY_VERSION" ]
    [ "$stderr" = "" ]
}

@test "an interval is refused unless it is a decimal number from a millisecond to a day" {
    for text in x '' ' 1' 1s 1e-1 0x1 nan inf -inf -1 -0.5 0 0.0009 86400.1 1e999 \
        999999999999999999999999; do
        refuses "--interval: \"$text\" is not a number of seconds from 0.001 to 86400" \
            --interval "$text"
        [ "$text" = "" ] || refuses \
            "--interval: \"$text\" is not a number of seconds from 0.001 to 86400" \
            "--interval=$text"
    done
}

@test "a count is refused unless it is a whole number" {
    for text in x '' 1.5 -1 nan 1e3 1000000001 99999999999999999999; do
        refuses "--count: \"$text\" is not a whole number from 0 to 1000000000" --count "$text"
    done
}

@test "a zone is refused unless it has one of the forms" {
    for text in x '' z 3600 +0100 01:00 +24:00 +01:60 CET --count; do
        refuses "--offset: \"$text\" is not Z, +hh:mm or -hh:mm" --offset "$text"
    done
}

@test "an empty path is refused" {
    refuses '--path: "" is not a path' --path ''
}

@test "an option without its value is refused" {
    refuses '--count: 1 required NUMBER missing' --count
    refuses '--count: a value is missing' --count= 3
    refuses '--path: a value is missing' --path= --help
}

@test "an option given twice is refused" {
    refuses '--count: At Most 1 required but received 2' --count 1 --count 2
}

@test "what is no option is refused" {
    refuses '"--colour" is not an option' --colour
    refuses '"-c" is not an option' -c 3
    refuses '"extra" is not an option' extra
    refuses '"extra" is not an option' --count 1 extra more
    refuses '"" is not an option' ''
    refuses 'help was given a disallowed flag override' --help=no
    refuses 'version was given a disallowed flag override' --version=no
}

@test "an empty name of a log is refused" {
    refuses '--log: "" is not a path' --log ''
    refuses '--replay: "" is not a path' --replay ''
}

@test "averages are refused unless they are names of values, each once" {
    for text in load '' cpu,,disk 'cpu,' ,cpu 'cpu disk' cpu,cpu CPU time --count; do
        refuses "--average: \"$text\" is not some of cpu,memory,disk,free,uptime" --average "$text"
    done
    refuses '--average: At Most 1 required but received 2' --average cpu --average disk
}

@test "a replay does not go with options of live readings" {
    refuses '--replay does not go with --interval' --replay log --interval 1
    refuses '--replay does not go with --count' --count 0 --replay log
    refuses '--replay does not go with --path' --replay log --path /
    refuses '--replay does not go with --log' --log log --replay log
}

# ---- the table

@test "three readings are a heading and three rows of one width" {
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
    for i in 1 2 3 4; do # no row is early, up to what a clock may be adjusted by
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
    # A file system of the kernel's own has no blocks: all of it is in use.
    run --separate-stderr -0 "$MONITOR" --count 1 --interval 0.001 --path /proc
    [[ ${lines[0]} =~ "free MiB" ]]
    [[ ${lines[1]} =~ ^${TIME}Z\ +$NUMBER\ +$NUMBER\ +100\.0\ +0\.0\ +$UPTIME$ ]]
}

# ---- a path that cannot be read

@test "an unreadable path is told of once, and its values are null" {
    run --separate-stderr -0 "$MONITOR" --count 3 --interval 0.05 --path /nowhere/at/all
    [ "$stderr" = "monitor: /nowhere/at/all: No such file or directory" ]
    [ "${#lines[@]}" -eq 4 ]
    [[ ${lines[0]} =~ $HEADER ]]
    for row in "${lines[@]:1}"; do
        [[ $row =~ $ROW_WITHOUT_DISK ]]
        [ "${#row}" -eq "${#lines[0]}" ]
    done
}

@test "each change of a path's error is told of" {
    cd "$BATS_TEST_TMPDIR"
    mkdir -p folder/there
    touch file
    # Renamed into its place, a link changes in one step.
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

# ---- the end

# Interrupts a monitor in a wait of an hour.
interrupted_in_its_wait_by() {
    cd "$BATS_TEST_TMPDIR" || return
    "$MONITOR" --interval 3600 >table 2>messages 3>&- &
    pid=$!
    await_lines table 1
    kill "-$1" "$pid"
    wait "$pid"
    [ "$(wc -l <table)" -eq 1 ]
    [ ! -s messages ]
}

# A shell starts its background jobs with SIGINT ignored, which must not matter.
@test "SIGINT ends a wait, with status 0" {
    interrupted_in_its_wait_by INT
}

@test "SIGTERM ends a wait, with status 0" {
    interrupted_in_its_wait_by TERM
}

@test "an interrupted table ends with a whole row" {
    cd "$BATS_TEST_TMPDIR"
    "$MONITOR" --interval 0.001 >table 3>&- &
    pid=$!
    await_lines table 50
    kill -INT "$pid"
    wait "$pid"
    [ "$(tail -c 1 table)" = "" ]
    [[ $(tail -n 1 table) =~ $ROW ]]
    run ! grep -Evn "$ROW" <(tail -n +2 table)
}

@test "a reader that has stopped reading does not hold an interrupted monitor" {
    cd "$BATS_TEST_TMPDIR"
    mkfifo pipe
    exec 4<>pipe
    run ! dd if=/dev/zero of=pipe bs=4096 oflag=nonblock # until the pipe is full
    "$MONITOR" --interval 0.001 >pipe 3>&- 4>&- &
    pid=$!
    # SIGINT and SIGTERM are held back: it has begun to wait.
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
    cd "$BATS_TEST_TMPDIR"
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --interval 0.001 >table' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write to standard output: File too large" ]
}

@test "a closed pipe ends it with a message and status 1" {
    cd "$BATS_TEST_TMPDIR"
    { env --default-signal=PIPE "$MONITOR" --interval 0.05 2>messages || echo $? >status; } |
        head -n 2 >table
    [ "$(cat status)" = 1 ]
    [ "$(cat messages)" = "monitor: cannot write to standard output: Broken pipe" ]
    [[ $(tail -n 1 table) =~ $ROW ]]
}

@test "closed descriptors are no place for the table" {
    run --separate-stderr -1 bash -c '"$1" --count 1 --interval 0.001 >&-' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write to standard output: Bad file descriptor" ]
    run --separate-stderr -1 bash -c '"$1" --count 1 --interval 0.001 <&- >&-' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write to standard output: Bad file descriptor" ]
    run -0 bash -c '"$1" --count 1 --interval 0.001 --path /nowhere 2>&-' bash "$MONITOR"
    [[ ${lines[1]} =~ $ROW_WITHOUT_DISK ]]
}

# ---- progress

# Runs a command line, in which $MONITOR stands for the program, on a terminal.
on_terminal() {
    TERM=${2-xterm} SHELL=/bin/sh script -qec "$1" /dev/null </dev/null
}

@test "a terminal shows progress, and no trace of it remains" {
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.1'
    erase=$'\r\033[K'
    [[ $output == *"${erase}"*"readings: 0 of 2; Ctrl-C ends"*"${erase}"[0-9]* ]]
    [[ $output == *"readings: 1 of 2; Ctrl-C ends"* ]]
    [[ $output == *"$erase" ]]
    # What is left on each line after its last erasure is the table.
    mapfile -t shown < <(sed -e 's/\r$//' -e 's/.*\r\x1b\[K//' <<<"$output")
    [ "${#shown[@]}" -eq 4 ]
    [[ ${shown[0]} =~ $HEADER ]]
    [[ ${shown[1]} =~ $ROW ]]
    [[ ${shown[2]} =~ $ROW ]]
    [ "${shown[3]}" = "" ]
}

@test "progress without an end has no total" {
    run -0 on_terminal 'timeout -s INT 2 "$MONITOR" --interval 0.1 || [ $? -eq 124 ]'
    [[ $output == *"readings: 1; Ctrl-C ends"* ]]
}

@test "a message erases the progress line first" {
    cd "$BATS_TEST_TMPDIR"
    mkdir here
    : >table
    run -0 on_terminal '
        (until [ "$(wc -l <table)" -ge 3 ]; do sleep 0.05; done; rmdir here) &
        "$MONITOR" --count 10 --interval 0.2 --path here >table'
    [[ $output == *$'Ctrl-C ends\033[?7h\r\033[Kmonitor: here: No such file or directory\r\n'* ]]
}

@test "progress goes to standard error alone" {
    cd "$BATS_TEST_TMPDIR"
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.05 >table'
    [[ $output == *"readings: 1 of 2; Ctrl-C ends"* ]]
    [ "$(wc -l <table)" -eq 3 ]
    run ! grep -E 'readings|[[:cntrl:]]' table
}

@test "no progress without a terminal at standard error, or on a dumb one" {
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.05 2>/dev/null'
    [ "${#lines[@]}" -eq 3 ]
    [[ $output != *readings* && $output != *$'\033'* ]]
    run -0 on_terminal '"$MONITOR" --count 2 --interval 0.05' dumb
    [ "${#lines[@]}" -eq 3 ]
    [[ $output != *readings* && $output != *$'\033'* ]]
}

# ---- the log

@test "a log gets a line a row, and its replay is the same table" {
    cd "$BATS_TEST_TMPDIR"
    "$MONITOR" --interval 0.05 --count 20 --log log >table
    [ "$(wc -l <log)" -eq 20 ]
    run ! grep -Evn "$LINE" log
    run --separate-stderr -0 "$MONITOR" --replay log
    [ "$stderr" = "" ]
    diff table - <<<"$output"
}

@test "a replay shows times in the zone asked for" {
    cd "$BATS_TEST_TMPDIR"
    "$MONITOR" --interval 0.05 --count 3 --offset -05:30 --log log >table
    run -0 "$MONITOR" --replay log --offset -05:30
    diff table - <<<"$output"
}

@test "null values have no pair, and come back as null" {
    cd "$BATS_TEST_TMPDIR"
    run --separate-stderr -0 "$MONITOR" --interval 0.01 --count 2 --path /nowhere --log log
    table=$output
    run ! grep -Evn "$LINE_WITHOUT_DISK" log
    run --separate-stderr -0 "$MONITOR" --replay log
    [ "$stderr" = "" ]
    [ "$output" = "$table" ]
}

@test "a log goes on where it ended" {
    cd "$BATS_TEST_TMPDIR"
    printf 'here before\n' >log
    "$MONITOR" --interval 0.01 --count 1 --log log
    "$MONITOR" --interval 0.01 --count 2 --log log
    [ "$(wc -l <log)" -eq 4 ]
    [ "$(head -n 1 log)" = "here before" ]
    run ! grep -Evn "$LINE" <(tail -n +2 log)
}

@test "a half line at the end of a log stays a line of its own" {
    cd "$BATS_TEST_TMPDIR"
    printf 'time=2026-11-21T15:21:35.790Z cp' >log
    "$MONITOR" --interval 0.01 --count 2 --log log
    [ "$(wc -l <log)" -eq 3 ]
    [ "$(head -n 1 log)" = "time=2026-11-21T15:21:35.790Z cp" ]
    run ! grep -Evn "$LINE" <(tail -n +2 log)
    run --separate-stderr -1 "$MONITOR" --replay log
    [ "$stderr" = "monitor: log:1: not a line of name=value pairs" ]
}

@test "each line is in the log as soon as it is in the table" {
    cd "$BATS_TEST_TMPDIR"
    "$MONITOR" --interval 0.2 --log log >table 3>&- &
    pid=$!
    await_lines table 2
    : >>log
    await_lines log 1
    kill -INT "$pid"
    wait "$pid"
    [ "$(wc -l <log)" -eq "$(($(wc -l <table) - 1))" ]
}

@test "a full disk takes no part of a line" {
    cd "$BATS_TEST_TMPDIR"
    # Room for the line that is there and some bytes of the next.
    printf '%01000d\n' 0 >before
    cp before log
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --interval 0.001 --log log' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot append to log: File too large" ]
    cmp before log
    # Nor the newline that would end a half line.
    printf '%01024d' 0 >before
    cp before log
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --interval 0.001 --log log' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot append to log: File too large" ]
    cmp before log
}

@test "a log that is full ends the watch" {
    fails_to_append ': No space left on device' /dev/full
}

@test "a log without a reader ends the watch" {
    cd "$BATS_TEST_TMPDIR"
    mkfifo pipe
    head -c 1 pipe >byte &
    fails_to_append ': Broken pipe' pipe
    [ "$(cat byte)" = t ]
}

@test "a pipe gets each line" {
    cd "$BATS_TEST_TMPDIR"
    run --separate-stderr -0 "$MONITOR" --interval 0.01 --count 3 --log >(cat >log)
    until [ "$(wc -l <log)" -eq 3 ]; do sleep 0.05; done
    run ! grep -Evn "$LINE" log
}

@test "a log's reader that has stopped reading does not hold an interrupted monitor" {
    cd "$BATS_TEST_TMPDIR"
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

# Watches with a log, does something to it, and expects the watch to end.
ends_when_its_log() {
    cd "$BATS_TEST_TMPDIR" || return
    "$MONITOR" --interval 0.05 --count 200 --log log >table 2>messages 3>&- &
    pid=$!
    await_lines table 2
    "$@"
    status=0
    wait "$pid" || status=$?
    [ "$status" -eq 1 ]
    [ "$(cat messages)" = "monitor: cannot append to log: the file was removed, renamed or replaced" ]
}

@test "a log that is removed ends the watch" {
    ends_when_its_log rm log
    [ ! -e log ]
}

@test "a log that is renamed ends the watch, and keeps what it had" {
    ends_when_its_log mv log log.1
    [ ! -e log ]
    [[ $(head -n 1 log.1) =~ $LINE ]]
}

@test "a log that is replaced ends the watch" {
    printf 'mine\n' >"$BATS_TEST_TMPDIR/mine"
    ends_when_its_log mv mine log
    [ "$(cat log)" = mine ]
}

@test "a log that cannot be opened is told of before the watch" {
    cd "$BATS_TEST_TMPDIR"
    mkdir folder
    : >file
    fails_to_open folder 'Is a directory'
    fails_to_open nowhere/log 'No such file or directory'
    fails_to_open file/log 'Not a directory'
}

@test "a log that another program locks ends the watch" {
    cd "$BATS_TEST_TMPDIR"
    : >log
    exec 4<log
    flock -s 4
    fails_to_append ': another program locks it' log 4<&-
    [ ! -s log ]
    # For a while is well.
    (sleep 0.3) 3>&- & # holds the lock, once this shell has let go of it
    exec 4<&-
    run -0 "$MONITOR" --interval 0.001 --count 1 --log log
    [ "$(wc -l <log)" -eq 1 ]
}

@test "several monitors keep one log" {
    cd "$BATS_TEST_TMPDIR"
    for _ in 1 2 3 4; do
        "$MONITOR" --interval 0.001 --count 200 --log log >/dev/null 3>&- &
    done
    wait
    [ "$(wc -l <log)" -eq 800 ]
    run ! grep -Evn "$LINE" log
}

@test "a monitor locks its log for no longer than a line takes" {
    cd "$BATS_TEST_TMPDIR"
    "$MONITOR" --interval 0.05 --log log >/dev/null 3>&- &
    pid=$!
    : >>log
    await_lines log 1
    run --separate-stderr -0 "$MONITOR" --interval 0.001 --count 1 --log log
    [ "$stderr" = "" ]
    kill -TERM "$pid"
    wait "$pid"
}

# ---- the replay

@test "the recorded log is replayed" {
    cd "$BATS_TEST_DIRNAME/../examples/monitor/data"
    replays 0 recorded recorded.log --average cpu,memory,disk,free,uptime --offset +01:00
}

@test "malformed lines are told of by number, and the others are shown" {
    cd "$DATA"
    replays 1 damaged damaged.log --average cpu,disk
}

@test "the program's page shows a log and its replay as they are" {
    cd "$BATS_TEST_TMPDIR"
    page=$BATS_TEST_DIRNAME/../examples/monitor/README.md
    grep '^time=' "$page" >readings.log
    run -0 "$MONITOR" --replay readings.log --average cpu,free
    [[ $(<"$page") == *$'--average cpu,free\n'"$output"$'\n```'* ]]
}

@test "a replay reads a pipe" {
    cd "$DATA"
    run --separate-stderr -1 bash -c 'cat damaged.log | "$1" --replay /dev/stdin --average cpu,disk' \
        bash "$MONITOR"
    diff damaged.table - <<<"$output"
    diff <(sed 's,damaged.log,/dev/stdin,' damaged.messages) - <<<"$stderr"
}

@test "a replay of an empty log is a heading" {
    run --separate-stderr -0 "$MONITOR" --replay /dev/null --average cpu
    [ "$stderr" = "" ]
    [ "$output" = "time                      cpu %  memory %  disk %  free GiB  uptime d+hh:mm:ss" ]
}

@test "a log that cannot be read is told of" {
    cd "$BATS_TEST_TMPDIR"
    mkdir folder
    run --separate-stderr -1 "$MONITOR" --replay folder
    [ "$output" = "" ]
    [ "$stderr" = "monitor: cannot read folder: Is a directory" ]
    run --separate-stderr -1 "$MONITOR" --replay nowhere
    [ "$stderr" = "monitor: cannot read nowhere: No such file or directory" ]
}

@test "a log of 4 GiB is refused" {
    cd "$BATS_TEST_TMPDIR"
    truncate -s 4G log
    run --separate-stderr -1 "$MONITOR" --replay log
    [ "$output" = "" ]
    [ "$stderr" = "monitor: cannot read log: 4 GiB and more are too large" ]
}

@test "a replay to a closed pipe or a full disk ends with status 1" {
    cd "$DATA"
    run --separate-stderr -1 bash -c '"$1" --replay damaged.log >/dev/full' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write to standard output: No space left on device" ]
}

@test "a replay shows no progress" {
    cd "$DATA"
    run -1 on_terminal '"$MONITOR" --replay damaged.log'
    [[ $output != *readings* ]]
}

# ---- averages

@test "averages stand in a last row" {
    run --separate-stderr -0 "$MONITOR" --interval 0.1 --count 3 --average uptime,memory
    [ "$stderr" = "" ]
    [ "${#lines[@]}" -eq 5 ]
    [[ ${lines[4]} =~ $AVERAGE\ +$NUMBER\ +$UPTIME$ ]]
    [ "${#lines[4]}" -eq "${#lines[0]}" ]
    # Three intervals, and what the last reading may be late by.
    [[ ${lines[4]} =~ ([0-9]+)\.([0-9]{3}) ]]
    covered=$((10#${BASH_REMATCH[1]}${BASH_REMATCH[2]}))
    ((covered >= 290 && covered < 5000))
}

@test "a single reading is its own average" {
    run --separate-stderr -0 "$MONITOR" --interval 0.05 --count 1 --average cpu,memory,disk,free,uptime
    [[ ${lines[2]} =~ $AVERAGE ]]
    [ "${lines[2]:24}" = "${lines[1]:24}" ]
}

@test "averages of what is null are null" {
    run --separate-stderr -0 "$MONITOR" --interval 0.01 --count 2 --path /nowhere --average disk,free
    [[ ${lines[3]} =~ $AVERAGE\ +null\ +null$ ]]
}

@test "an interrupted watch ends with its averages" {
    cd "$BATS_TEST_TMPDIR"
    for signal in INT TERM; do
        "$MONITOR" --interval 0.05 --average cpu >table 3>&- &
        pid=$!
        await_lines table 3
        kill "-$signal" "$pid"
        wait "$pid"
        [[ $(tail -n 1 table) =~ $AVERAGE\ +$NUMBER$ ]]
    done
}

@test "without a reading there is no last row" {
    cd "$BATS_TEST_TMPDIR"
    "$MONITOR" --interval 3600 --average cpu >table 3>&- &
    pid=$!
    await_lines table 1
    kill -INT "$pid"
    wait "$pid"
    [ "$(wc -l <table)" -eq 1 ]
}

@test "averages do not hold an interrupted monitor whose reader has stopped reading" {
    cd "$BATS_TEST_TMPDIR"
    mkfifo pipe
    exec 4<>pipe
    "$MONITOR" --interval 0.001 --average cpu >pipe 3>&- 4>&- &
    pid=$!
    until grep -q '^SigBlk:.*4002$' "/proc/$pid/status"; do sleep 0.05; done
    sleep 2 # until the pipe is full: 64 KiB are 800 rows
    kill -TERM "$pid"
    wait "$pid"
    exec 4<&-
}
