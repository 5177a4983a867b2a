#!/usr/bin/env bats
# A host's log hook hears every report of the library, whatever the library and the host were built
# with; a host without one hears nothing. What is done and what must be heard stands in
# hook/failure_paths.cpp.

bats_require_minimum_version 1.5.0

# COMPILER FLAGS...: how the hosts are built.
HOST_KINDS=(
    "gcc"
    "gcc -fvisibility=hidden"
    "gcc -fvisibility=hidden -flto"
    "clang"
    "clang -fvisibility=hidden"
    "clang -fvisibility=hidden -flto -fuse-ld=lld"
)

# host_folder COMPILER FLAGS...
host_folder() {
    echo "$BATS_FILE_TMPDIR/${*//[^a-z]/_}"
}

# build_hosts COMPILER FLAGS...: four of them, and the plug-in of those that load the library.
build_hosts() {
    local compiler=$GXX folder library=(-L"$VARIANTS/gcc" -lutillibrary)
    if [[ $1 == clang ]]; then compiler=$CLANGXX; fi
    folder=$(host_folder "$@")
    local compile=("$compiler" -std=c++20 -O2 -fPIC -I"$SOURCE_DIR" -I"$SOURCE_DIR/tests" "${@:2}")
    mkdir "$folder"
    cd "$folder" || return

    local source
    for source in "$SOURCE_DIR"/tests/hook/*.cpp "$SOURCE_DIR/tests/support/recorded_reports.cpp"; do
        "${compile[@]}" -c "$source"
    done
    local linked=(linked.o failure_paths.o "${library[@]}")
    "${compile[@]}" listening_host.o recorded_reports.o "${linked[@]}" -o linked_listener
    "${compile[@]}" silent_host.o "${linked[@]}" -o linked_silent
    "${compile[@]}" -shared failure_paths.o "${library[@]}" -o libfailure_paths.so
    "${compile[@]}" -rdynamic listening_host.o recorded_reports.o loaded.o -o loading_listener
    "${compile[@]}" -rdynamic silent_host.o loaded.o -o loading_silent
}

setup_file() {
    : "${SOURCE_DIR:?}" "${VARIANTS:?}" "${GXX:?}" "${CLANGXX:?}" "${READELF:?}"
    local kind builds=()
    for kind in "${HOST_KINDS[@]}"; do
        # shellcheck disable=SC2086 # words of their own
        (build_hosts $kind) &
        builds+=($!)
        if ((${#builds[@]} == 2)); then
            wait "${builds[0]}"
            wait "${builds[1]}"
            builds=()
        fi
    done
}

# run_host VARIANT PROGRAM: with that library, and nothing else of this one's kind.
run_host() {
    run --separate-stderr env LD_LIBRARY_PATH="$VARIANTS/$1:$(dirname "$2")" "$2"
}

# every_host_hears VARIANT
every_host_hears() {
    local kind way folder
    for kind in "${HOST_KINDS[@]}"; do
        # shellcheck disable=SC2086
        folder=$(host_folder $kind)
        for way in linked loading; do
            echo "library: $1; host: $kind, $way"

            run_host "$1" "$folder/${way}_listener"
            echo "$output"
            [[ $status -eq 0 ]]
            [[ ${#lines[@]} -gt 0 && $output != *"NOT HEARD"* ]]

            run_host "$1" "$folder/${way}_silent"
            [[ $status -eq 0 ]]
            [[ -z $output ]]
            # shellcheck disable=SC2154 # set by run --separate-stderr
            [[ -z $stderr ]]
        done
    done
}

@test "gcc"                                { every_host_hears gcc; }
@test "gcc, symbolic functions"            { every_host_hears gcc-symbolic; }
@test "gcc with LTO"                       { every_host_hears gcc-lto; }
@test "gcc with LTO, symbolic functions"   { every_host_hears gcc-lto-symbolic; }
@test "clang"                              { every_host_hears clang; }
@test "clang, symbolic functions"          { every_host_hears clang-symbolic; }
@test "clang with LTO"                     { every_host_hears clang-lto; }
@test "clang with LTO, symbolic functions" { every_host_hears clang-lto-symbolic; }

@test "a host that does not export its hook hears nothing when it loads the library" {
    cd "$(host_folder gcc)"
    "$GXX" listening_host.o recorded_reports.o loaded.o -o unexported
    run_host gcc "$PWD/unexported"
    echo "$output"
    [[ $status -eq 1 ]]
    [[ $output == *"NOT HEARD"* ]]
}

@test "the library's calls go through the dynamic symbol table" {
    local variant
    for variant in {gcc,clang}{,-lto}{,-symbolic}; do
        echo "library: $variant"
        "$READELF" --wide --relocs "$VARIANTS/$variant/libutillibrary.so.1" |
            grep -E '(JUMP_SLO|GLOB_DAT).*_ZN3com8halvorin11application3oru8writelog'
    done
}
