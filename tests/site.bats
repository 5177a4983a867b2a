#!/usr/bin/env bats
# The manual as a site: it is built without a warning, no link is broken, and a browser shows every
# page without scrolling sideways and finds names.

setup_file() {
    : "${SOURCE_DIR:?}" "${CHROMIUM:?}"
    export SITE=$BATS_FILE_TMPDIR/site
    "$SOURCE_DIR/scripts/docs" "$SITE"
}

@test "each link of the site leads to a page and to a place on it" {
    run python3 "$SOURCE_DIR/tests/site_links.py" "$SITE"
    echo "$output"
    [[ $status -eq 0 ]]
}

@test "labels of a contract are headed paragraphs, and names of surprises are links" {
    local page=$SITE/namespacecom_1_1halvorin_1_1utilities.html
    local label
    for label in Takes Gives Fails Like Source Example Kept; do
        echo "$label"
        grep -q "<dt>$label</dt>" "$page"
    done
    grep -q 'href="md_docs_kept.html#kept-iequals-looks-one-way"' "$page"
}

@test "no page scrolls sideways at 400 pixels, and the search finds toInt32" {
    cd "$SITE"
    {
        echo 'const PAGES = ['
        printf '"%s",\n' *.html
        echo '];'
    } >pages.js
    cp "$SOURCE_DIR/tests/site_in_a_browser.html" browser.html
    "$CHROMIUM" --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking \
        --disable-component-update --disable-sync --disable-quic --allow-file-access-from-files \
        --user-data-dir="$BATS_TEST_TMPDIR/profile" --virtual-time-budget=120000 --dump-dom \
        "file://$SITE/browser.html" 2>errors | sed -n '/id="results"/,/<\/pre>/p' >results
    cat results
    grep -q '^end' results
    [[ $(grep -c 'fits ' results) -gt 30 ]]
    run grep -c 'scrolls ' results
    [[ $output -eq 0 ]]
    grep -q '^found toInt32' results
}
