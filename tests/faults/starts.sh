#!/bin/bash
# starts.sh LUMORA-PLAY COUNT: starts and ends the program COUNT times in one home; what it leaves there does not grow.
set -euo pipefail
play=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
export QT_QPA_PLATFORM=offscreen
mkdir "$folder/stage"
cat >"$folder/script" <<'SCRIPT'
setting Welcome/Show=0
start advanced $SAMPLES/animals/owl.jpg
expect state.size 1600x*
quit
SCRIPT
left() { find "$folder/stage" -not -path '*/program/*' | sort; }
for ((n = 1; n <= $2; ++n)); do
    "$play" --in "$folder/stage" --patience 60000 "$folder/script" >"$folder/log" 2>&1 || { cat "$folder/log" >&2; exit 1; }
    [ "$n" -gt 1 ] || left >"$folder/first"
done
left | diff "$folder/first" - || { echo "the $2nd start left more than the first" >&2; exit 1; }
echo "$2 starts: $(wc -l <"$folder/first") files and folders after the first and after the last"
