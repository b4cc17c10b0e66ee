#!/usr/bin/env bash
# Takes pictures of all forms on a light and a dark desktop, at three scale factors and with a large font:
# build/looks/light-1.5 and so on. Passes options to the tour: scripts/looks.sh --only '^basic'
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build
cmake --preset release
cmake --build --preset release --target ztv-tour presets help_files

tour() { # name, scale, options...
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=$2 build/release/bin/ztv-tour "${@:3}" "build/looks/$1" | tail -1
}
for scale in 1 1.5 2; do
    tour "light-$scale" "$scale" "$@"
    tour "dark-$scale" "$scale" --dark "$@"
done
tour large-font 1 --font-size 14 "$@"
