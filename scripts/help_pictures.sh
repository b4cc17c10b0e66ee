#!/usr/bin/env bash
# Takes the pictures of the help anew: tours the program against the simulated sensor and puts those that the
# topics show into help/pictures.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build
cmake --preset release
# Not the help itself: it can't be built while a picture is missing.
cmake --build --preset release --target ztv-tour presets
QT_QPA_PLATFORM=offscreen build/release/bin/ztv-tour build/tour help
