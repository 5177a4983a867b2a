#!/usr/bin/env bats
# What README.md shows is compiled and run as it stands there.

WARNINGS=(-std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

setup_file() {
    : "${SOURCE_DIR:?}" "${VARIANTS:?}" "${GXX:?}"
}

# block NUMBER LANGUAGE: the text of that fenced block of a language.
block() {
    awk -v wanted="$1" -v fence="\`\`\`$2" '
        $0 == "```" && inside { exit }
        inside { print }
        $0 == fence && ++count == wanted { inside = 1 }' "$SOURCE_DIR/README.md"
}

# compile PROGRAM SOURCE...
compile() {
    "$GXX" "${WARNINGS[@]}" -I"$SOURCE_DIR" "${@:2}" -L"$VARIANTS/gcc" -lutillibrary \
        -Wl,-rpath,"$VARIANTS/gcc" -o "$1"
}

@test "the first program prints what README shows below it" {
    cd "$BATS_TEST_TMPDIR"
    block 1 cpp >first.cpp
    compile first first.cpp
    diff <(./first) <(block 1 text)
    [[ $(./first | wc -l) -eq 3 ]]
}

@test "the log hook that is shown hears a report" {
    cd "$BATS_TEST_TMPDIR"
    block 2 cpp >hook.cpp
    cat >host.cpp <<END
#include <utillibrary/datatypes/Variant.h>

int main() {
    com::halvorin::datatypes::Variant wrong;
    wrong.dataType = 15;
    return wrong.toString().empty() ? 0 : 1;
}
END
    compile host host.cpp hook.cpp
    diff <(./host 2>&1) - <<END
Variant::convertToString (3): Cannot convert unknown type [0x80004005]
END
}
