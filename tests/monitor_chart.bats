#!/usr/bin/env bats
# The charts of examples/monitor as files. MONITOR is the program's path, PLUGINS the folder of plugins
# that the suite builds, NM and CXX are tools, SOURCE_DIR is the checkout.
# Single quotes hold what another shell expands.
# shellcheck disable=SC2016

bats_require_minimum_version 1.5.0

setup_file() {
    : "${MONITOR:?}" "${PLUGINS:?}" "${NM:?}" "${CXX:?}" "${SOURCE_DIR:?}"
}

setup() {
    mkdir "$BATS_TEST_TMPDIR/folder of charts" # bats has files of its own in the one above
    cd "$BATS_TEST_TMPDIR/folder of charts" || return
    recorded=$SOURCE_DIR/examples/monitor/data/recorded.log
    own_plugins=$(dirname "$MONITOR")/plugins
}

# A log of a minute's readings that ends at the same time always.
write_log() {
    local second
    for second in 00 10 20 30 40 50; do
        echo "time=2026-11-21T13:50:$second.500Z cpu=$second memory=42.5 disk=68.5"
    done >readings.log
}

# Options with which the monitor ends with status 2 and this reason, before it does anything.
refuses() {
    local reason=$1
    shift
    run --separate-stderr -2 timeout 10 "$MONITOR" "$@"
    [ "$output" = "" ]
    # shellcheck disable=SC2154 # run sets it
    [ "$stderr" = "monitor: $reason"$'\n'"Try monitor --help." ]
}

# The same with status 1 and these lines.
fails() {
    local message=$1
    shift
    run --separate-stderr -1 timeout 10 "$MONITOR" "$@"
    echo "$stderr"
    [ "$output" = "" ]
    [ "$stderr" = "$message" ]
}

# ask FILE XPATH: what an expression gives.
ask() {
    xmllint --xpath "$2" "$1"
}

SVG='/*[local-name()="svg"]'
TEXTS="$SVG/*[local-name()=\"text\"]"

# ---- options

@test "a chart's file is refused unless its name ends in a format" {
    for file in chart chart. .svg folder.svg/chart folder/ 'chart.s/v' 'chart.s v' ''; do
        refuses "--chart: \"$file\" is not a file name that ends like load.svg or load.png" \
            --chart "$file"
    done
}

@test "a window is refused unless it is of whole seconds, from five to thirty days" {
    for text in 4 2592001 5.5 -5 x ''; do
        refuses "--window: \"$text\" is not a whole number from 5 to 2592000" \
            --chart a.svg --window "$text"
    done
}

@test "a theme is refused unless it is light or dark" {
    refuses '--theme: "grey" is not light or dark' --chart a.svg --theme grey
}

@test "an empty folder of plugins is refused" {
    refuses '--plugins: "" is not a path' --chart a.svg --plugins ''
}

@test "what belongs to a chart is refused without one" {
    refuses '--window does not go without --chart' --window 60
    refuses '--theme does not go without --chart' --theme dark
    refuses '--plugins does not go without --chart' --plugins folder
}

# ---- SVG

