#!/usr/bin/env bats
# The library that is built twice, in folders of other names and lengths, is the same bytes.

setup() {
    : "${SOURCE_DIR:?}" "${CMAKE:?}" "${GXX:?}"
}

# build FOLDER: copies the sources there and builds a release of the library.
build() {
    mkdir -p "$1"
    cp -r "$SOURCE_DIR"/{utillibrary,cmake,docs,gdb,CMakeLists.txt} "$1"
    "$CMAKE" -S "$1" -B "$1/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$GXX" >log
    "$CMAKE" --build "$1/build" --parallel 2 >>log
    "$CMAKE" --install "$1/build" --prefix "$1/installed" >>log
}

@test "the installed library does not depend on the folder in which it was built" {
    cd "$BATS_TEST_TMPDIR"
    build a
    build "a folder/with a longer name"
    cmp a/installed/lib/libutillibrary.so.1.0.0 "a folder/with a longer name/installed/lib/libutillibrary.so.1.0.0"
    run grep --fixed-strings --count "$PWD" a/installed/lib/libutillibrary.so.1.0.0
    [[ $output == 0 ]]
}
