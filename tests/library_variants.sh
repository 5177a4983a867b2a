#!/usr/bin/env bash
# Builds the library with flags that must make no difference to a host:
#     $VARIANTS/NAME/libutillibrary.so.1
#     $VARIANTS/names                      each NAME in a line of its own
# The tests of the log hook and of the exported symbols read these libraries.
#
# A NAME is COMPILER[-lto][-LINKER-SYMBOLIC]:
#     gcc, gcc-lto, clang, clang-lto       the compiler's usual linker (lld for clang-lto)
#     gcc-bfd-functions                    that linker with -Wl,-Bsymbolic-functions
#     gcc-bfd-symbolic                     that linker with -Wl,-Bsymbolic
#     clang-lld-last                       -Wl,-Bsymbolic after the library's own linker flags
#
# Both -Bsymbolic flags ask the linker to bind the log hook to the library's own definition. Every
# build also has -fno-semantic-interposition, which some distributions add, and which allows the
# compiler to do the same. The variants of one compiler share their objects. Those with link-time
# optimisation take longest; they are built in a full run alone, where TEST_ALL is ON.
set -euo pipefail

: "${VARIANTS:?where to build}" "${SOURCE_DIR:?}" "${CMAKE:?}" "${GXX:?}" "${CLANGXX:?}" \
    "${TEST_ALL:?}"

# build COMPILER COMPILER_FLAGS NAME LINKER_FLAGS [CMAKE_ARGUMENTS...]
build() {
    local compiler=$1 flags=$2 name=$3 link_flags=$4
    local folder; folder=$VARIANTS/build/$(basename "$compiler")$flags
    "$CMAKE" -S "$SOURCE_DIR" -B "$folder" -G Ninja \
        -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_CXX_FLAGS="-fno-semantic-interposition $flags" \
        -DCMAKE_SHARED_LINKER_FLAGS="$flags $link_flags" \
        -UCMAKE_PROJECT_INCLUDE "${@:5}"
    "$CMAKE" --build "$folder" --target utillibrary --parallel 2
    mkdir -p "$VARIANTS/$name"
    cp -P "$folder"/utillibrary/libutillibrary.so* "$VARIANTS/$name/"
    echo "$name" >>"$VARIANTS/names"
}

# symbolic COMPILER COMPILER_FLAGS NAME LINKERS...: both -Bsymbolic flags with each linker.
symbolic() {
    local linker
    for linker in "${@:4}"; do
        build "$1" "$2" "$3-$linker-functions" "-fuse-ld=$linker -Wl,-Bsymbolic-functions"
        build "$1" "$2" "$3-$linker-symbolic" "-fuse-ld=$linker -Wl,-Bsymbolic"
    done
}

mkdir -p "$VARIANTS"
: >"$VARIANTS/names"

build "$GXX" "" gcc ""
symbolic "$GXX" "" gcc bfd gold lld
build "$CLANGXX" "" clang ""
symbolic "$CLANGXX" "" clang bfd gold lld
build "$CLANGXX" "" clang-lld-last "-fuse-ld=lld" \
    -DCMAKE_PROJECT_INCLUDE="$SOURCE_DIR/tests/hook/symbolic_last.cmake"
if [[ $TEST_ALL == ON ]]; then
    build "$GXX" -flto=auto gcc-lto ""
    symbolic "$GXX" -flto=auto gcc-lto bfd
    build "$CLANGXX" -flto clang-lto "-fuse-ld=lld"
    symbolic "$CLANGXX" -flto clang-lto lld
fi
