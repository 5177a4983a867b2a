#!/usr/bin/env bats
# The two programs that check the public headers find each kind of mistake, on made-up headers.

# shellcheck disable=SC2030,SC2031 # each test runs in a subshell, and reads its own variables

bats_require_minimum_version 1.5.0

setup() {
    : "${SOURCE_DIR:?}" "${CLANGXX:?}" "${GXX:?}"
    cd "$BATS_TEST_TMPDIR" || return
    mkdir -p utillibrary
}

# header LINE...: makes a header of these lines, inside the library's namespace.
header() {
    {
        printf '#pragma once\nnamespace com::halvorin::utilities {\n'
        printf '%s\n' "$@"
        printf '}\n'
    } >utillibrary/Thing.h
}

# check_documentation: runs the check on the made-up header.
check_documentation() {
    run python3 "$SOURCE_DIR/tests/header_documentation.py" --root "$PWD" --compiler "$CLANGXX" \
        "$PWD/utillibrary/Thing.h"
    echo "$output"
}

# extract: makes a program of the examples of the made-up header.
extract() {
    run python3 "$SOURCE_DIR/tests/header_examples.py" --root "$PWD" --output examples.cpp \
        "$PWD/utillibrary/Thing.h"
    echo "$output"
}

@test "documentation: a header whose declarations all have comments is accepted" {
    header '/// A thing.' 'class Thing {' 'public:' '    /// Makes one.' '    Thing();' \
        'private:' '    int hidden_;' '};' '/// Gives 1.' '/// Fails    never.' 'int one();'
    check_documentation
    [[ $status -eq 0 ]]
    [[ $output == "3 declarations, 0 complaints" ]]
}

@test "documentation: a member without a comment is named" {
    header '/// A thing.' 'class Thing {' 'public:' '    /// Makes one.' '    Thing();' \
        '    int size() const;' '};'
    check_documentation
    [[ $status -eq 1 ]]
    [[ ${lines[0]} == "no comment of its own: halvorin::utilities::Thing::size  int () const" ]]
}

@test "documentation: a comment of two slashes is no comment that an editor shows" {
    header '// A thing.' 'class Thing {};'
    check_documentation
    [[ $status -eq 1 ]]
    [[ ${lines[0]} == "no comment of its own: halvorin::utilities::Thing" ]]
}

@test "documentation: a second overload needs a comment too" {
    header '/// Gives 1.' '/// Fails    never.' 'int one(int);' 'int one(long);'
    check_documentation
    [[ $status -eq 1 ]]
    [[ ${lines[0]} == "no comment of its own: halvorin::utilities::one  int (long)" ]]
}

@test "documentation: a function without the label Fails is named" {
    header '/// Gives 1.' 'int one();'
    check_documentation
    [[ $status -eq 1 ]]
    [[ ${lines[0]} == "no Fails: halvorin::utilities::one  int ()" ]]
}

@test "documentation: labels out of order are named" {
    header '/// Gives 1.' '/// Fails    never.' '/// Takes    nothing.' 'int one();'
    check_documentation
    [[ $status -eq 1 ]]
    [[ ${lines[0]} == *"Thing.h:5: Takes comes after Fails" ]]
}

@test "documentation: a header without declarations is refused" {
    header
    check_documentation
    [[ $status -eq 1 ]]
    [[ ${lines[0]} == "no declaration was found" ]]
}

@test "examples: one without an expected value is refused" {
    header '/// Gives 1.' '/// Fails    never.' '/// Example  one()' 'inline int one() { return 1; }'
    extract
    [[ $status -ne 0 ]]
    [[ $output == "utillibrary/Thing.h:5: an example without an expected value" ]]
}

@test "examples: a value that is not the result fails when the program runs" {
    header '/// Gives 1.' '/// Fails    never.' '/// Example  one()        // 1' \
        '///          one() + one()  // 3' 'inline int one() { return 1; }'
    extract
    [[ $status -eq 0 ]]
    [[ $output == "1 examples of 1 headers" ]]
    "$GXX" -std=c++20 -I. -I"$SOURCE_DIR" -I"$SOURCE_DIR/tests" examples.cpp -L"$VARIANTS/gcc" \
        -lutillibrary -Wl,-rpath,"$VARIANTS/gcc" -lgtest -lgtest_main -lpthread -o examples
    run ./examples
    echo "$output"
    [[ $status -eq 1 ]]
    [[ $output == *"Thing.h:5: the example says 3, and the result is 2"* ]]
    [[ $output != *"the example says 1"* ]]
}

# refused_by_clang STATEMENT: clang++ with warnings as errors refuses it, and g++ accepts it.
refused_by_clang() {
    local headers='#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Variant.h>
using namespace com::halvorin::datatypes;'
    printf '%s\nvoid use(void const*);\nvoid test() { %s }\n' "$headers" "$1" >host.cpp
    "$GXX" -std=c++17 -Wall -Wextra -Werror -I"$SOURCE_DIR" -fsyntax-only host.cpp
    if "$CLANGXX" -std=c++17 -Wall -Wextra -Werror -I"$SOURCE_DIR" -fsyntax-only host.cpp 2>messages; then
        echo "clang++ accepts: $1"
        return 1
    fi
    cat messages
    grep -q 'temporary.*destroyed' messages
}

@test "clang++ warns of a pointer into a temporary Variant" {
    refused_by_clang 'char const* p = Variant("x"); use(p);'
}

@test "clang++ warns of a pointer into a temporary ByteStream" {
    refused_by_clang 'char* p = ByteStream(3).data(); use(p);'
    refused_by_clang 'char* p = ByteStream(3).buffer(); use(p);'
    refused_by_clang 'char const* p = ByteStream(3); use(p);'
}
