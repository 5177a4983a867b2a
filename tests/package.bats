#!/usr/bin/env bats
# The library as a package: installed, moved elsewhere, and found there by the hosts in package/.

# shellcheck disable=SC2030,SC2031 # each test runs in a subshell, and reads its own variables

bats_require_minimum_version 1.8.0

LIBRARY_FOLDERS=(lib lib64 lib/x86_64-linux-gnu)
COMPILERS=("$GXX" "$CLANGXX")
# A newer clang++ takes part where it is installed.
if command -v clang++-19 >/dev/null; then COMPILERS+=(clang++-19); fi
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

# moved_to LIBRARY_FOLDER: prints where the package with that folder is now.
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

@test "a moved package is found for every depth of its library folder" {
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

@test "pkg-config gives the version" {
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

# bats test_tags=long
@test "each public header compiles alone, under every compiler and standard" {
    local headers compiler standard first
    mapfile -t headers < <(cd "$MOVED/lib/include" && find utillibrary -name '*.h')
    ((${#headers[@]} > 5))
    for standard in "${STANDARDS[@]}"; do
        compiles_alone "$GXX" "$standard" &
        first=$!
        for compiler in "${COMPILERS[@]:1}"; do compiles_alone "$compiler" "$standard"; done
        wait "$first"
    done
}

@test "an absolute library folder is not moved" {
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

# bats test_tags=long
@test "as a subdirectory the project builds the library alone" {
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

    # The host chooses its warnings and the flags that it is built with.
    local commands="$build/compile_commands.json"
    [[ $(grep '"command"' "$commands" | grep -c 'ORUsyslog.cpp') -eq 1 ]]
    run grep -E '"command".*-W.*utillibrary\.dir' "$commands"
    [[ $status -eq 1 ]]
    run grep -E '"command".*(UTILLIBRARY_|-fno-math-errno|-ffp-contract|-fsemantic).*host\.cpp' "$commands"
    [[ $status -eq 1 ]]
}

# ---- as a part of a host

# bats test_tags=long
@test "a host that fetches the library builds it under strict flags, and installs only itself" {
    local repository="$BATS_TEST_TMPDIR/repository" build="$BATS_TEST_TMPDIR/build"
    mkdir "$repository"
    cp -r "$SOURCE_DIR"/{CMakeLists.txt,utillibrary,cmake,docs,gdb} "$repository"
    git -C "$repository" init --quiet
    git -C "$repository" add .
    git -C "$repository" -c user.name=host -c user.email=host@localhost commit --quiet -m All

    run "$CMAKE" -S "$SOURCE_DIR/tests/package/guest" -B "$build" -G Ninja \
        -DREPOSITORY="$repository" -DCMAKE_CXX_COMPILER="$GXX" -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_COMPILE_WARNING_AS_ERROR=ON -DCMAKE_INSTALL_PREFIX="$BATS_TEST_TMPDIR/prefix" \
        -DCMAKE_CXX_FLAGS="-fno-exceptions -fno-rtti -Wall -Wextra -Wuseless-cast -Wdouble-promotion"
    echo "$output"
    [[ $status -eq 0 ]]
    [[ $output == *"utillibrary is a shared library, also where BUILD_SHARED_LIBS is off"* ]]
    "$CMAKE" --build "$build" --parallel 2
    [[ $("$build/host") == "3 new enough" ]]
    "$CMAKE" --install "$build"
    diff <(cd "$BATS_TEST_TMPDIR/prefix" && find . ! -type d) - <<<./bin/host

    # The options for those who work on the library are not this host's.
    run grep -E '^UTILLIBRARY_BUILD_' "$build/CMakeCache.txt"
    [[ $status -eq 1 ]]
}

@test "a package without its library is refused, and the missing file is named" {
    cp -r "$MOVED/lib" "$BATS_TEST_TMPDIR/half"
    rm "$BATS_TEST_TMPDIR"/half/lib/libutillibrary.so.*.*.*
    run "$CMAKE" -S "$SOURCE_DIR/tests/package/found" -B "$BATS_TEST_TMPDIR/host" -G Ninja \
        -DCMAKE_CXX_COMPILER="$GXX" -DCMAKE_PREFIX_PATH="$BATS_TEST_TMPDIR/half"
    echo "$output"
    [[ $status -ne 0 ]]
    [[ $output == *"half/lib/libutillibrary.so.1.0.0"*"does not exist"* ]]
}

@test "the build tree is a package that CMake finds" {
    local build="$BATS_TEST_TMPDIR/host"
    "$CMAKE" -S "$SOURCE_DIR/tests/package/found" -B "$build" -G Ninja \
        -DCMAKE_CXX_COMPILER="$GXX" -Dutillibrary_DIR="$BUILD/utillibrary/package"
    "$CMAKE" --build "$build" --target host_17
    prints_what_it_should "$build/host_17"
}

# ask_for_components COMPONENTS: separated by semicolons.
ask_for_components() {
    run "$CMAKE" -S "$SOURCE_DIR/tests/package/components" -B "$BATS_TEST_TMPDIR/host" -G Ninja \
        -DCMAKE_CXX_COMPILER="$GXX" -DCMAKE_PREFIX_PATH="$MOVED/lib" -DWANTED="$1"
    echo "$output"
}

@test "the package has two components, and an error names an unknown component" {
    ask_for_components "Runtime;Development"
    [[ $status -eq 0 ]]
    ask_for_components "Runtime;foo"
    [[ $status -eq 1 ]]
    [[ $output == *"utillibrary has no component foo; it has Runtime and Development"* ]]
}

@test "the component Runtime is the library alone, also below DESTDIR" {
    DESTDIR="$BATS_TEST_TMPDIR/stage" "$CMAKE" --install "$BUILD" --prefix /usr --component Runtime
    diff <(cd "$BATS_TEST_TMPDIR/stage" && find . ! -type d -printf '%f\n' | sort) - <<END
libutillibrary.so.1
libutillibrary.so.1.0.0
END
}

@test "a prefix with a space in it works with CMake and with pkg-config" {
    local prefix="$BATS_TEST_TMPDIR/a prefix" build="$BATS_TEST_TMPDIR/host" flags
    cp -r "$MOVED/lib" "$prefix"
    "$CMAKE" -S "$SOURCE_DIR/tests/package/found" -B "$build" -G Ninja \
        -DCMAKE_CXX_COMPILER="$GXX" -DCMAKE_PREFIX_PATH="$prefix"
    "$CMAKE" --build "$build" --target host_17
    prints_what_it_should "$build/host_17"

    flags=$(package_config "$prefix/lib" --cflags --libs)
    eval "flags=($flags)"
    # shellcheck disable=SC2128,SC2178 # an array since eval
    "$GXX" -std=c++17 "$SOURCE_DIR/tests/package/host.cpp" "${flags[@]}" -o "$build/host"
    prints_what_it_should "$build/host" "$prefix/lib"
}

@test "Meson finds the package, and builds a host without exceptions and run-time types" {
    command -v meson >/dev/null || skip "meson is not installed"
    local build="$BATS_TEST_TMPDIR/build"
    CXX="$GXX" PKG_CONFIG_PATH="$MOVED/lib/lib/pkgconfig" meson setup "$build" \
        "$SOURCE_DIR/tests/package" -Dcpp_eh=none -Dcpp_rtti=false
    ninja -C "$build"
    [[ $(LD_LIBRARY_PATH="$MOVED/lib/lib" "$build/host") == "3 new enough" ]]
}

# refused MESSAGE COMPILER FLAGS...: a source with these headers, one by one, gives MESSAGE first.
refused() {
    local header
    while read -r header; do
        run --separate-stderr "${@:2}" -I "$MOVED/lib/include" -fsyntax-only -x c++ - \
            <<<"#include <$header>"
        # shellcheck disable=SC2154 # set by run --separate-stderr
        echo "$header: $stderr" | head -n 5
        [[ $status -ne 0 ]]
        [[ $(grep -m 1 'error:' <<<"$stderr") == *"$1"* ]]
    done < <(cd "$MOVED/lib/include" && find utillibrary -name '*.h' ! -name version.h)
}

# bats test_tags=long
@test "an older standard than C++17 is refused by one message, first" {
    local compiler
    for compiler in "${COMPILERS[@]}"; do
        refused 'utillibrary needs C++17 or later: compile with -std=c++17"' "$compiler" -std=c++14
    done
}

# bats test_tags=long
@test "a standard library that does not fit is refused by one message, first" {
    refused 'built with _GLIBCXX_USE_CXX11_ABI=1' "$GXX" -std=c++17 -D_GLIBCXX_USE_CXX11_ABI=0
    refused 'built without _GLIBCXX_DEBUG' "$GXX" -std=c++17 -D_GLIBCXX_DEBUG
    if ! "$CLANGXX" -stdlib=libc++ -fsyntax-only -x c++ - <<<'#include <string>'; then
        skip "libc++ is not installed"
    fi
    refused 'built for libstdc++' "$CLANGXX" -std=c++17 -stdlib=libc++
}
