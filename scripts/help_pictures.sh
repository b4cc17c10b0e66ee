#!/usr/bin/env bash
# Takes the pictures of the help anew: tours the program against the simulated sensor and puts those that the
# topics show into help/pictures.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build
cmake --preset release
cmake --build --preset release --target ztv-tour presets
# Without the help itself, which can't be built while a picture is missing, the tour isn't whole.
QT_QPA_PLATFORM=offscreen build/release/bin/ztv-tour build/tour help || true
cmake --build --preset release --target help_files
