#!/usr/bin/env bats
# The command line: help, version, and what is refused.
# shellcheck disable=SC2016,SC2153,SC2154 # common.bash says why

load common

@test "--help names every option, the forms of a zone, and the exit status" {
    run --separate-stderr -0 "$MONITOR" --help
    [ "$stderr" = "" ]
    for text in 'Usage: monitor [OPTIONS]' '--interval SECONDS' '--count NUMBER' '--path PATH' \
        '--offset ZONE' '--log FILE' '--replay FILE' '--average NAMES' '-h, --help' '--version' \
        'Z, +hh:mm or -hh:mm' 'Exit status: 0'; do
        grep -qF -e "$text" <<<"$output"
    done
    run ! grep -E '.{81}' <<<"$output"
}

@test "README.md shows the help text" {
    run -0 "$MONITOR" --help
    [[ $(<"$PAGE") == *$'monitor --help\n'"$output"$'\n```'* ]]
}

@test "-h shows the same as --help" {
    run --separate-stderr -0 "$MONITOR" -h
    [ "$stderr" = "" ]
    [ "$output" = "$("$MONITOR" --help)" ]
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
    refuses '--count: a value is missing' --count
    refuses '--count: a value is missing' --count= 3
    refuses '--path: a value is missing' --path= --help
}

@test "control bytes of an option are shown as numbers" {
    refuses '--count: "\x1B[31m" is not a whole number from 0 to 1000000000' --count $'\e[31m'
}

@test "an option given twice is refused" {
    refuses '--count: given more than once' --count 1 --count 2
}

@test "a word that is no option is refused" {
    refuses '"--colour" is not an option' --colour
    refuses '"-c" is not an option' -c 3
    refuses '"help" is not an option, which begins with "--"' help
    refuses '"extra" is not an option, which begins with "--"' --count 1 extra more
    refuses '"" is not an option, which begins with "--"' ''
}

@test "an option without a value is refused with one" {
    refuses '--help: takes no value' --help=no
    refuses '--version: takes no value' --version=no
}

@test "an empty name of a log is refused" {
    refuses '--log: "" is not a path' --log ''
    refuses '--replay: "" is not a path' --replay ''
}

@test "a wrong name of an average is named" {
    for text in load 'cpu disk' CPU time --count; do
        refuses "--average: \"$text\" is not one of cpu,memory,disk,free,uptime" --average "$text"
        refuses "--average: \"$text\" is not one of cpu,memory,disk,free,uptime" \
            --average "cpu,$text,disk"
    done
    refuses '--average: "cpu" is named twice' --average cpu,cpu
    for text in '' cpu,,disk 'cpu,' ,cpu; do
        refuses '--average: a name is missing' --average "$text"
    done
    refuses '--average: given more than once' --average cpu --average disk
}

@test "a replay does not go with options of live readings" {
    refuses '--replay does not go with --interval' --replay log --interval 1
    refuses '--replay does not go with --count' --count 0 --replay log
    refuses '--replay does not go with --path' --replay log --path /
    refuses '--replay does not go with --log' --log log --replay log
}

@test "the name of a chart's file is refused unless it ends in a format" {
    for file in chart chart. .svg folder.svg/chart folder/ 'chart.s/v' 'chart.s v' ''; do
        refuses "--chart: \"$file\" is not a file name that ends like load.svg or load.png" \
            --chart "$file"
    done
}

@test "a window is refused unless it is a whole number of seconds, up to thirty days" {
    for text in 4 2592001 5.5 -5 x ''; do
        refuses "--window: \"$text\" is not a whole number from 5 to 2592000" \
            --chart a.svg --window "$text"
    done
}

@test "a theme is refused unless it is light or dark" {
    refuses '--theme: "grey" is not light or dark' --chart a.svg --theme grey
}

@test "a title is refused unless it has 1 to 100 characters without control characters" {
    for text in '' "$(printf '%0101d' 0)"; do
        refuses "--title: \"$text\" is not a title of 1 to 100 characters" \
            --chart a.svg --title "$text"
    done
    refuses '--title: "a\x0Ab" is not a title of 1 to 100 characters' --chart a.svg --title $'a\nb'
    refuses '--title: "\xFF" is not a title of 1 to 100 characters' --chart a.svg --title $'\xff'
}

@test "an empty folder of plugins is refused" {
    refuses '--plugins: "" is not a path' --chart a.svg --plugins ''
}

@test "options of a chart are refused without a chart" {
    refuses '--window does not go without --chart' --window 60
    refuses '--theme does not go without --chart' --theme dark
    refuses '--title does not go without --chart' --title load
    refuses '--plugins does not go without --chart' --plugins folder
}
