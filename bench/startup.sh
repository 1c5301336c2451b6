#!/bin/bash
# How long programs need from exec to the photo on the screen: bench/startup.sh [LUMORA [ROUNDS [WARM|COLD]]]
# Opens a photo of 12 megapixels in turn with Lumora and three viewers of Debian, on a screen of 1280 x 800 of its own, and
# prints a table in Markdown. COLD drops the system's file caches before each start, which needs root.
set -euo pipefail
bench=$(dirname "$(readlink -f "$0")")
. "$bench/stage.sh"
files=${3:-WARM}
programs=("$lumora")
for viewer in lximage-qt eog gpicview; do
    if command -v "$viewer" >/dev/null; then
        programs+=("$(command -v "$viewer")")
    else
        echo "$viewer is left out: apt-get install $viewer" >&2
    fi
done
dbus-run-session -- python3 "$bench/startup.py" "$stage/photo.jpg" "$rounds" "$files" "${programs[@]}"
