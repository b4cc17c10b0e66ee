#!/usr/bin/env bash
# Sets up, builds, and lets the program poll the simulated sensor over a faulty line:
# scripts/soak.sh [ROUNDS] [SEED] [--echo]. --echo simulates an adapter with a local echo. 100000 rounds take about ten
# minutes. The run prints its seed; the same seed gives the same faults, except for influences of the machine's speed.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build test
scripts/build.sh release -DZTV_TESTS=ON -DZTV_BENCH=OFF
export QT_QPA_PLATFORM=offscreen
exec build/release/tests/soak_test --rounds "${1:-100000}" --seed "${2:-$RANDOM}" "${@:3}"
