#!/usr/bin/env bash
# Sets up, builds and runs all tests: scripts/test.sh [release|core|asan|coverage]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
scripts/setup.sh build test
scripts/build.sh "$preset" -DZTV_TESTS=ON -DZTV_BENCH=OFF ${ZTV_CMAKE_OPTIONS:-}
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tests/helpers/lsan.supp:print_suppressions=0}
waiting='^FlashTest\.' # upgrades mostly wait for a loader, so that several run at once
ctest --preset "$preset" -R "$waiting" -j 6
ctest --preset "$preset" -E "$waiting"
