#!/usr/bin/env bash
# Sets up, builds and measures. Prints one line for each figure, with its limit and the peers' figures.
# scripts/bench.sh [--check] [--awake] [--runs N] [--table FILE] [round-trip] [poll] [list] [search] [start-up] [hex] [upgrade] [flash] [command-line]
# --check fails if a limit is exceeded; --runs repeats each measurement; --awake keeps the processors from sleeping,
# because a virtual machine takes long to wake them.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build bench >&2
scripts/build.sh release -DZTV_TESTS=OFF -DZTV_BENCH=ON >&2
exec build/release/bench/ztv-bench "$@"
