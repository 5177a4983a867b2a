#!/usr/bin/env bats
# scripts/bootstrap on imitated machines. A machine's commands are links in a folder, from which a test
# removes some. Its apt-get, id, sudo and sleep are fakes that only write down their arguments.
# shellcheck disable=SC2016 # the scripts of the fakes expand when they run

bats_require_minimum_version 1.5.0

setup() {
    : "${SOURCE_DIR:?}"
    export MACHINE="$BATS_TEST_TMPDIR/machine" ASKED="$BATS_TEST_TMPDIR/asked"
    mkdir "$MACHINE"
    : >"$ASKED"

    local command
    for command in bash cat env grep ln sort uname; do
        ln -s "$(command -v "$command")" "$MACHINE/$command"
    done
    for command in cmake ninja pkg-config clang-format clang-tidy llvm-symbolizer gdb git ld.lld localedef python3 \
        readelf shellcheck taskset xmllint bats help2man chromium doxygen dpkg-buildpackage dh lintian \
        aarch64-linux-gnu-g++ qemu-aarch64 llvm-cov-19; do
        ln -s /bin/true "$MACHINE/$command"
    done
    fake g++ 'cat >/dev/null'
    fake clang++ "echo $BATS_TEST_TMPDIR"
    touch "$BATS_TEST_TMPDIR/libclang_rt."{asan,fuzzer}"-$(uname -m).a"
    fake clang++-19 "echo $BATS_TEST_TMPDIR"
    mkdir -p "$BATS_TEST_TMPDIR/lib/linux"
    touch "$BATS_TEST_TMPDIR/lib/linux/libclang_rt.profile-$(uname -m).a"
    fake id 'echo 0'
    fake apt-cache 'exit 0'
    fake apt-get 'echo "apt-get $* [$DEBIAN_FRONTEND]" >>"$ASKED"'
    fake sudo 'echo "sudo" >>"$ASKED"; exec "$@"'
    fake sleep 'echo "sleep $*" >>"$ASKED"'
}

