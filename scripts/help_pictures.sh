#!/usr/bin/env bash
# Takes new pictures for the help: tours the program against the simulated sensor and copies the pictures that the
# topics show to help/pictures.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build
cmake --preset release
cmake --build --preset release --target ztv-tour presets
# The tour may fail at the help itself, which can't be built while a picture is missing.
QT_QPA_PLATFORM=offscreen build/release/bin/ztv-tour build/tour help || true
cmake --build --preset release --target help_files
