#!/usr/bin/env bash
# Builds the fuzz targets and runs each of them from its seeds: scripts/fuzz.sh [SECONDS [TARGET ...]]
# SECONDS is the time for each target, 10 by default. build/fuzz/corpus keeps the inputs that reached new code, and the
# next run continues from there. build/fuzz/findings keeps the inputs that failed.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-10}
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    mapfile -t targets < <(ls fuzz/seeds)
fi
scripts/setup.sh build fuzz
scripts/build.sh fuzz ${ZTV_CMAKE_OPTIONS:-}

folder=$PWD/build/fuzz
mkdir -p "$folder/findings" "$folder/logs"

run_target() {
    local target=$1 folder=$2 seconds=$3
    local log=$folder/logs/$target.log
    local finding=$folder/findings/$target-
    mkdir -p "$folder/corpus/$target"
    if "$folder/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 -print_final_stats=1 \
        -artifact_prefix="$finding" "$folder/corpus/$target" "$PWD/fuzz/seeds/$target" >"$log" 2>&1; then
        awk -v target="$target" '
            /cov: / { for (field = 1; field < NF; ++field) if ($field == "cov:") edges = $(field + 1) }
            /number_of_executed_units/ { runs = $2 }
            END { printf "%-14s %9d runs, %5d edges\n", target, runs, edges }' "$log"
        return 0
    fi
    grep -E "doesn't hold|ERROR: |SUMMARY: |runtime error: |Test unit written" "$log" | sed "s/^/$target: /" >&2 ||
        tail -20 "$log" >&2
    local input
    input=$(sed -n 's/.*Test unit written to //p' "$log" | tail -1)
    echo "$target: its log is $log; run it again with: $folder/fuzz/fuzz_$target ${input:-$PWD/fuzz/seeds/$target}" >&2
    return 1
}
export -f run_target

export ASAN_OPTIONS=${ASAN_OPTIONS:-quarantine_size_mb=32} # reuses freed memory soon, so that it stays in the caches
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I '{}' bash -c 'run_target "$@"' run '{}' "$folder" "$seconds"
