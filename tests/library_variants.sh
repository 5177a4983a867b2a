#!/usr/bin/env bash
# Builds the library in every way that must make no difference to a host, into
#     $VARIANTS/<compiler>[-lto][-symbolic]/libutillibrary.so.1
# for the tests that hold the results against each other.
#
# All of them get -fno-semantic-interposition, which some distributions add, and which would let a
# compiler bind the log hook to the library's own. "symbolic" does the same by the linker. Both kinds
# share their objects: only the link differs.
set -euo pipefail

: "${VARIANTS:?where to build}" "${SOURCE_DIR:?}" "${CMAKE:?}" "${GXX:?}" "${CLANGXX:?}"

# build NAME COMPILER [COMPILER_AND_LINKER_FLAGS]
build() {
    local name=$1 compiler=$2 flags=${3-}
    local kind link_flags
    for kind in "" -symbolic; do
        link_flags=$flags
        if [[ $kind == -symbolic ]]; then link_flags+=" -Wl,-Bsymbolic-functions"; fi
        "$CMAKE" -S "$SOURCE_DIR" -B "$VARIANTS/build/$name" -G Ninja \
            -DCMAKE_BUILD_TYPE=Release \
            -DCMAKE_CXX_COMPILER="$compiler" \
            -DCMAKE_CXX_FLAGS="-fno-semantic-interposition $flags" \
            -DCMAKE_SHARED_LINKER_FLAGS="$link_flags"
        "$CMAKE" --build "$VARIANTS/build/$name" --target utillibrary --parallel 2
        mkdir -p "$VARIANTS/$name$kind"
        cp -P "$VARIANTS/build/$name"/utillibrary/libutillibrary.so* "$VARIANTS/$name$kind/"
    done
}

build gcc "$GXX"
build gcc-lto "$GXX" -flto=auto
build clang "$CLANGXX"
build clang-lto "$CLANGXX" "-flto -fuse-ld=lld"
