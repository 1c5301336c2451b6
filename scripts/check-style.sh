#!/bin/bash
# Formatting (clang-format) and static analysis (clang-tidy) of everything in src, tests, devtools, content and bench.
# Called by ./test --style, which installs what it needs.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
. scripts/setup.sh

# A separate build folder: clang-tidy needs the compile commands and the generated files, not the objects.
if [ ! -f build/style/build.ninja ]; then
    say "Preparing the analysis"
    quietly build/log/configure-style.log \
        cmake --preset dev -B build/style -D LUMORA_BENCH=ON -D CMAKE_GLOBAL_AUTOGEN_TARGET=ON \
        -D LUMORA_TOGETHER=OFF -D CMAKE_DISABLE_PRECOMPILE_HEADERS=ON # each file includes what it needs
fi
quietly build/log/build-style.log cmake --build build/style --target autogen

say "Checking the formatting"
find src tests devtools content bench -name '*.cpp' -o -name '*.h' | xargs -r clang-format --dry-run --Werror

say "Analysing the code ($(nproc) files at a time; this takes minutes)"
compiled=$(awk -F'"' '$2 == "file" && $4 !~ /\/build/ { print $4 }' build/style/compile_commands.json | sort -u)
log=build/log/clang-tidy.log
if ! xargs -r -n 1 -P "$(nproc)" clang-tidy -p build/style --quiet <<<"$compiled" >"$log" 2>/dev/null; then
    grep -E 'error:|warning:' "$log" | sort -u >&2
    fail "clang-tidy reported problems; see $log."
fi
say "No style problems."
