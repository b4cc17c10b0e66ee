#!/usr/bin/env bash
# Builds the libraries of the Windows program on Debian, once, from Debian's own source packages, and prints their
# folder. A cache of the user's keeps them under a hash of all that goes into them: a second run takes no time.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
compiler=x86_64-w64-mingw32-g++-posix
qt=$(dpkg-query -W -f='${Version}' qt6-base-dev) # its tools run during the build, so the versions have to agree
key=$({
    cat "$0" "$root/cmake/mingw.cmake"
    "$compiler" --version
    echo "$qt"
} | sha256sum | cut -c 1-16)
folder=${XDG_CACHE_HOME:-$HOME/.cache}/ztv-link/windows-$key
if [ -e "$folder/complete" ]; then
    echo "$folder"
    exit
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
exec 3>&1 >&2 # all that the builds print is no result
mkdir -p "$folder" "$work/lists/partial"

# Sources come by a list beside the machine's own, which stays as it is.
keys=/usr/share/keyrings/debian-archive-keyring.gpg
echo "deb-src [signed-by=$keys] http://deb.debian.org/debian $(. /etc/os-release && echo "$VERSION_CODENAME") main" >"$work/sources.list"
apt_source() {
    apt-get -qq -o Dir::Etc::sourcelist="$work/sources.list" -o Dir::Etc::sourceparts=/nonexistent \
        -o Dir::State::lists="$work/lists" -o Dir::Cache="$work" -o APT::Sandbox::User= "$@"
}
cd "$work"
apt_source update
apt_source source --download-only "qt6-base=$qt" sqlitecpp
tar xf qt6-base_*.orig.tar.*
tar xf sqlitecpp_*.orig.tar.*

common=(-G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw.cmake" -DCMAKE_INSTALL_PREFIX="$folder" -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

# The library brings SQLite with it.
cmake -S SQLiteCpp-* -B sqlitecpp "${common[@]}" -DBUILD_SHARED_LIBS=OFF -DSQLITECPP_INTERNAL_SQLITE=ON \
    -DSQLITECPP_USE_STACK_PROTECTION=OFF -DSQLITECPP_RUN_CPPLINT=OFF -DSQLITECPP_RUN_CPPCHECK=OFF
cmake --build sqlitecpp --target install

# Headers alone.
cp -r /usr/include/CLI "$folder/include/"
mkdir -p "$folder/share/cmake"
cp -r /usr/share/cmake/CLI11 "$folder/share/cmake/"

# Qt as DLLs: its licence asks that users can exchange them. Left out: all that the program doesn't use.
features=()
for feature in vulkan network sql dbus xml concurrent printsupport tabletevent icu glib androiddeployqt jpeg zstd fontconfig \
    system_zlib system_png system_jpeg system_freetype system_harfbuzz system_pcre2 system_doubleconversion; do
    features+=("-DFEATURE_$feature=OFF")
done
cmake -S qtbase-* -B qt "${common[@]}" "${features[@]}" -DBUILD_SHARED_LIBS=ON -DINPUT_opengl=no -DQT_BUILD_EXAMPLES=OFF \
    -DQT_BUILD_TESTS=OFF -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(uname -m)-linux-gnu/cmake"
cmake --build qt
cmake --install qt

touch "$folder/complete"
echo "$folder" >&3