# fake COMMAND SCRIPT: the link goes first, since writing through it would change the real command.
fake() {
    rm -f "$MACHINE/$1"
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

@test "if nothing is missing, nothing is installed" {
    local profile
    for profile in build demo test test-all coverage fuzz bench docs package; do
        bootstrap "$profile"
        [[ $status -eq 0 ]]
        [[ -z $output && -z $stderr ]]
        [[ ! -s $ASKED ]]
    done
}

@test "if nothing is missing, neither root nor apt-get is needed" {
    fake id 'echo 1000'
    take_away apt-get sudo
    bootstrap test
    [[ $status -eq 0 ]]
}

@test "root installs all missing packages by one apt-get" {
    take_away cmake ninja
    let_apt_bring cmake ninja
    bootstrap demo
    [[ $status -eq 0 ]]
    asked <<END
apt-get --quiet --yes -o DPkg::Lock::Timeout=300 update [noninteractive]
apt-get --quiet --yes -o DPkg::Lock::Timeout=300 install --no-install-recommends cmake ninja-build [noninteractive]
END
}

@test "a user installs through sudo" {
    fake id 'echo 1000'
    take_away bats
    let_apt_bring bats
    bootstrap test
    [[ $status -eq 0 ]]
    asked <<END
sudo
apt-get --quiet --yes -o DPkg::Lock::Timeout=300 update [noninteractive]
sudo
apt-get --quiet --yes -o DPkg::Lock::Timeout=300 install --no-install-recommends bats [noninteractive]
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

@test "without a compiler its headers count as missing" {
    take_away apt-get g++
    bootstrap demo
    [[ $status -eq 1 ]]
    [[ $stderr == *"
    the command g++ (Debian: g++)
    the header CLI/CLI.hpp (Debian: libcli11-dev)
    the header cairo/cairo.h (Debian: libcairo2-dev)" ]]
}

@test "a header is searched for where the compiler searches" {
    fake g++ 'input=$(cat); [[ $input != *gmock* ]]'
    let_apt_bring libgmock-dev
    bootstrap test
    [[ $status -eq 1 ]] # since this apt-get brings no header
    grep -q 'install --no-install-recommends libgmock-dev \[' "$ASKED"
}

TEST_COMMANDS=(clang++ clang-format ld.lld shellcheck readelf xmllint bats help2man gdb git python3 localedef)

@test "the demonstration needs nothing that only tests need" {
    take_away "${TEST_COMMANDS[@]}" clang-tidy taskset
    bootstrap demo
    [[ $status -eq 0 ]]
    [[ ! -s $ASKED ]]
}

@test "each command that tests need is installed if it is missing" {
    take_away "${TEST_COMMANDS[@]}"
    bootstrap test
    grep -q 'install --no-install-recommends clang clang-format lld shellcheck binutils libxml2-utils bats help2man gdb git python3 libc-bin \[' "$ASKED"
}

@test "clang-tidy and clang's sanitizers are for the profile test-all alone" {
    take_away clang-tidy
    bootstrap test
    [[ $status -eq 0 ]]
    fake clang++ 'echo /nowhere'
    bootstrap test-all
    # libclang-rt-dev brings two things, and is named once.
    grep -q 'install --no-install-recommends clang-tidy libclang-rt-dev \[' "$ASKED"
}

@test "a full run needs what the fuzzers need" {
    take_away clang-tidy
    rm "$BATS_TEST_TMPDIR/libclang_rt.fuzzer-$(uname -m).a"
    bootstrap test-all
    grep -q 'install --no-install-recommends clang-tidy libclang-rt-dev \[' "$ASKED"
}

@test "clang++ 19 and its tools are for the profiles coverage and test-all alone" {
    local profile
    take_away llvm-cov-19 clang++-19
    for profile in test fuzz; do
        bootstrap "$profile"
        [[ $status -eq 0 ]]
        [[ ! -s $ASKED ]]
    done
    for profile in coverage test-all; do
        : >"$ASKED"
        bootstrap "$profile"
        grep -q 'install --no-install-recommends clang-19 llvm-19 libclang-rt-19-dev \[' "$ASKED"
    done
    : >"$ASKED"
    fake clang++-19 'echo /nowhere'
    ln -s /bin/true "$MACHINE/llvm-cov-19"
    bootstrap coverage
    grep -q 'install --no-install-recommends libclang-rt-19-dev \[' "$ASKED"
}

@test "the profile test-all asks for a compiler and an emulator of aarch64 on other processors alone" {
    take_away aarch64-linux-gnu-g++ qemu-aarch64
    fake uname 'echo aarch64'
    touch "$BATS_TEST_TMPDIR/"{,lib/linux/}libclang_rt.{asan,fuzzer,profile}-aarch64.a
    bootstrap test-all
    [[ $status -eq 0 ]]
    [[ ! -s $ASKED ]]
    fake uname 'echo x86_64'
    touch "$BATS_TEST_TMPDIR/"{,lib/linux/}libclang_rt.{asan,fuzzer,profile}-x86_64.a
    bootstrap test-all
    grep -q 'install --no-install-recommends g++-aarch64-linux-gnu qemu-user \[' "$ASKED"
}

@test "of two packages the one that the release has is installed" {
    fake clang++ 'echo /nowhere'
    fake apt-cache '[[ $2 == libclang-rt-14-dev ]]'
    bootstrap fuzz
    grep -q 'install --no-install-recommends libclang-rt-14-dev \[' "$ASKED"
}

@test "libraries to compare with are installed where packages can be installed" {
    fake pkg-config 'exit 1'
    bootstrap bench
    [[ $status -eq 0 ]] # although this apt-get brings none
    grep -q 'install --no-install-recommends libglib2.0-dev libgtop2-dev qt6-base-dev \[' "$ASKED"
}

@test "libraries to compare with may be missing where no package can be installed" {
    fake pkg-config 'exit 1'
    take_away apt-get
    bootstrap bench
    [[ $status -eq 0 ]]
    [[ -z $stderr ]]
}

@test "a measurement fails without its own tool where no package can be installed" {
    take_away apt-get taskset
    bootstrap bench
    [[ $status -eq 1 ]]
    [[ $stderr == "bootstrap: this machine has no apt-get. Please install:
    the command taskset (Debian: util-linux)" ]]
}

# An apt-get whose lists of packages are locked for the first NUMBER updates.
lock_lists() {
    fake apt-get "echo \"apt-get \${*: -1}\" >>\"\$ASKED\"
        if [[ \$* == *update ]] && ((\$(grep -c update \"\$ASKED\") <= $1)); then
            echo 'E: Could not get lock /var/lib/apt/lists/lock. It is held by process 7'
            exit 100
        fi
        if [[ \$* == *install* ]]; then ln -s /bin/true \"\$MACHINE/ninja\"; fi"
}

@test "an update waits while another apt-get locks the lists of packages" {
    take_away ninja
    lock_lists 2
    bootstrap demo
    [[ $status -eq 0 ]]
    asked <<END
apt-get update
sleep 5
apt-get update
sleep 5
apt-get update
apt-get ninja-build
END
}

@test "an update gives up after five minutes" {
    take_away ninja
    lock_lists 1000
    bootstrap demo
    [[ $status -eq 100 ]]
    [[ $(grep -c sleep "$ASKED") -eq 60 ]]
    [[ $output == *"Could not get lock"* ]]
}

@test "--packages prints the packages of a profile and installs nothing" {
    take_away cmake apt-get
    bootstrap --packages demo
    [[ $status -eq 0 ]]
    [[ $output == "cmake
g++
libcairo2-dev
libcli11-dev
ninja-build
pkg-config" ]]
}

@test "a package that apt-get did not install is reported" {
    take_away cmake
    bootstrap demo
    [[ $status -eq 1 ]]
    [[ $stderr == "bootstrap: apt-get has run, and this is still missing:
    the command cmake (Debian: cmake)" ]]
}

@test "an apt-get that fails ends the script" {
    take_away cmake
    fake apt-get 'exit 7'
    bootstrap demo
    [[ $status -eq 7 ]]
}

@test "an unknown profile is refused" {
    local arguments
    for arguments in "" both --packages "demo test" "--packages both"; do
        # shellcheck disable=SC2086 # words of their own
        bootstrap $arguments
        [[ $status -eq 2 ]]
        [[ $stderr == "usage: scripts/bootstrap [--packages] build|demo|test|test-all|coverage|fuzz|bench|docs|package" ]]
        [[ ! -s $ASKED ]]
    done
}
