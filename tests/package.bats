#!/usr/bin/env bats
# The library as a package: installed, moved elsewhere, and found there by the hosts in package/.

bats_require_minimum_version 1.5.0

LIBRARY_FOLDERS=(lib lib64 lib/x86_64-linux-gnu)
COMPILERS=("$GXX" "$CLANGXX")
STANDARDS=(c++17 c++20 c++2b)
WARNINGS=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

setup_file() {
    : "${SOURCE_DIR:?}" "${CMAKE:?}" "${GXX:?}" "${CLANGXX:?}" "${PKG_CONFIG:?}" "${READELF:?}"
    unset PKG_CONFIG_LIBDIR PKG_CONFIG_SYSROOT_DIR CMAKE_PREFIX_PATH LD_LIBRARY_PATH

    # One build serves all; the folder of the library only matters to what is installed.
    export BUILD="$BATS_FILE_TMPDIR/build" MOVED="$BATS_FILE_TMPDIR/moved"
    mkdir "$MOVED"
    local folder
    for folder in "${LIBRARY_FOLDERS[@]}"; do
        install_library "$BATS_FILE_TMPDIR/installed" -DCMAKE_INSTALL_LIBDIR="$folder"
        mv "$BATS_FILE_TMPDIR/installed" "$(moved_to "$folder")"
    done
}

# moved_to LIBRARY_FOLDER: where the package with that folder lies now.
moved_to() {
    echo "$MOVED/${1//\//-}"
}

# install_library PREFIX CMAKE_ARGUMENTS...
install_library() {
    "$CMAKE" -S "$SOURCE_DIR" -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER="$GXX" -DCMAKE_INSTALL_PREFIX="$1" "${@:2}"
    "$CMAKE" --build "$BUILD" --parallel 2
    "$CMAKE" --install "$BUILD"
}

# package_config PREFIX/LIBRARY_FOLDER ARGUMENTS...
package_config() {
    PKG_CONFIG_PATH="$1/pkgconfig" "$PKG_CONFIG" "${@:2}" utillibrary
}

# prints_what_it_should PROGRAM [LIBRARY_FOLDER]
prints_what_it_should() {
    echo "host: $1"
    LD_LIBRARY_PATH="${2-}" "$1" | diff - "$SOURCE_DIR/tests/package/host_output.txt"
}

@test "the package is the library, its public headers, two descriptions, and a page" {
    diff <(cd "$MOVED/lib" && find . ! -type d | sort) - <<END
$(cd "$SOURCE_DIR" && find ./utillibrary -name '*.h' ! -name '*_internal.h' ! -path '*/internal/*' |
        sed 's,^\.,./include,' | sort)
./lib/cmake/utillibrary/utillibraryConfig.cmake
./lib/cmake/utillibrary/utillibraryConfigVersion.cmake
./lib/cmake/utillibrary/utillibraryTargets-release.cmake
./lib/cmake/utillibrary/utillibraryTargets.cmake
./lib/libutillibrary.so
./lib/libutillibrary.so.1
./lib/libutillibrary.so.1.0.0
./lib/libutillibrary.so.1.0.0-gdb.py
./lib/pkgconfig/utillibrary.pc
./share/doc/utillibrary/kept.md
END
}

@test "no private header is installed, or included by one that is" {
    [[ -n $(find "$MOVED" -name 'Variant.h') ]]
    [[ -z $(find "$MOVED" -name '*_internal*' -o -name internal) ]]
    run grep --recursive --extended-regexp '_internal\.h|/internal/' "$MOVED/lib/include"
    [[ $status -eq 1 ]]
}

@test "nothing in the package names a folder of the build or of the first installation" {
    local folder
    for folder in "$SOURCE_DIR" "$BUILD" "$BATS_FILE_TMPDIR/installed"; do
        run grep --recursive --fixed-strings --files-with-matches "$folder" "$MOVED"
        echo "$folder: $output"
        [[ $status -eq 1 ]]
    done
}

# configure_host BUILD COMPILER PREFIX/LIBRARY_FOLDER
configure_host() {
    "$CMAKE" -S "$SOURCE_DIR/tests/package/found" -B "$1" -G Ninja \
        -DCMAKE_CXX_COMPILER="$2" -Dutillibrary_DIR="$3/cmake/utillibrary"
}

# compile_host PROGRAM COMPILER STANDARD PREFIX/LIBRARY_FOLDER: with what pkg-config says.
compile_host() {
    local flags
    read -ra flags < <(package_config "$4" --cflags --libs)
    "$2" -std="$3" "${WARNINGS[@]}" "$SOURCE_DIR/tests/package/host.cpp" "${flags[@]}" -o "$1"
}

@test "a moved package is found by CMake, under every compiler and standard" {
    local compiler build
    for compiler in "${COMPILERS[@]}"; do
        build=$(mktemp -d -p "$BATS_TEST_TMPDIR")
        configure_host "$build" "$compiler" "$MOVED/lib/lib"
        "$CMAKE" --build "$build" --parallel 2
        prints_what_it_should "$build/host_17"
        prints_what_it_should "$build/host_20"
        prints_what_it_should "$build/host_23"
    done
}

