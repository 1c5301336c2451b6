#!/bin/bash
# What Lumora makes of a folder of pictures: tests/faults/pictures.sh FOLDER [LUMORA-PROBE]
# Opens every file in it and below with lumora-probe and prints how many were opened whole, opened in part and refused
# (by the reason), then the slow ones (more than a second) and the large ones (more than 50 megapixels). Exit code 1 when
# a file made a decoder crash, hang or run out of memory.
set -euo pipefail
root=$(readlink -f "$(dirname "$(readlink -f "$0")")/../..")
folder=${1:?usage: tests/faults/pictures.sh FOLDER [LUMORA-PROBE]}
probe=$(readlink -f "${2:-$root/build/release/bin/lumora-probe}")
[ -d "$folder" ] || { echo "$folder is no folder." >&2; exit 2; }
[ -x "$probe" ] || { echo "$probe not found. Build it first, with ./run for instance, or name another one." >&2; exit 2; }
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
find "$folder" -type f | sort >"$stage/list"
[ -s "$stage/list" ] || { echo "There is no file in $folder." >&2; exit 2; }
QT_QPA_PLATFORM=offscreen "$probe" --list "$stage/list" >"$stage/lines"
awk -F'\t' '
    { split($4, size, "x"); kind = $3; sub(/:.*/, "", kind) }
    $2 == "ok" && $3 == "" { ++whole }
    $2 == "ok" && $3 != "" { ++part }
    $2 == "refused" { ++refused; ++reasons[kind] }
    $6 > 1000 { slow = slow sprintf("  %6d ms  %s\n", $6, $1) }
    size[1] * size[2] > 50e6 { large = large sprintf("  %9s  %s\n", $4, $1) }
    kind ~ /^(crashed|no answer|ended with code|no memory)/ { bad = bad sprintf("  %s  %s\n", $3, $1) }
    END {
        printf "%d opened, %d opened in part, %d refused\n", whole, part, refused
        for (reason in reasons) printf "  %6d  %s\n", reasons[reason], reason | "sort -k2"
        close("sort -k2")
        if (slow != "") printf "slow:\n%s", slow
        if (large != "") printf "large:\n%s", large
        if (bad != "") printf "faults:\n%s", bad
        exit bad != ""
    }' "$stage/lines"
