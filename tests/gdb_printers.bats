#!/usr/bin/env bats
# gdb shows the library's objects by what they contain. It finds the printers beside the installed
# library; the only command that it needs is the one that trusts the folder.

setup_file() {
    : "${SOURCE_DIR:?}" "${CMAKE:?}" "${BUILD:?}" "${GXX:?}" "${GDB:?}"
    cd "$BATS_FILE_TMPDIR" || return
    "$CMAKE" --install "$BUILD" --prefix "$PWD/installed" >log
    mv installed "a moved tree"
    "$GXX" -std=c++17 -g -O0 -I"a moved tree/include" "$SOURCE_DIR/tests/gdb/objects.cpp" \
        -L"a moved tree/lib" -lutillibrary -o objects
}

# show EXPRESSION...: prints what gdb prints of each, one per line, after its name.
show() {
    cd "$BATS_FILE_TMPDIR" || return
    {
        echo "break look"
        echo "run"
        local name
        for name in "$@"; do
            printf 'printf "\\nshown %s = "\noutput %s\n' "$name" "$name"
        done
        printf 'printf "\\n"\n'
    } >commands
    LD_LIBRARY_PATH="a moved tree/lib" "$GDB" --batch -nx \
        -iex "add-auto-load-safe-path $PWD/a moved tree" -iex 'set confirm off' \
        -iex 'set width 0' -x commands objects >gdb.log 2>&1 || true
    sed -n 's/^shown //p' gdb.log
}

@test "a Variant of each type shows its type and value" {
    run show unknown unsignedByte uint16 uint32 byteValue int16 int32 floatValue doubleValue \
        stringValue emptyString int64 uint64 booleanValue dateTime null fifteenth
    diff - <(echo "$output") <<'END'
unknown = Unknown
unsignedByte = UnsignedByte 200
uint16 = Uint16 65535
uint32 = Uint32 4000000000
byteValue = Byte -5
int16 = Int16 -300
int32 = Int32 -70000
floatValue = Float 0.5
doubleValue = Double 2.5
stringValue = String L"a\"b\n\x00c\xe9"
emptyString = String L""
int64 = Int64 -9223372036854775808
uint64 = Uint64 18446744073709551615
booleanValue = Boolean true
dateTime = DateTime 2024-03-05T06:08:09.250000000Z
null = Null
fifteenth = type 15, which does not exist
END
}

@test "a vector of Variants shows the elements on one line" {
    run show variants
    [[ $output == 'variants = std::vector of length 3, capacity 3 = {Int32 1, Double 2.5, String L"x"}' ]]
}

@test "a long string is cut after 200 characters, and its length is shown" {
    run show longString
    [[ $output == "longString = String L\"$(printf 'x%.0s' {1..200})\"... (201 characters)" ]]
}

@test "a time shows its ISO text with nanoseconds, for each 64-bit second" {
    run show notSet leapDay beforeTheEpoch notCarried farFuture farPast
    diff - <(echo "$output") <<'END'
notSet = not set
leapDay = 2000-02-29T12:34:56.000000007Z
beforeTheEpoch = 1969-12-31T23:59:59.999999999Z
notCarried = 1970-01-01T00:00:00Z + 2500000000 ns
farFuture = 292277026596-12-04T15:30:07.000000000Z
farPast = -292277022657-01-27T08:29:52.000000001Z
END
}

@test "a ByteStream shows its length and its first sixteen bytes, zero bytes included" {
    run show emptyStream oneByte someBytes manyBytes noBytes
    diff - <(echo "$output") <<'END'
emptyStream = empty
oneByte = 1 byte: 7f
someBytes = 7 bytes: 61 62 63 00 ff 64 65
manyBytes = 17 bytes: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 ...
noBytes = 0 bytes:
END
}

@test "a Library shows its name and state, a String its text" {
    run show closedLibrary openLibrary text
    diff - <(echo "$output") <<'END'
closedLibrary = "" closed
openLibrary = "libm.so.6" open
text = "a\x00\"b"
END
}

@test "objects of random memory are shown without an error of Python" {
    cd "$BATS_FILE_TMPDIR"
    show wild wildStream wildLibrary wildText wildString >shown
    # gdb shows a reference with its type and address first.
    sed -i 's/(.*) @0x[0-9a-f]*: //' shown
    diff - shown <<'END'
wild = type -1515870811, which does not exist
wildStream = <unreadable>
wildLibrary = <unreadable>
wildText = <unreadable>
wildString = <unreadable>
END
    run grep -iE 'traceback|python exception|error' gdb.log
    [[ $status -eq 1 ]]
}
