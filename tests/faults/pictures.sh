#!/bin/bash
# pictures.sh FOLDER: opens every file in the folder and its subfolders as Lumora does, one after the other, and prints
# what was opened, what was refused and why, what was slow (a second or more) and what is large (50 megapixels or more).
# Ends with code 1 when a file made a decoder crash, hang or end: everything else is an answer.
#
# LUMORA_PROBE names the lumora-probe to use, SECONDS_EACH its limit for a file (20).
set -euo pipefail

fail() {
    echo "$*" >&2
    exit 2
}

[ $# -eq 1 ] && [ -d "$1" ] || fail "Usage: tests/faults/pictures.sh FOLDER"
project=$(cd "$(dirname "$(readlink -f "$0")")/../.." && pwd)
probe=${LUMORA_PROBE:-}
for preset in release dev; do
    [ -n "$probe" ] || [ ! -x "$project/build/$preset/bin/lumora-probe" ] || probe=$project/build/$preset/bin/lumora-probe
done
[ -x "$probe" ] || fail "There is no lumora-probe yet: ./run builds it."

find "$1" -type f -print0 | sort -z | xargs -0 -r "$probe" --timeout "${SECONDS_EACH:-20}" -- |
    awk -F '\t' '
        function list(title, lines, count) {
            if (count) {
                printf "\n%s\n", title
                for (i = 1; i <= count; ++i)
                    print "  " lines[i]
            }
        }
        {
            split($4, side, "x")
            megapixels = side[1] * side[2] / 1e6
            if ($2 == "ok") {
                ++opened
                if ($3 != "")
                    broken[++incomplete] = $1 ": " $3
            } else {
                ++refused
                refusals[refused] = $1 ": " $3
                reason = $3
                sub(/:.*/, "", reason)
                if (reason ~ /^(crashed|no answer within|ended with code)/)
                    bad[++failures] = $1 ": " $3
                ++reasons[reason]
            }
            if ($6 >= 1000)
                late[++slow] = $1 ": " $6 " ms, " $4
            if (megapixels >= 50)
                big[++large] = $1 ": " $4
            time += $6
        }
        END {
            printf "%d files: %d opened (%d not whole), %d refused, %d slow, %d large; %.1f seconds\n", NR, opened, incomplete,
                refused, slow, large, time / 1000
            fflush()
            for (reason in reasons)
                printf "  refused, %s: %d\n", reason, reasons[reason] | "sort"
            close("sort")
            list("Not whole:", broken, incomplete)
            list("Refused:", refusals, refused)
            list("Slow:", late, slow)
            list("Large:", big, large)
            list("Made a decoder fail:", bad, failures)
            exit failures > 0
        }'
