#!/usr/bin/env bats
# Each program in docs/ is compiled and run, and prints the block that follows it. Links lead somewhere,
# and ARCHITECTURE.md names all headers of internal/.

WARNINGS=(-std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

setup_file() {
    : "${SOURCE_DIR:?}" "${VARIANTS:?}" "${GXX:?}"
}

# split_blocks PAGE: writes its programs to 1.cpp, 2.cpp ... and what they print to 1.text ...
split_blocks() {
    awk '
        /^```/ && file != "" { close(file); file = ""; next }
        /^```cpp$/ { file = ++programs ".cpp"; next }
        /^```text$/ { file = programs ".text"; next }
        file != "" { print >file }' "$1"
}

# The links of a page that lead into the checkout, each with its heading. Code has none.
local_links() {
    # shellcheck disable=SC2016 # the backquotes are those of the page
    sed '/^```/,/^```$/d' "$1" | grep -oE '\]\([^)]+\)' | sed -E 's/^\]\(//; s/\)$//' | grep -vE '^https?:' | sort -u
}

# The names by which the headings of a page are linked.
headings() {
    sed -nE 's/^#+ //p' "$1" | tr '[:upper:]' '[:lower:]' | sed -E 's/[^a-z0-9 _-]//g; s/ /-/g'
}

@test "each program of docs/ prints what the page shows after it" {
    local page count=0 program
    for page in "$SOURCE_DIR"/docs/*.md; do
        mkdir "$BATS_TEST_TMPDIR/$(basename "$page" .md)"
        cd "$BATS_TEST_TMPDIR/$(basename "$page" .md)"
        split_blocks "$page"
        for program in *.cpp; do
            [[ -e $program ]] || continue
            echo "$page: $program"
            "$GXX" "${WARNINGS[@]}" -I"$SOURCE_DIR" "$program" -L"$VARIANTS/gcc" -lutillibrary \
                -Wl,-rpath,"$VARIANTS/gcc" -o program
            ./program | diff - "${program%.cpp}.text"
            count=$((count + 1))
        done
    done
    ((count > 0))
}

@test "each link between the pages leads to a file and to a heading of it" {
    local page link target broken=0
    cd "$SOURCE_DIR"
    while read -r page; do
        while read -r link; do
            target=$(dirname "$page")/${link%%#*}
            [[ $link != '#'* ]] || target=$page
            if [[ ! -e $target ]]; then
                echo "$page: no file $link"
                broken=$((broken + 1))
            elif [[ $link == *'#'* ]] && ! headings "$target" | grep -qxF "${link#*#}"; then
                echo "$page: no heading $link"
                broken=$((broken + 1))
            fi
        done < <(local_links "$page")
    done < <(find . -name '*.md' -not -path './build/*' | sort)
    ((broken == 0))
}

@test "ARCHITECTURE.md names each header of utillibrary/internal/" {
    local header missing=0
    cd "$SOURCE_DIR"
    for header in utillibrary/internal/*.h; do
        if ! grep -qF "\`${header##*/}\`" ARCHITECTURE.md; then
            echo "not named: $header"
            missing=$((missing + 1))
        fi
    done
    ((missing == 0))
}
