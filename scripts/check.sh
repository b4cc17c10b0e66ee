#!/usr/bin/env bash
# Runs the checks that need no build: layers, includes, format, forbidden words in the sources. "tidy" adds clang-tidy over the
# release build; "quick-tidy" leaves out its path analysis, which is half of the time; "recent-tidy" checks only the
# units that the last changes touched.
set -euo pipefail
cd "$(dirname "$0")/.."

failed=0
scripts/check_layers || failed=1
scripts/check_includes || failed=1

mapfile -t sources < <(git ls-files '*.cpp' '*.h')
if ! clang-format --dry-run -Werror "${sources[@]}"; then
    echo "Run: clang-format -i \$(git ls-files '*.cpp' '*.h')" >&2
    failed=1
fi

# They return from the helper that contains them, and the test passes.
if grep -nE '\bQ(VERIFY2?|COMPARE|FAIL|SKIP|TRY_[A-Z_]+)\b *\(' -r tests; then
    echo "Assert with GoogleTest." >&2
    failed=1
fi
if grep -nE '\b(SIGNAL|SLOT) *\(' -r src sim tools tests; then
    echo "Connect to members, not to texts." >&2
    failed=1
fi

if [[ "${1:-}" == *tidy ]]; then
    checks=()
    [ "$1" = tidy ] || checks=('-checks=-clang-analyzer-*')
    # Only the units built here: another platform's files need its headers.
    mapfile -t units < <(git ls-files 'src/*.cpp' 'sim/*.cpp' 'tools/*.cpp' |
        while read -r unit; do grep -q "/$unit\"" build/release/compile_commands.json && echo "$unit"; done)
    if [ "$1" = recent-tidy ]; then
        recent=$(git rev-list --first-parent -n 6 HEAD | tail -n 1)
        mapfile -t units < <(printf '%s\n' "${units[@]}" | grep -xFf <(git diff --name-only "$recent"; echo none))
    fi
    printf '%s\n' "${units[@]}" | xargs -r -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet "${checks[@]}" \
        2> >(grep -v ' warnings\? generated' >&2) || failed=1
fi
exit $failed
