#!/usr/bin/env bats
# The symbols that the library exports and imports are the same for every build. The exported symbols
# are in exported_symbols.txt, mangled, in the order of the C locale; scripts/update-exports writes
# this file.

setup_file() {
    : "${SOURCE_DIR:?}" "${VARIANTS:?}" "${NM:?}" "${READELF:?}"
}

# symbols VARIANT: "T NAME", a line for each symbol that others may use.
symbols() {
    "$NM" --dynamic --defined-only --portability --without-symbol-versions \
        "$VARIANTS/$1/libutillibrary.so.1" |
        sed -E 's/^([^ ]+) (.).*/\2 \1/; / UTILLIBRARY_1$/d'
}

# exported_names VARIANT
#
# A constructor has two symbols: C1 for whole objects, and C2 for the base part of a derived class. For
# an inline constructor clang exports only C2, because without virtual bases both are the same code.
# No host needs the exported C1, because a host that calls an inline constructor has a copy from the
# header. So for each weak C2 this list has C1 as well.
exported_names() {
    symbols "$1" | sed -E 's/^W (.*)C2(E.*)$/&\nW \1C1\2/' | cut -d ' ' -f 2 | LC_ALL=C sort -u
}

# none GREP_ARGUMENTS...: fails and shows the line if grep finds one in the input.
none() {
    if grep --extended-regexp "$@"; then return 1; fi
}

# for_every_variant CHECK: calls CHECK with the name of each variant.
for_every_variant() {
    local variant
    while read -r variant; do
        echo "library: $variant"
        "$1" "$variant"
    done <"$VARIANTS/names"
}

exports_are_listed() {
    diff <(exported_names "$1") "$SOURCE_DIR/tests/exported_symbols.txt"
}

@test "every build exports the symbols of the list" {
    for_every_variant exports_are_listed
}

every_export_has_the_version() {
    local without
    without=$("$NM" --dynamic --defined-only --format=just-symbols \
        "$VARIANTS/$1/libutillibrary.so.1" | grep -vE '@@UTILLIBRARY_1$|^UTILLIBRARY_1' || true)
    [[ -z $without ]]
}

@test "every export has the version UTILLIBRARY_1" {
    for_every_variant every_export_has_the_version
}

@test "the list is sorted and names nothing but com::halvorin" {
    local list="$SOURCE_DIR/tests/exported_symbols.txt"
    LC_ALL=C sort --check --unique "$list"
    [[ $(wc -l <"$list") -gt 100 ]]
    none --invert-match '^_ZNK?3com8halvorin(9utilities|9datatypes|11application3oru)' "$list"
}

nothing_is_unique() {
    symbols "$1" | none '^u'
}

@test "no symbol is unique to a process, which would pin the library into it" {
    for_every_variant nothing_is_unique
}

leaves_the_locale_alone() {
    local undefined
    undefined=$("$NM" --dynamic --undefined-only --format=just-symbols \
        "$VARIANTS/$1/libutillibrary.so.1")
    [[ $undefined == *snprintf* ]] # it is a list of what is called
    none '^(setlocale|newlocale|uselocale|_ZNSt6locale6global)' <<<"$undefined"
}

@test "the library calls no function that could change a locale" {
    for_every_variant leaves_the_locale_alone
}

dynamic_section() {
    "$READELF" --wide --dynamic "$VARIANTS/$1/libutillibrary.so.1"
}

needs_the_standard_libraries_alone() {
    local needed
    needed=$(dynamic_section "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p')
    [[ $needed == *libc.so.6* ]]
    none --invert-match '^(libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6|ld-linux.*)$' \
        <<<"$needed"
}

@test "the library needs the standard library and libc, and no other" {
    for_every_variant needs_the_standard_libraries_alone
}

has_its_soname_and_no_search_path() {
    local section
    section=$(dynamic_section "$1")
    [[ $section == *"Library soname: [libutillibrary.so.1]"* ]]
    [[ $section != *"RPATH"* && $section != *"RUNPATH"* && $section != *"TEXTREL"* ]]
}

@test "the soname is libutillibrary.so.1, and the library has no search path" {
    for_every_variant has_its_soname_and_no_search_path
}
