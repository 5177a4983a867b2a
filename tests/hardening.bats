#!/usr/bin/env bats
# A release of the library, of the monitor and of its plugins is built with the flags of
# cmake/hardening.cmake, and what they do is in the files.

bats_require_minimum_version 1.5.0

setup_file() {
    : "${SOURCE_DIR:?}" "${CMAKE:?}" "${GXX:?}" "${VARIANTS:?}" "${READELF:?}" "${NM:?}" "${MONITOR:?}"
}

# for_every_file CHECK: calls it with the path of each file.
for_every_file() {
    local file files=("$MONITOR" "$(dirname "$MONITOR")"/plugins/*.so)
    while read -r file; do
        files+=("$VARIANTS/$file/libutillibrary.so.1")
    done <"$VARIANTS/names"
    ((${#files[@]} > 10))
    for file in "${files[@]}"; do
        echo "file: $file"
        [[ -s $file ]]
        "$1" "$file"
    done
}

# shows FILE READELF_FLAG PATTERN
shows() {
    "$READELF" --wide "$2" "$1" | grep -qE "$3"
}

# calls FILE PATTERN: true if the file uses a function of another library with such a name.
calls() {
    "$NM" --dynamic --undefined-only --format=just-symbols "$1" | grep -qE "$2"
}

has_read_only_tables() {
    shows "$1" --program-headers '^ *GNU_RELRO'
    shows "$1" --dynamic 'BIND_NOW|Flags:.*\bNOW\b'
}

@test "tables of addresses are read-only after loading" {
    for_every_file has_read_only_tables
}

has_no_executable_stack() {
    shows "$1" --program-headers '^ *GNU_STACK .* RW  *0'
}

@test "the stack is not executable" {
    for_every_file has_no_executable_stack
}

has_read_only_code() {
    if shows "$1" --dynamic 'TEXTREL'; then return 1; fi
}

@test "no code is changed while it is loaded" {
    for_every_file has_read_only_code
}

brings_no_search_path() {
    # The monitor of a build folder finds the library there; every other file brings no folder.
    if [[ $1 == "$MONITOR" || $1 == */plugins/* ]]; then return; fi
    if shows "$1" --dynamic 'RPATH|RUNPATH'; then return 1; fi
}

@test "the library brings no search path" {
    for_every_file brings_no_search_path
}

checks_its_stack() {
    calls "$1" '^__stack_chk_fail'
}

@test "functions with buffers on the stack check them" {
    for_every_file checks_its_stack
}

lets_libc_check_sizes() {
    # A plugin that only calls the C++ library has no such call.
    if [[ $1 == */plugins/* ]]; then return; fi
    calls "$1" '^__[a-z]+_chk(@|$)'
}

@test "libc checks the sizes of buffers" {
    for_every_file lets_libc_check_sizes
}

@test "without the option the library has no such checks" {
    local build="$BATS_TEST_TMPDIR/build"
    "$CMAKE" -S "$SOURCE_DIR" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER="$GXX" -DUTILLIBRARY_HARDENING=OFF -DCMAKE_CXX_FLAGS=-fno-stack-protector
    "$CMAKE" --build "$build" --target utillibrary --parallel 2
    calls "$build/utillibrary/libutillibrary.so.1" 'writelog|memcpy|malloc|_Znwm'
    if calls "$build/utillibrary/libutillibrary.so.1" '^__stack_chk_fail'; then return 1; fi
}
