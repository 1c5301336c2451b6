#!/bin/bash
# fuzz.sh SECONDS [TARGET...]: builds the fuzz targets, feeds each (all of them unless named) for so long with inputs that
# libFuzzer makes of the seeds, and prints for each how many inputs it read, how much of the code they reached and what
# was found: a crash, a leak, undefined behaviour, a broken promise, more than 30 seconds or more than 2 GB. Ends with
# code 1 when there was a finding; its input is in build/fuzz/findings, and
#     LUMORA_FUZZ=TARGET build/fuzz/bin/lumora-fuzz FILE
# reads it again. What was reached is kept in build/fuzz/corpus for the next time. With 0 seconds it builds and reads the
# seeds and what was kept.
# (With sanitizers a HEIC file that says to have 200 megapixels takes 20 seconds, five without.)
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
. scripts/setup.sh
[[ ${1:-} =~ ^[0-9]+$ ]] || fail "Usage: tests/faults/fuzz.sh SECONDS [TARGET...]"
seconds=$1
shift
need_packages build fuzz
build fuzz
fuzz=build/fuzz/bin/lumora-fuzz
if [ $# -eq 0 ]; then
    read -ra all < <("$fuzz" 2>&1 | sed 's/.*: *//') # it names them when it gets none
    set -- "${all[@]}"
fi

made=$(mktemp -d -p /dev/shm)
trap 'rm -r "$made"' EXIT
export TMPDIR=$made
export LSAN_OPTIONS=suppressions=$PWD/tests/support/lsan.supp:print_suppressions=0
ASAN_OPTIONS=detect_leaks=0 build/fuzz/bin/lumora-fuzz-seeds "$made/seeds" # the encoders of the seeds leak
failures=0
mkdir -p build/fuzz/findings build/log
for target; do
    mkdir -p "build/fuzz/corpus/$target"
    log=build/log/fuzz-$target.log
    limit=(-max_total_time="$seconds")
    [ "$seconds" -gt 0 ] || limit=(-runs=0)
    status=0
    LUMORA_FUZZ=$target nice -n 10 "$fuzz" "${limit[@]}" -timeout=30 -rss_limit_mb=2048 -print_final_stats=1 \
        -dict=tests/fuzz/words.dict -artifact_prefix="build/fuzz/findings/$target-" \
        "build/fuzz/corpus/$target" "$made/seeds/$target" >"$log" 2>&1 || status=$?
    awk -v target="$target" -v status=$status '
        match($0, /cov: [0-9]+/) { reached = substr($0, RSTART + 5, RLENGTH - 5) }
        $1 == "stat::number_of_executed_units:" { inputs = $2 }
        $1 == "stat::peak_rss_mb:" { memory = $2 }
        /^(SUMMARY|Broken promise)/ { finding = finding " " $0 ";" }
        END {
            printf "%s: %d inputs, %d branches reached, %d MB at most, ", target, inputs, reached, memory
            print status ? "1 finding:" finding : "no finding"
        }' "$log"
    if [ "$status" -ne 0 ]; then
        failures=$((failures + 1))
        grep 'Test unit written to' "$log" || tail -n 20 "$log"
    fi
done
[ "$failures" -eq 0 ]
