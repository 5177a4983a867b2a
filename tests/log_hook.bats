#!/usr/bin/env bats
# A host that defines the log hook receives every report of the library, for all flags with which
# the library and the host are built. A host without a hook receives nothing. hook/failure_paths.cpp lists what is
# done and which report must arrive.

bats_require_minimum_version 1.5.0

# COMPILER FLAGS...: how the hosts are built. Only a full run builds some of them with link-time
# optimisation, as it does with the library.
HOST_KINDS=("gcc" "gcc -fvisibility=hidden" "clang -fvisibility=hidden")
if [[ ${TEST_ALL-} == ON ]]; then
    HOST_KINDS+=(
        "clang"
        "gcc -fvisibility=hidden -flto"
        "clang -fvisibility=hidden -flto -fuse-ld=lld"
    )
fi

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
    wait
}

# run_host VARIANT PROGRAM: runs a host with the library of that variant.
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

# Only a full run builds the libraries with link-time optimisation.
only_in_a_full_run() {
    if [[ ${TEST_ALL-} != ON ]]; then skip "only in a full run"; fi
}

# every_library_reaches_every_host VARIANTS...
every_library_reaches_every_host() {
    local variant
    for variant in "$@"; do
        every_host_hears "$variant"
    done
}

@test "a library of gcc, with every linker and symbolic flag, reports to every host" {
    every_library_reaches_every_host gcc gcc-{bfd,gold,lld}-{functions,symbolic}
}

@test "a library of gcc with LTO, with every symbolic flag, reports to every host" {
    only_in_a_full_run
    every_library_reaches_every_host gcc-lto gcc-lto-bfd-{functions,symbolic}
}

@test "a library of clang, with every linker and symbolic flag, reports to every host" {
    every_library_reaches_every_host clang clang-{bfd,gold,lld}-{functions,symbolic}
}

@test "a library of clang with LTO, with every symbolic flag, reports to every host" {
    only_in_a_full_run
    every_library_reaches_every_host clang-lto clang-lto-lld-{functions,symbolic}
}

@test "a library whose last linker flag is -Bsymbolic reports to every host" {
    every_host_hears clang-lld-last
}

@test "a host that does not export its hook hears nothing when it loads the library" {
    cd "$(host_folder gcc)"
    "$GXX" listening_host.o recorded_reports.o loaded.o -o unexported
    run_host gcc "$PWD/unexported"
    echo "$output"
    [[ $status -eq 1 ]]
    [[ $output == *"NOT HEARD"* ]]
}

# library_shows VARIANT READELF_FLAG
library_shows() {
    "$READELF" --wide "$2" "$VARIANTS/$1/libutillibrary.so.1"
}

@test "the library's calls go through the dynamic symbol table, and the library comes last there" {
    local variant
    while read -r variant; do
        echo "library: $variant"
        library_shows "$variant" --relocs |
            grep -E '(JUMP_SLO|GLOB_DAT).*_ZN3com8halvorin11application3oru8writelog'
        # With this flag the loader would look into the library before it looks into the program.
        run grep SYMBOLIC <(library_shows "$variant" --dynamic)
        [[ $status -eq 1 ]]
    done <"$VARIANTS/names"
}
