#!/usr/bin/env bats
# The Debian packages: built twice in folders of other names, checked by lintian, and tried.

bats_require_minimum_version 1.5.0

load support/own_system

SHORT=a
LONG=a-folder-with-a-longer-name

setup_file() {
    : "${SOURCE_DIR:?}"
    cd "$BATS_FILE_TMPDIR" || return
    local folder
    for folder in "$SHORT" "$LONG"; do
        mkdir -p "$folder/source"
        git -C "$SOURCE_DIR" ls-files -z |
            tar --directory "$SOURCE_DIR" --null --files-from - --create |
            tar --directory "$folder/source" --extract
        (cd "$folder/source" && dpkg-buildpackage -b -us -uc >../log 2>&1) || {
            tail -30 "$folder/log"
            return 1
        }
    done
}

@test "the packages are the same bytes, wherever they were built" {
    cd "$BATS_FILE_TMPDIR"
    local package count=0
    for package in "$SHORT"/*.deb; do
        cmp "$package" "$LONG/$(basename "$package")"
        count=$((count + 1))
    done
    [[ $count -eq 4 ]]
}

@test "lintian finds neither an error nor a warning" {
    cd "$BATS_FILE_TMPDIR/$SHORT"
    run lintian --allow-root --fail-on error,warning ./*.changes
    echo "$output"
    [[ $status -eq 0 ]]
}

@test "the library was built with Debian's hardening flags" {
    grep -q -- '-D_FORTIFY_SOURCE=2' "$BATS_FILE_TMPDIR/$SHORT/log"
    grep -q -- '-z,now' "$BATS_FILE_TMPDIR/$SHORT/log"
}

@test "the symbols file names every export, and Debian's tool finds nothing else" {
    cd "$BATS_FILE_TMPDIR"
    diff <(sed -nE 's/^ ([^@ ]+)@.*/\1/p' "$SOURCE_DIR/debian/libutillibrary1.symbols" | grep -v '^UTILLIBRARY_' | LC_ALL=C sort) \
        <(sed 's/@.*//' "$SOURCE_DIR/tests/exported_symbols.txt" | grep -v '^UTILLIBRARY_' | LC_ALL=C sort)
    mkdir extracted
    dpkg-deb --extract "$SHORT"/libutillibrary1_*.deb extracted
    mkdir debian && cp "$SOURCE_DIR/debian/control" debian/
    dpkg-gensymbols -c4 -plibutillibrary1 -v1.0.0-1 -Pextracted \
        -I"$SOURCE_DIR/debian/libutillibrary1.symbols" -Oignored
}

@test "README's program builds with the installed packages by both routes" {
    cd "$BATS_FILE_TMPDIR"
    mkdir try
    with_a_system_of_its_own /etc /usr /var <<END
dpkg --install "$PWD/$SHORT"/libutillibrary1_*.deb "$PWD/$SHORT"/libutillibrary-dev_*.deb >log
cd "$SOURCE_DIR"
AUTOPKGTEST_TMP="$PWD/try" debian/tests/readme-program
END
}
