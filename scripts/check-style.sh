#!/bin/bash
# Formatting (clang-format) and static analysis (clang-tidy) of everything in src, tests, devtools, content and bench.
# Called by ./test --style, which installs what it needs.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
. scripts/setup.sh

# A separate build folder: clang-tidy needs the compile commands, the generated files and the precompiled headers, not
# the objects. Files of a folder are analysed as one, as the tests compile them: alone each takes ten times as long.
if [ ! -f build/style/build.ninja ]; then
    say "Preparing the analysis"
    quietly build/log/configure-style.log \
        cmake --preset dev -B build/style -D LUMORA_BENCH=ON -D CMAKE_GLOBAL_AUTOGEN_TARGET=ON
fi
quietly build/log/build-style.log cmake --build build/style --target autogen lumora_precompiled_gui \
    lumora_precompiled_widgets lumora_precompiled_tests

say "Checking the formatting"
find src tests devtools content bench -name '*.cpp' -o -name '*.h' | xargs -r clang-format --dry-run --Werror

say "Analysing the code ($(nproc) folders at a time; this takes minutes)"
compiled=$(awk -F'"' '$2 == "file" && $4 !~ /autogen|precompiled_|qrc_|\/cmake_pch/ { print $4 }' \
    build/style/compile_commands.json | sort -u)
log=build/log/clang-tidy.log
xargs -r -n 1 -P "$(nproc)" clang-tidy -p build/style --quiet --config-file=.clang-tidy \
    --checks=-bugprone-suspicious-include --header-filter="$PWD/(src|tests|devtools|content|bench)/" \
    <<<"$compiled" >"$log" 2>/dev/null || true
if grep -E 'error:|warning:' "$log" | sort -u >&2; then
    fail "clang-tidy reported problems; see $log."
fi
say "No style problems."
