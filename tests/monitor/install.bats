#!/usr/bin/env bats
# The monitor as it is installed, with its manual and its completion.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

setup_file() {
    : "${CMAKE:?}"
    "$CMAKE" --install "$(dirname "$MONITOR")" --prefix "$BATS_FILE_TMPDIR/first" >/dev/null
    export TREE="$BATS_FILE_TMPDIR/moved tree"
    mv "$BATS_FILE_TMPDIR/first" "$TREE"
}

setup() {
    cd "$BATS_TEST_TMPDIR" || return
}

@test "program, plugins, interface, manual and completion are installed" {
    (cd "$TREE" && find . -type f) | sed 's,/lib[^/]*/\(x86_64-linux-gnu/\)\?,/lib/,' | sort >files
    diff files - <<END
./bin/monitor
./include/monitor/chart_plugin.h
./lib/monitor/monitor-chart-png.so
./lib/monitor/monitor-chart-svg.so
./share/bash-completion/completions/monitor
./share/man/man1/monitor.1
END
}

@test "an installed program finds its library and its plugins after its tree was moved" {
    write_log
    for format in svg png; do
        run --separate-stderr -0 env -u LD_LIBRARY_PATH \
            "$TREE/bin/monitor" --replay readings.log --chart "chart.$format"
        [ "$stderr" = "" ]
        [ -s "chart.$format" ]
    done
    ln -s "$TREE/bin/monitor" link
    rm chart.svg
    ./link --replay readings.log --chart chart.svg >/dev/null
    [ -s chart.svg ]
}

@test "an installed program says where it looks for plugins" {
    MONITOR=$TREE/bin/monitor run --separate-stderr -1 "$TREE/bin/monitor" --chart load.gif
    [[ $stderr == *"no chart plugin for gif: $TREE/lib"*"/monitor has those for png and svg" ]]
}

@test "a library in the same tree is found after the tree was moved" {
    cp -R "$TREE" both
    cp "$(library_of "$MONITOR")" both/lib*/
    run -0 ldd both/bin/monitor
    [[ $output == *"libutillibrary.so.1 => $PWD/both/bin/../lib"* ]]
}

# The first line names the version of help2man.
@test "the manual is what help2man makes of the help text" {
    diff <(tail -n +2 "$SOURCE_DIR/examples/monitor/manual/monitor.1") \
        <("$SOURCE_DIR/examples/monitor/manual/make-manual" "$MONITOR" | tail -n +2)
}

@test "the manual shows each option of the help text" {
    options=$("$MONITOR" --help | grep -oE '^  (-h, )?--[a-z]+' | grep -oE -e '--[a-z]+')
    [ "$(wc -l <<<"$options")" -eq 14 ]
    for option in $options; do
        grep -qF "\\-\\-${option#--}\\fR" "$TREE/share/man/man1/monitor.1"
    done
}

@test "make-manual refuses wrong arguments with a usage line and status 2" {
    for arguments in '' --help 'a b'; do
        # shellcheck disable=SC2086 # the arguments are words
        run --separate-stderr -2 "$SOURCE_DIR/examples/monitor/manual/make-manual" $arguments
        [ "$stderr" = "Usage: make-manual PROGRAM" ]
    done
}

# completions BEFORE WORD: what bash offers for a word after another word.
completions() {
    bash -c '. "$1"; _monitor monitor "$3" "$2"; printf "%s\n" "${COMPREPLY[@]}"' \
        bash "$TREE/share/bash-completion/completions/monitor" "$1" "$2"
}

@test "completion offers each option of the help text" {
    diff <("$MONITOR" --help | grep -oE '^  (-h, )?--[a-z]+' | grep -oE -e '--[a-z]+' | sort) \
        <(completions monitor "" | sort)
    [ "$(completions monitor --th)" = --theme ]
}

@test "completion offers the values of options" {
    [ "$(completions --theme "")" = $'light\ndark' ]
    [ "$(completions --average c)" = cpu ]
    [ "$(completions --average cpu,me)" = cpu,memory ]
    [ "$(completions --count "")" = "" ]
    mkdir folder
    touch file.log
    [ "$(completions --replay f | sort)" = $'file.log\nfolder' ]
    [ "$(completions --plugins f)" = folder ]
}

@test "bash loads the completion for the program's name" {
    run -0 bash -c '. "$1"; complete -p monitor' \
        bash "$TREE/share/bash-completion/completions/monitor"
    [[ $output == *"-F _monitor monitor" ]]
}
