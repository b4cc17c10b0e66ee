#!/usr/bin/env bash
# Runs all tests and prints how much of src/ they covered, a row for each library, then the lines that no test ran.
# Fails if less than 95 % of a library's logic was covered.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build test coverage
find build/coverage -name '*.gcda' -delete 2>/dev/null || true # counts of earlier runs
scripts/test.sh coverage
gcovr --root . --filter src/ --exclude '.*_autogen.*' -j "$(nproc)" build/coverage --txt build/coverage/lines.txt
awk '
    $1 ~ /^src\// && $2 ~ /^[0-9]+$/ {
        split($1, part, "/")
        library = part[2] (part[3] == "ui" ? "/ui" : "")
        lines[library] += $2
        run[library] += $3
        if ($5 != "") missing[++count] = $1 ": " $5
    }
    END {
        print "| Library | Lines | Run | % |\n|---|---|---|---|"
        for (library in lines) {
            percent = 100 * run[library] / lines[library]
            low = low || (library !~ /ui$/ && percent < 95)
            printf "| `src/%s` | %d | %d | %.1f |\n", library, lines[library], run[library], percent | "sort"
        }
        close("sort")
        print ""
        for (i = 1; i <= count; ++i) print missing[i]
        exit low
    }' build/coverage/lines.txt
