#!/usr/bin/env bats
# The programs and commands of README.md are compiled and run unchanged.

load support/own_system

WARNINGS=(-std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

setup_file() {
    : "${SOURCE_DIR:?}" "${VARIANTS:?}" "${GXX:?}"
}

# block NUMBER LANGUAGE: the text of that fenced block of a language.
block() {
    awk -v wanted="$1" -v fence="\`\`\`$2" '
        $0 == "```" && inside { exit }
        inside { print }
        $0 == fence && ++count == wanted { inside = 1 }' "$SOURCE_DIR/README.md"
}

# compile PROGRAM SOURCE...
compile() {
    "$GXX" "${WARNINGS[@]}" -I"$SOURCE_DIR" "${@:2}" -L"$VARIANTS/gcc" -lutillibrary \
        -Wl,-rpath,"$VARIANTS/gcc" -o "$1"
}

@test "the first program prints what README shows below it" {
    cd "$BATS_TEST_TMPDIR"
    block 1 cpp >first.cpp
    compile first first.cpp
    diff <(./first) <(block 1 text)
    [[ $(./first | wc -l) -eq 3 ]]
}

@test "the log hook of README receives a report" {
    cd "$BATS_TEST_TMPDIR"
    block 2 cpp >hook.cpp
    cat >host.cpp <<END
#include <utillibrary/datatypes/Variant.h>

int main() {
    com::halvorin::datatypes::Variant wrong;
    wrong.dataType = 15;
    return wrong.toString().empty() ? 0 : 1;
}
END
    compile host host.cpp hook.cpp
    diff <(./host 2>&1) - <<END
Variant::convertToString (3): Cannot convert unknown type [0x80004005]
END
}

# commands NUMBER: the lines of that indented block of README's section on installing.
commands() {
    awk -v wanted="$1" '
        /^## / { inside = $0 == "## Installing and linking" }
        inside && /^    / { if (!open) count++; open = 1; if (count == wanted) print substr($0, 5); next }
        { open = 0 }' "$SOURCE_DIR/README.md"
}

@test "the commands on installing, run unchanged, give a host that runs" {
    cd "$BATS_TEST_TMPDIR"
    cp -r "$SOURCE_DIR"/{utillibrary,cmake,docs,gdb,CMakeLists.txt} .
    block 1 cpp >host.cpp
    block 1 cmake >>use.cmake
    { commands 1 && commands 2 && echo ./host; } >lines
    [[ $(wc -l <lines) -eq 6 ]]
    # The test is root in its own system, where sudo may be missing.
    mkdir bin
    printf '#!/bin/sh\nexec "$@"\n' >bin/sudo
    chmod +x bin/sudo
    with_a_system_of_its_own /etc /usr/local >output <<'END'
PATH=$PWD/bin:$PATH
source ./lines >log
./host
mkdir by_cmake
{
    echo 'cmake_minimum_required(VERSION 3.25)'
    echo 'project(host LANGUAGES CXX)'
    echo 'add_executable(host ../host.cpp)'
    cat use.cmake
} >by_cmake/CMakeLists.txt
cmake -S by_cmake -B by_cmake/build >>log
cmake --build by_cmake/build >>log
by_cmake/build/host
END
    diff output <(block 1 text && block 1 text)
}
