# What the shell tests of the monitor share. The suite sets:
#   MONITOR          the program
#   PLUGINS          the folder of the plugins that the suite builds
#   LIBRARY_VERSION  the version of the library that the program was built with
#   SOURCE_DIR       the checkout
#   CMAKE, NM, CXX   tools
# shellcheck shell=bash
# shellcheck disable=SC2034,SC2154 # the tests use the variables; `run` sets some
#
# The tests disable SC2016 (another shell expands what is in single quotes), SC2153 (names in
# capitals are defined here) and SC2154 (`run` sets some variables).

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
DATA=$SOURCE_DIR/tests/monitor_data
PAGE=$SOURCE_DIR/examples/monitor/README.md
RECORDED=$SOURCE_DIR/examples/monitor/data/recorded.log
OWN_PLUGINS=$(dirname "$MONITOR")/plugins

# XPath of an SVG, and of its texts.
SVG='/*[local-name()="svg"]'
TEXTS="$SVG/*[local-name()=\"text\"]"

# await_lines FILE COUNT: waits until a file has that many lines, and fails after ten seconds.
await_lines() {
    local tries
    for ((tries = 0; tries < 200; ++tries)); do
        if (($(wc -l <"$1") >= $2)); then return; fi
        sleep 0.05
    done
    echo "$1 has no $2 lines" >&2
    return 1
}

# await_row FILE PATTERN: waits until the last line of a file matches, and fails after ten seconds.
await_row() {
    local tries
    for ((tries = 0; tries < 200; ++tries)); do
        if tail -n 1 "$1" | grep -Eq "$2"; then return; fi
        sleep 0.05
    done
    echo "$1 has no row like $2" >&2
    return 1
}

# refuses REASON OPTIONS...: the monitor ends at once with status 2 and this reason alone.
refuses() {
    local reason=$1
    shift
    run --separate-stderr -2 timeout 10 "$MONITOR" "$@"
    echo "$stderr"
    [ "$output" = "" ]
    [ "$stderr" = "monitor: $reason"$'\n'"Usage: monitor [OPTIONS]. See monitor --help." ]
}

# fails MESSAGES OPTIONS...: the monitor ends with status 1 and these messages alone.
fails() {
    local messages=$1
    shift
    run --separate-stderr -1 timeout 10 "$MONITOR" "$@"
    echo "$stderr"
    [ "$output" = "" ]
    [ "$stderr" = "$messages" ]
}

# milliseconds TIME: since 1970.
milliseconds() {
    date -d "$1" +%s%3N
}

# on_terminal COMMAND [TERM]: runs a shell command, which may use "$MONITOR", on a terminal.
on_terminal() {
    TERM=${2-xterm} SHELL=/bin/sh script -qec "$1" /dev/null </dev/null
}

# write_log: a log of a minute, with the same times in each run.
write_log() {
    local second
    for second in 00 10 20 30 40 50; do
        echo "time=2026-11-21T13:50:$second.500Z cpu=$second memory=42.5 disk=68.5"
    done >readings.log
}

# ask FILE XPATH: the value of an expression.
ask() {
    xmllint --xpath "$2" "$1"
}

# library_of PROGRAM: the path of the utillibrary that a program loads.
library_of() {
    ldd "$1" | sed -n 's/.*libutillibrary\.so\.1 => \(.*\) (0x.*/\1/p'
}
