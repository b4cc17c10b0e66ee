#!/usr/bin/env bash
# Sets up, builds, and has the program poll the simulated sensor over a line on which anything goes wrong:
# scripts/soak.sh [ROUNDS] [SEED] [--echo]. With --echo the adapter gives back what is sent. 100000 rounds take about ten
# minutes. A seed gives the same faults again, but for what the pace of the machine changes; it is printed.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build test
scripts/build.sh release -DZTV_TESTS=ON -DZTV_BENCH=OFF
export QT_QPA_PLATFORM=offscreen
exec build/release/tests/soak_test --rounds "${1:-100000}" --seed "${2:-$RANDOM}" "${@:3}"