@test "a moved package is found by pkg-config, under every compiler and standard" {
    local compiler standard program="$BATS_TEST_TMPDIR/host"
    for compiler in "${COMPILERS[@]}"; do
        for standard in "${STANDARDS[@]}"; do
            echo "$compiler -std=$standard"
            compile_host "$program" "$compiler" "$standard" "$MOVED/lib/lib"
            prints_what_it_should "$program" "$MOVED/lib/lib"
        done
    done
}

@test "a package is found after its move, however deep its library lies" {
    local folder library build
    for folder in "${LIBRARY_FOLDERS[@]}"; do
        library="$(moved_to "$folder")/$folder"
        build=$(mktemp -d -p "$BATS_TEST_TMPDIR")
        configure_host "$build" "$GXX" "$library"
        "$CMAKE" --build "$build" --target host_17
        prints_what_it_should "$build/host_17"
        compile_host "$build/host" "$GXX" c++17 "$library"
        prints_what_it_should "$build/host" "$library"
    done
}

@test "pkg-config knows the version" {
    local library="$MOVED/lib/lib"
    package_config "$library" --validate
    [[ $(package_config "$library" --modversion) == 1.0.0 ]]
    package_config "$library" --atleast-version=1.0
    run package_config "$library" --atleast-version=1.0.1
    [[ $status -eq 1 ]]
}

@test "CMake knows the version" {
    run "$CMAKE" -S "$SOURCE_DIR/tests/package/version" -B "$BATS_TEST_TMPDIR" -G Ninja \
        -DCMAKE_CXX_COMPILER="$GXX" -DCMAKE_PREFIX_PATH="$MOVED/lib" \
        "-DWANTED=1;1.0;1.0.0;1.0.1;1.1;2;2.0;0.9"
    echo "$output"
    [[ $status -eq 0 ]]
    diff <(grep -E '^-- [0-9.]+:' <<<"$output") - <<END
-- 1: found 1.0.0
-- 1.0: found 1.0.0
-- 1.0.0: found 1.0.0
-- 1.0.1: not found
-- 1.1: not found
-- 2: not found
-- 2.0: not found
-- 0.9: not found
END
}

# compiles_alone COMPILER STANDARD: each public header as the only one, and twice.
compiles_alone() {
    local header
    for header in "${headers[@]}"; do
        echo "$1 -std=$2: $header"
        printf '#include <%s>\n#include <%s>\n' "$header" "$header" |
            "$1" -std="$2" "${WARNINGS[@]}" -I "$MOVED/lib/include" -fsyntax-only -x c++ -
    done
}

@test "each public header compiles alone, under every compiler and standard" {
    local headers compiler standard first
    mapfile -t headers < <(cd "$MOVED/lib/include" && find utillibrary -name '*.h')
    ((${#headers[@]} > 5))
    for standard in "${STANDARDS[@]}"; do
        compiles_alone "$GXX" "$standard" &
        first=$!
        compiles_alone "$CLANGXX" "$standard"
        wait "$first"
    done
}

@test "an absolute folder stays where it is" {
    local system="$BATS_TEST_TMPDIR/system" build="$BATS_TEST_TMPDIR/build"
    install_library "$BATS_TEST_TMPDIR/prefix" -DCMAKE_INSTALL_LIBDIR="$system/libraries"
    [[ $(package_config "$system/libraries" --variable=libdir) == "$system/libraries" ]]
    [[ $(package_config "$system/libraries" --cflags) == "-I$BATS_TEST_TMPDIR/prefix/include"* ]]
    configure_host "$build" "$GXX" "$system/libraries"
    "$CMAKE" --build "$build" --target host_17
    prints_what_it_should "$build/host_17"

    install_library "$BATS_TEST_TMPDIR/prefix" -DCMAKE_INSTALL_LIBDIR=lib \
        -DCMAKE_INSTALL_INCLUDEDIR="$system/headers"
    [[ $(package_config "$BATS_TEST_TMPDIR/prefix/lib" --cflags) == "-I$system/headers"* ]]
}

@test "as a subdirectory it is the library alone" {
    local build="$BATS_TEST_TMPDIR/build"
    "$CMAKE" -S "$SOURCE_DIR/tests/package/subdirectory" -B "$build" -G Ninja \
        -DCMAKE_CXX_COMPILER="$GXX" -DCMAKE_BUILD_TYPE=Debug -DSOURCE_DIR="$SOURCE_DIR" \
        -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
    "$CMAKE" --build "$build" --parallel 2
    prints_what_it_should "$build/host_17"

    # No test of ours joins the host's, and no program is built but the host's.
    run "$CMAKE" --build "$build" --target test
    echo "$output"
    [[ $output == *"No tests were found"* ]]
    diff <(cd "$build" && find . -name CMakeFiles -prune -o -type f -executable -print | sort) - <<END
./host_17
./host_20
./host_23
./utillibrary/utillibrary/libutillibrary.so.1.0.0
END

    # Its warnings are its own affair, and so are the flags that it is built with.
    local commands="$build/compile_commands.json"
    [[ $(grep '"command"' "$commands" | grep -c 'ORUsyslog.cpp') -eq 1 ]]
    run grep -E '"command".*-W.*utillibrary\.dir' "$commands"
    [[ $status -eq 1 ]]
    run grep -E '"command".*(UTILLIBRARY_|-fno-math-errno|-ffp-contract|-fsemantic).*host\.cpp' "$commands"
    [[ $status -eq 1 ]]
}
