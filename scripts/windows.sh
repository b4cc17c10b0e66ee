#!/usr/bin/env bash
# Builds the Windows program on Debian: the folder build/windows/ZtvLink, which runs from any place. The libraries take
# half an hour once; later runs find them in a cache.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build windows
libraries=$(scripts/windows_libraries.sh)

# Programs that run during the build are built for this system.
cmake --preset release -DZTV_TESTS=OFF >/dev/null
cmake --build build/release --target build-presets build-help render-pictures

cmake -S . -B build/windows -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE=cmake/mingw.cmake \
    -DZTV_WINDOWS_LIBRARIES="$libraries" -DQT_HOST_PATH=/usr \
    -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(uname -m)-linux-gnu/cmake" -DZTV_HOST_PROGRAMS="$PWD/build/release/bin" \
    -DZTV_TESTS=OFF -DZTV_WERROR=ON >/dev/null
cmake --build build/windows
folder=build/windows/ZtvLink
rm -rf "$folder"
cmake --install build/windows --prefix "$folder" --strip >/dev/null

# Adds the DLLs that the programs, and these DLLs, name in their import tables. Those of the system aren't found here.
dll_path() {
    local place
    for place in "$libraries/bin" /usr/x86_64-w64-mingw32/lib \
        "$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")"; do
        if [ -e "$place/$1" ]; then
            echo "$place/$1"
            return
        fi
    done
}
strip=(-s --strip-program=x86_64-w64-mingw32-strip)
install "${strip[@]}" -D -t "$folder/platforms" "$libraries/plugins/platforms/qwindows.dll"
install "${strip[@]}" -D -t "$folder/styles" "$libraries/plugins/styles/qwindowsvistastyle.dll"
todo=("$folder"/*.exe "$folder"/*/*.dll)
while [ ${#todo[@]} -gt 0 ]; do
    added=()
    while read -r name; do
        path=$(dll_path "$name")
        if [ -n "$path" ] && [ ! -e "$folder/$name" ]; then
            install "${strip[@]}" -t "$folder" "$path"
            added+=("$folder/$name")
        fi
    done < <(x86_64-w64-mingw32-objdump -p "${todo[@]}" | sed -n 's/^\s*DLL Name: //p' | sort -u)
    todo=("${added[@]}")
done
du -sh "$folder"
