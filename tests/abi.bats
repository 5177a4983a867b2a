#!/usr/bin/env bats
# The binary interface is the one that cmake/abi/x86_64.abi describes, and the comparison would find
# a change.

bats_require_minimum_version 1.5.0

setup() {
    : "${SOURCE_DIR:?}"
    copy="$BATS_TEST_TMPDIR/tree"
    mkdir "$copy"
    cp -r "$SOURCE_DIR"/{CMakeLists.txt,utillibrary,cmake,docs,gdb} "$copy"
}

# compare: the stored description with the one of the copied tree.
compare() {
    "$SOURCE_DIR/scripts/update-abi" "$copy"
    run abidiff "$SOURCE_DIR/cmake/abi/x86_64.abi" "$copy/cmake/abi/x86_64.abi"
    echo "$output"
}

@test "the binary interface has not changed" {
    compare
    [[ $status -eq 0 ]]
}

@test "a class with one more field is a change" {
    sed -i 's/^    char\* buffer_ = nullptr;/    int more_ = 0;\n&/' \
        "$copy/utillibrary/datatypes/ByteStream.h"
    compare
    [[ $status -eq 4 || $status -eq 12 ]]
    [[ $output == *ByteStream* ]]
}
