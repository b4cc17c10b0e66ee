#!/usr/bin/env bash
# Takes new pictures for the documents: tours the program offscreen and copies the pictures that the documents show to
# docs/pictures. The tour names the pictures. `build/release/bin/ztv-tour --tabs --size 1920x1080 FOLDER` takes those of the
# tabs in a window of another size.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build
scripts/build.sh release -DZTV_TESTS=OFF
tour=$(mktemp -d)
trap 'rm -rf "$tour"' EXIT
QT_QPA_PLATFORM=offscreen build/release/bin/ztv-tour "$tour"

mapfile -t shown < <(grep -oh 'pictures/[a-z0-9-]*\.png' README.md docs/*.md | sed 's,.*/,,' | sort -u)
for picture in "${shown[@]}"; do
    if [ ! -e "$tour/$picture" ]; then
        echo "The documents show $picture, which the tour doesn't take." >&2
        exit 1
    fi
done
rm -f docs/pictures/*.png
cp "${shown[@]/#/$tour/}" docs/pictures/
