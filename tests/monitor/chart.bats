#!/usr/bin/env bats
# Charts as files.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    mkdir "$BATS_TEST_TMPDIR/folder of charts" # bats has files of its own in the folder above
    cd "$BATS_TEST_TMPDIR/folder of charts" || return
}

@test "an SVG is well formed, and has a title and a description" {
    write_log
    run -0 --separate-stderr "$MONITOR" --replay readings.log --chart chart.svg --offset +01:00
    [ "$stderr" = "" ]
    xmllint --noout chart.svg
    [ "$(ask chart.svg "string($SVG/@role)")" = img ]
    [ "$(ask chart.svg "string($SVG/@aria-labelledby)")" = "title description" ]
    [ "$(ask chart.svg "string($SVG/*[@id=\"title\"])")" = "Processor, memory and disk in use" ]
    [ "$(ask chart.svg "name($SVG/*[@id=\"title\"])")" = title ]
    [ "$(ask chart.svg "name($SVG/*[@id=\"description\"])")" = desc ]
    [ "$(ask chart.svg "string($SVG/*[@id=\"description\"])")" = "A line chart of 6 readings, the\
 last at 2026-11-21T14:50:50.500+0100, over 1 minute. In percent: cpu from 0.0 to 50.0, last 50.0;\
 memory from 42.5 to 42.5, last 42.5; disk from 68.5 to 68.5, last 68.5." ]
    [ "$(ask chart.svg "string($SVG/@viewBox)")" = "0 0 960 400" ]
}

@test "the texts of a chart are texts of the SVG" {
    write_log
    "$MONITOR" --replay readings.log --chart chart.svg --offset +01:00 >/dev/null
    diff - <(ask chart.svg "$TEXTS/text()") <<END
0 %
25 %
50 %
75 %
100 %
14:50:00
21 Nov 2026
14:50:10
14:50:20
14:50:30
14:50:40
14:50:50
Processor, memory and disk in use
1 minute to 14:50:50 UTC+01:00
cpu
50.0 %
memory
42.5 %
disk
68.5 %
END
}

@test "an SVG follows its viewer's theme unless an option names one" {
    write_log
    "$MONITOR" --replay readings.log --chart either.svg >/dev/null
    "$MONITOR" --replay readings.log --chart light.svg --theme light >/dev/null
    "$MONITOR" --replay readings.log --chart dark.svg --theme dark >/dev/null
    [ "$(grep -c 'prefers-color-scheme:dark' either.svg)" -eq 1 ]
    run ! grep prefers-color-scheme light.svg dark.svg
    grep -qF '.background{color:#ffffff}' light.svg
    grep -qF '.background{color:#0f141a}' dark.svg
    [ "$(grep -c '^.background{' either.svg)" -eq 2 ]
    [ "$(grep -c '^.background{' dark.svg)" -eq 1 ]
    # Without their styles they are the same picture.
    diff <(sed '/<style>/,/<\/style>/d' light.svg) <(sed '/<style>/,/<\/style>/d' dark.svg)
    diff <(sed '/<style>/,/<\/style>/d' light.svg) <(sed '/<style>/,/<\/style>/d' either.svg)
    xmllint --noout either.svg light.svg dark.svg
}

@test "charts of every window are well formed" {
    for window in 5 60 600 21600 86400 2592000; do
        "$MONITOR" --replay "$RECORDED" --chart "$window.svg" --window "$window" >/dev/null
    done
    xmllint --noout ./*.svg
}

# png_size FILE: the width and height of a PNG, after a check that it is one.
png_size() {
    [ "$(head -c 16 "$1" | od -An -v -tx1 | tr -d ' \n')" = 89504e470d0a1a0a0000000d49484452 ]
    od -An -v -tu1 -j16 -N8 "$1" | awk '{
        print (($1 * 256 + $2) * 256 + $3) * 256 + $4, (($5 * 256 + $6) * 256 + $7) * 256 + $8 }'
}

@test "a PNG has two pixels per unit, and the light theme unless an option names one" {
    write_log
    "$MONITOR" --replay readings.log --chart chart.png >/dev/null
    "$MONITOR" --replay readings.log --chart light.png --theme light >/dev/null
    "$MONITOR" --replay readings.log --chart dark.png --theme dark >/dev/null
    for file in chart.png dark.png; do
        [ "$(png_size "$file")" = "1920 800" ]
        [ "$(tail -c 8 "$file" | od -An -v -tx1 | tr -d ' \n')" = 49454e44ae426082 ]
    done
    cmp chart.png light.png
    run ! cmp -s light.png dark.png
}

@test "the format may be written in capitals" {
    write_log
    "$MONITOR" --replay readings.log --chart chart.PNG >/dev/null
    "$MONITOR" --replay readings.log --chart chart.png >/dev/null
    cmp chart.PNG chart.png
}

@test "a live chart shows the readings of the table" {
    run -0 --separate-stderr "$MONITOR" --count 3 --interval 0.05 --chart chart.svg --window 5
    [ "$stderr" = "" ]
    xmllint --noout chart.svg
    [[ $(ask chart.svg "string($SVG/*[@id=\"description\"])") == "A line chart of 3 readings, the\
 last at ${lines[3]%% *}, over 5 seconds. "* ]]
    shown=$(awk '{ print $2, $3, $4 }' <<<"${lines[3]}")
    values=$(ask chart.svg "${TEXTS}[@font-weight][position() > 1]/text()" | sed 's/ %$//' | xargs)
    [ "$values" = "$shown" ]
    [ "$(ls)" = chart.svg ]
}

@test "a live chart is drawn at the start, and after each reading" {
    "$MONITOR" --interval 0.5 --chart chart.words --plugins "$PLUGINS" >table 3>&- &
    pid=$!
    for text in "without a reading" "of 1 reading," "of 2 readings,"; do
        for ((tries = 0; tries < 200; ++tries)); do
            if grep -qs "A line chart $text" chart.words; then break; fi
            sleep 0.02
        done
        grep -q "A line chart $text" chart.words
    done
    kill -INT "$pid"
    wait "$pid"
    grep -q "A line chart of $(($(wc -l <table) - 1)) reading" chart.words
}

@test "a live reading and its replay give the same texts" {
    "$MONITOR" --count 1 --interval 0.1 --chart live.svg --title load --log readings.log >/dev/null
    "$MONITOR" --replay readings.log --chart replayed.svg --title load >/dev/null
    diff <(ask live.svg '//text()' | sed '/{/d') <(ask replayed.svg '//text()' | sed '/{/d')
    [ "$(ask live.svg "count($TEXTS)")" -gt 10 ]
}

@test "a value that could not be read is null in the chart" {
    "$MONITOR" --count 2 --interval 0.05 --chart chart.svg --path /nowhere >/dev/null 2>&1
    [ "$(ask chart.svg "${TEXTS}[@font-weight][last()]/text()")" = null ]
    [[ $(ask chart.svg "string($SVG/*[@id=\"description\"])") == *"; disk without a value." ]]
}

@test "the title is that of --title, or names the machine of live readings" {
    write_log
    "$MONITOR" --replay readings.log --chart chart.svg --title 'A & B' >/dev/null
    [ "$(ask chart.svg "string($SVG/*[@id=\"title\"])")" = "A & B" ]
    "$MONITOR" --count 1 --interval 0.001 --chart chart.svg >/dev/null
    title="$(uname -n): processor, memory and disk in use"
    [ "$(ask chart.svg "string($SVG/*[@id=\"title\"])")" = "$title" ]
    euros=$'\xe2\x82\xac\xe2\x82\xac'
    "$MONITOR" --replay readings.log --chart chart.png --title "$euros" >/dev/null
}

@test "the chart of an empty log says that there are no readings" {
    "$MONITOR" --replay /dev/null --chart chart.svg >/dev/null
    grep -q '>no readings</text>' chart.svg
    xmllint --noout chart.svg
}

@test "a chart replaces the old file, and has the usual permissions" {
    write_log
    echo old >chart.svg
    chmod 600 chart.svg
    (umask 027 && "$MONITOR" --replay readings.log --chart chart.svg >/dev/null)
    xmllint --noout chart.svg
    [ "$(stat -c %a chart.svg)" = 640 ]
    [ "$(ls)" = chart.svg$'\n'readings.log ]
}

@test "a folder that does not exist is reported at once" {
    fails "monitor: cannot write the chart nowhere/chart.svg: No such file or directory" \
        --chart nowhere/chart.svg --interval 3600
}

@test "a chart cannot replace a folder" {
    mkdir chart.svg
    fails "monitor: cannot write the chart chart.svg: Is a directory" --chart chart.svg
    [ "$(ls)" = chart.svg ]
}

@test "a file that must not grow ends the program, and the old chart remains" {
    echo old >chart.svg
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --count 3 --interval 0.01 --chart chart.svg' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write the chart chart.svg: File too large" ]
    [ "$(cat chart.svg)" = old ]
    [ "$(ls)" = chart.svg ]
}

@test "the pictures of the monitor in docs/images are what the commands in README.md make" {
    mkdir -p docs/images
    ln -s "$SOURCE_DIR/examples" examples
    mapfile -t commands < <(grep -E '^    monitor --replay .*--chart docs/images/' \
        "$SOURCE_DIR/examples/monitor/README.md")
    [ "${#commands[@]}" -eq 2 ]
    for command in "${commands[@]}"; do
        read -r -a words <<<"$command"
        "$MONITOR" "${words[@]:1}" >/dev/null
    done
    mkdir stored
    cp "$SOURCE_DIR"/docs/images/monitor-*.svg stored
    diff -r docs/images stored
    xmllint --noout docs/images/*.svg
}
