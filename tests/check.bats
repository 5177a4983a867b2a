#!/usr/bin/env bats
# scripts/check and scripts/check-arrows find each kind of mistake, in small trees that are made here.

# shellcheck disable=SC2016 # the made-up scripts have variables
bats_require_minimum_version 1.5.0

# The mark is written in two parts, so that check-kept does not count this file as a test of it.
MARK="KEPT""(it-does-so)"

# A tree without a mistake.
setup() {
    : "${SOURCE_DIR:?}"
    cd "$BATS_TEST_TMPDIR" || return
    mkdir -p utillibrary/{internal,application,utilities,datatypes} tests docs scripts
    cp "$SOURCE_DIR/.clang-format" .
    echo '#include "utillibrary/internal/digits.h"' >utillibrary/internal/digits.cpp
    echo '#include <string>' >utillibrary/internal/digits.h
    printf '%s\n' '#include <string>' '' '#include "utillibrary/internal/digits.h"' \
        >utillibrary/application/Log.cpp
    printf '%s\n' '#include <utillibrary/application/Log.h>' '' '#include "Trim_internal.h"' \
        >utillibrary/utilities/Trim.cpp
    : >utillibrary/utilities/Trim_internal.h
    printf '%s\n' '#include <utillibrary/utilities/Trim.h>' "// $MARK: it does." \
        >utillibrary/datatypes/Thing.cpp
    printf '/// Kept     it-does-so\nint thing();\n' >utillibrary/datatypes/Thing.h
    printf 'target_sources(x PUBLIC FILE_SET HEADERS FILES\n  datatypes/Thing.h)\n' \
        >utillibrary/CMakeLists.txt
    printf 'TEST(A, B) {\n    // %s\n}\n' "$MARK" >tests/Thing_test.cpp
    cat >docs/kept.md <<'END'
- [it-does-so](#it-does-so)

### it-does-so
It does so.
Tempting: not to.
Breaks: all.
Held by `A.B`.
END
    printf '#!/usr/bin/env bash\necho "$1"\n' >scripts/run
}

check() {
    run --separate-stderr "$SOURCE_DIR/scripts/check" .
    echo "$output"
    # shellcheck disable=SC2154 # set by run --separate-stderr
    echo "$stderr"
}

# complains LINE: the check fails, and its last complaint is this one.
complains() {
    check
    [[ $status -eq 1 ]]
    [[ $(tail -n 1 <<<"$stderr") == "$1" ]]
}

@test "a tree without a mistake passes without output" {
    check
    [[ $status -eq 0 ]]
    [[ -z $output && -z $stderr ]]
}

@test "a file that clang-format would change is refused" {
    echo 'int  a;' >tests/a.cpp
    complains "check: clang-format -i would change a file"
    [[ $stderr == *"tests/a.cpp:1:4"* ]]
}

@test "another version of clang-format is not run, and a line says so" {
    mkdir bin
    printf '#!/bin/sh\necho "clang-format version 19.1.7"\n' | tee bin/clang-format >bin/clang-format-14
    chmod +x bin/*
    echo 'int  a;' >tests/a.cpp
    PATH="$PWD/bin:$PATH" check
    [[ $status -eq 0 ]]
    [[ $output == "check: no clang-format 14 on this machine, so the layout is not checked" ]]
}

@test "a C++ line of 101 columns is refused" {
    printf '// %097d\n// %098d\n' 0 0 >tests/a.h
    complains "check: tests/a.h:2: more than 100 columns"
}

@test "a byte beyond ASCII in C++, in CMake and in a shell script is refused" {
    local file
    for file in tests/a.cpp tests/a.cmake docs/CMakeLists.txt scripts/run; do
        cp -p scripts/run saved
        [[ $file == scripts/run ]] || : >"$file"
        printf '#\n# \xc3\xa9\n' >>"$file"
        case $file in *.cpp) printf '//\n// \xc3\xa9\n' >"$file" ;; esac
        complains "check: $file:$(wc -l <"$file"): not ASCII"
        cp -p saved scripts/run
        [[ $file == scripts/run ]] || rm "$file"
    done
}

@test "a byte beyond ASCII in a page is accepted" {
    printf '\xc3\xa9\n' >docs/page.md
    check
    [[ $status -eq 0 ]]
}

@test "a mistake that shellcheck finds is refused, in a script without a suffix and in a bats file" {
    local file
    for file in scripts/other tests/other.bats; do
        case $file in
            *.bats) printf '#!/usr/bin/env bats\n' >"$file" ;;
            *) printf '#!/bin/sh\n' >"$file" ;;
        esac
        echo 'echo $1' >>"$file"
        complains "check: shellcheck found something"
        [[ $output == *"$file line 2"* ]]
        rm "$file"
    done
}

@test "a file in the build folder is not checked" {
    mkdir build
    echo 'int  a;' >build/a.cpp
    check
    [[ $status -eq 0 ]]
}

@test "a file that git ignores is not checked, and a new file is" {
    git init --quiet .
    echo ignored.cpp >.gitignore
    echo 'int  a;' >ignored.cpp
    check
    [[ $status -eq 0 ]]
    mv ignored.cpp new.cpp
    complains "check: clang-format -i would change a file"
}

@test "a surprise without a name in one of its places is refused" {
    : >tests/Thing_test.cpp
    check
    [[ $status -eq 1 ]]
    [[ $stderr == *"check-kept: it-does-so: in no test"* ]]
}

# refuses_arrow FILE INCLUDED FOLDER TARGET
refuses_arrow() {
    echo "#include <$2>" >"$1"
    complains "check-arrows: $1 includes $2, but $3 may not include $4"
}

@test "an include against the arrows is refused" {
    local folder=utillibrary
    refuses_arrow $folder/internal/a.cpp $folder/application/Log.h internal application
    rm $folder/internal/a.cpp
    refuses_arrow $folder/internal/a.cpp $folder/utilities/Trim.h internal utilities
    rm $folder/internal/a.cpp
    refuses_arrow $folder/internal/a.cpp $folder/datatypes/Thing.h internal datatypes
    rm $folder/internal/a.cpp
    refuses_arrow $folder/application/a.cpp $folder/utilities/Trim.h application utilities
    rm $folder/application/a.cpp
    refuses_arrow $folder/utilities/a.cpp $folder/datatypes/Thing.h utilities datatypes
}

@test "an include against the arrows by a relative path is refused" {
    echo '#include "../datatypes/Thing.h"' >utillibrary/utilities/a.cpp
    complains "check-arrows: utillibrary/utilities/a.cpp includes utillibrary/datatypes/Thing.h, but utilities may not include datatypes"
}

@test "a folder without an arrow is refused" {
    mkdir utillibrary/other
    echo '#include <utillibrary/datatypes/Thing.h>' >utillibrary/other/a.cpp
    complains "check-arrows: utillibrary/other/a.cpp includes utillibrary/datatypes/Thing.h, but other may not include datatypes"
}

@test "a public header that includes a private one is refused" {
    echo '#include <utillibrary/internal/digits.h>' >utillibrary/utilities/Trim.h
    complains "check-arrows: utillibrary/utilities/Trim.h is public and includes utillibrary/internal/digits.h, which is private"
    echo '#include "Trim_internal.h"' >utillibrary/utilities/Trim.h
    complains "check-arrows: utillibrary/utilities/Trim.h is public and includes utillibrary/utilities/Trim_internal.h, which is private"
}

@test "a private header that is installed is refused" {
    sed -i 's,datatypes/Thing.h,internal/digits.h,' utillibrary/CMakeLists.txt
    complains "check-arrows: internal/digits.h is private and is installed"
    sed -i 's,internal/digits.h,utilities/Trim_internal.h,' utillibrary/CMakeLists.txt
    complains "check-arrows: utilities/Trim_internal.h is private and is installed"
}
