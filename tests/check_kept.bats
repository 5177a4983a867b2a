#!/usr/bin/env bats
# scripts/check-kept finds each kind of absence, on small trees that are made up here. A mark is put
# together by `mark`, so that this file does not count as a test of that name.

# shellcheck disable=SC2016,SC2030,SC2031 # names of tests are in backticks; "run" sets `status`
bats_require_minimum_version 1.5.0

mark() { echo "KEPT($1)"; }

# A tree without a mistake.
setup() {
    : "${SOURCE_DIR:?}"
    cd "$BATS_TEST_TMPDIR" || return
    mkdir -p utillibrary/part tests docs
    cat >utillibrary/part/Thing.h <<END
/// Gives less than it could. $(mark in-a-source)
/// Takes more than it should. $(mark in-a-private-header)
/// Is said here, $(mark in-the-header-twice)
inline int thing() { return 1; }  // and done here. $(mark in-the-header-twice)
END
    echo "// $(mark in-a-source): done here" >utillibrary/part/Thing.cpp
    echo "// $(mark in-a-private-header): done here" >utillibrary/part/Thing_internal.h
    cat >tests/Thing_test.cpp <<END
Fact const FACTS[] = {
    {"one", 1}, // $(mark in-a-source)
};

Fact const OTHER_FACTS[] = {
    {"two", 2}, // $(mark in-a-private-header)
};

TEST(Thing, GivesFacts) {
    for (Fact const& row : FACTS) check(row);
}

TEST_F(OtherThing, TakesFacts) {
    for (Fact const& row : OTHER_FACTS) check(row);
    EXPECT_EQ(thing(), 1);  // $(mark in-the-header-twice)
}
END
    entry in-a-source >docs/kept.md
    entry in-a-private-header >>docs/kept.md
    entry in-the-header-twice >>docs/kept.md
}

entry() {
    printf '### %s\nIt does so.\nTempting: not to.\nBreaks: all.\n\n' "$1"
}

check() {
    run --separate-stderr "$SOURCE_DIR/scripts/check-kept" "$@" .
    echo "$output"
    # shellcheck disable=SC2154 # set by run --separate-stderr
    echo "$stderr"
}

# complains_only LINE
complains_only() {
    check
    [[ $status -eq 1 ]]
    [[ $stderr == "check-kept: $1" ]]
}

@test "a tree without a mistake passes without output" {
    check
    [[ $status -eq 0 ]]
    [[ -z $output && -z $stderr ]]
}

@test "a name that is in no public header" {
    sed -i "/$(mark in-a-source)/d" utillibrary/part/Thing.h
    complains_only "in-a-source: in no public header"
}

@test "a name that is in a private header alone is in no public header" {
    echo "// $(mark only-private)" >>utillibrary/part/Thing_internal.h
    echo "// $(mark only-private)" >>tests/Thing_test.cpp
    entry only-private >>docs/kept.md
    complains_only "only-private: in no public header"
}

@test "a name that is at no code line" {
    : >utillibrary/part/Thing.cpp
    complains_only "in-a-source: at no code line"
}

@test "a name that is at no line of a private header" {
    : >utillibrary/part/Thing_internal.h
    complains_only "in-a-private-header: at no code line"
}

@test "a name that is once in a public header and at no code line" {
    sed -i "s/and done here. $(mark in-the-header-twice)//" utillibrary/part/Thing.h
    complains_only "in-the-header-twice: at no code line"
}

@test "a name that is in no test" {
    sed -i "/$(mark in-a-source)/d" tests/Thing_test.cpp
    complains_only "in-a-source: in no test"
}

@test "a test in a folder below tests counts" {
    mkdir tests/deep
    mv tests/Thing_test.cpp tests/deep/
    check
    [[ $status -eq 0 ]]
}

@test "a longer name does not count as a shorter one" {
    sed -i "s/$(mark in-a-source)/$(mark in-a-source-not)/" tests/Thing_test.cpp
    check
    [[ $status -eq 1 ]]
    [[ $stderr == *"check-kept: in-a-source: in no test"* ]]
    [[ $stderr == *"check-kept: in-a-source-not: in the tests, but not in the library"* ]]
}

@test "a name that is not in the ledger" {
    sed -i '/^### in-a-source/d' docs/kept.md
    complains_only "in-a-source: not in docs/kept.md"
}

@test "a name that is in a sentence of the ledger, but is no heading" {
    sed -i 's/^### in-a-source/in-a-source/' docs/kept.md
    complains_only "in-a-source: not in docs/kept.md"
}

@test "a name that the ledger has twice" {
    entry in-a-source >>docs/kept.md
    complains_only "in-a-source: 2 times in docs/kept.md"
}

@test "a name that is in the ledger alone" {
    entry nowhere >>docs/kept.md
    complains_only "nowhere: in docs/kept.md, but not in the library"
}

