#!/usr/bin/env bats
# tests/coverage.py finds each kind of place that no test reached, in reports that are made up here.

bats_require_minimum_version 1.5.0

# A source with one decision, all of it reached.
setup() {
    : "${SOURCE_DIR:?}"
    cd "$BATS_TEST_TMPDIR" || return
    mkdir -p utillibrary/part
    cat >utillibrary/part/a.cpp <<'END'
int choose(int a, int b) {
    return a == 1 && b == 2
               ? 1
               : 2;
}
END
    : >list.txt
    write_report 1 "[3, 2]" "[2, 1]" "true, true"
}

# write_report COUNT BRANCH BRANCH CONDITIONS: what ran of line 4, of `a == 1`, of `b == 2`, and of the decision.
write_report() {
    local file=$PWD/utillibrary/part/a.cpp branches
    printf '%s\n' "SF:$file" DA:1,5 DA:2,5 DA:3,1 "DA:4,$1" DA:5,5 end_of_record >lines.lcov
    branches="[2, 12, 2, 18, ${2//[][]/}, 0, 0, 6], [2, 22, 2, 28, ${3//[][]/}, 0, 0, 6]"
    echo "{\"data\": [{\"functions\": [{\"filenames\": [\"$file\"], \"branches\": [$branches],
        \"mcdc_records\": [[2, 12, 2, 28, 0, 5, [$4]]]}]}]}" >records.json
}

coverage() {
    run --separate-stderr python3 "$SOURCE_DIR/tests/coverage.py" --root . --list list.txt --lines lines.lcov \
        --records records.json
    # shellcheck disable=SC2154 # set by run --separate-stderr
    printf '%s\n' "$output" "$stderr"
}

@test "a table counts what was reached in each file" {
    write_report 1 "[3, 0]" "[2, 1]" "false, true"
    coverage
    [[ $(tr -s ' ' <<<"${lines[1]}") == "utillibrary/part/a.cpp 5 / 5 3 / 4 1 / 2" ]]
    [[ $(tr -s ' ' <<<"${lines[2]}") == "total 5 / 5 3 / 4 1 / 2" ]]
}

@test "a report of which all is reached passes" {
    coverage
    [[ $status -eq 0 ]]
    [[ -z $stderr ]]
}

@test "a line that was not reached is named" {
    write_report 0 "[3, 2]" "[2, 1]" "true, true"
    coverage
    [[ $status -eq 1 ]]
    [[ $stderr == "coverage: utillibrary/part/a.cpp:4: not reached: line: : 2;" ]]
}

@test "a condition that was never true, or never false, is named" {
    write_report 1 "[0, 2]" "[2, 0]" "true, true"
    coverage
    [[ $status -eq 1 ]]
    [[ $stderr == "coverage: utillibrary/part/a.cpp:2: not reached: never false: b == 2
coverage: utillibrary/part/a.cpp:2: not reached: never true: a == 1" ]]
}

@test "a condition that never decided alone is named" {
    write_report 1 "[3, 2]" "[2, 1]" "true, false"
    coverage
    [[ $status -eq 1 ]]
    [[ $stderr == "coverage: utillibrary/part/a.cpp:2: not reached: decides nothing: b == 2" ]]
}

@test "a place that the list names passes, also if its line has moved" {
    write_report 1 "[3, 2]" "[2, 0]" "true, false"
    cat >list.txt <<'END'
# a comment

utillibrary/part/a.cpp: never false: b == 2
    Its reason.
utillibrary/part/a.cpp: decides nothing: b == 2
    The same.
END
    coverage
    [[ $status -eq 0 ]]
    [[ $output == *"2 places are listed in list.txt." ]]
    sed -i 's/^DA:\(.*\),/DA:1\1,/' lines.lcov
    sed -i 's/\[2, /[12, /g; s/, 2, \([0-9]*\), /, 12, \1, /g' records.json
    yes '' | head -n 10 | cat - utillibrary/part/a.cpp >moved && mv moved utillibrary/part/a.cpp
    coverage
    [[ $status -eq 0 ]]
}

@test "an entry is for one place of one kind in one file" {
    local entry
    write_report 1 "[3, 2]" "[2, 0]" "true, true"
    for entry in "utillibrary/part/b.cpp: never false: b == 2" "utillibrary/part/a.cpp: never true: b == 2" \
        "utillibrary/part/a.cpp: never false: b == 3"; do
        printf '%s\n    Its reason.\n' "$entry" >list.txt
        coverage
        [[ $status -eq 1 ]]
        [[ $stderr == *"not reached: never false: b == 2"* ]]
        [[ $stderr == *"listed, but reached or gone: $entry" ]]
    done
}

@test "an entry whose place is reached, or that has no reason, fails" {
    echo "utillibrary/part/a.cpp: never false: b == 2" >list.txt
    coverage
    [[ $status -eq 1 ]]
    [[ $stderr == "coverage: list.txt: no reason: utillibrary/part/a.cpp: never false: b == 2" ]]
    echo "    Its reason." >>list.txt
    coverage
    [[ $status -eq 1 ]]
    [[ $stderr == "coverage: listed, but reached or gone: utillibrary/part/a.cpp: never false: b == 2" ]]
}

@test "a source that the report does not contain fails" {
    touch utillibrary/part/forgotten.cpp
    coverage
    [[ $status -eq 1 ]]
    [[ $stderr == "coverage: utillibrary/part/forgotten.cpp: not in the report" ]]
}

@test "of two copies of a template, one that is reached is enough" {
    write_report 1 "[0, 2]" "[2, 1]" "false, true"
    cp records.json other.json
    write_report 1 "[3, 0]" "[2, 1]" "true, false"
    python3 - <<'END'
import json
one, other = (json.load(open(name)) for name in ("records.json", "other.json"))
one["data"][0]["functions"] += other["data"][0]["functions"]
json.dump(one, open("records.json", "w"))
END
    coverage
    [[ $status -eq 0 ]]
}
