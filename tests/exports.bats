#!/usr/bin/env bats
# What leaves the library, and what it takes from others: the same for every build of it. The list of
# what leaves is exported_symbols.txt, mangled, in the order of the C locale; scripts/update-exports
# writes it anew.

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
# A constructor has two symbols, C1 for whole objects and C2 for the part that a derived class has.
# Of an inline constructor clang keeps C2 alone, which without virtual bases is both. No host can
# miss C1: whoever calls an inline constructor has the header, and so a copy of it. For each weak C2,
# then, C1 counts as there.
exported_names() {
    symbols "$1" | sed -E 's/^W (.*)C2(E.*)$/&\nW \1C1\2/' | cut -d ' ' -f 2 | LC_ALL=C sort -u
}

# none GREP_ARGUMENTS...: that no line of the input is found. One that is, is shown.
none() {
    if grep --extended-regexp "$@"; then return 1; fi
}

# for_every_variant CHECK: calls it with the name of each.
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

@test "every build exports what the list says" {
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

@test "nothing is called that could change a locale" {
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

@test "the standard library and libc are all that it needs" {
    for_every_variant needs_the_standard_libraries_alone
}

has_its_soname_and_no_search_path() {
    local section
    section=$(dynamic_section "$1")
    [[ $section == *"Library soname: [libutillibrary.so.1]"* ]]
    [[ $section != *"RPATH"* && $section != *"RUNPATH"* && $section != *"TEXTREL"* ]]
}

@test "its soname is libutillibrary.so.1, and it brings no search path along" {
    for_every_variant has_its_soname_and_no_search_path
}
