#!/bin/bash
# home.sh LUMORA LUMORA-PLAY: how often the window's thread asks for something in the home, which may be on a slow server,
# seen by its system calls: until a photo is shown, and with each click.
set -euo pipefail
play=$(realpath "$2")
. "$(dirname "$0")/../support/traced-start.sh" "$(realpath "$1")"

# Names, since the system remembers what it has just asked a server. The fonts' list has names of its own.
trace_start file
names=$(grep -o "\"$HOME[^\"]*\"" "$folder/window" | grep -v font | sort -u)
[ "$(wc -l <<<"$names")" -le 9 ] || fail "before the photo is shown it looks at
$names"

cat >"$folder/script" <<'SCRIPT'
setting Welcome/Show=0
start advanced $SAMPLES/animals/owl.jpg
expect state.PhotoLoaded 1
wait 300
click cmdTool3
key Escape
wait 300
click cmdTool8
wait 300
item FT3 keySepia
wait 300
key Ctrl+Z
wait 300
key Ctrl+Y
wait 300
click cmdTool2
wait 300
click cmdOptions
wait 300
click frmOptions.cmdCancel
wait 300
click cmdPrint
wait 300
click frmPrint2.cmdNo
wait 300
quit
SCRIPT
mkdir "$folder/stage"
strace -f -qq -s 200 -o "$folder/trace" -e trace=file,write "$play" --verbose --in "$folder/stage" --patience 60000 \
    "$folder/script" >"$folder/log" 2>&1 || fail "$(cat "$folder/log")"
thread=$(head -n 1 "$folder/trace" | cut -d ' ' -f 1)
# After each step's line, the calls that it makes: none but for those of the Crop tool, which writes whether its tip was
# seen, and the options, which list what is kept.
grep "^$thread " "$folder/trace" | awk -v home="\"$folder/stage/(home|config|cache|data|state)" '
    /write\(1, "[0-9]+: (click|item|key)/ { split($0, part, "\""); step = part[2] }
    step && $0 ~ home { ++calls[step] }
    END {
        for (step in calls)
            if (calls[step] > (step ~ /cmdOptions/ ? 6 : step ~ /cmdTool3/ ? 1 : 0))
                { print step " asks " calls[step] " times"; bad = 1 }
        exit bad
    }' >&2
