#!/usr/bin/env bats
# The plugins that write charts.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup() {
    mkdir "$BATS_TEST_TMPDIR/folder of charts" # bats has files of its own in the folder above
    cd "$BATS_TEST_TMPDIR/folder of charts" || return
}

@test "a plugin exports its entry and nothing else" {
    for plugin in svg png; do
        run -0 "$NM" --dynamic --defined-only --format=just-symbols \
            "$OWN_PLUGINS/monitor-chart-$plugin.so"
        [ "$output" = monitorChartWriter ]
    done
}

@test "the interface of plugins is C" {
    "$CXX" -x c -std=c11 -Wall -Wextra -Wpedantic -Werror -fsyntax-only \
        -I "$SOURCE_DIR/examples/monitor/chart" - <<<'#include "chart_plugin.h"'
}

@test "a plugin of the user's own writes a format of its own" {
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

@test "the plugin that README.md shows works" {
    awk '$0 == "```" { inside = 0 } inside { print } $0 == "```cpp" { inside = 1 }' "$PAGE" >pbm.cpp
    [ "$(wc -l <pbm.cpp)" -gt 5 ]
    mkdir plugins
    ln -s "$SOURCE_DIR/examples" examples
    read -r -a words < <(grep -o -e '-shared .* pbm.cpp$' "$PAGE")
    "$CXX" -Wall -Wextra -Werror "${words[@]}"
    "$MONITOR" --replay /dev/null --chart dot.pbm --plugins plugins >/dev/null
    [ "$(cat dot.pbm)" = "P1 1 1 1" ]
}

@test "plugins are found beside a program that was moved and is called by a link" {
    mkdir moved
    cp -R "$MONITOR" "$OWN_PLUGINS" moved
    write_log
    ln -s moved/monitor link
    LD_LIBRARY_PATH=$(dirname "$(library_of "$MONITOR")")
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

@test "a missing plugin is reported with the loader's reason and the formats that exist" {
    fails "monitor: Library::open: Error calling dlopen. Reason:\
 $OWN_PLUGINS/monitor-chart-gif.so: cannot open shared object file: No such file or directory\
 (level 3, code 0xECE99F6E)
monitor: no chart plugin for gif: $OWN_PLUGINS has those for png and svg" --chart chart.gif
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

@test "a file that is no shared object is reported with the loader's reason" {
    mkdir folder
    for _ in {1..100}; do echo "This is no shared object."; done >folder/monitor-chart-svg.so
    fails "monitor: Library::open: Error calling dlopen. Reason:\
 folder/monitor-chart-svg.so: invalid ELF header (level 3, code 0xECE99F6E)
monitor: not a chart plugin: folder/monitor-chart-svg.so" --chart chart.svg --plugins folder
}

@test "a shared object without the entry is reported with the loader's reason" {
    fails "monitor: Library::procAddress: Error calling dlsym.  (level 3, code 0xECE99F6F)
monitor: not a chart plugin: $PLUGINS/monitor-chart-other.so:\
 undefined symbol: monitorChartWriter" \
        --chart chart.other --plugins "$PLUGINS"
}

@test "a plugin of another ABI is reported with both numbers" {
    for abi in newer:2 older:0; do
        fails "monitor: wrong chart plugin: $PLUGINS/monitor-chart-${abi%:*}.so: its ABI number is\
 ${abi#*:}, and this program's is 1" --chart "chart.${abi%:*}" --plugins "$PLUGINS"
    done
}

@test "a plugin without a writer is reported" {
    fails "monitor: not a chart plugin: $PLUGINS/monitor-chart-nothing.so: it has no writer" \
        --chart chart.nothing --plugins "$PLUGINS"
}

@test "a plugin that cannot draw is reported with its reason, and leaves no file" {
    fails "monitor: cannot draw the chart: the ink is dry" \
        --chart chart.failing --plugins "$PLUGINS"
    [ ! -e chart.failing ]
}

@test "the reason of a plugin is shown without control bytes" {
    fails 'monitor: cannot draw the chart: the\x1Bink\x0Ais dry' \
        --chart chart.control --plugins "$PLUGINS"
}

@test "a plugin whose writer has no function is reported" {
    fails "monitor: not a chart plugin: $PLUGINS/monitor-chart-nofunction.so:\
 its writer has no function" --chart chart.nofunction --plugins "$PLUGINS"
    [ ! -e chart.nofunction ]
}

@test "a plugin that throws an exception is reported" {
    for format in throwing throwingentry; do
        fails "monitor: not a chart plugin: $PLUGINS/monitor-chart-$format.so:\
 it throws an exception" --chart "chart.$format" --plugins "$PLUGINS"
        [ ! -e "chart.$format" ]
    done
}

# The loader would wait for ever for a writer of a pipe.
@test "a path that is no regular file is refused before the loader sees it" {
    mkdir -p folder/monitor-chart-dir.so
    mkfifo folder/monitor-chart-fifo.so
    ln -s /dev/null folder/monitor-chart-null.so
    for format in dir fifo null; do
        fails "monitor: not a chart plugin: folder/monitor-chart-$format.so:\
 it is not a regular file" --chart "chart.$format" --plugins folder
    done
}
