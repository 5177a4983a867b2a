# shellcheck shell=bash
# Lets a test write into folders of the system. The changes vanish when the test ends.

# with_a_system_of_its_own PLACE...: runs the script from standard input while the folders PLACE may
# be written. Skips the test where the kernel allows no such view.
with_a_system_of_its_own() {
    local folder=$BATS_TEST_TMPDIR/system unshare=(unshare --mount)
    if (($(id -u) != 0)); then unshare=(unshare --map-root-user --mount); fi
    mkdir "$folder"
    cat >"$folder.mounts" <<'END'
set -euo pipefail
folder=$1
shift
mount -t tmpfs none "$folder"
for place in "$@"; do
    changes=$folder/${place//\//_}
    mkdir "$changes" "$changes.work"
    mount -t overlay overlay -o "lowerdir=$place,upperdir=$changes,workdir=$changes.work" "$place"
done
END
    "${unshare[@]}" bash "$folder.mounts" "$folder" "$@" || skip "this machine allows no mounts of a test's own"
    cat "$folder.mounts" - >"$folder.script"
    "${unshare[@]}" bash "$folder.script" "$folder" "$@"
}
