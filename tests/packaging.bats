#!/usr/bin/env bats
# The recipes for package managers say what the project says.

setup() {
    : "${SOURCE_DIR:?}"
    cd "$SOURCE_DIR" || return
}

@test "each recipe names the version of the project" {
    local version
    version=$(sed -nE 's/^project\(utillibrary VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
    [[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]]
    [[ $(head -1 debian/changelog) == "utillibrary ($version-"* ]]
    grep -qF "version = \"$version\"" packaging/conan/conanfile.py
    grep -qF "\"version\": \"$version\"" packaging/vcpkg/vcpkg.json
    grep -qF "## $version," CHANGELOG.md
}

@test "the Debian package of the library has the number of the soname" {
    local major
    major=$(sed -nE 's/^project\(utillibrary VERSION ([0-9]+).*/\1/p' CMakeLists.txt)
    grep -qxF "Package: libutillibrary$major" debian/control
}

@test "what the build needs is on the list of scripts/bootstrap" {
    local package
    # build-essential brings the compiler; CMake finds the library without pkg-config.
    while read -r package; do
        case $package in
            g++ | pkg-config) ;;
            *) grep -qE "^ $package( |,|\$)" "$SOURCE_DIR/debian/control" || {
                echo "missing in debian/control: $package"
                return 1
            } ;;
        esac
    done < <("$SOURCE_DIR/scripts/bootstrap" --packages build)
}
