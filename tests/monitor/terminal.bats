#!/usr/bin/env bats
# What the table does on a terminal of some size.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

# many_readings COUNT: a log.
many_readings() {
    local i
    for ((i = 0; i < $1; ++i)); do
        printf 'time=2026-11-21T13:50:%02d.500Z cpu=%d.5 ' $((i % 60)) $((i % 100))
        echo "memory=42.5 disk=68.5 free=85899345920 uptime=$i"
    done >readings.log
}

# shown_on ROWS COLUMNS OPTIONS: what a terminal of that size shows of the program, line by line.
shown_on() {
    on_terminal "stty rows $1 cols $2; \"\$MONITOR\" $3" | sed -e 's/\r$//' -e 's/.*\r\x1b\[K//'
}

@test "the header is shown again before it leaves the screen" {
    many_readings 30
    for rows in 4 5 12 24; do
        shown_on "$rows" 100 '--replay readings.log' >shown
        [ "$(grep -c '^2026' shown)" -eq 30 ]
        # A screen has rows - 1 lines above the cursor. Each such part of the output has a header.
        awk -v screen=$((rows - 1)) '
            /^time/ { last = NR }
            NR - last >= screen { print "no header above line", NR; wrong = 1 }
            END { exit wrong }' shown
        # No header comes sooner than needed.
        headers=$(grep -c '^time' shown)
        [ "$headers" -eq $(((30 + rows - 3) / (rows - 2))) ]
    done
}

@test "a terminal of fewer than four rows, or of unknown size, has one header" {
    many_readings 30
    for rows in 0 1 2 3; do
        shown_on "$rows" 100 '--replay readings.log' >shown
        [ "$(grep -c '^time' shown)" -eq 1 ]
        [ "$(wc -l <shown)" -eq 31 ]
    done
}

@test "live readings have a header on each screen too" {
    shown_on 5 100 '--count 8 --interval 0.01' >shown
    [ "$(grep -c '^time' shown)" -eq 3 ]
    [ "$(grep -c '^20' shown)" -eq 8 ]
}

@test "messages count as lines of the screen" {
    printf 'x\n%.0s' {1..9} >readings.log
    printf 'time=2026-11-21T13:50:%02d.500Z cpu=1\n' 1 2 >>readings.log
    printf 'x\nx\ntime=2026-11-21T13:50:03.500Z cpu=1\n' >>readings.log
    shown_on 6 100 '--replay readings.log' >shown || true
    # A header, two rows and two messages fill the screen.
    diff - <(sed -e 's/^time .*/HEADER/' -e 's/^2026.*/ROW/' -e 's/^monitor.*/MESSAGE/' shown |
        tail -n 7) <<'END'
HEADER
ROW
ROW
MESSAGE
MESSAGE
HEADER
ROW
END
}

@test "cells that have no room are left out from the right, and no row wraps" {
    many_readings 3
    full=$("$MONITOR" --replay readings.log --average cpu,uptime)
    for columns in {1..100}; do
        shown_on 24 "$columns" '--replay readings.log --average cpu,uptime' >shown
        [ "$(wc -l <shown)" -eq 5 ]
        # Each line is the start of the full line, and not longer than the terminal.
        paste -d '\n' shown - <<<"$full" | awk -v columns="$columns" '
            NR % 2 { shown = $0; next }
            length(shown) > columns || index($0, shown) != 1 { print "wrong:", shown; exit 1 }'
    done
}

@test "a cell is shown if it has just enough room" {
    many_readings 1
    for columns in 30:time 31:cpu 40:cpu 41:memory 48:memory 49:disk 58:disk 59:free 77:free \
        78:uptime; do
        last=$(shown_on 24 "${columns%:*}" '--replay readings.log' | head -n 1 |
            grep -oE 'time|cpu|memory|disk|free|uptime' | tail -n 1)
        echo "${columns%:*} columns end with $last"
        [ "$last" = "${columns#*:}" ]
    done
}

@test "a pipe has one header and whole rows, for every size of the terminal" {
    many_readings 30
    shown_on 5 20 '--replay readings.log >table'
    diff table <("$MONITOR" --replay readings.log)
    [ "$(grep -c '^time' table)" -eq 1 ]
}
