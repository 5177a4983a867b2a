#!/usr/bin/env bats
# scripts/bootstrap on machines that are made up: their commands are the ones in a folder of links,
# from which some are taken away, beside an apt-get, an id and a sudo that only write down what they
# are asked.
# shellcheck disable=SC2016 # the scripts of the fakes expand when they run

bats_require_minimum_version 1.5.0

setup() {
    : "${SOURCE_DIR:?}"
    export MACHINE="$BATS_TEST_TMPDIR/machine" ASKED="$BATS_TEST_TMPDIR/asked"
    mkdir "$MACHINE"
    : >"$ASKED"

    local command
    for command in bash env cat ln cmake g++ ninja pkg-config clang++ ld.lld readelf xmllint bats \
        localedef; do
        ln -s "$(command -v "$command")" "$MACHINE/$command"
    done
    fake id 'echo 0'
    fake apt-cache 'exit 0'
    fake apt-get 'echo "apt-get $* [$DEBIAN_FRONTEND]" >>"$ASKED"'
    fake sudo 'echo "sudo" >>"$ASKED"; exec "$@"'
}

# fake COMMAND SCRIPT
fake() {
    printf '#!/bin/bash\n%s\n' "$2" >"$MACHINE/$1"
    chmod +x "$MACHINE/$1"
}

# take_away COMMAND...
take_away() {
    local command
    for command in "$@"; do rm "$MACHINE/$command"; done
}

# An apt-get that brings these commands when it installs.
let_apt_bring() {
    fake apt-get "echo \"apt-get \$* [\$DEBIAN_FRONTEND]\" >>\"\$ASKED\"
        if [[ \$* == *install* ]]; then
            for command in $*; do ln -s /bin/true \"\$MACHINE/\$command\"; done
        fi"
}

bootstrap() {
    run --separate-stderr env PATH="$MACHINE" "$SOURCE_DIR/scripts/bootstrap" "$@"
    echo "$output"
    # shellcheck disable=SC2154 # set by run --separate-stderr
    echo "$stderr"
    cat "$ASKED"
}

asked() {
    diff "$ASKED" -
}

@test "nothing is asked for where nothing is missing" {
    local profile
    for profile in demo test; do
        bootstrap "$profile"
        [[ $status -eq 0 ]]
        [[ -z $output && -z $stderr ]]
        [[ ! -s $ASKED ]]
    done
}

@test "nor does anyone need to be root, or have apt-get, for that" {
    fake id 'echo 1000'
    take_away apt-get sudo
    bootstrap test
    [[ $status -eq 0 ]]
}

@test "root asks apt-get for all that is missing at once" {
    take_away cmake ninja
    let_apt_bring cmake ninja
    bootstrap demo
    [[ $status -eq 0 ]]
    asked <<END
apt-get --quiet --yes update [noninteractive]
apt-get --quiet --yes install --no-install-recommends cmake ninja-build [noninteractive]
END
}

@test "a user asks through sudo" {
    fake id 'echo 1000'
    take_away bats
    let_apt_bring bats
    bootstrap test
    [[ $status -eq 0 ]]
    asked <<END
sudo
apt-get --quiet --yes update [noninteractive]
sudo
apt-get --quiet --yes install --no-install-recommends bats [noninteractive]
END
}

@test "a user without sudo is told what is needed" {
    fake id 'echo 1000'
    take_away sudo cmake clang++
    bootstrap test
    [[ $status -eq 1 ]]
    [[ $stderr == "bootstrap: only root may install, and there is no sudo. Please have installed:
    the command cmake (Debian: cmake)
    the command clang++ (Debian: clang)" ]]
    [[ ! -s $ASKED ]]
}

@test "a machine without apt-get is told what is needed" {
    take_away apt-get ninja
    bootstrap demo
    [[ $status -eq 1 ]]
    [[ $stderr == "bootstrap: this machine has no apt-get. Please install:
    the command ninja (Debian: ninja-build)" ]]
}

@test "without a compiler its headers are missing as well" {
    take_away apt-get g++
    bootstrap demo
    [[ $status -eq 1 ]]
    [[ $stderr == *"
    the command g++ (Debian: g++)
    the header CLI/CLI.hpp (Debian: libcli11-dev)
    the header cairo/cairo.h (Debian: libcairo2-dev)" ]]
}

@test "a header is looked for where the compiler looks" {
    take_away g++
    fake g++ 'input=$(cat); [[ $input != *gmock* ]]'
    let_apt_bring libgmock-dev
    bootstrap test
    [[ $status -eq 1 ]] # since this apt-get brings no header
    grep -q 'install --no-install-recommends libgmock-dev \[' "$ASKED"
}

@test "the demonstration needs nothing that only tests need" {
    take_away clang++ ld.lld readelf xmllint bats localedef
    bootstrap demo
    [[ $status -eq 0 ]]
    [[ ! -s $ASKED ]]
}

@test "each of what tests need is asked for" {
    take_away clang++ ld.lld readelf xmllint bats localedef
    bootstrap test
    grep -q 'install --no-install-recommends clang lld binutils libxml2-utils bats libc-bin \[' "$ASKED"
}

@test "what apt-get did not bring is told" {
    take_away cmake
    bootstrap demo
    [[ $status -eq 1 ]]
    [[ $stderr == "bootstrap: apt-get has run, and still missing is:
    the command cmake (Debian: cmake)" ]]
}

@test "an apt-get that fails ends it" {
    take_away cmake
    fake apt-get 'exit 7'
    bootstrap demo
    [[ $status -eq 7 ]]
}

@test "another profile is refused" {
    local argument
    for argument in "" both --help; do
        bootstrap "$argument"
        [[ $status -eq 1 ]]
        [[ $stderr == "usage: scripts/bootstrap demo|test|fuzz" ]]
        [[ ! -s $ASKED ]]
    done
}