@test "an SVG is well formed, and says what it is and shows" {
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

@test "the texts of an SVG are texts" {
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

@test "an SVG follows its reader's theme unless it is told one" {
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
    # But for that they are one picture.
    diff <(sed '/<style>/,/<\/style>/d' light.svg) <(sed '/<style>/,/<\/style>/d' dark.svg)
    diff <(sed '/<style>/,/<\/style>/d' light.svg) <(sed '/<style>/,/<\/style>/d' either.svg)
    xmllint --noout either.svg light.svg dark.svg
}

@test "charts of every window are well formed" {
    for window in 5 60 600 21600 86400 2592000; do
        "$MONITOR" --replay "$recorded" --chart "$window.svg" --window "$window" >/dev/null
    done
    xmllint --noout ./*.svg
}

# ---- PNG

# The size that a PNG tells, after it has told that it is one.
png_size() {
    [ "$(head -c 16 "$1" | od -An -v -tx1 | tr -d ' \n')" = 89504e470d0a1a0a0000000d49484452 ]
    od -An -v -tu1 -j16 -N8 "$1" |
        awk '{ print (($1 * 256 + $2) * 256 + $3) * 256 + $4, (($5 * 256 + $6) * 256 + $7) * 256 + $8 }'
}

@test "a PNG has two pixels a unit, and the theme that it is told, or the light one" {
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

# ---- plugins

@test "a plugin exports its entry and nothing else" {
    for plugin in svg png; do
        run -0 "$NM" --dynamic --defined-only --format=just-symbols \
            "$own_plugins/monitor-chart-$plugin.so"
        [ "$output" = monitorChartWriter ]
    done
}

@test "what a plugin knows of the monitor is C as well" {
    "$CXX" -x c -std=c11 -Wall -Wextra -Wpedantic -Werror -fsyntax-only \
        -I "$SOURCE_DIR/examples/monitor" - <<<'#include "chart_plugin.h"'
}

@test "a plugin of one's own writes a format of its own" {
    write_log
    run -0 --separate-stderr "$MONITOR" --replay readings.log --chart chart.words \
        --plugins "$PLUGINS" --theme dark
    [ "$stderr" = "" ]
    [ "$(sed -n 1p chart.words)" = dark ]
    [[ $(sed -n 2p chart.words) == "A line chart of 6 readings, "* ]]
    [ "$(tail -n 1 chart.words)" = "68.5 %" ]
    "$MONITOR" --replay readings.log --chart chart.words --plugins "$PLUGINS" >/dev/null
    [ "$(sed -n 1p chart.words)" = either ]
}

@test "the plugin that the program's page shows is one" {
    page=$SOURCE_DIR/examples/monitor/README.md
    awk '$0 == "```" { inside = 0 } inside { print } $0 == "```cpp" { inside = 1 }' "$page" >pbm.cpp
    [ "$(wc -l <pbm.cpp)" -gt 5 ]
    mkdir plugins
    ln -s "$SOURCE_DIR/examples" examples
    read -r -a words < <(grep -o -e '-shared .* pbm.cpp$' "$page")
    "$CXX" -Wall -Wextra -Werror "${words[@]}"
    "$MONITOR" --replay /dev/null --chart dot.pbm --plugins plugins >/dev/null
    [ "$(cat dot.pbm)" = "P1 1 1 1" ]
}

@test "plugins are looked for beside the program, wherever it was moved to and is called from" {
    mkdir moved
    cp -R "$MONITOR" "$own_plugins" moved
    write_log
    ln -s moved/monitor link
    LD_LIBRARY_PATH=$(dirname "$(ldd "$MONITOR" | awk '/libutillibrary/ { print $3 }')")
    export LD_LIBRARY_PATH
    ./link --replay readings.log --chart chart.svg >/dev/null
    xmllint --noout chart.svg
    rm moved/plugins/monitor-chart-svg.so
    rm moved/plugins/monitor-chart-png.so
    MONITOR=moved/monitor fails "monitor: Library::open: Error calling dlopen. Reason:\
 $PWD/moved/plugins/monitor-chart-svg.so: cannot open shared object file: No such file or directory\
 (level 3, code 0xECE99F6E)
monitor: no chart plugin for svg: $PWD/moved/plugins has none" --chart other.svg
}

@test "a missing plugin is told with the loader's reason, and with what there is" {
    fails "monitor: Library::open: Error calling dlopen. Reason:\
 $own_plugins/monitor-chart-gif.so: cannot open shared object file: No such file or directory\
 (level 3, code 0xECE99F6E)
monitor: no chart plugin for gif: $own_plugins has those for png and svg" --chart chart.gif
    fails "monitor: Library::open: Error calling dlopen. Reason:\
 nowhere/monitor-chart-svg.so: cannot open shared object file: No such file or directory\
 (level 3, code 0xECE99F6E)
monitor: no chart plugin for svg: nowhere has none" --chart chart.svg --plugins nowhere
    mkdir one
    touch one/monitor-chart-.so one/monitor-chart-x.txt one/chart.so one/monitor-chart-bmp.so
    fails "monitor: Library::open: Error calling dlopen. Reason:\
 one/monitor-chart-svg.so: cannot open shared object file: No such file or directory\
 (level 3, code 0xECE99F6E)
monitor: no chart plugin for svg: one has those for bmp" --chart chart.svg --plugins one
    [ ! -e chart.gif ]
    [ ! -e chart.svg ]
}

@test "a file that is no shared object is told with the loader's reason" {
    mkdir folder
    for _ in {1..100}; do echo "This is no shared object."; done >folder/monitor-chart-svg.so
    fails "monitor: Library::open: Error calling dlopen. Reason:\
 folder/monitor-chart-svg.so: invalid ELF header (level 3, code 0xECE99F6E)
monitor: not a chart plugin: folder/monitor-chart-svg.so" --chart chart.svg --plugins folder
}

@test "a shared object without the entry is told with the loader's reason" {
    fails "monitor: Library::procAddress: Error calling dlsym.  (level 3, code 0xECE99F6F)
monitor: not a chart plugin: $PLUGINS/monitor-chart-other.so: undefined symbol: monitorChartWriter" \
        --chart chart.other --plugins "$PLUGINS"
}

@test "a plugin of another ABI is told with both numbers" {
    for abi in newer:2 older:0; do
        fails "monitor: wrong chart plugin: $PLUGINS/monitor-chart-${abi%:*}.so: its ABI number is\
 ${abi#*:}, and this program's is 1" --chart "chart.${abi%:*}" --plugins "$PLUGINS"
    done
}

@test "a plugin without a writer is told" {
    fails "monitor: not a chart plugin: $PLUGINS/monitor-chart-nothing.so: it has no writer" \
        --chart chart.nothing --plugins "$PLUGINS"
}

@test "a plugin that cannot draw is told with its reason, and leaves no file" {
    fails "monitor: cannot draw the chart: the ink is dry" --chart chart.failing --plugins "$PLUGINS"
    [ ! -e chart.failing ]
}

# ---- the file

@test "a live chart shows the readings of the table" {
    run -0 --separate-stderr "$MONITOR" --count 3 --interval 0.05 --chart chart.svg --window 5
    [ "$stderr" = "" ]
    xmllint --noout chart.svg
    [[ $(ask chart.svg "string($SVG/*[@id=\"description\"])") == "A line chart of 3 readings, the\
 last at ${lines[3]%% *}, over 5 seconds. "* ]]
    shown=$(awk '{ print $2, $3, $4 }' <<<"${lines[3]}")
    [ "$(ask chart.svg "${TEXTS}[@font-weight][position() > 1]/text()" | sed 's/ %$//' | xargs)" = "$shown" ]
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

@test "a live reading and the same from its log are described alike" {
    "$MONITOR" --count 1 --interval 0.1 --chart live.svg --log readings.log >/dev/null
    "$MONITOR" --replay readings.log --chart replayed.svg >/dev/null
    diff <(ask live.svg '//text()' | sed '/{/d') <(ask replayed.svg '//text()' | sed '/{/d')
    [ "$(ask live.svg "count($TEXTS)")" -gt 10 ]
}

@test "a value that could not be read is null" {
    "$MONITOR" --count 2 --interval 0.05 --chart chart.svg --path /nowhere >/dev/null 2>&1
    [ "$(ask chart.svg "${TEXTS}[last()]/text()")" = null ]
    [[ $(ask chart.svg "string($SVG/*[@id=\"description\"])") == *"; disk without a value." ]]
}

@test "an empty log makes a chart that says so" {
    "$MONITOR" --replay /dev/null --chart chart.svg >/dev/null
    grep -q '>no readings</text>' chart.svg
    xmllint --noout chart.svg
}

@test "a chart takes the place of what was there, with the usual permissions" {
    write_log
    echo old >chart.svg
    chmod 600 chart.svg
    (umask 027 && "$MONITOR" --replay readings.log --chart chart.svg >/dev/null)
    xmllint --noout chart.svg
    [ "$(stat -c %a chart.svg)" = 640 ]
    [ "$(ls)" = chart.svg$'\n'readings.log ]
}

@test "a folder that is not there is told at once" {
    fails "monitor: cannot write the chart nowhere/chart.svg: No such file or directory" \
        --chart nowhere/chart.svg --interval 3600
}

@test "a folder is no place for a chart" {
    mkdir chart.svg
    fails "monitor: cannot write the chart chart.svg: Is a directory" --chart chart.svg
    [ "$(ls)" = chart.svg ]
}

@test "a file that may not grow ends it, and the old chart stays" {
    echo old >chart.svg
    run --separate-stderr -1 env --default-signal=XFSZ bash -c \
        'ulimit -f 1; "$1" --count 3 --interval 0.01 --chart chart.svg' bash "$MONITOR"
    [ "$stderr" = "monitor: cannot write the chart chart.svg: File too large" ]
    [ "$(cat chart.svg)" = old ]
    [ "$(ls)" = chart.svg ]
}

# ---- the pictures in the documentation

@test "the pictures in the documentation are what the commands beside them make" {
    mkdir -p docs/images
    ln -s "$SOURCE_DIR/examples" examples
    mapfile -t commands < <(grep -E '^    monitor --replay .*--chart docs/images/' \
        "$SOURCE_DIR/examples/monitor/README.md")
    [ "${#commands[@]}" -eq 2 ]
    for command in "${commands[@]}"; do
        read -r -a words <<<"$command"
        "$MONITOR" "${words[@]:1}" >/dev/null
    done
    diff -r docs/images "$SOURCE_DIR/docs/images"
    xmllint --noout docs/images/*.svg
}