@test "an entry without the line Tempting" {
    sed -i '/^### in-a-private/,/^$/ { /^Tempting/d }' docs/kept.md
    complains_only 'in-a-private-header: no line "Tempting: ..." in docs/kept.md'
}

@test "an entry without the line Breaks" {
    sed -i '/^### in-the/,/^$/ s/^Breaks:.*/Breaks:/' docs/kept.md
    complains_only 'in-the-header-twice: no line "Breaks: ..." in docs/kept.md'
}

@test "a heading of a chapter is no entry" {
    sed -i '1i # Kept\n\n## Thing\n' docs/kept.md
    check
    [[ $status -eq 0 ]]
}

@test "a name that is in the tests alone" {
    echo "// $(mark nowhere)" >>tests/Thing_test.cpp
    complains_only "nowhere: in the tests, but not in the library"
}

@test "a mark without a valid name" {
    echo "// $(mark 'Two Words'): no" >>utillibrary/part/Thing.cpp
    complains_only "no name in: utillibrary/part/Thing.cpp:// $(mark 'Two Words'): no"
}

@test "a library without any mark" {
    : >utillibrary/part/Thing.h
    : >utillibrary/part/Thing.cpp
    : >utillibrary/part/Thing_internal.h
    : >tests/Thing_test.cpp
    : >docs/kept.md
    complains_only "the library has no KEPT mark at all"
}

# A ledger as --strict wants it, with these lines in place of the first entry's "Held by".
strict_ledger() {
    local name
    {
        for name in in-a-source in-a-private-header in-the-header-twice; do
            echo "- [$name](#$name)"
        done
        printf '\n## Thing\n\n### in-a-source\nIt does so.\nTempting: not to.\nBreaks: all.\n%s\n\n' "$1"
        for name in in-a-private-header in-the-header-twice; do
            printf '### %s\nTempting: not to.\nBreaks: all.\nHeld by `OtherThing.TakesFacts`.\n\n' "$name"
        done
    } >docs/kept.md
}

HELD='Held by `Thing.GivesFacts`.'

# strictly COMPLAINTS: --strict prints these, and fails if there are any.
strictly() {
    check --strict
    # shellcheck disable=SC2154 # set by run --separate-stderr
    [[ $stderr == "$1" ]]
    if [[ -z $1 ]]; then [[ $status -eq 0 ]]; else [[ $status -eq 1 ]]; fi
}

@test "--strict accepts a ledger with an index and with the tests of each entry" {
    strict_ledger "$HELD"
    strictly ""
}

@test "--strict refuses an entry without the line Held by" {
    strict_ledger ""
    strictly 'check-kept: in-a-source: its entry in docs/kept.md does not end in "Held by `Suite.Test`."'
}

@test "--strict refuses words after the names of the tests" {
    strict_ledger 'Held by `Thing.GivesFacts`, in part.'
    strictly 'check-kept: in-a-source: its entry in docs/kept.md does not end in "Held by `Suite.Test`."'
}

@test "--strict refuses a test without the name, as the first or the second of the list" {
    strict_ledger 'Held by `Thing.GivesFacts` and `OtherThing.TakesFacts`.'
    strictly 'check-kept: in-a-source: docs/kept.md names `OtherThing.TakesFacts`, and that test does not have the name'
}

@test "--strict refuses an entry that is not in the index" {
    strict_ledger "$HELD"
    sed -i '1d' docs/kept.md
    strictly "check-kept: the index of docs/kept.md and its entries differ: > [in-a-source](#in-a-source)"
}

@test "--strict refuses a link of the index without an entry" {
    strict_ledger "$HELD"
    sed -i '1i - [nowhere](#nowhere)' docs/kept.md
    strictly "check-kept: the index of docs/kept.md and its entries differ: < [nowhere](#nowhere)"
}

@test "without --strict an entry needs neither the index nor the line Held by" {
    strict_ledger ""
    sed -i '1d' docs/kept.md
    check
    [[ $status -eq 0 ]]
}

@test "--list prints each name with its tests" {
    check --list
    [[ $status -eq 0 ]]
    diff - <(echo "$output") <<END
in-a-private-header
    OtherThing.TakesFacts  (tests/Thing_test.cpp:6)
in-a-source
    Thing.GivesFacts  (tests/Thing_test.cpp:2)
in-the-header-twice
    OtherThing.TakesFacts  (tests/Thing_test.cpp:15)
END
}

@test "--list finds marks above a test, and marks in bats files" {
    sed -i "/$(mark in-the-header-twice)/d; s,^TEST_F.*,// $(mark in-the-header-twice)\n&," \
        tests/Thing_test.cpp
    printf '@test "a b" {\n    # %s\n}\n' "$(mark in-a-source)" >tests/thing.bats
    check --list
    [[ $output == *"in-the-header-twice
    OtherThing.TakesFacts  (tests/Thing_test.cpp:13)"* ]]
    [[ $output == *"    a b  (tests/thing.bats:2)"* ]]
}
