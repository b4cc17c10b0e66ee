#!/usr/bin/env bash
# Configures and builds a preset: scripts/build.sh [release|core|asan|coverage] [cmake options ...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
shift || true
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! cmake --preset "$preset" "$@" >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
cmake --build --preset "$preset"
