#!/usr/bin/env bats
# benchmarks/instructions/count.py, with fake emulators that write a log as qemu-user does.

bats_require_minimum_version 1.5.0

setup() {
    : "${SOURCE_DIR:?}"
    export PATH="$BATS_TEST_TMPDIR:$PATH"
}

# fake PROCESSOR LINES NAME...: an emulator that logs so many instructions of each operation, among
# others, and prints the names as the program does.
fake() {
    local processor=$1 lines=$2
    shift 2
    cat >"$BATS_TEST_TMPDIR/qemu-$processor" <<END
#!/bin/bash
while [[ \$1 != -D ]]; do shift; done
exec 3>"\$2"
instruction() { echo "Trace 0: 0x7f0100 [0000000000000000/0000004000001290/1040c0b3/00000201] \$1" >&3; }
instruction main
for name in "$1" "$2"; do
    instruction beginOperation
    for ((i = 0; i < $lines; ++i)); do instruction ""; done
    instruction endOperation
    instruction puts
    echo "\$name"
done
echo "rounds 4"
END
    chmod +x "$BATS_TEST_TMPDIR/qemu-$processor"
}

count() {
    run --separate-stderr "$SOURCE_DIR/benchmarks/instructions/count.py" "$@"
    echo "$output"
    # shellcheck disable=SC2154 # set by run --separate-stderr
    echo "$stderr"
}

@test "each operation has one line, with the instructions of one round on each processor" {
    fake x86_64 40 first second
    fake aarch64 80 first second
    count x86_64=program aarch64=program
    # shellcheck disable=SC2154 # set by run
    [[ $status -eq 0 ]]
    [[ $output == "| operation | x86_64 | aarch64 |
|---|--:|--:|
| first | 10 | 20 |
| second | 10 | 20 |" ]]
}

@test "a program that names another number of operations than it marks is refused" {
    fake x86_64 40 first "second
third"
    count x86_64=program
    # shellcheck disable=SC2154 # set by run
    [[ $status -eq 1 ]]
    [[ $stderr == "count.py: 3 operations of program, but 2 counts" ]]
}

@test "a program that fails is reported" {
    fake x86_64 40 first second
    echo "exit 3" >>"$BATS_TEST_TMPDIR/qemu-x86_64"
    count x86_64=program
    # shellcheck disable=SC2154 # set by run
    [[ $status -eq 1 ]]
    [[ $stderr == "count.py: program failed" ]]
}
