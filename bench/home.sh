#!/bin/bash
# What a home folder on a slow network costs the start: bench/home.sh [LUMORA [ROUNDS]]
# Opens a photo of 12 megapixels as startup.sh does, with a home whose every operation takes 0 to 100 ms, or that cannot be
# written, and prints a table in Markdown: when the photo is shown, and after how many operations on the home.
set -euo pipefail
bench=$(dirname "$(readlink -f "$0")")
. "$bench/stage.sh"
command -v fusermount >/dev/null && /usr/bin/python3 -c 'import fusepy' ||
    { echo "fusepy is missing: apt-get install python3-fusepy fuse3" >&2; exit 1; }
dbus-run-session -- /usr/bin/python3 "$bench/home.py" "$lumora" "$stage/photo.jpg" "$rounds" \
    "$bench/slow-home.py" "$stage"
