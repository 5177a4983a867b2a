#!/usr/bin/env bats
# The replay: what --replay shows of a log.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

# replays STATUS NAME LOG OPTIONS...: compares the table and the messages with files of that name.
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

@test "the recorded log is replayed" {
    cd "$SOURCE_DIR/examples/monitor/data"
    replays 0 recorded recorded.log --average cpu,memory,disk,free,uptime --offset +01:00
}

@test "malformed lines are reported by number, and the others are shown" {
    cd "$DATA"
    replays 1 damaged damaged.log --average cpu,disk
}

@test "README.md shows a log and its replay" {
    grep '^time=' "$PAGE" >readings.log
    run -0 "$MONITOR" --replay readings.log --average cpu,free
    [[ $(<"$PAGE") == *$'--average cpu,free\n'"$output"$'\n```'* ]]
}

@test "a replay reads a pipe" {
    cd "$DATA"
    run --separate-stderr -1 bash -c \
        'cat damaged.log | "$1" --replay /dev/stdin --average cpu,disk' bash "$MONITOR"
    diff damaged.table - <<<"$output"
    diff <(sed 's,damaged.log,/dev/stdin,' damaged.messages) - <<<"$stderr"
}

@test "a replay of an empty log is a header" {
    run --separate-stderr -0 "$MONITOR" --replay /dev/null --average cpu
    [ "$stderr" = "" ]
    [ "$output" = "time                      cpu %  memory %  disk %  free GiB  uptime d+hh:mm:ss" ]
}

@test "a log that cannot be read is reported" {
    mkdir folder
    run --separate-stderr -1 "$MONITOR" --replay folder
    [ "$output" = "" ]
    [ "$stderr" = "monitor: cannot read folder: Is a directory" ]
    run --separate-stderr -1 "$MONITOR" --replay nowhere
    [ "$stderr" = "monitor: cannot read nowhere: No such file or directory" ]
}

# A line that no newline ends is as long as its file.
@test "a line above 64 KiB is malformed" {
    head -c 65536 /dev/zero >log
    run --separate-stderr -1 "$MONITOR" --replay log
    [ "$stderr" = "monitor: log:1: not a line of name=value pairs" ]
    printf '\0\ntime=2026-11-21T13:50:00.500Z cpu=1\n' >>log
    run --separate-stderr -1 "$MONITOR" --replay log
    [ "$stderr" = "monitor: log:1: longer than 65536 bytes" ]
    [[ ${lines[1]} == "2026-11-21T13:50:00.500Z    1.0"* ]]
}

# peak_memory LOG: the KiB of memory that a replay with averages and a chart takes at most.
peak_memory() {
    # A sanitizer keeps freed memory for a while; this limits it.
    ASAN_OPTIONS="$ASAN_OPTIONS:quarantine_size_mb=1" python3 -c '
import resource, subprocess, sys
subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)' \
        "$MONITOR" --replay "$1" --average cpu,free --chart chart.svg
}

@test "a log of any size takes the same memory, and so does a line of any size" {
    write_log
    small=$(peak_memory readings.log)
    for ((i = 0; i < 17; ++i)); do
        cat readings.log readings.log >twice
        mv twice readings.log
    done
    head -c 40M readings.log >log
    large=$(peak_memory log)
    head -c 50M /dev/zero >line
    long=$(peak_memory line)
    echo "small $small, large $large, long line $long"
    ((large - small < 16384))
    ((long - small < 16384))
}

@test "the first 20 malformed lines are reported one by one, the others by their number" {
    yes '' | head -n 20 >log
    run --separate-stderr -1 "$MONITOR" --replay log
    diff - <<<"$stderr" <(for i in {1..20}; do
        echo "monitor: log:$i: not a line of name=value pairs"
    done)
    twenty=$stderr
    echo >>log
    run --separate-stderr -1 "$MONITOR" --replay log
    [ "$stderr" = "$twenty"$'\n'"monitor: log: 1 more malformed line" ]
    yes '' | head -n 1000 >>log
    run --separate-stderr -1 "$MONITOR" --replay log
    [ "$stderr" = "$twenty"$'\n'"monitor: log: 1001 more malformed lines" ]
}

@test "control bytes of a name are shown as numbers" {
    run --separate-stderr -1 "$MONITOR" --replay $'no\nsuch\e[31m\x80log'
    [ "$stderr" = 'monitor: cannot read no\x0Asuch\x1B[31m\x80log: No such file or directory' ]
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
