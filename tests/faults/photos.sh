#!/bin/bash
# photos.sh LUMORA-PLAY COUNT: opens COUNT photos one after the other in one process, each changed a little, and looks
# whether its memory and its open files grow after the first tenth.
set -euo pipefail
play=$(realpath "$1")
count=$2
folder=$(mktemp -d)
trap 'kill $player 2>/dev/null || true; rm -r "$folder"' EXIT
export QT_QPA_PLATFORM=offscreen
mapfile -t photos < <(cd "$(dirname "$play")/My Photos" && find . -name '*.jpg' | sort | sed 's|^\./||')
{
    printf 'setting %s\n' Welcome/Show=0 Dialogs/Style=1
    echo "start advanced \$SAMPLES/${photos[0]}"
    for ((n = 1; n <= count; ++n)); do
        echo "click cmdOpen"
        [ "$n" -eq 1 ] || echo "click frmSave2.cmdNo"
        echo "choose \$SAMPLES/${photos[n % ${#photos[@]}]}"
        printf 'click cmdTool8\nitem FT3 keyInvert\nexpect state.PhotoModified 1\n'
    done
    echo "quit"
} >"$folder/script"
"$play" --patience 60000 --timeout 7000 --verbose "$folder/script" >"$folder/log" 2>&1 &
player=$!
steps=$(grep -c . "$folder/script")
early= late=
# Resident kilobytes without the shared files, and open files.
size() { awk '/^RssAnon/ { print $2 }' "/proc/$player/status"; }
handles() { ls "/proc/$player/fd" | wc -l; }
while kill -0 $player 2>/dev/null; do
    at=$(grep -oE '^[0-9]+:' "$folder/log" | tail -n 1 | tr -d : || true)
    if [ -z "$early" ] && [ "${at:-0}" -gt $((steps / 10)) ]; then
        early="$(size) $(handles)"
    elif [ -z "$late" ] && [ "${at:-0}" -gt $((steps * 9 / 10)) ]; then
        late="$(size) $(handles)"
    fi
    sleep 0.2
done
wait $player || { tail -n 3 "$folder/log" >&2; exit 1; }
read -r size0 handles0 <<<"$early"
read -r size1 handles1 <<<"$late"
echo "$count photos: $((size0 / 1024)) MB and $handles0 handles after a tenth, $((size1 / 1024)) MB and $handles1 at the end"
# The undo history keeps 640 MB of pixels in memory at most; files may be open while it spills.
[ "$size1" -lt $(((size0 > 900 * 1024 ? size0 : 900 * 1024) * 11 / 10)) ] && [ "$handles1" -le $((handles0 + 3)) ]
