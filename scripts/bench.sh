#!/usr/bin/env bash
# Sets up, builds and measures: one line a figure, with its limit and what peers need for the same.
# scripts/bench.sh [--check] [--awake] [--runs N] [--table FILE] [round-trip] [poll] [list] [search] [start-up] [hex] [upgrade]
# With --check it fails where a limit is passed; with --runs each is measured so often; with --awake the processors are
# kept from sleeping, which a virtual machine's take long to wake from.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build bench >&2
scripts/build.sh release -DZTV_TESTS=OFF -DZTV_BENCH=ON >&2
exec build/release/bench/ztv-bench "$@"
