#!/bin/bash
# folders.sh LUMORA: which folders the program itself uses, seen by its system calls: the player of the scripts has its
# own.
set -euo pipefail
. "$(dirname "$0")/../support/traced-start.sh" "$(realpath "$1")"
trace_start file
for path in /etc/lumora/Lumora.ini "$HOME/.config/lumora/ForMe.ini" "$HOME/.local/state/lumora/recovery" \
    "$HOME/.cache/lumora"; do
    grep -q "\"$path" "$folder/trace" || fail "it never looks for $path"
done
[ -d "$HOME/.cache/lumora" ] || fail "there is no cache"
