#!/usr/bin/env bash
# Installs the packages that a build needs, and those for each purpose named as an argument, on Debian and its
# relatives. Elsewhere it only lists what is needed.
set -euo pipefail

packages=(cmake ninja-build g++ pkg-config ccache qt6-base-dev qt6-base-dev-tools qt6-svg-dev
    qt6-serialport-dev libsqlitecpp-dev libsqlite3-dev libcli11-dev libgl-dev fonts-dejavu-core)
for purpose in "$@"; do
    case "$purpose" in
    build) ;;
    test)
        packages+=(fp-utils python3 sqlite3 libgtest-dev libmodbus-dev mbpoll python3-gi gir1.2-atspi-2.0 at-spi2-core dbus xvfb xauth
            shared-mime-info desktop-file-utils xdg-utils libglib2.0-bin srecord binutils)
        ;;
    bench) packages+=(libmodbus-dev qt6-serialbus-dev libxcb1-dev xvfb cutecom srecord binutils) ;;
    package) packages+=(dpkg-dev man-db) ;;
    fuzz) packages+=(clang llvm libclang-rt-dev python3) ;;
    coverage) packages+=(gcovr) ;;
    windows) packages+=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 xz-utils fp-utils) ;;
    check) packages+=(clang-format clang-tidy) ;;
    *)
        echo "usage: $0 [build] [test] [bench] [package] [fuzz] [coverage] [windows] [check]" >&2
        exit 2
        ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    echo "This isn't a Debian system; make sure that there is the like of: ${packages[*]}" >&2
    exit 0
fi
missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing ${missing[*]}"
    as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
