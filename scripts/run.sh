#!/usr/bin/env bash
# Sets up, builds, and starts the program against the simulated sensor. Without a display it tours the program
# offscreen and leaves the pictures in build/tour.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build
scripts/build.sh release -DZTV_TESTS=OFF -DZTV_BENCH=OFF
bin=build/release/bin

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "There is no display: touring the program offscreen."
    QT_QPA_PLATFORM=offscreen "$bin/ztv-tour" build/tour
    exit
fi

folder=$(mktemp -d)
"$bin/ztv-sim" --link "$folder/sensor" </dev/null >"$folder/sim.log" 2>&1 &
sensor=$!
trap 'kill "$sensor" 2>/dev/null || true; rm -rf "$folder"' EXIT
for _ in $(seq 100); do
    [ -e "$folder/sensor" ] && break
    sleep 0.05
done
if [ ! -e "$folder/sensor" ]; then
    cat "$folder/sim.log" >&2
    exit 1
fi
echo "The simulated sensor is on port 1. Click \"Online\", then \"Read\"."
# A temporary home, so that double clicks on settings files don't start this build from now on.
XDG_DATA_HOME="$folder" ZTVLINK_PORT_1="$folder/sensor" "$bin/ZtvLink" "$@"
