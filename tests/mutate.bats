#!/usr/bin/env bats
# scripts/mutate finds the places that can be changed, on a small tree that is made up here. Nothing is
# built: a run takes minutes.

bats_require_minimum_version 1.5.0

setup() {
    : "${SOURCE_DIR:?}"
    cd "$BATS_TEST_TMPDIR" || return
    mkdir -p utillibrary/part mutants
    cp -r "$SOURCE_DIR/scripts" .
    cp "$SOURCE_DIR"/mutants/*.py mutants/
    : >mutants/equivalent.txt
    cat >utillibrary/part/Thing.cpp <<'END'
#include "1 < 2"  // 3 + 4
namespace part {
static_assert(1 + 1 == 2);
using Numbers = std::array<int, 7>;
template <int N = 3>
int Thing::of(Numbers const& numbers) {
    if (numbers.empty()) return -1;
    int sum = 'a';
    for (int number : numbers) sum += number;
    return sum;
}
std::optional<char> fast(std::string_view text) {
    if (auto const c = first(text)) return *c;
    return std::nullopt;
}
}
END
}

mutate() {
    run --separate-stderr scripts/mutate "$@"
    echo "$output"
    # shellcheck disable=SC2154 # set by run --separate-stderr
    echo "$stderr"
}

@test "every change of a small source is listed, and none in a name, a comment or an assertion" {
    mutate --list
    [[ $status -eq 0 ]]
    diff <(cut -d ' ' -f 2- <<<"$output") - <<'END'
utillibrary/part/Thing.cpp:7: if (...) -> if (!(...))
utillibrary/part/Thing.cpp:7: - dropped
utillibrary/part/Thing.cpp:7: return ... -> return {}
utillibrary/part/Thing.cpp:7: 1 -> 2
utillibrary/part/Thing.cpp:7: 1 -> 0
utillibrary/part/Thing.cpp:8: 'a' -> 'b'
utillibrary/part/Thing.cpp:8: 'a' -> '`'
utillibrary/part/Thing.cpp:9: dropped: sum += number;
utillibrary/part/Thing.cpp:9: += -> -=
utillibrary/part/Thing.cpp:10: return ... -> return {}
utillibrary/part/Thing.cpp:13: if (...) -> if (...; false)
utillibrary/part/Thing.cpp:13: return ... -> return std::nullopt
END
}

# id_of CHANGE: the name of the mutant with this change.
id_of() {
    scripts/mutate --list | grep -F -- "$1" | cut -d ' ' -f 1
}

@test "a mutant is shown as a change of its file" {
    mutate --show "$(id_of ': += -> -=')"
    [[ $status -eq 0 ]]
    [[ $output == *$'\n-    for (int number : numbers) sum += number;\n+    for (int number : numbers) sum -= number;\n'* ]]
}

@test "a mutant keeps its name when its line moves" {
    local before
    before=$(scripts/mutate --list | cut -d ' ' -f 1)
    sed -i '1i // One line more.' utillibrary/part/Thing.cpp
    [[ $(scripts/mutate --list | cut -d ' ' -f 1) == "$before" ]]
}

# entry FILE: an entry of the list of equivalent mutants.
entry() {
    cat >mutants/equivalent.txt <<END
# a comment

file    $1
line    for (int number : numbers) sum += number;
change  += -> -=
reason  Every number
        is zero.
END
}

@test "a mutant of mutants/equivalent.txt is marked" {
    entry utillibrary/part/Thing.cpp
    mutate --list
    [[ $status -eq 0 ]]
    [[ $(grep -c 'listed as equivalent' <<<"$output") -eq 1 ]]
    [[ $output == *"Thing.cpp:9: += -> -=  (listed as equivalent)"* ]]
}

@test "an entry that fits no mutant is an error" {
    entry utillibrary/part/Other.cpp
    mutate --list
    [[ $status -eq 1 ]]
    [[ -z $output ]]
    [[ $stderr == "mutate: mutants/equivalent.txt names what is not there: utillibrary/part/Other.cpp: "* ]]
}

@test "an entry without a reason is an error" {
    entry utillibrary/part/Thing.cpp
    sed -i '/^reason/,$d' mutants/equivalent.txt
    mutate --list
    [[ $status -eq 1 ]]
    [[ $stderr == "mutate: equivalent.txt: an entry needs file, line, change and reason: "* ]]
}

@test "a mutant or a unit that is not there is refused" {
    mutate --show 0123456789
    [[ $status -eq 1 ]]
    [[ $stderr == "mutate: there is no mutant 0123456789" ]]
    mutate --list --unit Other
    [[ $status -eq 1 ]]
    [[ $stderr == "mutate: there is no unit Other" ]]
}

@test "the library's own list fits the library" {
    run --separate-stderr "$SOURCE_DIR/scripts/mutate" --list
    [[ $status -eq 0 ]]
    [[ -z $stderr ]]
    [[ ${#lines[@]} -gt 1000 ]]
}
