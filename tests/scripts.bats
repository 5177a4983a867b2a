#!/usr/bin/env bats
# Every script in scripts/ explains itself and refuses unknown arguments, before it does anything else. The
# mistakes that scripts/fuzz-broken makes fit the code.

bats_require_minimum_version 1.5.0

setup_file() {
    : "${SOURCE_DIR:?}"
}

# A copy of the scripts: one that starts to work does so outside the checkout, and fails there.
setup() {
    cp -r "$SOURCE_DIR/scripts" "$BATS_TEST_TMPDIR/"
    cd "$BATS_TEST_TMPDIR" || return
}

@test "--help prints a usage text and how long the script takes" {
    local script
    for script in scripts/*; do
        echo "$script"
        run --separate-stderr timeout 5 "$script" --help
        [[ $status -eq 0 ]]
        [[ ${lines[0]} == "usage: $script"* ]]
        [[ ${#lines[@]} -gt 3 ]]
        [[ $output == *$'\n'"Time: "* ]]
        # shellcheck disable=SC2154 # set by run --separate-stderr
        [[ -z $stderr ]]
    done
}

@test "an unknown option is refused with a line of usage and status 2" {
    local script
    for script in scripts/*; do
        echo "$script"
        run --separate-stderr timeout 5 "$script" --wrong
        [[ $status -eq 2 ]]
        [[ -z $output ]]
        [[ $stderr == "usage: $script"* ]]
        [[ $stderr != *$'\n'* ]]
    done
}

@test "a second argument that a script does not know is refused as well" {
    local arguments
    for arguments in "test --all --wrong" "demo wrong" "bench --keep --quick" "update-exports wrong" "update-abi --wrong" \
        "coverage wrong" "fuzz 1 wrong" "fuzz 0" "fuzz wrong" "fuzz-broken 1 wrong" "check wrong wrong" \
        "mutate --sample 0" "mutate --list --show" "mutate wrong"; do
        echo "$arguments"
        # shellcheck disable=SC2086 # words of their own
        run timeout 5 scripts/$arguments
        [[ $status -eq 2 ]]
        [[ ${lines[0]} == "usage: scripts/"* ]]
    done
}

@test "each mistake of fuzz/broken.txt changes code that its file contains exactly once" {
    local line file='' count=0 wrong=0
    while IFS= read -r line; do
        case $line in
            'file   '*) file=${line#???????} ;;
            'old    '*)
                count=$((count + 1))
                if [[ $(grep -oF -e "${line#???????}" "$SOURCE_DIR/$file" | wc -l) -ne 1 ]]; then
                    echo "$file: $line"
                    wrong=$((wrong + 1))
                fi
                ;;
        esac
    done <"$SOURCE_DIR/fuzz/broken.txt"
    ((count > 0 && wrong == 0))
}
